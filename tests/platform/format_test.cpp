#include "vex/platform/format.h"

#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "test_support.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/unicode.h"

namespace vex {
namespace {

// Restores the global settings when a test that changes them ends.
class SettingsGuard {
 public:
  SettingsGuard() : saved_(FormatSettings()) {}
  ~SettingsGuard() { FormatSettings() = saved_; }

 private:
  TFormatSettings saved_;
};

String ErrorOf(const String& fmt, std::initializer_list<TVarRec> args) {
  return test::MessageOf<EConvertError>([&] { Format(fmt, args); });
}

// Widths, precisions, indexes and stars on Integer and text arguments are in the golden format
// table; these are the argument kinds and corners it does not hold.
TEST(FormatSpecifiers, ArgumentKindsStarsAndPointers) {
  EXPECT_EQ(Format(u"%u %x", {int64_t{-1}, int64_t{-1}}), u"18446744073709551615 FFFFFFFFFFFFFFFF");
  EXPECT_EQ(Format(u"%d %d", {uint64_t{18446744073709551615u}, uint32_t{4000000000u}}),
            u"18446744073709551615 4000000000");
  EXPECT_EQ(Format(u"%d %d %d", {INT64_MIN, int16_t{-5}, uint8_t{200}}),
            u"-9223372036854775808 -5 200");
  // A negative width pads nothing; a negative precision counts as none given.
  EXPECT_EQ(Format(u"%*d|%.*f", {-5, 3, -1, 1.5}), u"3|1.50");
  const String owned = u"text";
  EXPECT_EQ(Format(u"%s|%s|%s", {owned, u'c', static_cast<const Char*>(nullptr)}), u"text|c|");
  // A pointer is written at its full width, 2 * sizeof(void*) digits.
  const String zeros(2 * sizeof(void*) - 4, u'0');
  EXPECT_EQ(Format(u"%p", {reinterpret_cast<const void*>(0x1234)}), zeros + u"1234");
  EXPECT_EQ(Format(u"%p|%-3p", {nullptr, nullptr}), zeros + u"0000|" + zeros + u"0000");
  EXPECT_EQ(Format(u"Привет %s", {u"мир"}), u"Привет мир");
}

TEST(FormatSpecifiers, FloatsRoundTiesAwayFromZero) {
  EXPECT_EQ(Format(u"%.2f %.2f %.0f %.0f", {0.125, 0.375, 2.5, -2.5}), u"0.13 0.38 3 -3");
  // 1.005 is stored just below 1.005, so it rounds down.
  EXPECT_EQ(Format(u"%.2f", {1.005}), u"1.00");
}

// The golden table has two settings; these are a third currency layout, no thousand separator
// and the global settings.
TEST(FormatSpecifiers, SettingsChooseSeparatorsAndCurrency) {
  TFormatSettings fs;
  fs.DecimalSeparator = u',';
  fs.NegCurrFormat = 0;
  fs.CurrencyFormat = 0;  // with the default currency string "$"
  EXPECT_EQ(Format(u"%m|%.0m", {-5.5, 3.0}, fs), u"($5,50)|$3");
  fs.ThousandSeparator = 0;
  EXPECT_EQ(Format(u"%n", {1234567.0}, fs), u"1234567,00");
  SettingsGuard guard;
  FormatSettings().DecimalSeparator = u',';
  EXPECT_EQ(Format(u"%.1f", {0.5}), u"0,5");
  EXPECT_EQ(FloatToStr(0.25), u"0,25");
  EXPECT_EQ(StrToFloat(u"1,5"), 1.5);
}

TEST(FormatErrors, MismatchedKindsRaiseConvertError) {
  const String expected = u"Format '%d' invalid or incompatible with argument";
  EXPECT_EQ(ErrorOf(u"%d", {u"abc"}), expected);
  EXPECT_EQ(ErrorOf(u"%d", {true}), expected);
  EXPECT_THROW(Format(u"%s", {1}), EConvertError);
  EXPECT_THROW(Format(u"%f", {1}), EConvertError);
  EXPECT_THROW(Format(u"%p", {1}), EConvertError);
  EXPECT_THROW(Format(u"%*d", {u"5", 1}), EConvertError);
}

TEST(FormatErrors, MissingArgumentsNameTheWholeFormat) {
  EXPECT_EQ(ErrorOf(u"%d and %d", {1}), u"No argument for format '%d and %d'");
  EXPECT_EQ(ErrorOf(u"%3:d", {1}), u"No argument for format '%3:d'");
  EXPECT_EQ(ErrorOf(u"%*d", {5}), u"No argument for format '%*d'");
  EXPECT_EQ(ErrorOf(u"%*:d", {-1, 5}), u"No argument for format '%*:d'");
}

TEST(FormatErrors, MalformedSpecifiersAndHugeFieldsAreRejected) {
  for (const char16_t* bad : {u"%", u"abc%", u"%5", u"%-", u"%1:", u"%+d", u"% d", u"%5-d", u"%.",
                              u"%l", u"%ld", u"%99999999999d", u"%.9999999d"}) {
    EXPECT_THROW(Format(bad, {1}), EConvertError) << static_cast<int>(String(bad).size());
  }
  EXPECT_THROW(Format(u"%*d", {1 << 30, 1}), EConvertError);
}

TEST(FormatArguments, VectorsAndOwnedStringsOutliveTheirSource) {
  std::vector<TVarRec> args;
  {
    String temporary = u"kept";
    args.emplace_back(std::move(temporary));
    args.emplace_back(42);
  }
  std::vector<TVarRec> copy = args;  // copies must not point into the originals
  args.clear();
  EXPECT_EQ(Format(u"%s=%d", copy), u"kept=42");
  EXPECT_EQ(copy[0].VType(), vtUnicodeString);
  EXPECT_EQ(copy[1].VType(), vtInteger);
  EXPECT_EQ(TVarRec(uint32_t{1}).VType(), vtInt64);
  EXPECT_EQ(TVarRec(uint64_t{1}).VType(), vtUInt64);
  EXPECT_EQ(TVarRec(1.5f).VType(), vtExtended);
}

// Free Pascal's runtime, which printed the golden tables, differs from this library in these places
// on purpose.
TEST(PascalRuntimeDifferences, GeneralFormatStopsAtFifteenDigits) {
  EXPECT_EQ(Format(u"%g", {0.1 + 0.2}), u"0.3");
  EXPECT_EQ(Format(u"%g", {1.0 / 3}), u"0.333333333333333");
  EXPECT_EQ(Format(u"%g|%g", {0.00001, 1e-7}), u"0.00001|1E-7");
  EXPECT_EQ(Format(u"%g|%g", {1e15, 123456789012345.0}), u"1E15|123456789012345");
  EXPECT_EQ(Format(u"%.20g", {2.0 / 3}), u"0.666666666666667");
  EXPECT_EQ(Format(u"%e", {1.0 / 3}), u"3.33333333333333E-001");
  EXPECT_EQ(Format(u"%.20f", {0.1}), u"0.100000000000000000");
  EXPECT_EQ(Format(u"%.1e|%.0e", {1.25, 7.0}), u"1E+000|7E+000");
  // A malformed specifier raises instead of vanishing.
  EXPECT_EQ(ErrorOf(u"a%zb", {1}), u"Format 'a%zb' invalid or incompatible with argument");
}

TEST(FloatToStr, ShortestTextWithFifteenDigits) {
  EXPECT_EQ(FloatToStr(-0.0), u"0");
  EXPECT_EQ(FloatToStr(123456789012345678.0), u"1.23456789012346E17");
  EXPECT_EQ(FloatToStr(5e-324), u"4.94065645841247E-324");
  EXPECT_EQ(FloatToStr(std::numeric_limits<double>::max()), u"1.79769313486232E308");
  // 1.000030517578125 is exact in binary: a true tie at 15 digits, rounded away from zero.
  EXPECT_EQ(FloatToStr(1.000030517578125), u"1.00003051757813");
  EXPECT_EQ(FloatToStr(0.999999999999999944), u"1");
}

// Reference rounding: the exact decimal expansion of the double, rounded half away from zero by
// hand to `digits` significant digits, laid out as ffExponent writes it.
String ReferenceExponent(double v, int digits) {
  char buf[1024];
  auto r = std::to_chars(buf, buf + sizeof buf, std::fabs(v), std::chars_format::scientific, 800);
  std::string text(buf, r.ptr);
  const size_t e_pos = text.find('e');
  int exp = std::stoi(text.substr(e_pos + 1));
  std::string all = text.substr(0, 1) + text.substr(2, e_pos - 2);
  std::string kept = all.substr(0, static_cast<size_t>(digits));
  if (all[static_cast<size_t>(digits)] >= '5') {
    int i = digits - 1;
    while (i >= 0 && kept[static_cast<size_t>(i)] == '9') kept[static_cast<size_t>(i--)] = '0';
    if (i < 0) {
      kept.insert(kept.begin(), '1');
      kept.pop_back();
      ++exp;
    } else {
      ++kept[static_cast<size_t>(i)];
    }
  }
  std::string out = v < 0 ? "-" : "";
  out += kept.substr(0, 1);
  if (digits > 1) out += "." + kept.substr(1);
  char e[16];
  std::snprintf(e, sizeof e, "E%c%03d", exp < 0 ? '-' : '+', std::abs(exp));
  return FromUtf8(out + e);
}

TEST(FloatToStrF, ExponentDigitsAgreeWithHandRoundingOfTheExactValue) {
  std::mt19937_64 rng(20240229);
  for (int i = 0; i < 3000; ++i) {
    double v = std::bit_cast<double>(rng());
    if (!std::isfinite(v) || v == 0) continue;
    if (i % 3 == 0) v = static_cast<double>(rng() % 2000000) / 1024;  // short binary fractions
    for (int digits : {1, 2, 7, 12, 15}) {
      ASSERT_EQ(FloatToStrF(v, ffExponent, digits, 3), ReferenceExponent(v, digits))
          << std::hexfloat << v << " " << digits;
    }
  }
}

TEST(FloatToStr, NonFiniteValuesHaveFixedNames) {
  EXPECT_EQ(FloatToStr(std::numeric_limits<double>::infinity()), u"INF");
  EXPECT_EQ(FloatToStr(-std::numeric_limits<double>::infinity()), u"-INF");
  EXPECT_EQ(FloatToStr(std::nan("")), u"NAN");
  EXPECT_EQ(Format(u"%8.2f|", {std::numeric_limits<double>::infinity()}), u"     INF|");
  EXPECT_EQ(FormatFloat(u"0.00", std::nan("")), u"NAN");
}

TEST(FloatToStrF, EachFormat) {
  EXPECT_EQ(FloatToStrF(2.0 / 3, ffGeneral, 4, 0), u"0.6667");
  EXPECT_EQ(FloatToStrF(2.0 / 3, ffExponent, 5, 2), u"6.6667E-01");
  EXPECT_EQ(FloatToStrF(12345.678, ffExponent, 3, 0), u"1.23E+4");
  EXPECT_EQ(FloatToStrF(-12345.678, ffNumber, 15, 1), u"-12,345.7");
  EXPECT_EQ(FloatToStrF(1e22, ffFixed, 15, 0), u"10000000000000000000000");
  EXPECT_EQ(FloatToStrF(1.5, ffCurrency, 15, 2), u"1.50$");
  EXPECT_EQ(FloatToStrF(0.005, ffFixed, 15, 2),
            u"0.01");  // 0.005 is stored just above
  EXPECT_EQ(FloatToStrF(0.0625, ffFixed, 15, 1),
            u"0.1");  // exact tie, away from zero
}

// Pictures beside the golden table's: apostrophe literals, empty results, lower-case exponents.
TEST(FormatFloat, PicturesAndSectionsFollowTheSignOfTheValueItself) {
  EXPECT_EQ(FormatFloat(u"\"Total: \"0.0 'pcs'", 3), u"Total: 3.0 pcs");
  EXPECT_EQ(FormatFloat(u"#", 0), u"");
  EXPECT_EQ(FormatFloat(u"#.00", 0.5), u".50");
  EXPECT_EQ(FormatFloat(u"0.00e-00", 0.00012345), u"1.23e-04");
  EXPECT_EQ(FormatFloat(u"", 1.5), u"1.5");
  EXPECT_EQ(FormatFloat(u"#,##0", 1e20),
            u"1E20");  // too many integer digits for a picture
  EXPECT_EQ(FormatFloat(u"0.0;;", -1.5), u"-1.5");
  EXPECT_EQ(FormatFloat(u"\"a;b\"0", 2), u"a;b2");
  // A small negative value keeps its sign and all its places.
  EXPECT_EQ(FormatFloat(u"0.###", -0.0004), u"-0.000");
  // Free Pascal fills "#" places with zeros here ("000.0E+0"); this library does not.
  EXPECT_EQ(FormatFloat(u"##0.0E+0", 0), u"0.0E+0");
}

// Plain decimal text is in the golden table; these are the named values and the rejections it
// lacks.
TEST(StrToFloat, AcceptsPlainDecimalTextOnly) {
  double v = 99;
  EXPECT_TRUE(TryStrToFloat(u"-INF", v));
  EXPECT_EQ(v, -INFINITY);
  EXPECT_TRUE(TryStrToFloat(u"inf", v));
  EXPECT_EQ(v, INFINITY);
  EXPECT_TRUE(TryStrToFloat(u"NaN", v));
  EXPECT_TRUE(std::isnan(v));
  for (const char16_t* bad : {u".", u"1.5e+", u"e5", u"1 000", u"- 1", u"１"}) {
    double w = 99;
    EXPECT_FALSE(TryStrToFloat(bad, w));
    EXPECT_EQ(w, 99);
  }
}

TEST(StrToFloat, SettingsSeparatorAndErrorMessage) {
  TFormatSettings fs;
  fs.DecimalSeparator = u',';
  EXPECT_EQ(StrToFloat(u"1,25", fs), 1.25);
  double v = 0;
  EXPECT_FALSE(TryStrToFloat(u"1.25", v, fs));
  EXPECT_EQ(StrToFloatDef(u"x", -1), -1);
  EXPECT_EQ(test::MessageOf<EConvertError>([&] { StrToFloat(u"12abc"); }),
            u"'12abc' is not a valid floating point value");
}

TEST(StrToFloat, RoundTripsFloatToStrForShortValues) {
  for (double d : {0.1, 1234.5678, -1e-10, 6.02214076e23, 1e300, 0.000123}) {
    EXPECT_EQ(StrToFloat(FloatToStr(d)), d);
  }
}

}  // namespace
}  // namespace vex
