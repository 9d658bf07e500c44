#include "vex/platform/format.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <string>
#include <utility>

#include "vex/platform/exceptions.h"

namespace vex {

TFormatSettings& FormatSettings() {
  static TFormatSettings settings;
  return settings;
}

TVarRec::TVarRec(String&& value)
    : type_(vtUnicodeString), owns_text_(true), owned_(std::move(value)) {}

std::u16string_view TVarRec::AsText() const {
  switch (type_) {
    case vtUnicodeString:
      return owns_text_ ? std::u16string_view(owned_) : text_;
    case vtPWideChar:
      return pointer_ ? std::u16string_view(static_cast<const Char*>(pointer_))
                      : std::u16string_view();
    case vtWideChar:
      return std::u16string_view(&char_, 1);
    default:
      return {};
  }
}

// --- Decimal digits of a double -------------------------------------------------------------
//
// Every float text goes through TDecimal: the value rounded to a number of significant digits or
// of decimals, exactly, with ties away from zero. std::to_chars supplies 17 correctly rounded
// digits; the rounding to fewer digits is done here, from the exact expansion when needed.

namespace {

constexpr int kMaxSignificant = 15;
constexpr int kMaxDecimals = 18;

// |value| = 0.d1 d2 ... d(count) * 10^exponent; count == 0 means zero. No trailing zeros.
struct TDecimal {
  char digits[24] = {};
  int count = 0;
  int exponent = 0;
  bool negative = false;

