// Numbers as display text. The words are English, in title case.
#pragma once

#include <cstdint>

#include "core/String.h"

namespace korb {

/// What NumberToWords does with the fraction.
enum NumberWordsMode : int32_t {
  WORDS_DECIMAL = -1, ///< digit by digit, up to three
  WORDS_WHOLE = 0,    ///< left out
  WORDS_CHEQUE = 1,   ///< as hundredths
  WORDS_FRACTION = 2, ///< as eighths, else as thousandths
  WORDS_YEAR = 3,     ///< read as a year, in two halves
};

/// "One Hundred Five"; there are no billions. What has no words (no number, 2^31 million and more) comes in digits.
String NumberToWords(double value, NumberWordsMode mode);
/// NumberToWords with WORDS_YEAR of a whole number. Dates use this one: the program then need not carry the fractions.
String YearToWords(int32_t year);
/// Fixed point; a negative precision means up to six digits without zeros at the end.
String FormatDouble(double value, int32_t precision);
/// "512 bytes", "1.50 KB", up to TB.
String FormatByteSize(int64_t bytes);
// The ordinals, too, give a text of their own: a caller's buffer would have to be as long as the longest words.

/// "22nd". By the last digit alone above 20, so 111 is "111st".
String FormatOrdinal(int32_t n);
/// "Twenty First". Anything that ends in 12 is "Twelfth" alone.
String FormatOrdinalWords(int32_t n);

} // namespace korb
