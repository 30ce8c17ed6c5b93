// Dates and times: the calendar, the forms that are read, the letters that are written, and the tagged value.
#include "core/Date.h"
#include "core/Value.h"
#include "tests/support/Testing.h"

namespace {

constexpr int32_t kThisYear = 2025;

Date DateOf(int32_t month, int32_t day, int32_t year) {
  Date date;
  date.set(month, day, year);
  return date;
}

/// "year-month-day", "none" for a cleared date, and "?" behind one that the calendar does not have.
std::string Show(const Date &date) {
  if (date.month == 0 && date.day == 0 && date.year == 0 && date.julian == 0 && date.weekday == 0)
    return "none";
  return std::to_string(date.year) + "-" + std::to_string(date.month) + "-" + std::to_string(date.day) +
         (date.is_invalid() ? "?" : "");
}

std::string Parsed(const char *text, bool day_first = false) {
  Date date = DateOf(1, 1, 1999); // what was there must not show through
  const bool read = date.parse(text, day_first, kThisYear);
  CHECK(read == (Show(date) != "none"));
  return Show(date);
}

std::string ParsedTime(const char *text) {
  Time time{1, 2, 3};
  const bool read = time.parse(text);
  CHECK(read != time.is_invalid());
  return read ? std::string(time.format("H:ii:ss")) : "none";
}

} // namespace

TEST_CASE("each day has a number and a weekday, from which it comes back") {
  const Date known = DateOf(1, 1, 2000);
  CHECK(known.julian == 2451544);
  CHECK(known.weekday == 7); // a Saturday

  // Every day of 800 years, the change of calendars and its following January and February apart.
  int32_t last = DateOf(12, 31, 1599).julian;
  int32_t weekday = DateOf(12, 31, 1599).weekday;
  for (int32_t year = 1600; year < 2400; ++year) {
    for (int32_t month = 1; month <= 12; ++month) {
      for (int32_t day = 1; day <= Date::days_in_month(month, year); ++day) {
        const Date date = DateOf(month, day, year);
        Date back;
        back.set_julian(date.julian);
        weekday = weekday % 7 + 1;
        const bool good = date.julian == ++last && date.weekday == weekday && back.year == year &&
                          back.month == month && back.day == day && back.weekday == weekday && !date.is_invalid();
        if (!good)
          FAIL(Show(date), " ", date.julian, " back ", Show(back));
      }
    }
  }
}

TEST_CASE("days before the change of calendars come back from their numbers, too") {
  CHECK(DateOf(10, 15, 1582).julian - DateOf(10, 4, 1582).julian == 1);
  for (const Date &date : {DateOf(12, 31, -1), DateOf(1, 1, 1), DateOf(2, 29, 1500), DateOf(12, 31, -44)}) {
    Date back;
    back.set_julian(date.julian);
    CHECK(Show(back) == Show(date));
  }
  Date none = DateOf(1, 1, 2000);
  none.set_julian(0);
  CHECK(Show(none) == "none");
}

TEST_CASE("leap years are those of their calendar") {
  for (const int32_t year : {1500, 2000, 2024})
    CHECK_MESSAGE(Date::is_leap(year), year);
  for (const int32_t year : {1700, 1900, 2025})
    CHECK_MESSAGE(!Date::is_leap(year), year);
  CHECK(Date::days_in_month(0, 2000) == 0);
  CHECK(Date::days_in_month(13, 2000) == 0);
}

TEST_CASE("a date of any numbers is one that no calendar has") {
  Date wild;
  wild.set(INT32_MAX, INT32_MAX, INT32_MIN); // an archive may hold anything
  CHECK(wild.is_invalid());
  wild.set_julian(INT32_MIN);
  CHECK(wild.is_invalid());
  wild.set_julian(INT32_MAX);
}

TEST_CASE("one date is read in many forms") {
  // A weekday is believed.
  for (const char *text :
       {"1/5/2001", " 1 / 5 / 2001 ", "1.5.2001", "1/5/2001 whatever", "5-Jan-01", "5 jan 2001", "5-January-2001",
        "Jan 5, 2001", "Jan 5th, 2001", "Friday, January 5, 2001", "fri 1/5/2001", "Monday,1/5/2001"})
    CHECK_MESSAGE(Parsed(text) == "2001-1-5", std::string(text));
}