  char DigitAt(int i) const { return (i >= 0 && i < count) ? digits[i] : '0'; }
};

// Reads to_chars' scientific output "d.ddde+XX": the digits into out, returns the exponent.
int ParseScientific(const char* first, const char* last, char* out, int& count) {
  count = 0;
  const char* p = first;
  for (; p != last && *p != 'e'; ++p) {
    if (*p != '.') out[count++] = *p;
  }
  int exp = 0;
  if (p != last) std::from_chars(p + (p[1] == '+' ? 2 : 1), last, exp);
  return exp;
}

void StripTrailingZeros(TDecimal& d) {
  while (d.count > 0 && d.digits[d.count - 1] == '0') --d.count;
  if (d.count == 0) d.exponent = 0;
}

// The 17 significant digits of a (> 0, finite), correctly rounded, and the power of ten of the
// first: a = d0.d1...d16 * 10^exponent. They tell which way any shorter rounding goes, except
// when the dropped digits read exactly 5000...
struct TDigits17 {
  char digits[24];
  int exponent = 0;
};

TDigits17 Digits17(double a) {
  TDigits17 x;
  char buf[48];
  auto r = std::to_chars(buf, buf + sizeof buf, a, std::chars_format::scientific, 16);
  int count = 0;
  x.exponent = ParseScientific(buf, r.ptr, x.digits, count);
  return x;
}

// Whether dropping the digits from position n rounds the exact value up (ties away from zero).
bool RoundsUp(double a, const TDigits17& x, int n) {
  if (x.digits[n] != '5') return x.digits[n] > '5';
  for (int i = n + 1; i < 17; ++i) {
    if (x.digits[i] != '0') return true;
  }
  // Only the exact expansion tells a true tie (up) from a value just below it.
  static constexpr int kAllDigits = 780;  // a double has at most 767 significant digits
  char exact[kAllDigits + 16];
  auto r = std::to_chars(exact, exact + sizeof exact, a, std::chars_format::scientific, kAllDigits);
  char digits[kAllDigits + 16];
  int count = 0;
  const int e = ParseScientific(exact, r.ptr, digits, count);
  const int k = n + (e - x.exponent);  // the same decimal place in the exact digits
  return k >= 0 && k < count && digits[k] >= '5';
}

// Adds one unit in the last of the count digits, carrying; returns true when 9..9 became 10..0.
bool IncrementDigits(char* digits, int count) {
  for (int i = count - 1; i >= 0; --i) {
    if (digits[i] != '9') {
      ++digits[i];
      return false;
    }
    digits[i] = '0';
  }
  digits[0] = '1';
  return true;
}

// a rounded to n significant digits (0..17). With n == 0 nothing is kept, but the value may
// round up to one unit of the place above its first digit.
TDecimal RoundDigits(double a, const TDigits17& x, int n) {
  TDecimal d;
  int e = x.exponent;
  std::copy(x.digits, x.digits + n, d.digits);
  d.count = n;
  if (n < 17 && RoundsUp(a, x, n) && (n == 0 || IncrementDigits(d.digits, n))) {
    d.digits[0] = '1';
    d.count = std::max(n, 1);
    ++e;
  }
  d.exponent = e + 1;
  StripTrailingZeros(d);
  return d;
}

// a > 0 and finite; n in 1..17.
TDecimal RoundSignificant(double a, int n) { return RoundDigits(a, Digits17(a), n); }

TDecimal DecimalOfSignificant(double value, int n) {
  TDecimal d;
  if (value != 0) d = RoundSignificant(std::fabs(value), std::clamp(n, 1, kMaxSignificant));
  d.negative = std::signbit(value) && d.count > 0;
  return d;
}

// value rounded to the given number of decimals, keeping at most 15 significant digits.
TDecimal DecimalOfDecimals(double value, int decimals) {
  TDecimal d;
  const double a = std::fabs(value);
  if (a != 0) {
    const TDigits17 x = Digits17(a);
    const int n = std::min(x.exponent + 1 + decimals, kMaxSignificant);
    if (n >= 0) d = RoundDigits(a, x, n);
  }
  d.negative = std::signbit(value) && d.count > 0;
  return d;
}

// --- Rendering of decimals ------------------------------------------------------------------

void AppendAscii(String& out, const char* first, const char* last) {
  for (; first != last; ++first) out.push_back(static_cast<Char>(*first));
}

void AppendExponent(String& out, int exponent, int min_digits, bool plus_sign) {
  out.push_back(u'E');
  if (exponent < 0) {
    out.push_back(u'-');
  } else if (plus_sign) {
    out.push_back(u'+');
  }
  char buf[12];
  auto r = std::to_chars(buf, buf + sizeof buf, std::abs(exponent));
  const int len = static_cast<int>(r.ptr - buf);
  if (len < min_digits) out.append(static_cast<size_t>(min_digits - len), u'0');
  AppendAscii(out, buf, r.ptr);
}

// Integer digits of d with optional grouping, then decimals places.
void AppendFixed(String& out, const TDecimal& d, int decimals, Char decimal_sep,
                 Char thousand_sep) {
  if (d.exponent <= 0) {
    out.push_back(u'0');
  } else {
    for (int i = 0; i < d.exponent; ++i) {
      out.push_back(static_cast<Char>(d.DigitAt(i)));
      const int left = d.exponent - 1 - i;
      if (thousand_sep != 0 && left > 0 && left % 3 == 0) out.push_back(thousand_sep);
    }
  }
  if (decimals <= 0) return;
  out.push_back(decimal_sep);
  for (int j = 0; j < decimals; ++j) out.push_back(static_cast<Char>(d.DigitAt(d.exponent + j)));
}

// "d.ddd" with exactly digits places in all (zeros added), then the exponent.
void AppendScientific(String& out, const TDecimal& d, int digits, Char decimal_sep, int exp_digits,
                      bool plus_sign) {
  out.push_back(static_cast<Char>(d.DigitAt(0)));
  if (digits > 1) {
    out.push_back(decimal_sep);
    for (int i = 1; i < digits; ++i) out.push_back(static_cast<Char>(d.DigitAt(i)));
  }
  AppendExponent(out, d.count == 0 ? 0 : d.exponent - 1, exp_digits, plus_sign);
}

// The shortest of fixed and scientific notation for d (already rounded to precision digits).
void AppendGeneral(String& out, const TDecimal& d, int precision, Char decimal_sep) {
  if (d.negative) out.push_back(u'-');
  if (d.count == 0) {
    out.push_back(u'0');
    return;
  }
  const int e = d.exponent - 1;
  if (e >= precision || e < -5) {
    AppendScientific(out, d, d.count, decimal_sep, 0, false);
    return;
  }
  AppendFixed(out, d, std::max(0, d.count - d.exponent), decimal_sep, 0);
}

bool AppendNonFinite(String& out, double value) {
  if (std::isnan(value)) {
    out.append(u"NAN");
  } else if (std::isinf(value)) {
    out.append(value < 0 ? u"-INF" : u"INF");
  } else {
    return false;
  }
  return true;
}

// Places the currency string and the sign around the digits, as the settings' layouts say.
void AppendCurrency(String& out, const String& number, bool negative, const TFormatSettings& fs) {
  static constexpr const char* kPositive[] = {"$1", "1$", "$ 1", "1 $"};
  static constexpr const char* kNegative[] = {"($1)", "-$1",  "$-1",   "$1-",  "(1$)", "-1$",
                                              "1-$",  "1$-",  "-1 $",  "-$ 1", "1 $-", "$ 1-",
                                              "$ -1", "1- $", "($ 1)", "(1 $)"};
  const char* layout =
      negative ? kNegative[fs.NegCurrFormat % 16] : kPositive[fs.CurrencyFormat % 4];
  for (const char* p = layout; *p; ++p) {
    if (*p == '$') {
      out.append(fs.CurrencyString);
    } else if (*p == '1') {
      out.append(number);
    } else {
      out.push_back(static_cast<Char>(*p));
    }
  }
}

void AppendFloat(String& out, double value, TFloatFormat format, int precision, int digits,
                 const TFormatSettings& fs) {
  if (AppendNonFinite(out, value)) return;
  switch (format) {
    case ffGeneral: {
      const int p = std::clamp(precision, 1, kMaxSignificant);
      AppendGeneral(out, DecimalOfSignificant(value, p), p, fs.DecimalSeparator);
      return;
    }
    case ffExponent: {
      const int p = std::clamp(precision, 1, kMaxSignificant);
      const TDecimal d = DecimalOfSignificant(value, p);
      if (d.negative) out.push_back(u'-');
      AppendScientific(out, d, p, fs.DecimalSeparator, std::clamp(digits, 0, 4), true);
      return;
    }
    case ffFixed:
    case ffNumber: {
      const int decimals = std::clamp(digits, 0, kMaxDecimals);
      const TDecimal d = DecimalOfDecimals(value, decimals);
      if (d.negative) out.push_back(u'-');
      AppendFixed(out, d, decimals, fs.DecimalSeparator,
                  format == ffNumber ? fs.ThousandSeparator : Char{0});
      return;
    }
    case ffCurrency: {
      const int decimals = std::clamp(digits, 0, kMaxDecimals);
      const TDecimal d = DecimalOfDecimals(value, decimals);
      String number;
      AppendFixed(number, d, decimals, fs.DecimalSeparator, fs.ThousandSeparator);
      AppendCurrency(out, number, d.negative, fs);
      return;
    }
  }
}

}  // namespace

String FloatToStrF(double value, TFloatFormat format, int32_t precision, int32_t digits,
                   const TFormatSettings& settings) {
  String out;
  AppendFloat(out, value, format, precision, digits, settings);
  return out;
}

String FloatToStrF(double value, TFloatFormat format, int32_t precision, int32_t digits) {
  return FloatToStrF(value, format, precision, digits, FormatSettings());
}

String FloatToStr(double value, const TFormatSettings& settings) {
  return FloatToStrF(value, ffGeneral, kMaxSignificant, 0, settings);
}

String FloatToStr(double value) { return FloatToStr(value, FormatSettings()); }

// --- Format ---------------------------------------------------------------------------------

namespace {

// Widths and precisions above this are refused, so that a hostile format cannot demand
// gigabytes of padding.
constexpr int32_t kMaxFieldSize = 1 << 20;

struct TSpec {
  bool left = false;
  int32_t width = -1;
  int32_t precision = -1;  // -1: none given
  Char type = 0;           // lower case
};

class TFormatter {
 public:
  TFormatter(std::u16string_view fmt, const TVarRec* args, size_t count, const TFormatSettings& fs)
      : fmt_(fmt), args_(args), count_(count), fs_(fs) {}

