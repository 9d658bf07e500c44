// Dates and times of the platform: TDateTime counts days since 1899-12-30, the fraction is the
// time of day. Encoding, decoding, the current time and picture formatting.
//
//   TDateTime t = EncodeDateTime(2024, 2, 29, 13, 5, 9, 7);
//   FormatDateTime(u"dd\"/\"mm\"/\"yyyy hh\":\"nn\":\"ss.zzz", t)   // u"29/02/2024 13:05:09.007"
//
// Values before 1899-12-30 are negative and follow the Pascal convention: the integer part is
// the day and the fraction, taken as a positive amount, the time (-1.25 is 1899-12-29 06:00).
// Decoding rounds to the millisecond first, so 23:59:59.9996 becomes midnight of the next day.
#pragma once

#include <cstdint>

#include "vex/platform/format.h"
#include "vex/platform/types.h"

namespace vex {

using TDateTime = double;

constexpr int32_t HoursPerDay = 24;
constexpr int32_t MinsPerDay = HoursPerDay * 60;
constexpr int32_t SecsPerDay = MinsPerDay * 60;
constexpr int32_t MSecsPerDay = SecsPerDay * 1000;
/// Days from 0001-01-01 to 1899-12-30.
constexpr int32_t DateDelta = 693594;

bool IsLeapYear(uint16_t year);
/// Days in a month of a year (0 for a month outside 1..12).
uint16_t DaysInAMonth(uint16_t year, uint16_t month);
/// Days in the month of a date.
uint16_t DaysInMonth(TDateTime value);

/// Year 1..9999, month 1..12, day within the month; otherwise false and value unchanged.
bool TryEncodeDate(uint16_t year, uint16_t month, uint16_t day, TDateTime& value);
/// Hours 0..23, minutes and seconds 0..59, milliseconds 0..999; otherwise false.
bool TryEncodeTime(uint16_t hour, uint16_t min, uint16_t sec, uint16_t msec, TDateTime& value);
/// As TryEncodeDate; raises EConvertError "Invalid argument to date encode".
TDateTime EncodeDate(uint16_t year, uint16_t month, uint16_t day);
/// As TryEncodeTime; raises EConvertError "Invalid argument to time encode".
TDateTime EncodeTime(uint16_t hour, uint16_t min, uint16_t sec, uint16_t msec);
/// Date and time together; before 1899-12-30 the time is subtracted (Pascal convention).
bool TryEncodeDateTime(uint16_t year, uint16_t month, uint16_t day, uint16_t hour, uint16_t min,
                       uint16_t sec, uint16_t msec, TDateTime& value);
TDateTime EncodeDateTime(uint16_t year, uint16_t month, uint16_t day, uint16_t hour, uint16_t min,
                         uint16_t sec, uint16_t msec);

/// Year, month and day of value; all three are 0 for a value outside years 1..9999 (or NaN).
void DecodeDate(TDateTime value, uint16_t& year, uint16_t& month, uint16_t& day);
/// Time of day of value, rounded to the millisecond.
void DecodeTime(TDateTime value, uint16_t& hour, uint16_t& min, uint16_t& sec, uint16_t& msec);
void DecodeDateTime(TDateTime value, uint16_t& year, uint16_t& month, uint16_t& day, uint16_t& hour,
                    uint16_t& min, uint16_t& sec, uint16_t& msec);
/// 1 for Sunday .. 7 for Saturday.
uint16_t DayOfWeek(TDateTime value);

/// The current local date and time, the date alone, the time alone.
TDateTime Now();
TDateTime Date();
TDateTime Time();

/// Formats value by picture, case-insensitively:
///   d dd ddd dddd     day, two-digit day, short and long day name
///   ddddd dddddd      the settings' short and long date format
///   m mm mmm mmmm     month, two-digit month, short and long month name (minutes right after
///                     h or hh)
///   yy yyyy           two- and four-digit year
///   h hh n nn s ss    hour, minute, second, plain or two digits
///   z zzz             milliseconds, plain or three digits
///   c t tt            short date + long time (time left out at midnight), short time, long time
///   am/pm a/p ampm    12-hour clock with the marker ("ampm" uses the settings' strings)
///   / :               the settings' date and time separators
///   "..." '...'       literal text; any other character is copied.
/// An empty picture means "c".
String FormatDateTime(const String& picture, TDateTime value);
String FormatDateTime(const String& picture, TDateTime value, const TFormatSettings& settings);

/// FormatDateTime with "ddddd", "tt" and "c".
String DateToStr(TDateTime value);
String TimeToStr(TDateTime value);
String DateTimeToStr(TDateTime value);

}  // namespace vex
