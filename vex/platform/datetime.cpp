#include "vex/platform/datetime.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <ctime>

#include "vex/platform/exceptions.h"

namespace vex {
namespace {

constexpr uint16_t kDaysBeforeMonth[2][13] = {
    {0, 0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334},
    {0, 0, 31, 60, 91, 121, 152, 182, 213, 244, 274, 305, 335}};

// Day numbers counted from 0001-01-01 = 1, as the Pascal platform's time stamps count them.
constexpr int64_t kFirstDay = 1;
constexpr int64_t kLastDay = 3652059;  // 9999-12-31

struct TTimeStamp {
  int64_t day = 0;   // day number; 0 when the value is outside the supported years
  int32_t msec = 0;  // milliseconds since midnight
};

// Rounds to the millisecond first (ties to even, as the platform's Round), then splits; for a
// negative value the day is truncated toward zero and the time is the absolute remainder.
TTimeStamp ToTimeStamp(TDateTime value) {
  TTimeStamp ts;
  if (!std::isfinite(value)) return ts;
  const double limit = static_cast<double>(kLastDay - DateDelta + 1);
  if (std::fabs(value) > limit) {
    const double frac = std::fabs(value - std::trunc(value));
    ts.msec = static_cast<int32_t>(std::nearbyint(frac * MSecsPerDay)) % MSecsPerDay;
    return ts;
  }
  const auto total = static_cast<int64_t>(std::nearbyint(value * MSecsPerDay));
  const int64_t days = total / MSecsPerDay;
  ts.msec = static_cast<int32_t>((total < 0 ? -total : total) % MSecsPerDay);
  const int64_t day = DateDelta + days;
  ts.day = (day >= kFirstDay && day <= kLastDay) ? day : 0;
  return ts;
}

void DayNumberToDate(int64_t t, uint16_t& year, uint16_t& month, uint16_t& day) {
  if (t <= 0) {
    year = month = day = 0;
    return;
  }
  constexpr int64_t kD1 = 365, kD4 = kD1 * 4 + 1, kD100 = kD4 * 25 - 1, kD400 = kD100 * 4 + 1;
  int64_t rest = t - 1;
  int64_t y = 1 + (rest / kD400) * 400;
  rest %= kD400;
  int64_t i = rest / kD100;
  rest %= kD100;
  if (i == 4) {  // the last day of a 400-year cycle
    --i;
    rest += kD100;
  }
  y += i * 100;
  y += (rest / kD4) * 4;
  rest %= kD4;
  i = rest / kD1;
  rest %= kD1;
  if (i == 4) {  // the last day of a leap cycle
    --i;
    rest += kD1;
  }
  y += i;
  year = static_cast<uint16_t>(y);
  const uint16_t* before = kDaysBeforeMonth[IsLeapYear(year) ? 1 : 0];
  uint16_t m = 12;
  while (m > 1 && rest < before[m]) --m;
  month = m;
  day = static_cast<uint16_t>(rest - before[m] + 1);
}

}  // namespace

bool IsLeapYear(uint16_t year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

uint16_t DaysInAMonth(uint16_t year, uint16_t month) {
  static constexpr uint16_t kDays[13] = {0, 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  if (month < 1 || month > 12) return 0;
  return month == 2 && IsLeapYear(year) ? 29 : kDays[month];
}

uint16_t DaysInMonth(TDateTime value) {
  uint16_t y, m, d;
  DecodeDate(value, y, m, d);
  return DaysInAMonth(y, m);
}

bool TryEncodeDate(uint16_t year, uint16_t month, uint16_t day, TDateTime& value) {
  if (year < 1 || year > 9999 || month < 1 || month > 12 || day < 1 ||
      day > DaysInAMonth(year, month)) {
    return false;
  }
  const int64_t y = year - 1;
  const int64_t days =
      y * 365 + y / 4 - y / 100 + y / 400 + kDaysBeforeMonth[IsLeapYear(year) ? 1 : 0][month] + day;
  value = static_cast<double>(days - DateDelta);
  return true;
}

bool TryEncodeTime(uint16_t hour, uint16_t min, uint16_t sec, uint16_t msec, TDateTime& value) {
  if (hour >= 24 || min >= 60 || sec >= 60 || msec >= 1000) return false;
  value = (hour * 3600000.0 + min * 60000.0 + sec * 1000.0 + msec) / MSecsPerDay;
  return true;
}

TDateTime EncodeDate(uint16_t year, uint16_t month, uint16_t day) {
  TDateTime v;
  if (!TryEncodeDate(year, month, day, v)) throw EConvertError(u"Invalid argument to date encode");
  return v;
}

TDateTime EncodeTime(uint16_t hour, uint16_t min, uint16_t sec, uint16_t msec) {
  TDateTime v;
  if (!TryEncodeTime(hour, min, sec, msec, v)) {
    throw EConvertError(u"Invalid argument to time encode");
  }
  return v;
}

bool TryEncodeDateTime(uint16_t year, uint16_t month, uint16_t day, uint16_t hour, uint16_t min,
                       uint16_t sec, uint16_t msec, TDateTime& value) {
  TDateTime date, time;
  if (!TryEncodeDate(year, month, day, date) || !TryEncodeTime(hour, min, sec, msec, time)) {
    return false;
  }
  value = date < 0 ? date - time : date + time;
  return true;
}

TDateTime EncodeDateTime(uint16_t year, uint16_t month, uint16_t day, uint16_t hour, uint16_t min,
                         uint16_t sec, uint16_t msec) {
  const TDateTime date = EncodeDate(year, month, day);
  const TDateTime time = EncodeTime(hour, min, sec, msec);
  return date < 0 ? date - time : date + time;
}

void DecodeDate(TDateTime value, uint16_t& year, uint16_t& month, uint16_t& day) {
  DayNumberToDate(ToTimeStamp(value).day, year, month, day);
}

void DecodeTime(TDateTime value, uint16_t& hour, uint16_t& min, uint16_t& sec, uint16_t& msec) {
  int32_t ms = ToTimeStamp(value).msec;
  hour = static_cast<uint16_t>(ms / 3600000);
  ms %= 3600000;
  min = static_cast<uint16_t>(ms / 60000);
  ms %= 60000;
  sec = static_cast<uint16_t>(ms / 1000);
  msec = static_cast<uint16_t>(ms % 1000);
}

void DecodeDateTime(TDateTime value, uint16_t& year, uint16_t& month, uint16_t& day, uint16_t& hour,
                    uint16_t& min, uint16_t& sec, uint16_t& msec) {
  DecodeDate(value, year, month, day);
  DecodeTime(value, hour, min, sec, msec);
}

uint16_t DayOfWeek(TDateTime value) {
  const int64_t day = ToTimeStamp(value).day;
  return static_cast<uint16_t>(day % 7 + 1);  // day 1 (0001-01-01) was a Monday
}

TDateTime Now() {
  using namespace std::chrono;
  const auto now = system_clock::now();
  const std::time_t secs = system_clock::to_time_t(now);
  std::tm local{};
  localtime_r(&secs, &local);
  const auto ms = duration_cast<milliseconds>(now.time_since_epoch()).count() % 1000;
  return EncodeDate(static_cast<uint16_t>(local.tm_year + 1900),
                    static_cast<uint16_t>(local.tm_mon + 1), static_cast<uint16_t>(local.tm_mday)) +
         EncodeTime(static_cast<uint16_t>(local.tm_hour), static_cast<uint16_t>(local.tm_min),
                    static_cast<uint16_t>(std::min(local.tm_sec, 59)),
                    static_cast<uint16_t>(ms < 0 ? 0 : ms));
}

TDateTime Date() { return std::trunc(Now()); }

TDateTime Time() {
  const TDateTime now = Now();
  return now - std::trunc(now);
}

// --- FormatDateTime -------------------------------------------------------------------------

namespace {

Char UpperAscii(Char c) { return (c >= u'a' && c <= u'z') ? static_cast<Char>(c - 32) : c; }

bool StartsWithNoCase(std::u16string_view s, size_t i, std::u16string_view word) {
  if (s.size() - i < word.size()) return false;
  for (size_t k = 0; k < word.size(); ++k) {
    if (UpperAscii(s[i + k]) != word[k]) return false;
  }
  return true;
}

class TDateTimeWriter {
 public:
  TDateTimeWriter(TDateTime value, const TFormatSettings& fs) : value_(value), fs_(fs) {
    DecodeDateTime(value, year_, month_, day_, hour_, min_, sec_, msec_);
  }

  String Run(std::u16string_view picture) {
    Append(picture.empty() ? std::u16string_view(u"c") : picture, 0);
    return std::move(out_);
  }

 private:
  // Nested formats (ddddd, c, t ...) are expanded two levels deep at most, so that settings
  // whose formats refer to each other cannot recurse without end.
  static constexpr int kMaxNesting = 2;

  void Append(std::u16string_view p, int depth) {
    size_t i = 0;
    Char last_letter = 0;
    while (i < p.size()) {
      const Char c = p[i];
      const Char token = UpperAscii(c);
      if (c == u'"' || c == u'\'') {
        const size_t close = p.find(c, i + 1);
        const size_t end = close == std::u16string_view::npos ? p.size() : close;
        out_.append(p.substr(i + 1, end - i - 1));
        i = end == p.size() ? end : end + 1;
        continue;
      }
      const size_t count = RunLength(p, i);
      if (token >= u'A' && token <= u'Z') {
        const size_t used = AppendToken(p, i, count, token, last_letter, depth);
        if (used > 0) {
          last_letter = (token == u'M' && last_letter == u'H') ? u'N' : token;
          i += used;
          continue;
        }
      }
      if (c == u'/') {
        out_.push_back(fs_.DateSeparator);
      } else if (c == u':') {
        out_.push_back(fs_.TimeSeparator);
      } else {
        out_.push_back(c);
      }
      ++i;
    }
  }

  static size_t RunLength(std::u16string_view p, size_t i) {
    size_t n = 1;
    while (i + n < p.size() && UpperAscii(p[i + n]) == UpperAscii(p[i])) ++n;
    return n;
  }

  // Appends the token starting at i; returns the characters used, 0 when it is not a token.
  size_t AppendToken(std::u16string_view p, size_t i, size_t count, Char token, Char last_letter,
                     int depth) {
    switch (token) {
      case u'D':
        AppendDay(count, depth);
        return count;
      case u'M':
        if (last_letter == u'H') {
          AppendNumber(min_, count >= 2 ? 2 : 1);
          return count;
        }
        AppendMonth(count);
        return count;
      case u'Y':
        AppendNumber(count <= 2 ? year_ % 100 : year_, count <= 2 ? 2 : 4);
        return count;
      case u'H':
        AppendNumber(Hour12(p, i + count) ? TwelveHour() : hour_, count >= 2 ? 2 : 1);
        return count;
      case u'N':
        AppendNumber(min_, count >= 2 ? 2 : 1);
        return count;
      case u'S':
        AppendNumber(sec_, count >= 2 ? 2 : 1);
        return count;
      case u'Z':
        AppendNumber(msec_, static_cast<int>(std::min<size_t>(count, 3)));
        return count;
      case u'T':
        Nested(count >= 2 ? fs_.LongTimeFormat : fs_.ShortTimeFormat, depth);
        return count;
      case u'C':
        Nested(fs_.ShortDateFormat, depth);
        if (hour_ != 0 || min_ != 0 || sec_ != 0 || msec_ != 0) {
          out_.push_back(u' ');
          Nested(fs_.LongTimeFormat, depth);
        }
        return 1;
      case u'A':
        return AppendMarker(p, i);
      default:
        return 0;
    }
  }

  void AppendDay(size_t count, int depth) {
    const uint16_t dow = DayOfWeek(value_);
    switch (count) {
      case 1:
      case 2:
        AppendNumber(day_, static_cast<int>(count));
        break;
      case 3:
        out_.append(fs_.ShortDayNames[(dow + 6) % 7]);
        break;
      case 4:
        out_.append(fs_.LongDayNames[(dow + 6) % 7]);
        break;
      case 5:
        Nested(fs_.ShortDateFormat, depth);
        break;
      default:
        Nested(fs_.LongDateFormat, depth);
        break;
    }
  }

  void AppendMonth(size_t count) {
    if (count <= 2) {
      AppendNumber(month_, static_cast<int>(count));
    } else if (month_ >= 1 && month_ <= 12) {
      out_.append(count == 3 ? fs_.ShortMonthNames[month_ - 1] : fs_.LongMonthNames[month_ - 1]);
    }
  }

  // "am/pm" and "a/p" copy the marker in the picture's own letter case; "ampm" uses the
  // settings' strings. A lone "a" is an ordinary character.
  size_t AppendMarker(std::u16string_view p, size_t i) {
    const bool pm = hour_ >= 12;
    if (StartsWithNoCase(p, i, u"AM/PM")) {
      out_.append(p.substr(pm ? i + 3 : i, 2));
      return 5;
    }
    if (StartsWithNoCase(p, i, u"A/P")) {
      out_.push_back(p[pm ? i + 2 : i]);
      return 3;
    }
    if (StartsWithNoCase(p, i, u"AMPM")) {
      out_.append(pm ? fs_.TimePMString : fs_.TimeAMString);
      return 4;
    }
    return 0;
  }

  // An hour uses the 12-hour clock when a marker follows it anywhere outside quotes.
  static bool Hour12(std::u16string_view p, size_t from) {
    Char quote = 0;
    for (size_t i = from; i < p.size(); ++i) {
      if (quote != 0) {
        if (p[i] == quote) quote = 0;
      } else if (p[i] == u'"' || p[i] == u'\'') {
        quote = p[i];
      } else if (StartsWithNoCase(p, i, u"AM/PM") || StartsWithNoCase(p, i, u"A/P") ||
                 StartsWithNoCase(p, i, u"AMPM")) {
        return true;
      }
    }
    return false;
  }

  uint16_t TwelveHour() const {
    if (hour_ == 0) return 12;
    return hour_ > 12 ? static_cast<uint16_t>(hour_ - 12) : hour_;
  }

  void Nested(const String& picture, int depth) {
    if (depth < kMaxNesting) Append(picture, depth + 1);
  }

  void AppendNumber(unsigned value, int min_digits) {
    Char buf[8];
    int n = 0;
    do {
      buf[n++] = static_cast<Char>(u'0' + value % 10);
      value /= 10;
    } while (value != 0 && n < 8);
    for (int k = n; k < min_digits; ++k) out_.push_back(u'0');
    while (n > 0) out_.push_back(buf[--n]);
  }

  TDateTime value_;
  const TFormatSettings& fs_;
  uint16_t year_ = 0, month_ = 0, day_ = 0, hour_ = 0, min_ = 0, sec_ = 0, msec_ = 0;
  String out_;
};

}  // namespace

String FormatDateTime(const String& picture, TDateTime value, const TFormatSettings& settings) {
  return TDateTimeWriter(value, settings).Run(picture);
}

String FormatDateTime(const String& picture, TDateTime value) {
  return FormatDateTime(picture, value, FormatSettings());
}

String DateToStr(TDateTime value) { return FormatDateTime(u"ddddd", value); }
String TimeToStr(TDateTime value) { return FormatDateTime(u"tt", value); }
String DateTimeToStr(TDateTime value) { return FormatDateTime(u"c", value); }

}  // namespace vex