  String Run() {
    out_.reserve(fmt_.size() + 16);
    size_t i = 0;
    while (i < fmt_.size()) {
      const size_t pct = fmt_.find(u'%', i);
      if (pct == std::u16string_view::npos) {
        out_.append(fmt_.substr(i));
        break;
      }
      out_.append(fmt_.substr(i, pct - i));
      i = pct + 1;
      if (i < fmt_.size() && fmt_[i] == u'%') {
        out_.push_back(u'%');
        ++i;
        continue;
      }
      TSpec spec = ParseSpec(i);
      Render(spec, NextArg());
    }
    return std::move(out_);
  }

 private:
  [[noreturn]] void Invalid() const {
    throw EConvertError(u"Format '" + String(fmt_) + u"' invalid or incompatible with argument");
  }
  [[noreturn]] void Missing() const {
    throw EConvertError(u"No argument for format '" + String(fmt_) + u"'");
  }

  Char At(size_t i) const {
    if (i >= fmt_.size()) Invalid();
    return fmt_[i];
  }
  static bool IsDigit(Char c) { return c >= u'0' && c <= u'9'; }

  const TVarRec& NextArg() {
    if (next_ < 0 || static_cast<size_t>(next_) >= count_) Missing();
    return args_[next_++];
  }

  // Digits or "*" (the next argument, which must be an integer and may be negative);
  // nullopt when neither is there.
  std::optional<int32_t> ReadNumber(size_t& i) {
    if (At(i) == u'*') {
      ++i;
      const TVarRec& arg = NextArg();
      const TVarRecType t = arg.VType();
      const int64_t v = arg.AsInt64();
      if ((t != vtInteger && t != vtInt64 && t != vtUInt64) || (t == vtUInt64 && v < 0) ||
          v > kMaxFieldSize || v < std::numeric_limits<int32_t>::min()) {
        Invalid();
      }
      return static_cast<int32_t>(v);
    }
    if (!IsDigit(At(i))) return std::nullopt;
    int32_t n = 0;
    while (IsDigit(At(i))) {
      n = n * 10 + (fmt_[i++] - u'0');
      if (n > kMaxFieldSize) Invalid();
    }
    return n;
  }

