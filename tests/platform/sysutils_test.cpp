#include "vex/platform/sysutils.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <thread>
#include <vector>

#include "test_support.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/unicode.h"

namespace vex {
namespace {

TEST(Pieces, PositionsAreOneBasedAndZeroWhenAbsent) {
  EXPECT_EQ(Pos(u"lo", u"hello"), 4);
  EXPECT_EQ(Pos(u"", u"hello"), 0);
  EXPECT_EQ(PosEx(u"l", u"hello", 4), 4);
  EXPECT_EQ(PosEx(u"l", u"hello", 5), 0);
  EXPECT_EQ(PosEx(u"h", u"hello", 0), 0);
}

TEST(Pieces, CopyClampsStartAndCount) {
  EXPECT_EQ(Copy(u"hello", 2, 3), u"ell");
  EXPECT_EQ(Copy(u"hello", -5, 2), u"he");
  EXPECT_EQ(Copy(u"hello", 4, 100), u"lo");
  EXPECT_EQ(Copy(u"hello", 6, 1), u"");
  EXPECT_EQ(Copy(u"hello", 2, -1), u"");
}

TEST(Pieces, DeleteAndInsertStayInsideTheString) {
  String s = u"hello";
  Delete(s, 2, 2);
  EXPECT_EQ(s, u"hlo");
  Delete(s, 0, 5);
  Delete(s, 4, 1);
  EXPECT_EQ(s, u"hlo");
  Delete(s, 2, 100);
  EXPECT_EQ(s, u"h");
  Insert(u"ab", s, 1);
  EXPECT_EQ(s, u"abh");
  Insert(u"Z", s, 99);
  EXPECT_EQ(s, u"abhZ");
  Insert(u"<", s, -3);
  EXPECT_EQ(s, u"<abhZ");
  EXPECT_EQ(StringOfChar(u'x', 3), u"xxx");
  EXPECT_EQ(StringOfChar(u'x', -1), u"");
}

TEST(Pieces, TrimRemovesControlCharactersAndBlanks) {
  EXPECT_EQ(Trim(u"\t\r\n a b \x1F"), u"a b");
  EXPECT_EQ(TrimLeft(u"  a "), u"a ");
  EXPECT_EQ(TrimRight(u"  a \x01"), u"  a");
  EXPECT_EQ(Trim(u"\u00A0a\u00A0"), u"\u00A0a\u00A0");  // only codes up to 32
  EXPECT_EQ(LastDelimiter(u"./", u"a/b.c.d"), 6);
  EXPECT_EQ(LastDelimiter(u"\\", u"abc"), 0);
}

TEST(Replace, FirstOrAllAndIgnoringCase) {
  EXPECT_EQ(StringReplace(u"aXbXc", u"X", u"--", {}), u"a--bXc");
  EXPECT_EQ(StringReplace(u"aXbXc", u"X", u"--", {rfReplaceAll}), u"a--b--c");
  EXPECT_EQ(StringReplace(u"abc", u"", u"x", {rfReplaceAll}), u"abc");
  EXPECT_EQ(StringReplace(u"Привет ПРИВЕТ", u"привет", u"hi", {rfReplaceAll, rfIgnoreCase}),
            u"hi hi");
  EXPECT_EQ(StringReplace(u"AbAB", u"ab", u"x", {rfIgnoreCase}), u"xAB");
  // Replacement text is not searched again.
  EXPECT_EQ(StringReplace(u"ab", u"a", u"aa", {rfReplaceAll}), u"aab");
}

TEST(Case, AsciiOperationsLeaveOtherLettersAlone) {
  EXPECT_EQ(UpperCase(u"abz{é"), u"ABZ{é");
  EXPECT_EQ(LowerCase(u"ABZ@É"), u"abz@É");
  EXPECT_TRUE(SameText(u"Hello", u"hELLO"));
  EXPECT_FALSE(SameText(u"é", u"É"));
  EXPECT_EQ(CompareText(u"abc", u"ABC"), 0);
  EXPECT_GT(CompareText(u"abcd", u"ABC"), 0);
  // '_' (95) sorts after upper-cased letters, as in the Pascal platform.
  EXPECT_GT(CompareText(u"_", u"a"), 0);
  EXPECT_LT(CompareStr(u"B", u"a"), 0);
  EXPECT_GT(CompareStr(u"ab", u"a"), 0);
  EXPECT_TRUE(SameStr(u"a", u"a"));
}

TEST(Case, UnicodeMappingUsesFullCaseRules) {
  EXPECT_EQ(AnsiUpperCase(u"straße ёж"), u"STRASSE ЁЖ");
  EXPECT_EQ(AnsiLowerCase(u"ÀÉÎ ПРИВЕТ"), u"àéî привет");
  EXPECT_EQ(AnsiUpperCase(u"\U00010428"),
            u"\U00010400");  // Deseret, outside the BMP
  EXPECT_TRUE(AnsiSameText(u"Straße", u"STRASSE"));
  EXPECT_TRUE(AnsiSameText(u"ПрИвЕт", u"привет"));
}

TEST(Case, CollationOrdersLettersNotCodeUnits) {
  EXPECT_LT(AnsiCompareStr(u"a", u"B"), 0);  // ordinal order would put "B" first
  EXPECT_NE(AnsiCompareStr(u"a", u"A"), 0);
  EXPECT_EQ(AnsiCompareText(u"a", u"A"), 0);
  EXPECT_LT(AnsiCompareText(u"é", u"f"), 0);
  EXPECT_LT(AnsiCompareText(u"ёж", u"ель"), 0);  // ordinal order is the reverse
  EXPECT_TRUE(AnsiSameStr(u"abc", u"abc"));
  EXPECT_FALSE(AnsiSameStr(u"abc", u"ABC"));
}

TEST(Case, CollationIsSafeFromManyThreads) {
  std::vector<std::thread> threads;
  std::vector<int> failures(4, 0);
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([t, &failures] {
      for (int i = 0; i < 2000; ++i) {
        if (AnsiCompareText(u"alpha", u"ALPHA") != 0 || AnsiCompareStr(u"a", u"b") >= 0) {
          ++failures[t];
        }
      }
    });
  }
  for (auto& th : threads) th.join();
  for (int f : failures) EXPECT_EQ(f, 0);
}

// Decimal and hex text of the common values is in the golden tables; these are the other
// integer types and the edges of the accepted syntax.
TEST(IntegerText, FormatsEveryIntegerTypeWithoutWrapping) {
  EXPECT_EQ(IntToStr(INT64_MIN), u"-9223372036854775808");
  EXPECT_EQ(IntToStr(4294967295u), u"4294967295");
  EXPECT_EQ(IntToStr(static_cast<size_t>(18446744073709551615u)), u"18446744073709551615");
  EXPECT_EQ(IntToStr(int16_t{-300}), u"-300");
  EXPECT_EQ(UIntToStr(uint64_t{1} << 63), u"9223372036854775808");
  EXPECT_EQ(StrToInt(u"-$80000000"), INT32_MIN);
  EXPECT_EQ(StrToInt(u"+0x10"), 16);
}

TEST(IntegerText, RejectsEverythingElseWithoutTouchingTheOutput) {
  const char16_t* bad[] = {u"\n5",         u"x1F",        u"&17",        u"%101", u"2147483648",
                           u"-2147483649", u"$100000000", u"-$80000001", u"１２"};
  for (const char16_t* b : bad) {
    int32_t v = 77;
    EXPECT_FALSE(TryStrToInt(b, v)) << ToUtf8(b);
    EXPECT_EQ(v, 77);
    EXPECT_EQ(StrToIntDef(b, -3), -3);
  }
}

TEST(IntegerText, SixtyFourBitRangeIsChecked) {
  int64_t v = 0;
  EXPECT_TRUE(TryStrToInt64(u"2147483648", v));
  EXPECT_EQ(v, int64_t{2147483648});
  EXPECT_EQ(StrToInt64(u"-9223372036854775808"), INT64_MIN);
  EXPECT_EQ(StrToInt64(u"$FFFFFFFFFFFFFFFF"), -1);
  EXPECT_EQ(StrToInt64(u"$FFFFFFFF"), int64_t{4294967295});
  EXPECT_FALSE(TryStrToInt64(u"9223372036854775808", v));
  EXPECT_FALSE(TryStrToInt64(u"$10000000000000000", v));
  EXPECT_EQ(StrToInt64Def(u"x", 5), 5);
}

TEST(IntegerText, FailureMessageQuotesTheTextAsGiven) {
  EXPECT_EQ(test::MessageOf<EConvertError>([&] { StrToInt(u" abc"); }),
            u"' abc' is not a valid integer value");
  EXPECT_THROW(StrToInt64(u"2^3"), EConvertError);
}

TEST(Booleans, WordsAndNumbers) {
  EXPECT_EQ(BoolToStr(true), u"-1");
  EXPECT_EQ(BoolToStr(true, true), u"True");
  bool b = false;
  EXPECT_TRUE(TryStrToBool(u"tRUE", b));
  EXPECT_TRUE(b);
  EXPECT_TRUE(TryStrToBool(u"0", b));
  EXPECT_FALSE(b);
  EXPECT_TRUE(StrToBool(u"-5"));
  EXPECT_FALSE(TryStrToBool(u"yes", b));
  EXPECT_THROW(StrToBool(u"yes"), EConvertError);
}

}  // namespace
}  // namespace vex
