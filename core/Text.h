// Characters and zero-terminated texts. ASCII only: bytes of 0x80 and up belong to no class and never fold.
#pragma once

#include <cstdint>

#include "core/Options.h"

namespace korb {

constexpr bool is_digit(int c) {
  return c >= '0' && c <= '9';
}
constexpr bool is_alpha(int c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
constexpr bool is_alnum(int c) {
  return is_digit(c) || is_alpha(c);
}
constexpr bool is_word_char(int c) {
  return is_alnum(c) || c == '_';
}
constexpr bool is_space(int c) {
  return c == ' ' || c == '\n' || c == '\r' || c == '\t';
}
constexpr bool is_line_break(int c) {
  return c == '\n' || c == '\r';
}
/// Folds A to Z; any other value comes back in 8 bits.
constexpr int to_lower_char(int c) {
  return c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c & 0xFF;
}
/// Folds a to z; any other value comes back in 8 bits.
constexpr int to_upper_char(int c) {
  return c >= 'a' && c <= 'z' ? c - ('a' - 'A') : c & 0xFF;
}

// Each helper takes a null text as an empty one unless it says otherwise.

int32_t text_length(const char *p);
/// The last byte, 0 when empty.
char text_last_char(const char *p);
/// The first byte that is no space.
const char *text_skip_space(const char *p);
/// The first byte out of `set`, or the terminator. Null in either gives null.
const char *text_find_any(const char *p, const char *set);
/// Ends the text at the first `c`; false when there is none.
bool text_cut_at(char *p, char c);
/// Ends the text at its first white space, all of which becomes NUL.
void text_blank_spaces(char *p);
/// One sign, then digits.
int64_t text_to_int64(const char *p);
/// One sign, digits, a point and digits; no exponent.
double text_to_double(const char *p);

// Flags of text_skip_number.
enum NumberOptions : uint32_t {
  NUMBER_NONE = 0,
  NUMBER_SKIP_SPACE = 0x1,       ///< space in front
  NUMBER_SKIP_SPACE_AFTER = 0x2, ///< space after, and after a comma
  NUMBER_NO_SIGN = 0x4,
  NUMBER_SKIP_COMMA = 0x10, ///< one comma after
};
template <>
inline constexpr bool IsOptionWord<NumberOptions> = true;

/// Reads a number at `p` and moves `p` past it; what is to be skipped after it goes only with at least one digit.
int32_t text_skip_number(const char *&p, NumberOptions flags = NUMBER_NONE);

/// The first `n` bytes without regard to case; ends at a NUL in both. Below 0, 0 or above 0.
int32_t text_compare_no_case(const char *a, const char *b, int32_t n);

/// Empty, null, or nothing but space, CR, LF and TAB.
bool IsBlank(const char *text);

} // namespace korb