  // "%" [index ":"] ["-"] [width] ["." precision] type; i is just past the "%".
  TSpec ParseSpec(size_t& i) {
    TSpec spec;
    std::optional<int32_t> number = ReadNumber(i);
    if (number && At(i) == u':') {
      next_ = *number;  // a negative index fails as a missing argument
      ++i;
      number.reset();
    }
    if (!number) {
      if (At(i) == u'-') {
        spec.left = true;
        ++i;
      }
      number = ReadNumber(i);
    }
    // A negative width from "*" pads nothing; a negative precision counts as none given.
    spec.width = number.value_or(-1);
    if (At(i) == u'.') {
      ++i;
      spec.precision = std::max(ReadNumber(i).value_or(0), -1);
    }
    const Char c = At(i++);
    spec.type = (c >= u'A' && c <= u'Z') ? static_cast<Char>(c + 32) : c;
    if (std::u16string_view(u"duefgnmpsx").find(spec.type) == std::u16string_view::npos) {
      Invalid();
    }
    return spec;
  }

  void Pad(std::u16string_view piece, const TSpec& spec) {
    const size_t fill = spec.width > 0 && static_cast<size_t>(spec.width) > piece.size()
                            ? spec.width - piece.size()
                            : 0;
    if (!spec.left) out_.append(fill, u' ');
    out_.append(piece);
    if (spec.left) out_.append(fill, u' ');
  }

  // Decimal or hexadecimal digits of magnitude, zero-padded to precision, after the sign.
  void RenderInteger(uint64_t magnitude, bool negative, int base, const TSpec& spec) {
    char digits[24];
    auto r = std::to_chars(digits, digits + sizeof digits, magnitude, base);
    const int len = static_cast<int>(r.ptr - digits);
    Char buf[64];
    size_t n = 0;
    if (negative) buf[n++] = u'-';
    const int zeros = std::max(spec.precision - len, 0);
    if (zeros + len + 1 > static_cast<int>(std::size(buf))) {
      String big(negative ? 1 : 0, u'-');
      big.append(static_cast<size_t>(zeros), u'0');
      for (const char* p = digits; p != r.ptr; ++p) big.push_back(UpperHex(*p));
      Pad(big, spec);
      return;
    }
    for (int z = 0; z < zeros; ++z) buf[n++] = u'0';
    for (const char* p = digits; p != r.ptr; ++p) buf[n++] = UpperHex(*p);
    Pad(std::u16string_view(buf, n), spec);
  }
  static Char UpperHex(char c) { return static_cast<Char>(c >= 'a' ? c - 32 : c); }

  void RenderSigned(const TVarRec& arg, const TSpec& spec) {
    const int64_t v = arg.AsInt64();
    if (arg.VType() == vtUInt64) {
      RenderInteger(static_cast<uint64_t>(v), false, 10, spec);
    } else {
      const uint64_t magnitude = v < 0 ? uint64_t{0} - static_cast<uint64_t>(v) : v;
      RenderInteger(magnitude, v < 0, 10, spec);
    }
  }

  // %u and %x show a 32-bit argument as its unsigned 32-bit pattern.
  static uint64_t UnsignedOf(const TVarRec& arg) {
    const int64_t v = arg.AsInt64();
    return arg.VType() == vtInteger ? static_cast<uint32_t>(v) : static_cast<uint64_t>(v);
  }

