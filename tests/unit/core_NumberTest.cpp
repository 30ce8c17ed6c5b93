// Numbers as words, sizes and ordinals.
#include <limits>

#include "core/Number.h"
#include "tests/support/Testing.h"

namespace {

struct Row {
  double value;
  const char *words;
};

void CheckWords(NumberWordsMode mode, std::initializer_list<Row> rows) {
  for (const Row &row : rows) {
    CAPTURE(row.value);
    CHECK(std::string(NumberToWords(row.value, mode)) == row.words);
  }
}

} // namespace

TEST_CASE("a whole number in words") {
  CheckWords(WORDS_WHOLE, {Row{0, "Zero"}, Row{-5, "Negative Five"}, Row{-0.5, "Negative Zero"}, Row{19.99, "Nineteen"},
                           Row{20, "Twenty"}, Row{110, "One Hundred Ten"}, Row{1000042, "One Million Forty Two"},
                           Row{987654, "Nine Hundred Eighty Seven Thousand Six Hundred Fifty Four"},
                           Row{1e9, "One Thousand Million"}, Row{1e16, "10000000000000000"}});
}

TEST_CASE("a fraction in words: of a hundred, a common one, or its digits") {
  CheckWords(WORDS_CHEQUE,
             {Row{12.5, "Twelve and 50/100"}, Row{12, "Twelve and No/100"}, Row{12.05, "Twelve and 5/100"},
              Row{1.999, "One and 100/100"}, Row{-std::numeric_limits<double>::infinity(), "-inf"}});
  CheckWords(WORDS_FRACTION, {Row{3.75, "Three and Three Fourths"}, Row{0.125, "Zero and One Eighth"},
                              Row{0.374995, "Zero and Three Eighths"}, Row{0.333, "Zero and 333/1000"}, Row{3, "Three"},
                              Row{3.000001, "Three and "}});
  CheckWords(WORDS_DECIMAL, {Row{1.5, "One Point Five"}, Row{1.05, "One Point Zero Five"}, Row{1, "One Point Zero"},
                             Row{-0.0, "Zero Point Zero"}, Row{-0.5, "Negative Zero Point Five"},
                             Row{0.9996, "Zero Point Zero"}, Row{2.7183, "Two Point Seven One Eight"}});
}

TEST_CASE("a year in words") {
  CheckWords(WORDS_YEAR,
             {Row{1999, "Nineteen Ninety Nine"}, Row{1905, "Nineteen Oh Five"}, Row{1900, "Nineteen Oh Zero"},
              Row{1100, "Eleven Oh Zero"}, Row{2000, "Two Thousand"}, Row{2005, "Two Thousand Five"},
              Row{2010, "Twenty Ten"}, Row{101, "One Oh One"}, Row{100, "One Hundred"}, Row{10000, "Ten Thousand"},
              Row{-1999, "Negative One Thousand Nine Hundred Ninety Nine"}});
  for (int32_t year = -3000; year < 12000; ++year)
    REQUIRE_MESSAGE(YearToWords(year) == NumberToWords(year, WORDS_YEAR), year);
}

TEST_CASE("ordinals, in digits and in words") {
  struct Row {
    int32_t number;
    const char *digits, *words;
  };
  for (const Row &row :
       {Row{0, "0th", "Zeroth"}, Row{1, "1st", "First"}, Row{3, "3rd", "Third"}, Row{9, "9th", "Ninth"},
        Row{10, "10th", "Tenth"}, Row{12, "12th", "Twelfth"}, Row{13, "13th", "Thirteenth"},
        Row{20, "20th", "Twentieth"}, Row{21, "21st", "Twenty First"}, Row{22, "22nd", "Twenty Second"},
        Row{90, "90th", "Ninetieth"}, Row{100, "100th", "One Hundredth"}, Row{101, "101st", "One Hundred First"},
        Row{111, "111st", "One Hundred Eleventh"}, Row{112, "112nd", "Twelfth"},
        Row{130, "130th", "One Hundred Thirtieth"}, Row{1012, "1012nd", "Twelfth"}, Row{-1, "-1th", "Negative First"},
        Row{-12, "-12th", "Negative Twelfth"}}) {
    CAPTURE(row.number);
    CHECK(std::string(FormatOrdinal(row.number)) == row.digits);
    CHECK(std::string(FormatOrdinalWords(row.number)) == row.words);
  }
  CHECK(FormatOrdinalWords(INT32_MIN) == "Negative Two Thousand One Hundred Forty Seven Million Four Hundred Eighty "
                                         "Three Thousand Six Hundred Forty Eighth");
}

TEST_CASE("a size is told in the largest unit that it has one of") {
  struct Row {
    int64_t bytes;
    const char *text;
  };
  for (const Row &row :
       {Row{0, "0 bytes"}, Row{1, "1 bytes"}, Row{-5000000000, "-5000000000 bytes"}, Row{1023, "1023 bytes"},
        Row{1024, "1.00 KB"}, Row{1048575, "1024.00 KB"}, Row{1048576, "1.00 MB"}, Row{1610612736, "1.50 GB"},
        Row{1099511627775, "1024.00 GB"}, Row{1099511627776, "1.00 TB"}, Row{INT64_MAX, "8388608.00 TB"}})
    CHECK_MESSAGE(std::string(FormatByteSize(row.bytes)) == row.text, row.bytes);
}

TEST_CASE("a plain number has the decimals that it needs, or that are asked for") {
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
