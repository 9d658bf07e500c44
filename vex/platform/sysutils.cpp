#include "vex/platform/sysutils.h"

#include <unicode/coll.h>
#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <memory>

#include "vex/platform/exceptions.h"

namespace vex {
namespace {

bool IsTrimmed(Char c) { return c <= u' '; }

Char AsciiUpper(Char c) { return (c >= u'a' && c <= u'z') ? static_cast<Char>(c - 32) : c; }
Char AsciiLower(Char c) { return (c >= u'A' && c <= u'Z') ? static_cast<Char>(c + 32) : c; }

}  // namespace

// --- Positions and pieces -------------------------------------------------------------------

int32_t Pos(const String& sub, const String& s) { return PosEx(sub, s, 1); }

int32_t PosEx(const String& sub, const String& s, int32_t offset) {
  if (sub.empty() || offset < 1 || offset > Length(s)) return 0;
  size_t found = s.find(sub, static_cast<size_t>(offset - 1));
  return found == String::npos ? 0 : static_cast<int32_t>(found) + 1;
}

String Copy(const String& s, int32_t index, int32_t count) {
  if (index < 1) index = 1;
  if (count <= 0 || index > Length(s)) return String();
  return s.substr(static_cast<size_t>(index - 1), static_cast<size_t>(count));
}

String Copy(const String& s, int32_t index) {
  return Copy(s, index, std::numeric_limits<int32_t>::max());
}

void Delete(String& s, int32_t index, int32_t count) {
  if (index < 1 || index > Length(s) || count <= 0) return;
  s.erase(static_cast<size_t>(index - 1), static_cast<size_t>(count));
}

void Insert(const String& source, String& s, int32_t index) {
  index = std::clamp(index, 1, Length(s) + 1);
  s.insert(static_cast<size_t>(index - 1), source);
}

String StringOfChar(Char c, int32_t count) {
  return count <= 0 ? String() : String(static_cast<size_t>(count), c);
}

String Trim(const String& s) {
  size_t first = 0;
  size_t last = s.size();
  while (first < last && IsTrimmed(s[first])) ++first;
  while (last > first && IsTrimmed(s[last - 1])) --last;
  return s.substr(first, last - first);
}

String TrimLeft(const String& s) {
  size_t first = 0;
  while (first < s.size() && IsTrimmed(s[first])) ++first;
  return s.substr(first);
}

String TrimRight(const String& s) {
  size_t last = s.size();
  while (last > 0 && IsTrimmed(s[last - 1])) --last;
  return s.substr(0, last);
}

int32_t LastDelimiter(const String& delimiters, const String& s) {
  size_t found = s.find_last_of(delimiters);
  return found == String::npos ? 0 : static_cast<int32_t>(found) + 1;
}

namespace {

// Upper-cases code point by code point with the simple (one-to-one) mapping, so that every
// position in the result corresponds to the same position in the source. Used for searching.
String SimpleUpper(const String& s) {
  String out(s.size(), u'\0');
  size_t i = 0;
  const size_t n = s.size();
  while (i < n) {
    size_t start = i;
    UChar32 cp;
    U16_NEXT(s.data(), i, n, cp);
    UChar32 up = u_toupper(cp);
    // A mapping that changes the number of units would shift positions; keep the original.
    if (U16_LENGTH(up) != static_cast<int32_t>(i - start)) up = cp;
    size_t j = start;
    U16_APPEND_UNSAFE(out.data(), j, up);
  }
  return out;
}

}  // namespace

String StringReplace(const String& s, const String& old_pattern, const String& new_pattern,
                     TReplaceFlags flags) {
  if (old_pattern.empty()) return s;
  const bool ignore_case = flags.Contains(rfIgnoreCase);
  const String search_in = ignore_case ? SimpleUpper(s) : String();
  const String search_for = ignore_case ? SimpleUpper(old_pattern) : String();
  const String& hay = ignore_case ? search_in : s;
  const String& needle = ignore_case ? search_for : old_pattern;

  String out;
  size_t from = 0;
  while (true) {
    size_t found = hay.find(needle, from);
    if (found == String::npos) break;
    out.append(s, from, found - from);
    out.append(new_pattern);
    from = found + needle.size();
    if (!flags.Contains(rfReplaceAll)) break;
  }
  out.append(s, from, String::npos);
  return out;
}

// --- Case -----------------------------------------------------------------------------------

String UpperCase(const String& s) {
  String out(s);
  for (Char& c : out) c = AsciiUpper(c);
  return out;
}

String LowerCase(const String& s) {
  String out(s);
  for (Char& c : out) c = AsciiLower(c);
  return out;
}

int32_t CompareStr(const String& a, const String& b) {
  const size_t n = std::min(a.size(), b.size());
  for (size_t i = 0; i < n; ++i) {
    if (a[i] != b[i]) return static_cast<int32_t>(a[i]) - static_cast<int32_t>(b[i]);
  }
  return static_cast<int32_t>(a.size()) - static_cast<int32_t>(b.size());
}

bool SameStr(const String& a, const String& b) { return a == b; }

int32_t CompareText(const String& a, const String& b) {
  const size_t n = std::min(a.size(), b.size());
  for (size_t i = 0; i < n; ++i) {
    Char ca = AsciiUpper(a[i]);
    Char cb = AsciiUpper(b[i]);
    if (ca != cb) return static_cast<int32_t>(ca) - static_cast<int32_t>(cb);
  }
  return static_cast<int32_t>(a.size()) - static_cast<int32_t>(b.size());
}

bool SameText(const String& a, const String& b) {
  return a.size() == b.size() && CompareText(a, b) == 0;
}

namespace {

const UChar* AsUChar(const String& s) { return reinterpret_cast<const UChar*>(s.data()); }

using CaseMapper = int32_t (*)(UChar*, int32_t, const UChar*, int32_t, const char*, UErrorCode*);

String MapCase(const String& s, CaseMapper mapper) {
  if (s.empty()) return s;
  String out(s.size(), u'\0');
  UErrorCode err = U_ZERO_ERROR;
  int32_t len =
      mapper(reinterpret_cast<UChar*>(out.data()), Length(out), AsUChar(s), Length(s), "", &err);
  if (err == U_BUFFER_OVERFLOW_ERROR) {
    // Full mappings may grow the text (German sharp s becomes "SS").
    out.assign(static_cast<size_t>(len), u'\0');
    err = U_ZERO_ERROR;
    len = mapper(reinterpret_cast<UChar*>(out.data()), len, AsUChar(s), Length(s), "", &err);
  }
  if (U_FAILURE(err)) return s;
  out.resize(static_cast<size_t>(len));
  return out;
}

// ICU collators are not safe for concurrent use, so each thread compares with its own clone
// of a root-locale master that is built once.
enum CollatorKind { ckCaseSensitive, ckCaseInsensitive };

const icu::Collator* MasterCollator(CollatorKind kind) {
  static const std::array<std::unique_ptr<icu::Collator>, 2> masters = [] {
    auto make = [](UColAttributeValue strength) {
      UErrorCode err = U_ZERO_ERROR;
      std::unique_ptr<icu::Collator> c(icu::Collator::createInstance(icu::Locale::getRoot(), err));
      if (U_SUCCESS(err) && c) c->setAttribute(UCOL_STRENGTH, strength, err);
      return U_SUCCESS(err) ? std::move(c) : nullptr;
    };
    return std::array<std::unique_ptr<icu::Collator>, 2>{make(UCOL_TERTIARY), make(UCOL_SECONDARY)};
  }();
  return masters[static_cast<size_t>(kind)].get();
}

icu::Collator* ThreadCollator(CollatorKind kind) {
  thread_local std::unique_ptr<icu::Collator> clones[2];
  if (!clones[kind]) {
    const icu::Collator* master = MasterCollator(kind);
    if (master) clones[kind].reset(master->clone());
  }
  return clones[kind].get();
}

int32_t Collate(const String& a, const String& b, CollatorKind kind) {
  icu::Collator* collator = ThreadCollator(kind);
  if (!collator) {
    // Without collation data fall back to an ordinal comparison rather than failing.
    return kind == ckCaseSensitive ? CompareStr(a, b) : CompareText(a, b);
  }
  UErrorCode err = U_ZERO_ERROR;
  UCollationResult r = collator->compare(AsUChar(a), Length(a), AsUChar(b), Length(b), err);
  return r == UCOL_LESS ? -1 : (r == UCOL_GREATER ? 1 : 0);
}

}  // namespace

String AnsiUpperCase(const String& s) { return MapCase(s, u_strToUpper); }
String AnsiLowerCase(const String& s) { return MapCase(s, u_strToLower); }

int32_t AnsiCompareStr(const String& a, const String& b) { return Collate(a, b, ckCaseSensitive); }

int32_t AnsiCompareText(const String& a, const String& b) {
  return Collate(a, b, ckCaseInsensitive);
}

bool AnsiSameStr(const String& a, const String& b) { return AnsiCompareStr(a, b) == 0; }

bool AnsiSameText(const String& a, const String& b) {
  UErrorCode err = U_ZERO_ERROR;
  int32_t r =
      u_strCaseCompare(AsUChar(a), Length(a), AsUChar(b), Length(b), U_FOLD_CASE_DEFAULT, &err);
  return U_SUCCESS(err) && r == 0;
}

// --- Integer text ---------------------------------------------------------------------------

namespace {

String AsciiToString(const char* first, const char* last) { return String(first, last); }

template <class T>
String IntegerToString(T value) {
  char buf[24];
  auto res = std::to_chars(buf, buf + sizeof buf, value);
  return AsciiToString(buf, res.ptr);
}

int HexDigitValue(Char c) {
  if (c >= u'0' && c <= u'9') return c - u'0';
  if (c >= u'A' && c <= u'F') return c - u'A' + 10;
  if (c >= u'a' && c <= u'f') return c - u'a' + 10;
  return -1;
}

// Parses integer text into the signed type T. Decimal text must lie in T's range. Hexadecimal
// text is a bit pattern: up to T's unsigned maximum without a sign ("$FFFFFFFF" is -1 for 32
// bits, as IntToHex writes it), and with a minus sign a magnitude of at most 2^(bits-1).
// A sign before "$" or "0x" is accepted, as the Pascal platform accepts it.
template <class T>
bool ParseInteger(const String& s, T& value) {
  using U = std::make_unsigned_t<T>;
  const size_t n = s.size();
  size_t i = 0;
  while (i < n && (s[i] == u' ' || s[i] == u'\t')) ++i;
  bool negative = false;
  if (i < n && (s[i] == u'-' || s[i] == u'+')) negative = s[i++] == u'-';
  unsigned base = 10;
  if (i < n && s[i] == u'$') {
    base = 16;
    ++i;
  } else if (i + 1 < n && s[i] == u'0' && (s[i + 1] == u'x' || s[i + 1] == u'X')) {
    base = 16;
    i += 2;
  }
  if (i == n) return false;
  const U limit = base == 16 ? (negative ? U(U(1) << (sizeof(T) * 8 - 1)) : U(~U(0)))
                             : U(U(std::numeric_limits<T>::max()) + (negative ? 1 : 0));
  U magnitude = 0;
  for (; i < n; ++i) {
    int d = base == 16 ? HexDigitValue(s[i]) : ((s[i] >= u'0' && s[i] <= u'9') ? s[i] - u'0' : -1);
    if (d < 0) return false;
    if (magnitude > (limit - static_cast<U>(d)) / base) return false;
    magnitude = static_cast<U>(magnitude * base + static_cast<U>(d));
  }
  value = static_cast<T>(negative ? U(U(0) - magnitude) : magnitude);
  return true;
}

[[noreturn]] void RaiseInvalidInteger(const String& s) {
  throw EConvertError(u"'" + s + u"' is not a valid integer value");
}

}  // namespace

String IntToStr(int32_t value) { return IntegerToString(value); }
String IntToStr(int64_t value) { return IntegerToString(value); }
String UIntToStr(uint64_t value) { return IntegerToString(value); }

String IntToHex(int64_t value, int32_t digits) {
  char buf[16];
  auto res = std::to_chars(buf, buf + sizeof buf, static_cast<uint64_t>(value), 16);
  const int32_t len = static_cast<int32_t>(res.ptr - buf);
  String out;
  out.reserve(static_cast<size_t>(std::max(len, digits)));
  if (digits > len) out.append(static_cast<size_t>(digits - len), u'0');
  for (const char* p = buf; p != res.ptr; ++p) out.push_back(AsciiUpper(static_cast<Char>(*p)));
  return out;
}

bool TryStrToInt(const String& s, int32_t& value) { return ParseInteger(s, value); }
bool TryStrToInt64(const String& s, int64_t& value) { return ParseInteger(s, value); }

int32_t StrToInt(const String& s) {
  int32_t v;
  if (!ParseInteger(s, v)) RaiseInvalidInteger(s);
  return v;
}

int32_t StrToIntDef(const String& s, int32_t default_value) {
  int32_t v;
  return ParseInteger(s, v) ? v : default_value;
}

int64_t StrToInt64(const String& s) {
  int64_t v;
  if (!ParseInteger(s, v)) RaiseInvalidInteger(s);
  return v;
}

int64_t StrToInt64Def(const String& s, int64_t default_value) {
  int64_t v;
  return ParseInteger(s, v) ? v : default_value;
}

String BoolToStr(bool value, bool use_bool_strs) {
  if (use_bool_strs) return value ? u"True" : u"False";
  return value ? u"-1" : u"0";
}

bool TryStrToBool(const String& s, bool& value) {
  if (SameText(s, u"True")) {
    value = true;
    return true;
  }
  if (SameText(s, u"False")) {
    value = false;
    return true;
  }
  int64_t n;
  if (!ParseInteger(s, n)) return false;
  value = n != 0;
  return true;
}

bool StrToBool(const String& s) {
  bool v;
  if (!TryStrToBool(s, v)) throw EConvertError(u"'" + s + u"' is not a valid boolean value");
  return v;
}

}  // namespace vex
