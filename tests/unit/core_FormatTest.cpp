// Formatting: what printf would give, and what no printf would survive.
#include "tests/support/Testing.h"
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>

namespace {

template <class... T>
std::string Text(const char *format, const T &...values) {
  const String text = str_format(format, values...);
  CHECK(text.length() == static_cast<int32_t>(strlen(text.c_str())));
  return text.c_str();
}

template <class T>
std::string Platform(const char *format, T value) {
  char text[2000];
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"
  snprintf(text, sizeof text, format, value);
#pragma GCC diagnostic pop
  return text;
}

} // namespace

TEST_CASE("integers, characters and texts print as printf prints them") {
  const int values[] = {0, 1, -1, 7, 42, -100, 65535, 2147483647, -2147483647 - 1};
  const char *const widths[] = {"",  "1",   "5",    "012", "-8", "+",   " ",    "+ 9",
                                "#", "#10", "#010", ".0",  ".3", "8.3", "-8.5", "08.3"};
  for (const char *width : widths) {
    for (const char letter : {'d', 'i', 'u', 'x', 'X', 'o', 'c'}) {
      if (letter == 'c' && strpbrk(width, "0+# .") != nullptr)
        continue; // means nothing there
      if (strpbrk(width, "+ ") != nullptr && strchr("uxXo", letter) != nullptr)
        continue;
      if (width[0] == '#' && strchr("diu", letter) != nullptr)
        continue;
      const std::string format = std::string("<%") + width + letter + ">";
      for (const int value : values)
        if (letter != 'c' || value > 0)
          CHECK_MESSAGE(Text(format.c_str(), value) == Platform(format.c_str(), value), std::string(format), " of ",
                        value);
    }
  }
  for (const char *format : {"%s", "%10s|", "%-10s|", "%.2s", "%10.3s", "%.0s", "%5.9s"})
    CHECK_MESSAGE(Text(format, "Setup") == Platform(format, "Setup"), std::string(format));
}

TEST_CASE("arguments bring their own width and kind") {
  const String text("text");
  const char *const none = nullptr;
  const uint32_t high = 0xFFFFFFFF;
  CHECK(Text("%d %i %u", int64_t{-5000000000}, uint64_t{1} << 63, UINT64_MAX) ==
        "-5000000000 -9223372036854775808 18446744073709551615");
  CHECK(Text("%I64x %lld %ld %hd", int64_t{-1}, int64_t{1} << 40, 70000, 70000) ==
        "ffffffffffffffff 1099511627776 70000 70000");
  CHECK(Text("%d %u %X", high, -1, -1) == "-1 4294967295 FFFFFFFF");
  CHECK(Text("%d%c%c", 'A', 'B', 67) == "65BC");
  CHECK(Text("%s|%s|%s", text, "literal", none) == "text|literal|");
  CHECK(Text("%*d|%-*d|%*d", 4, 1, 4, 2, -4, 3) == "   1|2   |3   ");
  CHECK(Text("%.*s|%.*s|%.*f", 2, "abc", -1, "abc", 1, 2.25) == "ab|abc|2.2");
  CHECK(Text("100%%") == "100%");
  CHECK(Text("none", 1, "two") == "none");
}

TEST_CASE("a format that does not match its arguments comes out as it is") {
  for (const char *format : {"%s", "%f", "%*d", "%*5d", "%n", "%p", "%", "%-08", "%ll"})
    CHECK(Text(format, 5) == format);
  CHECK(Text("%d") == "%d");
  CHECK(Text("%d", "five") == "%d");
  CHECK(Text("%d", 5.0) == "%d");
  CHECK(Text("%*d", "x", 5) == "%*d");
  CHECK(Text("ok %d, then %s", 1, 2) == "ok %d, then %s");
  CHECK(Text("%65535d %n", 1).substr(0, 20) == "%65535d %n"); // the fault comes after all that would be kept
}

TEST_CASE("output ends at its first NUL and at 65,535 bytes") {
  CHECK(Text("drive %c: is full", '\0') == "drive ");
  CHECK(Text("%.65535f", 1.0) == "1." + std::string(65533, '0'));
  const std::string huge(100000, 'x');
  for (const std::string &text : {Text("%99999d", 1), Text("%.99999d", 1), Text("%70000f|%70000s", 1.0, "x"),
                                  Text("%s", huge.c_str()), Text(huge.c_str()), Text((huge + "%d").c_str())}) {
    CAPTURE(text.substr(0, 10));
    CHECK(text.size() == 65535);
  }
}

TEST_CASE("format replaces, append_format appends, and a string may be its own argument") {
  String text("abc");
  text.format("<%s>", text);
  CHECK(text == "<abc>");
  text.append_format("-%s", text.c_str());
  CHECK(text == "<abc>-<abc>");
  text.append_format(nullptr);
  CHECK(text == "<abc>-<abc>");
  text.format(nullptr);
  CHECK(text.is_empty());
}

TEST_CASE("doubles print their exact digits, rounded to nearest with halves to even") {
  struct Row {
    const char *format;
    double value;
    const char *text;
  };
  for (const Row &row : {
           Row{"%.0f", 12.5, "12"},
           Row{"%.0f", 0.5, "0"},
           Row{"%.1f", 99.96, "100.0"},
           Row{"%f", -0.0, "-0.000000"},
           Row{"%+.1f", 2.0, "+2.0"},
           Row{"%#.0f", 2.0, "2."},
           Row{"%08.2f", -1.5, "-0001.50"},
           Row{"%.3f", 0.0005, "0.001"},
           Row{"%-7.1f|", 1.25, "1.2    |"},
           Row{"%e", 0.0, "0.000000e+00"},
           Row{"%g", 0.0001, "0.0001"},
           Row{"%g", 0.00001, "1e-05"},
           Row{"%#g", 1.0, "1.00000"},
           Row{"%.0e", 9.5e-7, "1e-06"},
           Row{"%f", INFINITY, "inf"},
           Row{"%010f", -INFINITY, "      -inf"},
       })
    CHECK_MESSAGE(Text(row.format, row.value) == row.text, std::string(row.format));
  CHECK(Text("%f", std::numeric_limits<double>::quiet_NaN()) == "nan");
  CHECK(Text("%.0f", 1.7976931348623157e308).substr(0, 20) == "17976931348623157081");
  CHECK(Text("%.1074f", 4.9406564584124654e-324).substr(1060) == "8265533447265625");
}

TEST_CASE("doubles of every magnitude print as printf prints them") {
  std::mt19937_64 random(3);
  const char *const formats[] = {"%f",     "%.0f", "%.1f", "%.2f",  "%.6f", "%.17f", "%12.3f",
                                 "%.340f", "%e",   "%.0e", "%.16e", "%g",   "%.0g",  "%.12g"};
  for (int round = 0; round < 4000; ++round) {
    uint64_t bits = random();
    double value;
    if (round % 2 == 0) { // sizes that occur
      value = static_cast<double>(static_cast<int64_t>(bits) >> (bits % 50)) / (1 << (bits % 12));
    } else {
      memcpy(&value, &bits, sizeof value);
    }
    if (!std::isfinite(value))
      continue;
    const char *format = formats[random() % std::size(formats)];
    REQUIRE_MESSAGE(Text(format, value) == Platform(format, value), std::string(format), " of ",
                    Platform("%.17g", value));
  }
}
