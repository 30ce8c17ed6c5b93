// Numbers as words, sizes and ordinals.
#include <limits>

#include "core/Number.h"
#include "tests/support/Testing.h"

TEST_CASE("numbers in words") {
  const struct {
    double value;
    NumberWordsMode mode;
    const char *words;
  } rows[] = {{0, WORDS_WHOLE, "Zero"},
              {-5, WORDS_WHOLE, "Negative Five"},
              {-0.5, WORDS_WHOLE, "Negative Zero"},
              {19.99, WORDS_WHOLE, "Nineteen"},
              {20, WORDS_WHOLE, "Twenty"},
              {110, WORDS_WHOLE, "One Hundred Ten"},
              {1000042, WORDS_WHOLE, "One Million Forty Two"},
              {987654, WORDS_WHOLE, "Nine Hundred Eighty Seven Thousand Six Hundred Fifty Four"},
              {1e9, WORDS_WHOLE, "One Thousand Million"},
              {12.5, WORDS_CHEQUE, "Twelve and 50/100"},
              {12, WORDS_CHEQUE, "Twelve and No/100"},
              {12.05, WORDS_CHEQUE, "Twelve and 5/100"},
              {1.999, WORDS_CHEQUE, "One and 100/100"},
              {3.75, WORDS_FRACTION, "Three and Three Fourths"},
              {0.125, WORDS_FRACTION, "Zero and One Eighth"},
              {0.374995, WORDS_FRACTION, "Zero and Three Eighths"},
              {0.333, WORDS_FRACTION, "Zero and 333/1000"},
              {3, WORDS_FRACTION, "Three"},
              {3.000001, WORDS_FRACTION, "Three and "},
              {1.5, WORDS_DECIMAL, "One Point Five"},
              {1.05, WORDS_DECIMAL, "One Point Zero Five"},
              {1, WORDS_DECIMAL, "One Point Zero"},
              {0.9996, WORDS_DECIMAL, "Zero Point Zero"},
              {2.7183, WORDS_DECIMAL, "Two Point Seven One Eight"},
              {1999, WORDS_YEAR, "Nineteen Ninety Nine"},
              {1905, WORDS_YEAR, "Nineteen Oh Five"},
              {1900, WORDS_YEAR, "Nineteen Oh Zero"},
              {1100, WORDS_YEAR, "Eleven Oh Zero"},
              {2000, WORDS_YEAR, "Two Thousand"},
              {2005, WORDS_YEAR, "Two Thousand Five"},
              {2010, WORDS_YEAR, "Twenty Ten"},
              {101, WORDS_YEAR, "One Oh One"},
              {100, WORDS_YEAR, "One Hundred"},
              {10000, WORDS_YEAR, "Ten Thousand"},
              {-1999, WORDS_YEAR, "Negative One Thousand Nine Hundred Ninety Nine"},
              {1e16, WORDS_WHOLE, "10000000000000000"},
              {-std::numeric_limits<double>::infinity(), WORDS_CHEQUE, "-inf"}};
  for (const auto &row : rows)
    CHECK_MESSAGE(std::string(NumberToWords(row.value, row.mode)) == row.words, row.value, " / ", row.mode);
  for (int32_t year = -3000; year < 12000; ++year)
    REQUIRE_MESSAGE(YearToWords(year) == NumberToWords(year, WORDS_YEAR), year);
}

TEST_CASE("ordinals, in digits and in words") {
  const struct {
    int32_t n;
    const char *digits, *words;
  } rows[] = {{0, "0th", "Zeroth"},
              {1, "1st", "First"},
              {3, "3rd", "Third"},
              {9, "9th", "Ninth"},
              {10, "10th", "Tenth"},
              {12, "12th", "Twelfth"},
              {13, "13th", "Thirteenth"},
              {20, "20th", "Twentieth"},
              {21, "21st", "Twenty First"},
              {22, "22nd", "Twenty Second"},
              {90, "90th", "Ninetieth"},
              {100, "100th", "One Hundredth"},
              {101, "101st", "One Hundred First"},
              {111, "111st", "One Hundred Eleventh"},
              {112, "112nd", "Twelfth"},
              {130, "130th", "One Hundred Thirtieth"},
              {1012, "1012nd", "Twelfth"},
              {-1, "-1th", "Negative First"},
              {-12, "-12th", "Negative Twelfth"},
              {INT32_MIN, "-2147483648th",
               "Negative Two Thousand One Hundred Forty Seven Million Four Hundred Eighty Three Thousand Six Hundred "
               "Forty Eighth"}};
  for (const auto &row : rows) {
    CHECK_MESSAGE(std::string(FormatOrdinal(row.n)) == row.digits, row.n);
    CHECK_MESSAGE(std::string(FormatOrdinalWords(row.n)) == row.words, row.n);
  }
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
