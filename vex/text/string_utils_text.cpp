// TStringUtils: characters, pieces and list searches.
#include <algorithm>
#include <utility>

#include "vex/platform/string_list.h"
#include "vex/platform/sysutils.h"
#include "vex/text/compare_utils.h"
#include "vex/text/string_utils.h"

namespace vex {

String TStringUtils::DequoteStr(const String& S, const String& Quote) {
  const size_t q = Quote.size();
  if (q == 0 || S.size() < 2 * q) return S;
  if (S.compare(0, q, Quote) != 0 || S.compare(S.size() - q, q, Quote) != 0) return S;
  return S.substr(q, S.size() - 2 * q);
}

int32_t TStringUtils::LastDelimiterEx(const String& Delimiters, const String& S, int32_t Index) {
  if (Index < 1 || Delimiters.empty()) return 0;
  for (size_t i = S.size(); i > 0; --i) {
    if (Delimiters.find(S[i - 1]) != String::npos && --Index == 0) {
      return static_cast<int32_t>(i);
    }
  }
  return 0;
}

void TStringUtils::SwapStrings(String& S1, String& S2) { S1.swap(S2); }

bool TStringUtils::DeleteFirstChars(String& S, const String& Prefix) {
  if (Prefix.empty() || S.compare(0, Prefix.size(), Prefix) != 0) return false;
  S.erase(0, Prefix.size());
  return true;
}

bool TStringUtils::DeleteLastChar(String& S, Char C) {
  if (S.empty() || S.back() != C) return false;
  S.pop_back();
  return true;
}

int32_t TStringUtils::IndexOfStrValueP(const TStringDynArray& Items, const String& Value,
                                       int32_t Start, int32_t Step) {
  const size_t step = static_cast<size_t>(std::max(Step, 1));
  for (size_t i = static_cast<size_t>(std::max(Start, 0)); i < Items.size(); i += step) {
    if (SameText(Items[i], Value)) return static_cast<int32_t>(i);
  }
  return -1;
}

String TStringUtils::DeleteAllChars(const String& S, const String& Chars) {
  String result;
  result.reserve(S.size());
  for (Char c : S) {
    if (Chars.find(c) == String::npos) result.push_back(c);
  }
  return result;
}

String TStringUtils::InsertChars(const String& S, const String& Chars, int32_t Count) {
  if (Count < 1 || Chars.empty() || S.size() <= static_cast<size_t>(Count)) return S;
  const size_t n = static_cast<size_t>(Count);
  String result;
  result.reserve(S.size() + (S.size() / n) * Chars.size());
  for (size_t i = 0; i < S.size(); i += n) {
    if (i > 0) result += Chars;
    result.append(S, i, n);
  }
  return result;
}

bool TStringUtils::CheckForFirstChars(const String& S, const String& Chars) {
  return !S.empty() && Chars.find(S.front()) != String::npos;
}

String TStringUtils::GetTabStr(int32_t Level) {
  return Level > 0 ? String(static_cast<size_t>(Level), u'\t') : String();
}

int32_t TStringUtils::IndexInListWithProc(const String& S, const TStrings& List,
                                          const TGetPosFunc& Func, int32_t StartIndex) {
  if (!Func) return -1;
  for (int32_t i = std::max(StartIndex, 0); i < List.Count(); ++i) {
    if (Func(S, List.Strings(i)) != 0) return i;
  }
  return -1;
}

int32_t TStringUtils::IndexInListByParams(const String& S, const TStrings& List,
                                          TLineCompareType CompareType, TLineCompareOptions Options,
                                          int32_t StartIndex) {
  return IndexInListWithProc(S, List, TCompareUtils::IntCompareFunc(CompareType, Options),
                             StartIndex);
}

}  // namespace vex
