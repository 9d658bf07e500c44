// TParseUtils: splitting at one position, first/second/last tokens, splitting in place,
// character searches, bracketed options and file filters. Field walking, name=value records and
// integer fields are in parse_utils_fields.cpp.
#include "vex/text/parse_utils.h"

#include <algorithm>
#include <utility>

#include "vex/platform/sysutils.h"
#include "vex/text/string_utils.h"

namespace vex {

namespace {

// Characters [from, from + count) of s, 1-based, clamped to the string. The arithmetic is done
// in 64 bits so that any pair of 32-bit arguments is safe.
String Mid(const String& s, int64_t from, int64_t count) {
  const int64_t len = static_cast<int64_t>(s.size());
  if (from < 1) from = 1;
  if (from > len || count <= 0) return String();
  count = std::min(count, len - from + 1);
  return s.substr(static_cast<size_t>(from - 1), static_cast<size_t>(count));
}

// Characters from position from (1-based, clamped to 1) to the end.
String MidToEnd(const String& s, int64_t from) {
  return Mid(s, from, static_cast<int64_t>(s.size()));
}

// 1-based position of the first c at or after position from; 0 when none or from is outside.
int32_t PosChar(Char c, const String& s, int64_t from = 1) {
  if (from < 1 || from > static_cast<int64_t>(s.size())) return 0;
  const size_t i = s.find(c, static_cast<size_t>(from - 1));
  return i == String::npos ? 0 : static_cast<int32_t>(i + 1);
}

// 1-based position of the last c; 0 when none.
int32_t LastPosChar(Char c, const String& s) {
  const size_t i = s.rfind(c);
  return i == String::npos ? 0 : static_cast<int32_t>(i + 1);
}

// A filter splits into description/pattern pairs: an even number of tokens, at least two.
bool IsValidFilter(const TStringDynArray& tokens) {
  return tokens.size() >= 2 && tokens.size() % 2 == 0;
}

}  // namespace

// --- splitting at one position --------------------------------------------------------------

TSplitResult TParseUtils::SplitStr(const String& S, int32_t p, int32_t k, bool DoTrim) {
  TSplitResult result;
  if (p < 0) return result;
  const int64_t pos = p == 0 ? static_cast<int64_t>(S.size()) + 1 : p;
  result.s1 = Mid(S, 1, pos - 1);
  result.s2 = MidToEnd(S, pos + 1 - k);
  if (DoTrim) {
    result.s1 = Trim(result.s1);
    result.s2 = Trim(result.s2);
  }
  if (!result.s1.empty()) result.flag |= 1;
  if (!result.s2.empty()) result.flag |= 2;
  return result;
}

TSplitResult TParseUtils::SplitStr(const String& S, Char Delim, bool DoTrim) {
  return SplitStr(S, PosChar(Delim, S), 0, DoTrim);
}

String TParseUtils::JoinParts(const TSplitResult& Parts, Char Delim) {
  String result = Parts.s1;
  result += Delim;
  result += Parts.s2;
  return result;
}

void TParseUtils::SplitStrByPos(const String& S, int32_t a, int32_t b, String& Left,
                                String& Right) {
  String left = Mid(S, 1, a);
  Right = MidToEnd(S, static_cast<int64_t>(b) + 1);
  Left = std::move(left);
}

String TParseUtils::CopyToken(const String& S, int32_t p, int32_t q) {
  if (q <= p) return Mid(S, 1, static_cast<int64_t>(p) - 1);
  return Mid(S, static_cast<int64_t>(p) + 1, static_cast<int64_t>(q) - p - 1);
}

String TParseUtils::StuffToken(const String& S, const String& Text, int32_t p, int32_t q) {
  return Mid(S, 1, static_cast<int64_t>(p) - 1) + Text + MidToEnd(S, static_cast<int64_t>(q) + 1);
}

// --- first, second and last tokens -----------------------------------------------------------

String TParseUtils::GetFirstToken(const String& S, Char Delim) {
  return SplitStr(S, Delim, true).s1;
}

String TParseUtils::GetFirstTokenEx(const String& S, const String& Delims, int32_t StartPos,
                                    bool DoTrim, int32_t* FoundPos) {
  const int32_t p = MinPosAndIndexOfChar(S, Delims, StartPos);
  if (FoundPos) *FoundPos = p;
  return p > 0 ? SplitStr(S, p, 0, DoTrim).s1 : S;
}

String TParseUtils::GetSecondToken(const String& S, Char Delim, const String& Default) {
  String s2 = SplitStr(S, Delim, true).s2;
  return s2.empty() ? Default : s2;
}

String TParseUtils::GetSecondTokenSafe(const String& S, Char Delim) {
  String s2 = SplitStr(S, Delim, true).s2;
  return s2.empty() ? S : s2;
}

String TParseUtils::GetNameToken(const String& S) { return GetFirstToken(S, u'='); }

String TParseUtils::GetValueToken(const String& S) { return GetSecondToken(S, u'=', String()); }

String TParseUtils::GetValueTokenEx(const String& S, const String& Name, Char Delim) {
  TSplitResult parts = SplitStr(TStringUtils::DequoteStr(S, u"'"), Delim, true);
  return parts.s1 == Name ? parts.s2 : String();
}

String TParseUtils::SetFirstToken(const String& S, const String& Token, Char Delim) {
  const String s2 = SplitStr(S, Delim, true).s2;
  if (s2.empty()) return Token;  // the delimiter goes with the empty second part
  String result = Token;
  result += Delim;
  result += s2;
  return result;
}

String TParseUtils::SetFirstToken(const String& S, const String& Token, int32_t p) {
  if (p == 0) return Token;
  return Token + MidToEnd(S, p);
}

String TParseUtils::SetSecondToken(const String& S, const String& Token, Char Delim) {
  String result = SplitStr(S, Delim, true).s1;
  result += Delim;
  result += Token;
  return result;
}

String TParseUtils::GetLastToken(const String& S, Char Delim, Char EndDelim,
                                 const String& Default) {
  String result;
  const int32_t p = LastPosChar(Delim, S);
  if (p > 0) {
    const int64_t q = EndDelim == 0 ? static_cast<int64_t>(S.size()) + 1
                                    : PosChar(EndDelim, S, static_cast<int64_t>(p) + 1);
    if (q > p) result = Mid(S, static_cast<int64_t>(p) + 1, q - p - 1);
  }
  return result.empty() ? Default : result;
}

String TParseUtils::CutLastToken(const String& S, Char Delim, bool* Found) {
  const int32_t p = LastPosChar(Delim, S);
  if (Found) *Found = p > 0;
  return p > 0 ? S.substr(0, static_cast<size_t>(p - 1)) : S;
}

// --- splitting in place ----------------------------------------------------------------------

void TParseUtils::SplitWithLastChar(String& S, Char Delim, String& Tail) {
  SplitWithLastCharEx(S, Delim, 1, Tail, false);
}

void TParseUtils::SplitWithLastCharEx(String& S, Char Delim, int32_t Index, String& Tail,
                                      bool DoSwap) {
  const int32_t p = TStringUtils::LastDelimiterEx(String(1, Delim), S, Index);
  if (p == 0) {
    Tail.clear();
    return;
  }
  String tail = S.substr(static_cast<size_t>(p));
  S.resize(static_cast<size_t>(p - 1));
  Tail = std::move(tail);
  if (DoSwap) TStringUtils::SwapStrings(S, Tail);
}

void TParseUtils::SplitWithLastCharPtr(const String& S, Char Delim, int32_t Index, String& Tail,
                                       bool DoSwap, String* Head) {
  String head = S;
  SplitWithLastCharEx(head, Delim, Index, Tail, DoSwap);
  if (Head) *Head = std::move(head);
}

void TParseUtils::SplitWithFirstChar(String& S, Char Delim, String& Head) {
  const int32_t p = PosChar(Delim, S);
  if (p == 0) {
    String head = std::move(S);
    S.clear();
    Head = std::move(head);
    return;
  }
  String head = S.substr(0, static_cast<size_t>(p - 1));
  S.erase(0, static_cast<size_t>(p));
  Head = std::move(head);
}

int32_t TParseUtils::Split(const String& S, String& Left, String& Right, Char Delim,
                           const String& DefRight) {
  const int32_t i = PosChar(Delim, S) - 1;
  String left, right;
  if (i < 0) {
    left = S;
  } else {
    left = S.substr(0, static_cast<size_t>(i));
    // Deliberate: the right part starts at the delimiter and is only i + 1 characters long.
    right = Mid(S, static_cast<int64_t>(i) + 1, static_cast<int64_t>(i) + 1);
  }
  Left = std::move(left);
  Right = right.empty() ? DefRight : std::move(right);
  return i;
}

void TParseUtils::SplitStrWithChar(const String& S, Char Delim, String& Head, String& Tail,
                                   bool DoTrim) {
  String tail = S;
  String head;
  SplitWithFirstChar(tail, Delim, head);
  if (DoTrim) {
    head = Trim(head);
    tail = Trim(tail);
  }
  Head = std::move(head);
  Tail = std::move(tail);
}

void TParseUtils::SplitStrWithTwoChars(const String& S, Char Delim1, Char Delim2, String& A,
                                       String& B, String& C, bool DoTrim) {
  String a, b, c;
  SplitStrWithChar(S, Delim1, a, b, DoTrim);
  if (Delim2 != 0) {
    const String rest = std::move(b);
    SplitStrWithChar(rest, Delim2, b, c, DoTrim);
  }
  A = std::move(a);
  B = std::move(b);
  C = std::move(c);
}

TSplitRec TParseUtils::SplitStr2Rec(const String& S, Char Delim1, Char Delim2, bool DoTrim) {
  TSplitRec rec;
  SplitStrWithTwoChars(S, Delim1, Delim2, rec.s1, rec.s2, rec.s3, DoTrim);
  return rec;
}

// GCC 12 reports the inactive alternatives of the std::variant inside Variant as "maybe
// uninitialized" when the assignment below is inlined with sanitizers on; they are not read.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif
int32_t TParseUtils::SplitPropStr(const String& S, String& Name, Variant& Value,
                                  const TIntMapFunc& MapFunc) {
  String index_text, name, value_text;
  SplitStrWithTwoChars(S, u'.', u'=', index_text, name, value_text, true);
  int32_t index = StrToInt(index_text);
  if (MapFunc) index = MapFunc(index);
  int32_t number = 0;
  if (TryStrToInt(value_text, number)) {
    Value = Variant(number);
  } else {
    Value = Variant(value_text);
  }
  Name = std::move(name);
  return index;
}
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic pop
#endif

// --- character searches ------------------------------------------------------------------------

int32_t TParseUtils::DetectIntChars(const String& S, int32_t& Position) {
  int32_t found = 0;
  if (Position >= 1) {
    for (size_t i = static_cast<size_t>(Position) - 1; i < S.size(); ++i) {
      if (S[i] >= u'0' && S[i] <= u'9') {
        found = static_cast<int32_t>(i + 1);
        break;
      }
    }
  }
  Position = found;
  return found;
}

int32_t TParseUtils::MinPosAndIndexOfChar(const String& S, const String& Chars, int32_t StartPos,
                                          int32_t* Index) {
  if (Index) *Index = -1;
  if (StartPos < 1) return 0;
  for (size_t i = static_cast<size_t>(StartPos) - 1; i < S.size(); ++i) {
    const size_t k = Chars.find(S[i]);
    if (k != String::npos) {
      if (Index) *Index = static_cast<int32_t>(k);
      return static_cast<int32_t>(i + 1);
    }
  }
  return 0;
}

int32_t TParseUtils::PosAndIndexOfChar(const String& S, const String& Chars, int32_t StartPos,
                                       int32_t* Index) {
  if (Index) *Index = -1;
  for (size_t k = 0; k < Chars.size(); ++k) {
    const int32_t p = PosChar(Chars[k], S, StartPos);
    if (p > 0) {
      if (Index) *Index = static_cast<int32_t>(k);
      return p;
    }
  }
  return 0;
}

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
