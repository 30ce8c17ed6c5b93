// Calendar dates and times of day, and the dates of files.
#pragma once

#include <cstdint>

#include "core/String.h"

namespace korb {

/// The date of a file, as archives and the file layer hold it: local time. A month of 0 means that there is no date. 24
/// bytes, stored as they stand.
struct FileDate {
  int32_t year;
  int32_t month;
  int32_t day;
  int32_t hour;
  int32_t minute;
  int32_t second;

  bool has_date() const { return month != 0; }
};

/// Field by field, from the year down: -1, 0 or 1.
int32_t CompareFileDates(const FileDate &a, const FileDate &b);

/// A day. 20 bytes that archives hold as they stand, so any field may hold anything: ask is_invalid before use. All
/// zeros is no date.
struct Date {
  int32_t julian = 0;  ///< Julian day number less one; 0 means no date
  int32_t month = 0;   ///< 1 to 12
  int32_t day = 0;     ///< of the month, from 1
  int32_t year = 0;    ///< all digits
  int32_t weekday = 0; ///< 1 Sunday to 7 Saturday

  /// Stores the three and works out the others; a month below 1 leaves those as they are, and a day whose number 32
  /// bits can't hold has none and is_invalid.
  void set(int32_t month_value, int32_t day_value, int32_t year_value);
  /// As `set`; a year of 100 or below goes to the century that brings it nearest to `current_year`.
  void set_expanded(int32_t month_value, int32_t day_value, int32_t year_value, int32_t current_year);
  /// Stores the day number and works out the others; 0 clears them.
  void set_julian(int32_t n);
  void clear() { *this = Date(); }

  /// Reads a date from the front of `text` and moves `text` past it. Forms: "1/5/2001", "1.5.2001", "5-Jan-2001",
  /// "5 Jan 2001", "Jan 5, 2001", "Friday, Jan 5th, 2001", "January 2001", "1/2001". False, and cleared, on anything
  /// else; an impossible day is read all the same and is_invalid.
  bool parse(const char *&text, bool day_first, int32_t current_year);

  /// `d dd D DD m mm M MM w ww W WW y yy Y YY`; null or empty takes "m/d/y". There is no escape: every such letter is
  /// replaced, all else is copied.
  String format(const char *format_text) const;
  /// The same without D and Y, which are copied: a program that calls this one alone need not carry their words. The
  /// format is not null, and an empty one gives an empty text.
  String format_plain(const char *format_text) const;

  /// False only for a day that the calendar has.
  bool is_invalid() const;
  /// -1, 0 or 1 by the day; an invalid date is below every valid one and equal to another invalid one.
  int32_t compare(const Date &other) const;

  /// By the Julian calendar before 1582.
  static bool is_leap(int32_t year);
  /// 0 for a month that does not exist.
  static int32_t days_in_month(int32_t month, int32_t year);
};

/// A time of day. A cleared one is invalid, so that midnight can be told from no time.
struct Time {
  int32_t hour = -1; ///< 0 to 23
  int32_t minute = -1;
  int32_t second = -1;

  bool is_invalid() const;
  bool is_am() const { return hour < 12; }
  /// 12 for midnight, 1 to 12 else.
  int32_t hour12() const;
  void clear() { *this = Time(); }
  /// "15:05", "3:05:09 pm", "3:05p". False, and cleared, on anything else. Moves `text` past what it read.
  bool parse(const char *&text);
  /// `h hh H HH i ii s ss ap AP`; null or empty takes "h:ii:ssap".
  String format(const char *format_text) const;
};

/// The default formats, this one and the two above, are constants: no run has a reason to set others.
inline constexpr const char *kDateTimeFormat = "m/d/y h:ii:ssap";

/// A date and perhaps a time.
struct DateTime {
  Date date;
  Time time;

  /// A date, one optional comma, and a time. True when there is a date; the time stays cleared when there is none.
  bool parse(const char *text, bool day_first, int32_t current_year);
  /// The letters of both; null or empty takes kDateTimeFormat.
  String format(const char *format_text) const;
  String format_plain(const char *format_text) const; ///< as that of a Date
  /// By the date, then by the three fields of the time.
  int32_t compare(const DateTime &other) const;

  /// Cleared when `file_date` is none.
  static DateTime from(const FileDate &file_date);
  /// None when the date is invalid; midnight when only the time is.
  FileDate to_file_date() const;
};

} // namespace korb