TEST_CASE("what a date leaves out is the first, or this century, or this year") {
  struct Row {
    const char *text, *date;
  };
  // In "2nd" the ending is none, so the 2 is the year; 2075 is as near as 1975, and later.
  for (const Row &row :
       {Row{"3/2001", "2001-3-1"}, Row{"5 Jan", "2000-1-5"}, Row{"JAN 1ST 2001", "2001-1-1"},
        Row{"Jan 3 rd 2001", "2001-1-3"}, Row{"Jan 2nd, 2001", "2002-1-1"}, Row{"Jan 5", "2005-1-1"},
        Row{"March 2001", "2001-3-1"}, Row{"2/29/1500", "1500-2-29"}, Row{"2/29/1900", "1900-2-29?"},
        Row{"13/1/2001", "2001-13-1?"}, Row{"1/1/99999999", "99999999-1-1?"}, Row{"1/1/75", "2075-1-1"},
        Row{"1/1/76", "1976-1-1"}, Row{"1/1/100", "2000-1-1"}, Row{"1/1/101", "101-1-1"}}) {
    CAPTURE(row.text);
    CHECK(Parsed(row.text) == row.date);
  }
}

TEST_CASE("a day comes first where it is told to") {
  CHECK(Parsed("1/5/2001", true) == "2001-5-1");
  CHECK(Parsed("3/2001", true) == "2001-3-1");
}

TEST_CASE("what is no date is not read") {
  for (const char *text : {"", "  ", "Sept 5 2001", "Tues 1/5/2001", "Foo 5 2001", "Jan", "Jan 0, 2001", "0/5/2001",
                           "1/0/2001", "2001-01-05", "5-1-2001", "15", "-1/5/2001", "1,5,2001"})
    CHECK_MESSAGE(Parsed(text) == "none", std::string(text));
  const char *none = nullptr;
  CHECK_FALSE(Date().parse(none, false, kThisYear));
}

TEST_CASE("times are read, and a cleared one is no time") {
  struct Row {
    const char *text, *time;
  };
  for (const Row &row :
       {Row{"15:05", "15:05:00"}, Row{" 3:05:09 pm", "15:05:09"}, Row{"3:05p", "15:05:00"},
        Row{"3 : 05 : 09", "3:05:09"}, Row{"12:30 am", "12:30:00"}, Row{"12:30p", "12:30:00"}, Row{"0:00p", "12:00:00"},
        Row{"0:00", "0:00:00"}, Row{"24:00", "none"}, Row{"1:60", "none"}, Row{"1:00:60", "none"}, Row{"15", "none"},
        Row{"x", "none"}, Row{"", "none"}, Row{"4294967295:00p", "none"}}) {
    CAPTURE(row.text);
    CHECK(ParsedTime(row.text) == row.time);
  }
}

TEST_CASE("a moment is read as a date, and a time if there is one") {
  struct Row {
    const char *text, *shown;
  };
  for (const Row &row : {Row{"1/5/2001 15:05", "1/5/01 3:05:00p"}, Row{"Jan 5, 2001, 3:05:09 pm", "1/5/01 3:05:09p"},
                         Row{"January 2001 10:30", "1/1/01 10:30:00a"}, Row{"Jan 5 10:30", "1/1/05 10:30:00a"}}) {
    CAPTURE(row.text);
    DateTime moment;
    CHECK(moment.parse(row.text, false, kThisYear));
    CHECK(std::string(moment.format(nullptr)) == row.shown);
  }
  DateTime moment;
  CHECK(moment.parse("1/5/2001", false, kThisYear));
  CHECK(moment.time.is_invalid());
  CHECK_FALSE(moment.parse("10:30", false, kThisYear));
}