  void RenderFloat(double value, const TSpec& spec) {
    String text;
    const int p = spec.precision;
    switch (spec.type) {
      case u'e':
        AppendFloat(text, value, ffExponent, p < 0 ? kMaxSignificant : p, 3, fs_);
        break;
      case u'f':
        AppendFloat(text, value, ffFixed, kMaxSignificant, p < 0 ? 2 : p, fs_);
        break;
      case u'g':
        AppendFloat(text, value, ffGeneral, p < 0 ? kMaxSignificant : p, 3, fs_);
        break;
      case u'n':
        AppendFloat(text, value, ffNumber, kMaxSignificant, p < 0 ? 2 : p, fs_);
        break;
      default:
        AppendFloat(text, value, ffCurrency, kMaxSignificant, p < 0 ? fs_.CurrencyDecimals : p,
                    fs_);
        break;
    }
    Pad(text, spec);
  }

  void RenderText(std::u16string_view text, const TSpec& spec) {
    if (spec.precision >= 0 && static_cast<size_t>(spec.precision) < text.size()) {
      text = text.substr(0, static_cast<size_t>(spec.precision));
    }
    Pad(text, spec);
  }

  void RenderPointer(const void* p, const TSpec& spec) {
    TSpec hex = spec;
    hex.precision = 2 * sizeof(void*);  // the pointer's full width, as PtrToStr writes it
    RenderInteger(reinterpret_cast<uintptr_t>(p), false, 16, hex);
  }

  void Render(const TSpec& spec, const TVarRec& arg) {
    const TVarRecType t = arg.VType();
    const bool integer = t == vtInteger || t == vtInt64 || t == vtUInt64;
    switch (spec.type) {
      case u'd':
        if (!integer) Invalid();
        return RenderSigned(arg, spec);
      case u'u':
        if (!integer) Invalid();
        return RenderInteger(UnsignedOf(arg), false, 10, spec);
      case u'x':
        if (!integer) Invalid();
        return RenderInteger(UnsignedOf(arg), false, 16, spec);
      case u's':
        if (t != vtUnicodeString && t != vtPWideChar && t != vtWideChar) Invalid();
        return RenderText(arg.AsText(), spec);
      case u'p':
        if (t != vtPointer) Invalid();
        return RenderPointer(arg.AsPointer(), spec);
      default:
        if (t != vtExtended) Invalid();
        return RenderFloat(arg.AsDouble(), spec);
    }
  }

