#include "vex/platform/datetime.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <limits>

#include "test_support.h"
#include "vex/platform/exceptions.h"

namespace vex {
namespace {

struct Ymd {
  uint16_t y, m, d;
};

Ymd DateOf(TDateTime v) {
  Ymd r{};
  DecodeDate(v, r.y, r.m, r.d);
  return r;
}

TEST(Calendar, LeapYearsAndMonthLengths) {
  EXPECT_TRUE(IsLeapYear(2000));
  EXPECT_FALSE(IsLeapYear(1900));
  EXPECT_EQ(DaysInAMonth(2024, 2), 29);
  EXPECT_EQ(DaysInAMonth(2100, 2), 28);
  EXPECT_EQ(DaysInAMonth(2023, 13), 0);
  EXPECT_EQ(DaysInMonth(EncodeDate(2024, 2, 10)), 29);
}

TEST(Calendar, KnownDayNumbers) {
  EXPECT_EQ(EncodeDate(1899, 12, 30), 0);
  EXPECT_EQ(EncodeDate(2024, 2, 29), 45351);
  EXPECT_EQ(EncodeDate(1, 1, 1), -693593);
  EXPECT_EQ(EncodeDate(9999, 12, 31), 2958465);
  EXPECT_EQ(DayOfWeek(EncodeDate(2024, 2, 29)), 5);  // Thursday
  EXPECT_EQ(DayOfWeek(0), 7);                        // 1899-12-30 was a Saturday
}

TEST(Calendar, EveryDayDecodesToTheDateItWasEncodedFrom) {
  // Walks day numbers across the range, including all cycle boundaries of the calendar.
  for (int64_t n = -693593; n <= 2958465; n += 997) {
    const Ymd d = DateOf(static_cast<double>(n));
    TDateTime back = -1e9;
    ASSERT_TRUE(TryEncodeDate(d.y, d.m, d.d, back)) << n;
    ASSERT_EQ(back, static_cast<double>(n));
  }
  for (uint16_t y : {1, 4, 100, 400, 1600, 1900, 2000, 2100, 9999}) {
    const Ymd last = DateOf(EncodeDate(y, 12, 31));
    EXPECT_EQ(last.y * 10000 + last.m * 100 + last.d, y * 10000 + 1231);
  }
}

TEST(Calendar, InvalidPartsAreRejected) {
  TDateTime v = 123;
  EXPECT_FALSE(TryEncodeDate(2023, 2, 29, v));
  EXPECT_FALSE(TryEncodeDate(0, 1, 1, v));
  EXPECT_FALSE(TryEncodeDate(2023, 0, 1, v));
  EXPECT_FALSE(TryEncodeTime(24, 0, 0, 0, v));
  EXPECT_FALSE(TryEncodeTime(0, 0, 0, 1000, v));
  EXPECT_EQ(v, 123);
  EXPECT_EQ(test::MessageOf<EConvertError>([&] { EncodeDate(2023, 2, 29); }),
            u"Invalid argument to date encode");
  EXPECT_EQ(test::MessageOf<EConvertError>([&] { EncodeTime(25, 0, 0, 0); }),
            u"Invalid argument to time encode");
}

TEST(TimeOfDay, EncodesAndDecodesToTheMillisecond) {
  const TDateTime t = EncodeTime(13, 5, 9, 7);
  uint16_t h, n, s, ms;
  DecodeTime(t, h, n, s, ms);
  EXPECT_EQ((std::array{h, n, s, ms}), (std::array<uint16_t, 4>{13, 5, 9, 7}));
  EXPECT_DOUBLE_EQ(EncodeTime(12, 0, 0, 0), 0.5);
  // Decoding rounds to the millisecond first: just before midnight becomes the next day.
  const TDateTime almost = EncodeDate(2023, 12, 31) + 0.99999999999;
  const Ymd d = DateOf(almost);
  EXPECT_EQ(d.y * 10000 + d.m * 100 + d.d, 20240101);
  DecodeTime(almost, h, n, s, ms);
  EXPECT_EQ(h + n + s + ms, 0);
}

TEST(NegativeValues, DayFromIntegerPartTimeFromAbsoluteFraction) {
  const TDateTime v = EncodeDateTime(1899, 12, 29, 6, 0, 0, 0);
  EXPECT_DOUBLE_EQ(v, -1.25);
  uint16_t y, m, d, h, n, s, ms;
  DecodeDateTime(-1.25, y, m, d, h, n, s, ms);
  EXPECT_EQ((std::array{y, m, d, h}), (std::array<uint16_t, 4>{1899, 12, 29, 6}));
  // -0.5 lies in day 0 (1899-12-30), at noon.
  DecodeDateTime(-0.5, y, m, d, h, n, s, ms);
  EXPECT_EQ(d, 30);
  EXPECT_EQ(h, 12);
  EXPECT_EQ(FormatDateTime(u"yyyy-mm-dd hh:nn", -700.75), u"1898-01-29 18:00");
}

TEST(NegativeValues, OutOfRangeAndNonFiniteValuesDecodeToZeros) {
  for (double bad : {-693594.0, 2958466.0, 1e300, std::numeric_limits<double>::quiet_NaN(),
                     std::numeric_limits<double>::infinity()}) {
    const Ymd d = DateOf(bad);
    EXPECT_EQ(d.y + d.m + d.d, 0) << bad;
    EXPECT_NO_THROW(FormatDateTime(u"c dddd mmmm", bad));
  }
}

TEST(FormatDateTime, PictureLetters) {
  const TDateTime t = EncodeDateTime(2024, 3, 5, 14, 7, 9, 45);
  EXPECT_EQ(FormatDateTime(u"d/m/yy h:n:s.z", t), u"5/3/24 14:7:9.45");
  EXPECT_EQ(FormatDateTime(u"dd.mm.yyyy hh-nn-ss.zzz", t), u"05.03.2024 14-07-09.045");
  EXPECT_EQ(FormatDateTime(u"ddd dddd mmm mmmm", t), u"Tue Tuesday Mar March");
  EXPECT_EQ(FormatDateTime(u"hh:mm", t), u"14:07");  // m right after h means minutes
  EXPECT_EQ(FormatDateTime(u"h:nn am/pm|h AM/PM|h a/p|hh ampm", t), u"2:07 pm|2 PM|2 p|02 PM");
  EXPECT_EQ(FormatDateTime(u"h am/pm", EncodeTime(0, 30, 0, 0)), u"12 am");
  EXPECT_EQ(FormatDateTime(u"\"at\" hh 'o''clock'", t), u"at 14 oclock");
}

TEST(FormatDateTime, SeparatorsComeFromSettingsUnlessQuoted) {
  TFormatSettings fs;
  fs.DateSeparator = u'-';
  fs.TimeSeparator = u'.';
  const TDateTime t = EncodeDateTime(2024, 2, 29, 13, 5, 9, 7);
  EXPECT_EQ(FormatDateTime(u"dd/mm/yyyy hh:nn", t, fs), u"29-02-2024 13.05");
  // The picture of date-time stamps with literal slashes and colons.
  EXPECT_EQ(FormatDateTime(u"dd\"/\"mm\"/\"yyyy,hh\":\"nn\":\"ss.zzz", t, fs),
            u"29/02/2024,13:05:09.007");
}

TEST(FormatDateTime, NestedSettingsFormats) {
  TFormatSettings fs;
  fs.ShortDateFormat = u"yyyy/mm/dd";
  fs.LongDateFormat = u"d mmmm yyyy";
  fs.LongTimeFormat = u"hh:nn:ss";
  fs.ShortTimeFormat = u"hh:nn";
  const TDateTime t = EncodeDateTime(2024, 2, 29, 13, 5, 9, 7);
  EXPECT_EQ(FormatDateTime(u"c", t, fs), u"2024/02/29 13:05:09");
  EXPECT_EQ(FormatDateTime(u"", std::trunc(t), fs), u"2024/02/29");
  EXPECT_EQ(FormatDateTime(u"ddddd|dddddd|t|tt", t, fs),
            u"2024/02/29|29 February 2024|13:05|13:05:09");
  // Formats that refer to each other stop after two levels instead of recursing forever.
  fs.ShortDateFormat = u"c";
  EXPECT_NO_THROW(FormatDateTime(u"c", t, fs));
}

TEST(Clock, NowIsTodayPlusTime) {
  const TDateTime today = Date();
  const TDateTime now = Now();
  EXPECT_GE(now, today);
  EXPECT_LT(now, today + 1.0001);
  EXPECT_GT(today, EncodeDate(2020, 1, 1));
  EXPECT_LT(Time(), 1);
}

}  // namespace
}  // namespace vex
