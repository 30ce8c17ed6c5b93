#include "core/Number.h"

namespace korb {

namespace {

constexpr const char *kUnitWords[] = {"Zero",     "One",     "Two",     "Three",     "Four",     "Five",    "Six",
                                      "Seven",    "Eight",   "Nine",    "Ten",       "Eleven",   "Twelve",  "Thirteen",
                                      "Fourteen", "Fifteen", "Sixteen", "Seventeen", "Eighteen", "Nineteen"};
constexpr const char *kTensWords[] = {"Twenty", "Thirty", "Forty", "Fifty", "Sixty", "Seventy", "Eighty", "Ninety"};
constexpr const char *kOrdinalUnits[] = {"First", "Second",  "Third",  "Fourth", "Fifth",
                                         "Sixth", "Seventh", "Eighth", "Ninth"};
constexpr const char *kOrdinalTens[] = {"Twentieth", "Thirtieth",  "Fortieth",  "Fiftieth",
                                        "Sixtieth",  "Seventieth", "Eightieth", "Ninetieth"};
constexpr const char *kEighths[] = {"One Eighth",   "One Fourth",    "Three Eighths", "One Half",
                                    "Five Eighths", "Three Fourths", "Seven Eighths"};
constexpr double kNear = 0.00001;

double Distance(double a, double b) {
  return a < b ? b - a : a - b;
}

/// Appends the words of `n`, whole and not negative.
void AppendWhole(String &out, int64_t n) {
  static constexpr struct {
    int32_t size;
    const char *name;
  } kUnits[] = {{1000000, " Million"}, {1000, " Thousand"}, {100, " Hundred"}};
  for (const auto &unit : kUnits) {
    if (n < unit.size)
      continue;
    AppendWhole(out, n / unit.size);
    out += unit.name;
    n %= unit.size;
    if (n == 0)
      return;
    out += ' ';
  }
  if (n >= 20) {
    out += kTensWords[n / 10 - 2];
    n %= 10;
    if (n == 0)
      return;
    out += ' ';
  }
  out += kUnitWords[n];
}

/// A year that is read in two halves.
void AppendYear(String &out, int32_t year) {
  AppendWhole(out, year / 100);
  out += year % 100 < 10 ? " Oh " : " ";
  AppendWhole(out, year % 100);
}

void AppendFraction(String &out, double fraction, NumberWordsMode mode) {
  if (mode == WORDS_DECIMAL) {
    out += " Point";
    String digits = str_format("%.3f", fraction);
    digits = digits.mid(digits.find_char('.') + 1); // there may be a sign: the fraction of -0.0 is -0.0
    digits.trim_right_char('0');
    if (digits.is_empty())
      digits = "0";
    for (int32_t i = 0; i < digits.length(); ++i) {
      out += ' ';
      out += kUnitWords[digits.at(i) - '0'];
    }
  } else if (mode == WORDS_CHEQUE) {
    if (fraction == 0)
      out += " and No/100";
    else
      out.append_format(" and %.0f/100", fraction * 100);
  } else if (fraction != 0) {
    out += " and ";
    for (int32_t eighth = 1; eighth < 8; ++eighth) {
      if (Distance(fraction, eighth / 8.0) <= kNear) {
        out += kEighths[eighth - 1];
        return;
      }
    }
    if (fraction > kNear)
      out.append_format("%.0f/1000", fraction * 1000);
  }
}

} // namespace

String NumberToWords(double value, NumberWordsMode mode) {
  if (!(value > -2147483648e6 && value < 2147483648e6))
    return FormatDouble(value, 0);
  String words;
  if (mode == WORDS_YEAR) {
    if (value > 100 && value < 10000 && static_cast<int32_t>(value) % 1000 >= 10) {
      AppendYear(words, static_cast<int32_t>(value));
      return words;
    }
    mode = WORDS_WHOLE;
  }
  if (value < 0) {
    words = "Negative ";
    value = -value;
  }
  const int64_t whole = static_cast<int64_t>(value);
  AppendWhole(words, whole);
  if (mode != WORDS_WHOLE)
    AppendFraction(words, value - static_cast<double>(whole), mode);
  return words;
}

String YearToWords(int32_t year) {
  String words;
  if (year > 100 && year < 10000 && year % 1000 >= 10) {
    AppendYear(words, year);
    return words;
  }
  if (year < 0)
    words = "Negative ";
  AppendWhole(words, year < 0 ? -int64_t{year} : year);
  return words;
}

String FormatDouble(double value, int32_t precision) {
  if (precision >= 0)
    return str_format("%.*f", precision, value);
  String text = str_format("%.6f", value);
  if (text.contains_char('.')) {
    text.trim_right_char('0');
    text.remove_last_if('.');
  }
  return text;
}

String FormatByteSize(int64_t bytes) {
  if (bytes < 1024)
    return str_format("%d bytes", bytes);
  double size = static_cast<double>(bytes);
  const char *unit = "KMGT";
  while ((size /= 1024) >= 1024 && *unit != 'T')
    ++unit;
  // To the nearest hundredth, halves to even, without the digits of a double: see FormatArg::print_real.
  const double exact = size * 100;
  int32_t hundredths = static_cast<int32_t>(exact);
  const double rest = exact - hundredths;
  if (rest > 0.5 || (rest == 0.5 && hundredths % 2 != 0))
    ++hundredths;
  return str_format("%d.%02d %cB", hundredths / 100, hundredths % 100, *unit);
}

String FormatOrdinal(int32_t n) {
  const int32_t digit = n >= 4 && n <= 20 ? 0 : n % 10;
  return str_format("%d%s", n, digit == 1 ? "st" : (digit == 2 ? "nd" : (digit == 3 ? "rd" : "th")));
}

String FormatOrdinalWords(int32_t n) {
  String words;
  int64_t number = n;
  if (number < 0) {
    words = "Negative ";
    number = -number;
  }
  const int32_t last_two = static_cast<int32_t>(number % 100);
  const int32_t unit = last_two % 10;
  if (last_two == 12) {
    words += "Twelfth";
  } else if (last_two == 0 || (last_two >= 10 && last_two <= 19)) {
    AppendWhole(words, number);
    words += "th";
  } else {
    const int64_t above = unit == 0 ? number - last_two : number - unit;
    if (above != 0) {
      AppendWhole(words, above);
      words += ' ';
    }
    words += unit == 0 ? kOrdinalTens[last_two / 10 - 2] : kOrdinalUnits[unit - 1];
  }
  return words;
}

} // namespace korb
