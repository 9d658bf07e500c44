// TParseUtils: bracketed options and file-dialog filters.
#include <algorithm>
#include <utility>

#include "vex/platform/sysutils.h"
#include "vex/text/parse_utils.h"
#include "vex/text/string_utils.h"

namespace vex {

namespace {

// Characters [from, from + count) of s, 1-based, clamped to the string (64-bit arithmetic, so
// any 32-bit arguments are safe).
String Mid(const String& s, int64_t from, int64_t count) {
  const int64_t len = static_cast<int64_t>(s.size());
  if (from < 1) from = 1;
  if (from > len || count <= 0) return String();
  count = std::min(count, len - from + 1);
  return s.substr(static_cast<size_t>(from - 1), static_cast<size_t>(count));
}

// 1-based position of the first c at or after position from; 0 when none or from is outside.
int32_t PosChar(Char c, const String& s, int64_t from = 1) {
  if (from < 1 || from > static_cast<int64_t>(s.size())) return 0;
  const size_t i = s.find(c, static_cast<size_t>(from - 1));
  return i == String::npos ? 0 : static_cast<int32_t>(i + 1);
}

// A filter splits into description/pattern pairs: an even number of tokens, at least two.
bool IsValidFilter(const TStringDynArray& tokens) {
  return tokens.size() >= 2 && tokens.size() % 2 == 0;
}

}  // namespace

// --- bracketed options -------------------------------------------------------------------------

String TParseUtils::ExtractOptionsWithBrackets(const String& S, const String& Brackets,
                                               int32_t StartPos) {
  int32_t open_pos = 0;
  int32_t close_pos = 0;
  return ExtractOptionsWithBracketsEx(open_pos, close_pos, S, Brackets, StartPos);
}

String TParseUtils::ExtractOptionsWithBracketsEx(int32_t& OpenPos, int32_t& ClosePos,
                                                 const String& S, const String& Brackets,
                                                 int32_t StartPos) {
  String result;
  OpenPos = 0;
  if (Brackets.size() < 2) return result;
  const Char open = Brackets[0];
  const Char close = Brackets[1];
  const int32_t p = PosChar(open, S, StartPos);
  OpenPos = p;
  if (p == 0) return result;
  const int32_t q = PosChar(close, S, static_cast<int64_t>(p) + 1);
  ClosePos = q;
  if (q > 0) result = Mid(S, static_cast<int64_t>(p) + 1, q - p - 1);
  return result;
}

String TParseUtils::ExtractStrAndOptionsWithBrackets(String& Head, const String& S,
                                                     const String& Brackets) {
  String head, result;
  if (S.size() > 2 && Brackets.size() > 1) {
    const Char open = Brackets[0];
    const Char close = Brackets[1];
    const int32_t p = PosChar(open, S);
    if (p > 0) {
      head = S.substr(0, static_cast<size_t>(p - 1));
      // Deliberate: a final closing character always closes, so "f(a(b))" gives "a(b)".
      const int32_t q = S.back() == close ? static_cast<int32_t>(S.size())
                                          : PosChar(close, S, static_cast<int64_t>(p) + 1);
      if (q > 0) result = Mid(S, static_cast<int64_t>(p) + 1, static_cast<int64_t>(q) - p - 1);
    }
  }
  Head = std::move(head);
  return result;
}

bool TParseUtils::SplitStrWithBrackets(const String& S, const String& Brackets, int32_t& OpenPos,
                                       int32_t& ClosePos, int32_t StartPos) {
  if (Brackets.empty()) return false;
  const Char open = Brackets[0];
  const Char close = Brackets.size() > 1 ? Brackets[1] : Brackets[0];
  const int32_t p = PosChar(open, S, StartPos);
  if (p == 0) return false;
  const int32_t q = PosChar(close, S, static_cast<int64_t>(p) + 1);
  if (q == 0) return false;
  OpenPos = p;
  ClosePos = q;
  return true;
}

bool TParseUtils::SplitStrWithBracketsPtr(const String& S, const String& Brackets, String* Left,
                                          String* Inner, String* Right, int32_t StartPos) {
  int32_t p = 0;
  int32_t q = 0;
  if (!SplitStrWithBrackets(S, Brackets, p, q, StartPos)) return false;
  String left = S.substr(0, static_cast<size_t>(p - 1));
  String inner = S.substr(static_cast<size_t>(p), static_cast<size_t>(q - p - 1));
  String right = S.substr(static_cast<size_t>(q));
  if (Left) *Left = std::move(left);
  if (Inner) *Inner = std::move(inner);
  if (Right) *Right = std::move(right);
  return true;
}

// --- file-dialog filters -------------------------------------------------------------------------

String TParseUtils::MakeFileFilter(const TStringDynArray& Descriptions,
                                   const TStringDynArray& Extensions, uint8_t MaxCount) {
  size_t n = std::min(Descriptions.size(), Extensions.size());
  if (MaxCount != 0) n = std::min(n, static_cast<size_t>(MaxCount));
  String result;
  for (size_t i = 0; i < n; ++i) {
    const String& ext = Extensions[i];
    result += Descriptions[i] + u" (*" + ext + u")|*" + ext + u"|";
  }
  if (!result.empty()) result.pop_back();
  return result;
}

int32_t TParseUtils::IndexOfFileExt(const String& Filter, const String& Ext) {
  const TStringDynArray tokens = ExtractTokens(Filter, u'|');
  if (!IsValidFilter(tokens) || Ext.empty()) return 0;
  String pattern = Ext.front() == u'.' ? Ext : u"." + Ext;
  pattern.insert(pattern.begin(), u'*');
  const int32_t i = TStringUtils::IndexOfStrValueP(tokens, pattern, 1, 2);
  return i < 0 ? 0 : (i + 1) / 2;
}

int32_t TParseUtils::GetExtIndexInArray(const String& Ext, const TStringDynArray& Tokens,
                                        bool /*WithDot*/) {
  if (!IsValidFilter(Tokens)) return -1;
  return TStringUtils::IndexOfStrValueP(Tokens, u"*." + Ext, 1, 2);
}

String TParseUtils::GetExtFromArray(int32_t Number, const TStringDynArray& Tokens, bool WithDot) {
  const int64_t i = 2 * static_cast<int64_t>(Number) - 1;
  if (!IsValidFilter(Tokens) || i < 1 || i >= static_cast<int64_t>(Tokens.size())) {
    return String();
  }
  String ext = Tokens[static_cast<size_t>(i)];
  TStringUtils::DeleteFirstChars(ext, WithDot ? u"*" : u"*.");
  return ext;
}

String TParseUtils::GetFileExtByIndex(const String& Filter, int32_t Number, bool WithDot) {
  return GetExtFromArray(Number, ExtractTokens(Filter, u'|'), WithDot);
}

}  // namespace vex
