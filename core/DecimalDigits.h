// A double as exact decimal digits, and printed from them.
#pragma once

#include <cstdint>

namespace korb {

class String;

/// Every binary fraction is a decimal one of some length, so rounding can be done on the digits: to nearest, halves to
/// even, the same on every machine.
class DecimalDigits {
public:
  explicit DecimalDigits(double value);

  bool is_negative() const { return negative_; }
  /// False for an infinity or no number, which print as "inf" and "nan".
  bool is_finite() const { return finite_; }

  /// Appends the number without its sign: letter `f` with `precision` digits behind the point, `e` with an exponent,
  /// `g` with `precision` digits in all and no zeros at their end. `keep_point` keeps the point without digits behind
  /// it, and the zeros of `g`.
  void Print(String &out, char letter, int32_t precision, bool keep_point) const;

private:
  static constexpr int32_t kMaxDigits = 309 + 1074 + 18;

  /// Place of the first digit that is not 0, -1 when all are.
  int32_t first_digit() const;
  void PrintDigits(String &out, int32_t from, int32_t n) const;
  void PrintFixed(String &out, int32_t precision, bool keep_point) const;
  void PrintScientific(String &out, int32_t precision, bool keep_point) const;
  DecimalDigits Rounded(int32_t kept) const;

  char digits_[kMaxDigits]; ///< 0 to 9
  int32_t whole_ = 0;       ///< digits in front of the point, at least one
  int32_t count_ = 0;       ///< digits in all
  bool negative_ = false;
  bool finite_ = true;
};

} // namespace korb