TEST_CASE("dates and times are written by letters") {
  const DateTime moment{DateOf(1, 5, 2001), Time{15, 5, 9}};
  struct Row {
    const char *letters, *text;
  };
  for (const Row &row :
       {Row{"d dd D DD", "5 05 5th Fifth"}, Row{"m mm M MM", "1 01 Jan January"}, Row{"w ww W WW", "6 06 Fri Friday"},
        Row{"y yy Y YY", "01 2001 Oh One Two Thousand One"}, Row{"MM D, yy", "January 5th, 2001"},
        Row{"h hh H HH", "3 03 15 15"}, Row{"i ii s ss", "5 05 9 09"}, Row{"h:ii:ssap AP a A", "3:05:09p p.m. a A"},
        Row{"today", "to5a01"}, Row{"", "1/5/01 3:05:09p"}}) {
    CAPTURE(row.letters);
    CHECK(std::string(moment.format(row.letters)) == row.text);
  }
  CHECK(std::string(moment.format_plain("D Y dd HH")) == "D Y 05 15");
}

TEST_CASE("the letters of what a value does not have stay") {
  const DateTime moment{DateOf(1, 5, 2001), Time{15, 5, 9}};
  CHECK(std::string(moment.date.format("hh H ii s ap AP d")) == "hh H ii s ap AP 5");
  CHECK(std::string(moment.time.format("d H")) == "d 15");
}

TEST_CASE("years, months and hours at their edges are written") {
  CHECK(std::string(DateOf(1, 1, 2000).format("Y")) == "Oh Zero");
  CHECK(std::string(DateOf(1, 1, 1999).format("Y YY")) == "Ninety Nine Nineteen Ninety Nine");
  CHECK(std::string(DateOf(13, 1, 1999).format("[M MM] m")) == "[ ] 13");
  CHECK(std::string(Time{0, 0, 0}.format("hAP")) == "12a.m.");
}

TEST_CASE("dates, and moments, have an order, where the calendar has both") {
  const Date early = DateOf(1, 31, 2001), late = DateOf(2, 1, 2001), bad = DateOf(2, 30, 2001);
  CHECK(early.compare(late) == -1);
  CHECK(late.compare(early) == 1);
  CHECK(bad.compare(early) == -1);
  CHECK(early.compare(Date()) == 1);
  CHECK(bad.compare(Date()) == 0);
  CHECK(DateTime{early, Time{10, 0, 9}}.compare(DateTime{early, Time{10, 1, 0}}) == -1);
  CHECK(DateTime{late, Time{0, 0, 0}}.compare(DateTime{early, Time{23, 0, 0}}) == 1);
}

TEST_CASE("a file's date becomes a moment, and comes back") {
  const FileDate file{2001, 1, 5, 15, 5, 9};
  CHECK(std::string(DateTime::from(file).format(nullptr)) == "1/5/01 3:05:09p");
  CHECK(CompareFileDates(DateTime::from(file).to_file_date(), file) == 0);
  CHECK_FALSE(DateTime::from(FileDate{}).to_file_date().has_date());
}

TEST_CASE("a value turns into text, number and truth by its kind") {
  const Date date = DateOf(1, 5, 2001);
  struct Row {
    Value value;
    const char *text;
    int32_t number;
    bool truth;
  };
  for (const Row &row : {Row{Value(), "", 0, false}, Row{Value(int64_t{0xFFFFFFFF}), "4294967295", -1, true},
                         Row{Value(int64_t{0}), "0", 0, false}, Row{Value(-2.75), "-2.75", -2, true},
                         Row{Value(3e9), "3000000000", 0, true}, Row{Value("12 files"), "12 files", 12, true},
                         Row{Value("No"), "No", 0, false}, Row{Value(date), "1/5/2001", 0, false},
                         Row{Value(Time{9, 5, 0}), "09:05:00", 0, false},
                         Row{Value(DateTime{date, Time{0, 0, 0}}), "1/5/2001 00:00:00", 0, false},
                         Row{Value(DateTime{date, Time{}}), "1/5/2001", 0, false}}) {
    CAPTURE(row.text);
    CHECK(std::string(row.value.to_string()) == row.text);
    CHECK(row.value.to_int() == row.number);
    CHECK(row.value.to_boolean() == row.truth);
  }
}
