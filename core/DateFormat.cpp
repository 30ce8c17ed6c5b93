// The format language of dates and times: letters stand for fields, all else for itself.

#include "core/Date.h"
#include "core/DateNames.h"
#include "core/Number.h"

namespace korb {

namespace {

const char *NameOf(const char *const *names, int32_t count, int32_t number) {
  return number >= 1 && number <= count ? names[number - 1] : "";
}

void AppendNumber(String &out, int32_t value, bool doubled) {
  out.append_format(doubled ? "%02d" : "%d", value);
}

void AppendName(String &out, const char *name, bool doubled) {
  if (doubled)
    out += name;
  else
    out.append_format("%.3s", name);
}

/// The letters that stand for words.
bool AppendWordField(String &out, const Date &date, char letter, bool doubled) {
  switch (letter) {
  case 'D':
    out += doubled ? FormatOrdinalWords(date.day) : FormatOrdinal(date.day);
    return true;
  case 'Y':
    if (doubled) {
      out += YearToWords(date.year);
    } else {
      if (date.year % 100 < 10)
        out += "Oh ";
      out += YearToWords(date.year % 100);
    }
    return true;
  default:
    return false;
  }
}

/// Appends what the letter stands for in a date; false when it is none of a date's letters, or stands for words.
bool AppendDateField(String &out, const Date &date, char letter, bool doubled) {
  switch (letter) {
  case 'd':
    AppendNumber(out, date.day, doubled);
    return true;
  case 'm':
    AppendNumber(out, date.month, doubled);
    return true;
  case 'M':
    AppendName(out, NameOf(kMonthNames, 12, date.month), doubled);
    return true;
  case 'w':
    AppendNumber(out, date.weekday, doubled);
    return true;
  case 'W':
    AppendName(out, NameOf(kWeekdayNames, 7, date.weekday), doubled);
    return true;
  case 'y':
    out.append_format(doubled ? "%04d" : "%02d", doubled ? date.year : date.year % 100);
    return true;
  default:
    return false;
  }
}

bool AppendTimeField(String &out, const Time &time, char letter, bool doubled) {
  switch (letter) {
  case 'h':
    AppendNumber(out, time.hour12(), doubled);
    return true;
  case 'H':
    AppendNumber(out, time.hour, doubled);
    return true;
  case 'i':
    AppendNumber(out, time.minute, doubled);
    return true;
  case 's':
    AppendNumber(out, time.second, doubled);
    return true;
  default:
    return false;
  }
}

using WordField = bool (*)(String &, const Date &, char, bool);

/// Each part, and the words, may be missing; its letters are then copied.
String FormatParts(const Date *date, const Time *time, WordField words, const char *format) {
  String out;
  while (*format) {
    const char c = *format;
    if (time && (c == 'a' || c == 'A') && format[1] == (c == 'a' ? 'p' : 'P')) {
      out += c == 'a' ? (time->is_am() ? "a" : "p") : (time->is_am() ? "a.m." : "p.m.");
      format += 2;
      continue;
    }
    const bool doubled = format[1] == c;
    if ((date && (AppendDateField(out, *date, c, doubled) || (words && words(out, *date, c, doubled)))) ||
        (time && AppendTimeField(out, *time, c, doubled))) {
      format += doubled ? 2 : 1;
      continue;
    }
    out += c;
    ++format;
  }
  return out;
}

const char *Or(const char *format, const char *fallback) {
  return format && *format ? format : fallback;
}

} // namespace

String Date::format(const char *format_text) const {
  return FormatParts(this, nullptr, AppendWordField, Or(format_text, "m/d/y"));
}

String Date::format_plain(const char *format_text) const {
  return FormatParts(this, nullptr, nullptr, format_text);
}

String Time::format(const char *format_text) const {
  return FormatParts(nullptr, this, nullptr, Or(format_text, "h:ii:ssap"));
}

String DateTime::format(const char *format_text) const {
  return FormatParts(&date, &time, AppendWordField, Or(format_text, kDateTimeFormat));
}

String DateTime::format_plain(const char *format_text) const {
  return FormatParts(&date, &time, nullptr, format_text);
}

} // namespace korb
