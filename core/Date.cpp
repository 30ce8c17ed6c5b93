#include "core/Date.h"

#include "core/Arithmetic.h"
#include "core/DateNames.h"

namespace korb {

namespace {

constexpr int32_t kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
constexpr NumberOptions kPlainNumber = NUMBER_SKIP_SPACE | NUMBER_SKIP_SPACE_AFTER | NUMBER_NO_SIGN;

int32_t Truncated(double value) {
  return static_cast<int32_t>(value);
}

int64_t Distance(int64_t a, int64_t b) {
  return a < b ? b - a : a - b;
}

/// Sunday is 1. No date has no weekday, and what lies before the calendar may have none.
int32_t WeekdayOf(int32_t julian) {
  return julian == 0 ? 0 : static_cast<int32_t>((int64_t{julian} + 2) % 7) + 1;
}

int32_t ExpandYear(int32_t year, int32_t current_year) {
  if (year > 100)
    return year;
  const int64_t base = current_year - current_year % 100;
  const int64_t candidates[] = {year + base - 100, year + base, year + base + 100};
  int64_t best = candidates[0];
  for (const int64_t candidate : candidates)
    if (Distance(candidate, current_year) <= Distance(best, current_year)) // the later one wins a tie
      best = candidate;
  return static_cast<int32_t>(best);
}

bool SkipChar(const char *&text, char c) {
  text = text_skip_space(text);
  if (*text != c)
    return false;
  text = text_skip_space(text + 1);
  return true;
}

bool SkipWord(const char *&text, const char *word, int32_t length) {
  if (text_compare_no_case(text, word, length) != 0)
    return false;
  text += length;
  return true;
}

/// Index of the name at `text`, from 1, or 0. The whole name or its first 3 letters are skipped.
int32_t SkipName(const char *&text, const char *const *names, int32_t count) {
  text = text_skip_space(text);
  for (int32_t i = 0; i < count; ++i)
    if (SkipWord(text, names[i], text_length(names[i])) || SkipWord(text, names[i], 3))
      return i + 1;
  return 0;
}

/// "Jan 5, 2001", "January 2001": fills the three, false when it is neither.
bool ParseMonthFirst(const char *&text, int32_t &month, int32_t &day, int32_t &year) {
  month = SkipName(text, kMonthNames, 12);
  if (month == 0)
    return false;
  day = text_skip_number(text, kPlainNumber);
  if (day == 0)
    return false;
  // Not "nd": who writes it gets what the number alone gives.
  static_cast<void>(SkipWord(text, "th", 2) || SkipWord(text, "st", 2) || SkipWord(text, "rd", 2));
  SkipChar(text, ',');
  const char *before = text;
  year = text_skip_number(text, kPlainNumber);
  const bool is_hour = *text == ':';
  if (year < 1 || is_hour) {
    if (is_hour)
      text = before; // belongs to the time after the date
    year = day;
    day = 1;
  }
  return true;
}

/// What follows the first number: "/5/2001", "/2001", "-Jan-2001", " Jan 2001".
bool ParseNumberFirst(const char *&text, bool day_first, int32_t &month, int32_t &day, int32_t &year) {
  if (is_alpha(*text) || *text == '-') {
    day = month;
    SkipChar(text, '-');
    month = SkipName(text, kMonthNames, 12);
    if (month == 0)
      return false;
    SkipChar(text, '-');
    year = text_skip_number(text, kPlainNumber);
    return true;
  }
  if (!SkipChar(text, '/') && !SkipChar(text, '.'))
    return false;
  day = text_skip_number(text, kPlainNumber);
  if (day == 0)
    return false;
  if (SkipChar(text, '/') || SkipChar(text, '.')) {
    year = text_skip_number(text, kPlainNumber);
    if (day_first) {
      const int32_t first = month;
      month = day;
      day = first;
    }
  } else {
    year = day;
    day = 1;
  }
  return true;
}

} // namespace

int32_t CompareFileDates(const FileDate &a, const FileDate &b) {
  return CompareFields(a, b);
}

void Date::set(int32_t month_value, int32_t day_value, int32_t year_value) {
  month = month_value;
  day = day_value;
  year = year_value;
  if (month < 1)
    return;
  // Numbers of an archive may lie anywhere; the sums below hold for any year that a date can have.
  const double y = year < 0 ? year + 1.0 : year;
  const double years = month < 3 ? y - 1 : y;
  const double months = month < 3 ? month + 12.0 : month;
  double gregorian = 0;
  if (month * 100.0 + day + years * 10000 > 15821014) {
    const int32_t century = Truncated(years / 100);
    gregorian = 2 - century + century / 4;
  }
  const double sum = static_cast<double>(static_cast<int64_t>(365.25 * years)) +
                     static_cast<double>(static_cast<int64_t>(30.6001 * (months + 1))) + day + 1720994 + gregorian;
  julian = sum > -2147483648.0 && sum < 2147483647.0 ? Truncated(sum) : 0;
  weekday = WeekdayOf(julian);
}

void Date::set_expanded(int32_t month_value, int32_t day_value, int32_t year_value, int32_t current_year) {
  set(month_value, day_value, ExpandYear(year_value, current_year));
}

void Date::set_julian(int32_t n) {
  julian = n;
  if (n == 0) {
    clear();
    return;
  }
  double j = n + 1.0;
  if (j > 2299160) {
    const int32_t a = Truncated((j - 1867216.25) / 36524.25);
    j += 1 + a - a / 4;
  }
  const double b = j < 1721424 ? j + 1158 : j + 1524;
  const int32_t c = Truncated((b - 122.1) / 365.25);
  const double d = static_cast<double>(static_cast<int64_t>(365.25 * c));
  const int32_t e = Truncated((b - d) / 30.6001);
  day = Truncated(b - d) - Truncated(30.6001 * e);
  month = e < 14 ? e - 1 : e - 13;
  year = month < 3 ? c - 4715 : c - 4716;
  weekday = WeekdayOf(julian);
}

bool Date::is_leap(int32_t year) {
  return year % 4 == 0 && (year < 1582 || year % 100 != 0 || year % 400 == 0);
}

int32_t Date::days_in_month(int32_t month, int32_t year) {
  if (month < 1 || month > 12)
    return 0;
  return kDays[month - 1] + (month == 2 && is_leap(year) ? 1 : 0);
}

bool Date::is_invalid() const {
  return month < 1 || month > 12 || weekday < 1 || weekday > 7 || day < 1 || day > days_in_month(month, year);
}

int32_t Date::compare(const Date &other) const {
  if (is_invalid() || other.is_invalid())
    return is_invalid() == other.is_invalid() ? 0 : (is_invalid() ? -1 : 1);
  return CompareIntArrays(&julian, &other.julian, 1);
}

bool Date::parse(const char *&text, bool day_first, int32_t current_year) {
  clear();
  text = text_skip_space(text);
  if (is_alpha(*text) && SkipName(text, kWeekdayNames, 7))
    SkipChar(text, ',');
  text = text_skip_space(text);
  int32_t month_value;
  int32_t day_value = 0;
  int32_t year_value = 0;
  bool read;
  if (is_alpha(*text)) {
    read = ParseMonthFirst(text, month_value, day_value, year_value);
  } else {
    month_value = text_skip_number(text, kPlainNumber);
    read = month_value != 0 && ParseNumberFirst(text, day_first, month_value, day_value, year_value);
  }
  if (read)
    set_expanded(month_value, day_value, year_value, current_year);
  return read;
}

bool Time::is_invalid() const {
  return hour < 0 || hour > 23 || minute < 0 || minute > 59 || second < 0 || second > 59;
}

int32_t Time::hour12() const {
  return hour == 0 ? 12 : (hour <= 12 ? hour : hour - 12);
}

bool Time::parse(const char *&text) {
  clear();
  text = text_skip_space(text);
  if (!is_digit(*text))
    return false;
  hour = text_skip_number(text, kPlainNumber);
  if (!SkipChar(text, ':')) {
    clear();
    return false;
  }
  minute = text_skip_number(text, kPlainNumber);
  second = 0;
  if (SkipChar(text, ':'))
    second = text_skip_number(text, kPlainNumber);
  if (is_invalid()) {
    clear();
    return false;
  }
  if (to_lower_char(*text) == 'p' && hour < 12)
    hour += 12;
  return true;
}

bool DateTime::parse(const char *text, bool day_first, int32_t current_year) {
  time.clear();
  if (!date.parse(text, day_first, current_year))
    return false;
  SkipChar(text, ',');
  time.parse(text);
  return true;
}

int32_t DateTime::compare(const DateTime &other) const {
  const int32_t days = date.compare(other.date);
  return days != 0 ? days : CompareFields(time, other.time);
}

DateTime DateTime::from(const FileDate &file_date) {
  DateTime result;
  if (!file_date.has_date())
    return result;
  result.date.set(file_date.month, file_date.day, file_date.year);
  result.time.hour = file_date.hour;
  result.time.minute = file_date.minute;
  result.time.second = file_date.second;
  return result;
}

FileDate DateTime::to_file_date() const {
  if (date.is_invalid())
    return FileDate{};
  if (time.is_invalid())
    return FileDate{date.year, date.month, date.day, 0, 0, 0};
  return FileDate{date.year, date.month, date.day, time.hour, time.minute, time.second};
}

} // namespace korb