  std::u16string_view fmt_;
  const TVarRec* args_;
  size_t count_;
  const TFormatSettings& fs_;
  int32_t next_ = 0;
  String out_;
};

}  // namespace

String Format(const String& fmt, std::initializer_list<TVarRec> args,
              const TFormatSettings& settings) {
  return TFormatter(fmt, args.begin(), args.size(), settings).Run();
}

String Format(const String& fmt, std::initializer_list<TVarRec> args) {
  return Format(fmt, args, FormatSettings());
}

String Format(const String& fmt, const std::vector<TVarRec>& args,
              const TFormatSettings& settings) {
  return TFormatter(fmt, args.data(), args.size(), settings).Run();
}

String Format(const String& fmt, const std::vector<TVarRec>& args) {
  return Format(fmt, args, FormatSettings());
}

// --- Picture format -------------------------------------------------------------------------

namespace {

bool IsQuote(Char c) { return c == u'"' || c == u'\''; }

// Index just past the quoted text that starts at i (or the end when it is not closed).
size_t SkipQuoted(std::u16string_view s, size_t i) {
  const size_t close = s.find(s[i], i + 1);
  return close == std::u16string_view::npos ? s.size() : close + 1;
}

// Up to three ";"-separated sections; semicolons inside quotes do not count.
std::vector<std::u16string_view> SplitSections(std::u16string_view picture) {
  std::vector<std::u16string_view> sections;
  size_t start = 0;
  size_t i = 0;
  while (i < picture.size() && sections.size() < 2) {
    if (IsQuote(picture[i])) {
      i = SkipQuoted(picture, i);
    } else if (picture[i] == u';') {
      sections.push_back(picture.substr(start, i - start));
      start = ++i;
    } else {
      ++i;
    }
  }
  // A third section ends at a further ";" (anything after it is ignored).
  size_t end = start;
  while (end < picture.size() && picture[end] != u';') {
    end = IsQuote(picture[end]) ? SkipQuoted(picture, end) : end + 1;
  }
  sections.push_back(picture.substr(start, std::min(end, picture.size()) - start));
  return sections;
}

bool IsPlaceholder(Char c) { return c == u'0' || c == u'#'; }

bool IsExponentAt(std::u16string_view s, size_t i) {
  return (s[i] == u'E' || s[i] == u'e') && i + 1 < s.size() &&
         (s[i + 1] == u'+' || s[i + 1] == u'-');
}

// What a section asks for: digit places before and after the point, grouping, exponent.
struct TPicture {
  int int_places = 0;
  int min_int = 0;  // places from the first "0" before the point to the point
  int frac_places = 0;
  int min_frac = 0;  // places up to the last "0" after the point
  bool thousands = false;
  bool scientific = false;
  int exp_digits = 0;
};

TPicture AnalyzeSection(std::u16string_view sec) {
  TPicture pic;
  bool after_point = false;
  int first_zero = -1;
  size_t i = 0;
  while (i < sec.size()) {
    const Char c = sec[i];
    if (IsQuote(c)) {
      i = SkipQuoted(sec, i);
      continue;
    }
    if (IsExponentAt(sec, i)) {
      pic.scientific = true;
      i += 2;
      while (i < sec.size() && sec[i] == u'0') {
        ++pic.exp_digits;
        ++i;
      }
      break;
    }
    if (IsPlaceholder(c)) {
      if (after_point) {
        ++pic.frac_places;
        if (c == u'0') pic.min_frac = pic.frac_places;
      } else {
        if (c == u'0' && first_zero < 0) first_zero = pic.int_places;
        ++pic.int_places;
      }
    } else if (c == u'.' && !after_point) {
      after_point = true;
    } else if (c == u',' && !after_point) {
      pic.thousands = true;
    }
    ++i;
  }
  pic.min_int = first_zero < 0 ? 0 : pic.int_places - first_zero;
  return pic;
}

// The digits a section shows: integer digits, fraction digits, and the exponent when scientific.
struct TPictureDigits {
  std::string int_digits;
  std::string frac_digits;
  int exponent = 0;
  bool zero = true;
};

TPictureDigits DigitsForPicture(double a, const TPicture& pic) {
  TPictureDigits out;
  if (pic.scientific) {
    const int int_places = std::max(pic.int_places, 1);
    const int n = std::clamp(int_places + pic.frac_places, 1, kMaxSignificant);
    TDecimal d = a == 0 ? TDecimal() : RoundSignificant(a, n);
    out.zero = d.count == 0;
    out.exponent = d.count == 0 ? 0 : d.exponent - int_places;
    for (int i = 0; i < int_places; ++i) out.int_digits.push_back(d.DigitAt(i));
    for (int i = 0; i < pic.frac_places; ++i) out.frac_digits.push_back(d.DigitAt(int_places + i));
  } else {
    TDecimal d = DecimalOfDecimals(a, pic.frac_places);
    out.zero = d.count == 0;
    for (int i = 0; i < d.exponent; ++i) out.int_digits.push_back(d.DigitAt(i));
    for (int i = 0; i < pic.frac_places; ++i) out.frac_digits.push_back(d.DigitAt(d.exponent + i));
  }
  // Leading zeros only where "0" places ask for them; trailing zeros likewise.
  size_t lead = 0;
  while (lead < out.int_digits.size() && out.int_digits[lead] == '0') ++lead;
  out.int_digits.erase(0, lead);
  if (static_cast<int>(out.int_digits.size()) < pic.min_int) {
    out.int_digits.insert(0, static_cast<size_t>(pic.min_int) - out.int_digits.size(), '0');
  }
  // A value that is not zero but rounds to zero keeps all its places ("0.###" shows 0.0004 as
  // "0.000"), as the Pascal platform does.
  if (out.zero && a != 0) return out;
  while (static_cast<int>(out.frac_digits.size()) > pic.min_frac && out.frac_digits.back() == '0') {
    out.frac_digits.pop_back();
  }
  return out;
}

class TPictureWriter {
 public:
  TPictureWriter(std::u16string_view sec, const TPicture& pic, const TPictureDigits& digits,
                 const TFormatSettings& fs)
      : sec_(sec), pic_(pic), d_(digits), fs_(fs) {}

  void Write(String& out) {
    size_t i = 0;
    while (i < sec_.size()) {
      const Char c = sec_[i];
      if (IsQuote(c)) {
        const size_t end = SkipQuoted(sec_, i);
        const size_t inner_end =
            (end > i + 1 && end <= sec_.size() && sec_[end - 1] == c) ? end - 1 : end;
        out.append(sec_.substr(i + 1, inner_end - (i + 1)));
        i = end;
      } else if (!exponent_done_ && IsExponentAt(sec_, i)) {
        i = WriteExponent(out, i);
      } else if (IsPlaceholder(c) && !exponent_done_) {
        WritePlace(out);
        ++i;
      } else if (c == u'.' && !point_seen_) {
        point_seen_ = true;
        if (pic_.int_places == 0) WriteIntegerDigits(out, 0, d_.int_digits.size());
        if (!d_.frac_digits.empty()) out.push_back(fs_.DecimalSeparator);
        ++i;
      } else if (c == u',' && !point_seen_) {
        ++i;  // a grouping flag, not a character of the output
      } else {
        out.push_back(c);
        ++i;
      }
    }
  }

