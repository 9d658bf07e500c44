#include "vex/text/convert_utils.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "vex/platform/exceptions.h"
#include "vex/platform/format.h"
#include "vex/text/mem_utils.h"

namespace vex {
namespace {

using C = TConvertUtils;

template <class F>
String MessageOf(F f) {
  try {
    f();
  } catch (const EConvertError& e) {
    return e.Message();
  }
  return u"<no error>";
}

TEST(ConvertNumbers, FloatTakesTheFirstCommaAsThePoint) {
  double d = 0;
  EXPECT_TRUE(C::TryStrToFloat(u"1,5", &d));
  EXPECT_EQ(d, 1.5);
  EXPECT_TRUE(C::TryStrToFloat(u"-2.25e2", &d));
  EXPECT_EQ(d, -225);
  d = 7;
  EXPECT_FALSE(C::TryStrToFloat(u"1,5,5", &d));  // only the first comma is replaced
  EXPECT_FALSE(C::TryStrToFloat(u"1.5x", &d));
  EXPECT_EQ(d, 7);  // untouched on failure
  EXPECT_TRUE(C::TryStrToFloat(u"3"));
  EXPECT_EQ(MessageOf([] { C::TryStrToFloat(u"1,5,5", nullptr, true); }),
            u"Conversion to float error in: 1,5,5");
}

TEST(ConvertNumbers, FloatExFallsBackToTheDefault) {
  double d = 0;
  EXPECT_TRUE(C::TryStrToFloatEx(u"0,25", d, 9));
  EXPECT_EQ(d, 0.25);
  EXPECT_FALSE(C::TryStrToFloatEx(u"zz", d, 9));
  EXPECT_EQ(d, 9);
}

TEST(ConvertNumbers, IntegersAreStrictAndNameTheText) {
  int32_t i = 5;
  EXPECT_TRUE(C::TryStrToInt(u"-42", &i));
  EXPECT_EQ(i, -42);
  EXPECT_TRUE(C::TryStrToInt(u"$10", &i));
  EXPECT_EQ(i, 16);
  EXPECT_FALSE(C::TryStrToInt(u"2147483648", &i));
  EXPECT_EQ(i, 16);
  int64_t l = 0;
  EXPECT_TRUE(C::TryStrToInt64(u"2147483648", &l));
  EXPECT_EQ(l, 2147483648LL);
  EXPECT_EQ(MessageOf([] { C::TryStrToInt(u" x", nullptr, true); }),
            u"Conversion to integer error in:  x");
  EXPECT_EQ(MessageOf([] { C::TryStrToInt64(u"9e9", nullptr, true); }),
            u"Conversion to Int64 error in: 9e9");
}

TEST(ConvertNumbers, BooleanWordsAndDigitsAreExact) {
  EXPECT_EQ(C::IndexInBoolStrs(u"1", true), 1);
  EXPECT_EQ(C::IndexInBoolStrs(u"True", false), 1);
  EXPECT_EQ(C::IndexInBoolStrs(u"true", false), -1);
  EXPECT_EQ(C::IndexInBoolStrs(u"1", false), -1);

  bool b = false;
  EXPECT_TRUE(C::TryStrToBool(u"True", &b, false, -1));
  EXPECT_TRUE(b);
  EXPECT_TRUE(C::TryStrToBool(u"0", &b, false, -1));
  EXPECT_FALSE(b);
  EXPECT_FALSE(C::TryStrToBool(u"1", &b, false, 0));     // words only
  EXPECT_FALSE(C::TryStrToBool(u"True", &b, false, 1));  // digits only
  EXPECT_TRUE(C::TryStrToBool(u"1", &b, false, 5));
  EXPECT_TRUE(b);
  EXPECT_EQ(MessageOf([] { C::TryStrToBool(u"yes", nullptr, true, -1); }),
            u"Conversion to Boolean error in: yes");
}

TEST(ConvertNumbers, DeleteFloatZerosWorksAfterTheCommaOnly) {
  const std::pair<const char16_t*, const char16_t*> cases[] = {
      {u"1,500", u"1,5"},   {u"2,000", u"2"},   {u"1,50e10", u"1,5e10"}, {u"3,0E5", u"3E5"},
      {u"1.500", u"1.500"}, {u"100", u"100"},   {u"10,", u"10"},         {u"1,05", u"1,05"},
      {u"1,0e0,0", u"1e0,0"}, {u"", u""},
  };
  for (const auto& [in, out] : cases) EXPECT_EQ(C::DeleteFloatZeros(in), out) << int(in[0]);
}

TEST(ConvertNumbers, SmartFormatFloatPicksTheFormatKind) {
  EXPECT_EQ(C::SmartFormatFloat(2.5), u"2.5");
  EXPECT_EQ(C::SmartFormatFloat(2.5, u"%.3f"), u"2.500");  // a point: zeros stay
  EXPECT_EQ(C::SmartFormatFloat(2.5, u"0.000"), u"2.500");
  TFormatSettings& fs = FormatSettings();
  const Char saved = fs.DecimalSeparator;
  fs.DecimalSeparator = u',';  // with the comma, trailing zeros go
  EXPECT_EQ(C::SmartFormatFloat(2.5, u"%.3f"), u"2,5");
  EXPECT_EQ(C::SmartFormatFloat(3, u"0.00"), u"3");
  EXPECT_EQ(C::SmartFormatFloat(1e20), u"1E20");
  fs.DecimalSeparator = saved;
}

TEST(ConvertNumbers, EnsureFloatRange) {
  EXPECT_EQ(C::EnsureFloatRange(5, 1, 10), 5);
  EXPECT_EQ(C::EnsureFloatRange(-5, 1, 10), 1);
  EXPECT_EQ(C::EnsureFloatRange(50, 1, 10), 10);
  EXPECT_EQ(C::EnsureFloatRange(std::nan(""), 1, 10), 1);
  // Minimum above maximum: anything below the minimum gives it, everything else the maximum.
  EXPECT_EQ(C::EnsureFloatRange(0, 10, 1), 10);
  EXPECT_EQ(C::EnsureFloatRange(10, 10, 1), 1);
}

TEST(ConvertText, BoundsVisibilityAndPointers) {
  const TRect r{10, 20, 110, 70};
  EXPECT_EQ(C::BoundsToStr(r, true), u"L: 10; T: 20; W: 100; H: 50");
  EXPECT_EQ(C::BoundsToStr(r, false), u"L: 10; T: 20; R: 110; B: 70");
  EXPECT_EQ(C::VisibleToStr(false, false), u"V: False");

  int x = 0;
  const String s = C::PtrToStr(&x);
  EXPECT_EQ(s.size(), 1 + 2 * sizeof(void*));
  EXPECT_EQ(s[0], u'$');
  EXPECT_EQ(C::StrToPtr(s), &x);
  EXPECT_EQ(u"$" + C::PtrToHex(&x), s);
  EXPECT_EQ(C::PtrToHex(nullptr), String(2 * sizeof(void*), u'0'));
  const void* high = reinterpret_cast<const void*>(~uintptr_t{0} - 0xAB);
  for (const void* p : {static_cast<const void*>(nullptr), reinterpret_cast<const void*>(0x1F),
                        static_cast<const void*>(&x), high}) {
    EXPECT_EQ(C::PtrToStr(p), Format(u"$%p", {p}));  // one rule for pointer text
  }
  EXPECT_EQ(C::PtrToHex(high).substr(2 * sizeof(void*) - 2), u"54");
  EXPECT_EQ(C::StrToPtr(C::PtrToStr(high)), high);
  EXPECT_EQ(C::StrToPtr(u"$1F"), reinterpret_cast<void*>(0x1F));  // the short width reads too
  EXPECT_EQ(C::StrToPtr(u"junk"), nullptr);
}

TEST(ConvertHex, HexStrToBytesStopsAtTheFirstBadPair) {
  TBytes b{9, 9};
  int32_t bad = -1;
  C::HexStrToBytes("0aFF10", "", &bad, b);
  EXPECT_EQ(b, (TBytes{0x0A, 0xFF, 0x10}));
  EXPECT_EQ(bad, 0);
  C::HexStrToBytes("01 zz 02 0", " ", &bad, b);  // "01zz020": three pairs, stops at "zz"
  EXPECT_EQ(b, (TBytes{0x01, 0, 0}));
  EXPECT_EQ(bad, 2);
  C::HexStrToBytes("A", "", &bad, b);
  EXPECT_TRUE(b.empty());
  EXPECT_EQ(bad, 0);
  C::HexStrToBytes("0-1:2", "-:", nullptr, b);
  EXPECT_EQ(b, (TBytes{0x01}));
}

TEST(ConvertHex, HexStrToDestNeverWritesPastItsBuffer) {
  THexDestBuffer dest{};
  EXPECT_EQ(C::HexStrToDest("$0102", "", dest, 10), 2);
  EXPECT_EQ(dest[0], 1);
  EXPECT_EQ(dest[1], 2);
  EXPECT_EQ(C::HexStrToDest("AABBCC", "", dest, 2), 2);
  EXPECT_EQ(dest[2], 0);
  EXPECT_EQ(C::HexStrToDest("$$01", "", dest, 5), 0);  // only one "$" is dropped
  EXPECT_EQ(C::HexStrToDest("0102", "", dest, -3), 0);
  const std::string huge(2 * 40000, 'e');
  EXPECT_EQ(C::HexStrToDest(huge, "", dest, 1 << 30), 32768);
  EXPECT_EQ(dest[32767], 0xEE);
}

TEST(ConvertHex, BytesToHexStr) {
  const TBytes b{0x00, 0xAB, 0x7f};
  EXPECT_EQ(C::BytesToHexStr(b), "00AB7F");
  EXPECT_EQ(C::BytesToHexStr(b, 2, " "), "00 AB");
  EXPECT_EQ(C::BytesToHexStr(b, 99, "-"), "00-AB-7F");
  EXPECT_EQ(C::BytesToHexStr(b.data(), 0), "");
}

TEST(ConvertHex, BinaryDigitsFollowTheLittleEndianBitOrder) {
  const uint8_t data[] = {0x05, 0x80};
  EXPECT_EQ(C::DataToBinStr(data, 16), "1010000000000001");
  EXPECT_EQ(C::DataToBinStr(data, 3), "101");
  // The byte count is used as the bit count.
  EXPECT_EQ(C::BytesToBinStr(TBytes{0x05, 0x80}), "10");

  EXPECT_EQ(C::BinStrToBytes("101"), TBytes{0x05});
  EXPECT_EQ(C::BinStrToBytes("000000001"), (TBytes{0x00, 0x01}));
  EXPECT_EQ(C::BinStrToBytes("x0a"), TBytes{0x05});  // anything but "0" is a one
  EXPECT_EQ(C::BinStrToBytes(C::DataToBinStr(data, 16)), (TBytes{0x05, 0x80}));
}

TEST(ConvertHex, MixedTokensAreJoinedInOrder) {
  EXPECT_EQ(C::MixedStrToBytes(u"0A0B;n101;t000000011;FF", u';'),
            (TBytes{0x0A, 0x0B, 0x05, 0x80, 0x01, 0xFF}));
  EXPECT_EQ(C::MixedStrToBytes(u"zz", u';'), TBytes{0});

  TBytes a{1};
  TMemUtils::AppendBytes(a, a);
  EXPECT_EQ(a, (TBytes{1, 1}));
}

TEST(ConvertBytes, EncodingsOfText) {
  EXPECT_EQ(C::ASCII_String(TBytes{'a', 0x80, 0xFF}), u"a??");
  EXPECT_EQ(C::ANSI_String(TBytes{'a', 0x80, 0x81, 0x9F, 0xE9}), u"a\u20ac\u0081\u0178\u00e9");
  EXPECT_EQ(C::ASCII_Bytes(u"aé€"), (TBytes{'a', '?', '?'}));
  EXPECT_EQ(C::ANSI_Bytes(u"aé€\u0081Ж"), (TBytes{'a', 0xE9, 0x80, 0x81, '?'}));
  for (int b = 0; b < 256; ++b) {
    const TBytes one{static_cast<uint8_t>(b)};
    EXPECT_EQ(C::ANSI_Bytes(C::ANSI_String(one)), one) << b;
  }
  EXPECT_EQ(C::Wide_Chars(TBytes{0x16, 0x04, 'a', 0, 7}), u"\u0416a");
  EXPECT_EQ(C::GetEncodingBytes(u"\u0416a", beUnicode), (TBytes{0x16, 0x04, 'a', 0}));
  EXPECT_EQ(C::GetEncodingBytes(u"\u0416a", beUTF8), (TBytes{0xD0, 0x96, 'a'}));
  EXPECT_EQ(C::GetEncodingBytes(u"\u0416a", beASCII), (TBytes{'?', 'a'}));
  EXPECT_EQ(C::GetEncodingBytes(u"\u20ac", beANSI), TBytes{0x80});
}

TEST(ConvertMisc, DateTimeStrDefUsesLiteralSeparators) {
  TFormatSettings& fs = FormatSettings();
  const TFormatSettings saved = fs;
  fs.DateSeparator = u'.';
  fs.TimeSeparator = u'-';
  const double dt = 45358 + (9 * 3600 + 5 * 60 + 4.012) / 86400;  // 2024-03-07 09:05:04.012
  EXPECT_EQ(C::DateTimeStrDef(dt, false, u"-"), u"07/03/2024,09:05:04");
  EXPECT_EQ(C::DateTimeStrDef(dt, true, u"-"), u"07/03/2024,09:05:04.012");
  EXPECT_EQ(C::DateTimeStrDef(0, true, u"never"), u"never");
  fs = saved;
}

TEST(ConvertMisc, FindOptionsKeepDirectionCaseAndWholeWordOnly) {
  EXPECT_EQ(C::ConvertFindOptions({frDown, frMatchCase, frWholeWord, frReplaceAll, frFindNext}),
            (TStringSearchOptions{soDown, soMatchCase, soWholeWord}));
  EXPECT_EQ(C::ConvertFindOptions({frHideMatchCase, frDisableWholeWord, frHideUpDown}),
            TStringSearchOptions{});
}

class TNamedThing : public TObject {
 public:
  String ToString() const override { return u"named"; }
};

TEST(ConvertObjects, ObjArrayToStringArrayUsesEachObjectsTextAndEmptyForNull) {
  TObject plain;
  TNamedThing named;
  EXPECT_EQ(TConvertUtils::ObjArrayToStringArray({&plain, nullptr, &named}),
            (TStringDynArray{u"TObject", u"", u"named"}));
  EXPECT_TRUE(TConvertUtils::ObjArrayToStringArray({}).empty());
}

TEST(ConvertObjects, CtlArrayToCompArrayKeepsTheObjectsInOrder) {
  TObject a, b;
  EXPECT_EQ(TConvertUtils::CtlArrayToCompArray({&b, nullptr, &a}),
            (TComponentArray{&b, nullptr, &a}));
}

}  // namespace
}  // namespace vex
