// Numbers as words, sizes and ordinals.
#include <limits>

#include "core/Number.h"
#include "tests/support/Testing.h"

TEST_CASE("numbers in words") {
  const auto check = [](NumberWordsMode mode, const Rows &rows) {
    for (const InOut &row : rows)
      CHECK_MESSAGE(std::string(NumberToWords(std::stod(row.in), mode)) == row.out, row.in, " / ", mode);
  };
  check(WORDS_WHOLE, {"0 = Zero", "-5 = Negative Five", "-0.5 = Negative Zero", "19.99 = Nineteen", "20 = Twenty",
                      "110 = One Hundred Ten", "1000042 = One Million Forty Two",
                      "987654 = Nine Hundred Eighty Seven Thousand Six Hundred Fifty Four",
                      "1e9 = One Thousand Million", "1e16 = 10000000000000000"});
  check(WORDS_CHEQUE, {"12.5 = Twelve and 50/100", "12 = Twelve and No/100", "12.05 = Twelve and 5/100",
                       "1.999 = One and 100/100", "-inf = -inf"});
  check(WORDS_FRACTION,
        {"3.75 = Three and Three Fourths", "0.125 = Zero and One Eighth", "0.374995 = Zero and Three Eighths",
         "0.333 = Zero and 333/1000", "3 = Three", "3.000001 = Three and "});
  check(WORDS_DECIMAL,
        {"1.5 = One Point Five", "1.05 = One Point Zero Five", "1 = One Point Zero", "-0 = Zero Point Zero",
         "-0.5 = Negative Zero Point Five", "0.9996 = Zero Point Zero", "2.7183 = Two Point Seven One Eight"});
  check(WORDS_YEAR,
        {"1999 = Nineteen Ninety Nine", "1905 = Nineteen Oh Five", "1900 = Nineteen Oh Zero", "1100 = Eleven Oh Zero",
         "2000 = Two Thousand", "2005 = Two Thousand Five", "2010 = Twenty Ten", "101 = One Oh One",
         "100 = One Hundred", "10000 = Ten Thousand", "-1999 = Negative One Thousand Nine Hundred Ninety Nine"});
  for (int32_t year = -3000; year < 12000; ++year)
    REQUIRE_MESSAGE(YearToWords(year) == NumberToWords(year, WORDS_YEAR), year);
}

TEST_CASE("ordinals, in digits and in words") {
  for (const auto &[n, both] :
       {InOut("0 = 0th|Zeroth"), InOut("1 = 1st|First"), InOut("3 = 3rd|Third"), InOut("9 = 9th|Ninth"),
        InOut("10 = 10th|Tenth"), InOut("12 = 12th|Twelfth"), InOut("13 = 13th|Thirteenth"),
        InOut("20 = 20th|Twentieth"), InOut("21 = 21st|Twenty First"), InOut("22 = 22nd|Twenty Second"),
        InOut("90 = 90th|Ninetieth"), InOut("100 = 100th|One Hundredth"), InOut("101 = 101st|One Hundred First"),
        InOut("111 = 111st|One Hundred Eleventh"), InOut("112 = 112nd|Twelfth"),
        InOut("130 = 130th|One Hundred Thirtieth"), InOut("1012 = 1012nd|Twelfth"), InOut("-1 = -1th|Negative First"),
        InOut("-12 = -12th|Negative Twelfth")})
    CHECK(Joined({FormatOrdinal(std::stoi(n)), FormatOrdinalWords(std::stoi(n))}) == both);
  CHECK(FormatOrdinalWords(INT32_MIN) == "Negative Two Thousand One Hundred Forty Seven Million Four Hundred Eighty "
                                         "Three Thousand Six Hundred Forty Eighth");
}

TEST_CASE("sizes and plain numbers") {
  struct Row {
    int64_t bytes;
    const char *text;
  };
  for (const Row &row :
       {Row{0, "0 bytes"}, Row{1, "1 bytes"}, Row{-5000000000, "-5000000000 bytes"}, Row{1023, "1023 bytes"},
        Row{1024, "1.00 KB"}, Row{1048575, "1024.00 KB"}, Row{1048576, "1.00 MB"}, Row{1610612736, "1.50 GB"},
        Row{1099511627775, "1024.00 GB"}, Row{1099511627776, "1.00 TB"}, Row{INT64_MAX, "8388608.00 TB"}})
    CHECK_MESSAGE(std::string(FormatByteSize(row.bytes)) == row.text, row.bytes);
  const struct {
    double value;
    int32_t precision;
    const char *text;
  } numbers[] = {
      {2.5, -1, "2.5"},     {2, -1, "2"},  {100, -1, "100"},  {-0.000001, -3, "-0.000001"},
      {1.0000001, -1, "1"}, {2.5, 0, "2"}, {2.5, 3, "2.500"}, {std::numeric_limits<double>::infinity(), -1, "inf"}};
  for (const auto &row : numbers)
    CHECK_MESSAGE(std::string(FormatDouble(row.value, row.precision)) == row.text, row.value);
}