 private:
  void WritePlace(String& out) {
    if (point_seen_) {
      if (frac_index_ < d_.frac_digits.size())
        out.push_back(static_cast<Char>(d_.frac_digits[frac_index_]));
      ++frac_index_;
      return;
    }
    // Integer places take digits right-aligned; the first place also takes any surplus.
    const size_t len = d_.int_digits.size();
    const size_t place_from_right = static_cast<size_t>(pic_.int_places - int_index_);
    ++int_index_;
    if (int_index_ == 1 && len > place_from_right) {
      WriteIntegerDigits(out, 0, len - place_from_right + 1);
    } else if (place_from_right <= len) {
      const size_t k = len - place_from_right;
      WriteIntegerDigits(out, k, k + 1);
    }
  }

  void WriteIntegerDigits(String& out, size_t from, size_t to) {
    const size_t len = d_.int_digits.size();
    for (size_t k = from; k < to; ++k) {
      out.push_back(static_cast<Char>(d_.int_digits[k]));
      const size_t left = len - 1 - k;
      if (pic_.thousands && fs_.ThousandSeparator != 0 && left > 0 && left % 3 == 0) {
        out.push_back(fs_.ThousandSeparator);
      }
    }
  }

  size_t WriteExponent(String& out, size_t i) {
    exponent_done_ = true;
    out.push_back(sec_[i]);
    if (d_.exponent < 0) {
      out.push_back(u'-');
    } else if (sec_[i + 1] == u'+') {
      out.push_back(u'+');
    }
    i += 2;
    while (i < sec_.size() && sec_[i] == u'0') ++i;
    char buf[12];
    auto r = std::to_chars(buf, buf + sizeof buf, std::abs(d_.exponent));
    const int len = static_cast<int>(r.ptr - buf);
    if (len < pic_.exp_digits) out.append(static_cast<size_t>(pic_.exp_digits - len), u'0');
    AppendAscii(out, buf, r.ptr);
    return i;
  }

  std::u16string_view sec_;
  const TPicture& pic_;
  const TPictureDigits& d_;
  const TFormatSettings& fs_;
  int int_index_ = 0;
  size_t frac_index_ = 0;
  bool point_seen_ = false;
  bool exponent_done_ = false;
};

// Integer parts longer than this are written by FloatToStr instead.
constexpr int kMaxPictureIntegerDigits = 18;

}  // namespace

String FormatFloat(const String& picture, double value, const TFormatSettings& settings) {
  if (picture.empty() || !std::isfinite(value)) return FloatToStr(value, settings);
  const std::vector<std::u16string_view> sections = SplitSections(picture);
  std::u16string_view sec = sections[0];
  bool minus = value < 0;
  if (minus && sections.size() > 1 && !sections[1].empty()) {
    sec = sections[1];
    minus = false;
  }
  // Sections are chosen by the value itself, before rounding: a small negative value keeps its
  // sign ("-0.00") and only an exact zero takes the zero section.
  if (value == 0 && sections.size() > 2 && !sections[2].empty()) sec = sections[2];
  const TPicture pic = AnalyzeSection(sec);
  const TPictureDigits digits = DigitsForPicture(std::fabs(value), pic);
  if (sec.empty() ||
      (!pic.scientific && static_cast<int>(digits.int_digits.size()) > kMaxPictureIntegerDigits)) {
    return FloatToStr(value, settings);
  }
  String out;
  if (minus) out.push_back(u'-');
  TPictureWriter(sec, pic, digits, settings).Write(out);
  return out;
}

String FormatFloat(const String& picture, double value) {
  return FormatFloat(picture, value, FormatSettings());
}

// --- Float parsing --------------------------------------------------------------------------

namespace {

bool IsBlank(Char c) { return c == u' ' || c == u'\t'; }
bool IsDigitChar(Char c) { return c >= u'0' && c <= u'9'; }

bool MatchesWord(std::u16string_view s, std::u16string_view upper_word) {
  if (s.size() != upper_word.size()) return false;
  for (size_t i = 0; i < s.size(); ++i) {
    Char c = s[i];
    if (c >= u'a' && c <= u'z') c = static_cast<Char>(c - 32);
    if (c != upper_word[i]) return false;
  }
  return true;
}

bool ParseNonFinite(std::u16string_view s, double& value) {
  bool negative = false;
  std::u16string_view body = s;
  if (!body.empty() && (body[0] == u'-' || body[0] == u'+')) {
    negative = body[0] == u'-';
    body.remove_prefix(1);
  }
  if (MatchesWord(body, u"INF")) {
    value = negative ? -std::numeric_limits<double>::infinity()
                     : std::numeric_limits<double>::infinity();
    return true;
  }
  if (MatchesWord(body, u"NAN")) {
    value = std::numeric_limits<double>::quiet_NaN();
    return true;
  }
  return false;
}

// Checks the syntax, copies the number in ASCII with a "." point for from_chars, and estimates
// the decimal magnitude (so that an out-of-range result can be told apart as under- or overflow).
bool NormalizeFloatText(std::u16string_view s, Char decimal_sep, std::string& ascii,
                        int64_t& magnitude) {
  size_t i = 0;
  const size_t n = s.size();
  if (i < n && (s[i] == u'-' || s[i] == u'+')) {
    if (s[i] == u'-') ascii.push_back('-');
    ++i;
  }
  size_t int_digits = 0;
  size_t frac_digits = 0;
  int64_t leading_zeros = 0;
  bool nonzero_seen = false;
  for (; i < n && IsDigitChar(s[i]); ++i, ++int_digits) {
    ascii.push_back(static_cast<char>(s[i]));
    if (s[i] != u'0') nonzero_seen = true;
    if (!nonzero_seen) ++leading_zeros;
  }
  int64_t frac_leading_zeros = 0;
  if (i < n && s[i] == decimal_sep) {
    ascii.push_back('.');
    for (++i; i < n && IsDigitChar(s[i]); ++i, ++frac_digits) {
      ascii.push_back(static_cast<char>(s[i]));
      if (s[i] != u'0') nonzero_seen = true;
      if (!nonzero_seen) ++frac_leading_zeros;
    }
  }
  if (int_digits + frac_digits == 0) return false;
  int64_t exponent = 0;
  if (i < n && (s[i] == u'e' || s[i] == u'E')) {
    ascii.push_back('e');
    ++i;
    bool exp_negative = false;
    if (i < n && (s[i] == u'-' || s[i] == u'+')) {
      exp_negative = s[i] == u'-';
      ascii.push_back(static_cast<char>(s[i]));
      ++i;
    }
    if (i >= n || !IsDigitChar(s[i])) return false;
    for (; i < n && IsDigitChar(s[i]); ++i) {
      ascii.push_back(static_cast<char>(s[i]));
      exponent = std::min<int64_t>(exponent * 10 + (s[i] - u'0'), int64_t{1} << 40);
    }
    if (exp_negative) exponent = -exponent;
  }
  if (i != n) return false;
  magnitude = static_cast<int64_t>(int_digits) - leading_zeros - frac_leading_zeros + exponent;
  return true;
}

}  // namespace

bool TryStrToFloat(const String& s, double& value, const TFormatSettings& settings) {
  std::u16string_view text(s);
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  if (ParseNonFinite(text, value)) return true;
  std::string ascii;
  ascii.reserve(text.size());
  int64_t magnitude = 0;
  if (!NormalizeFloatText(text, settings.DecimalSeparator, ascii, magnitude)) return false;
  double result = 0;
  auto r = std::from_chars(ascii.data(), ascii.data() + ascii.size(), result);
  if (r.ec == std::errc::result_out_of_range) {
    if (magnitude > 0) return false;  // beyond the largest double
    result = ascii[0] == '-' ? -0.0 : 0.0;
  } else if (r.ec != std::errc() || r.ptr != ascii.data() + ascii.size()) {
    return false;
  }
  value = result;
  return true;
}

bool TryStrToFloat(const String& s, double& value) {
  return TryStrToFloat(s, value, FormatSettings());
}

double StrToFloat(const String& s, const TFormatSettings& settings) {
  double v;
  if (!TryStrToFloat(s, v, settings)) {
    throw EConvertError(u"'" + s + u"' is not a valid floating point value");
  }
  return v;
}

double StrToFloat(const String& s) { return StrToFloat(s, FormatSettings()); }

double StrToFloatDef(const String& s, double default_value, const TFormatSettings& settings) {
  double v;
  return TryStrToFloat(s, v, settings) ? v : default_value;
}

double StrToFloatDef(const String& s, double default_value) {
  return StrToFloatDef(s, default_value, FormatSettings());
}

}  // namespace vex
