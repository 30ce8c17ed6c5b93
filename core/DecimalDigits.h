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

  /// Appends the number without its sign: letter `f` with `precision` digits after the point, `e` with an exponent,
  /// `g` with `precision` digits in all and no zeros at their end. `keep_point` keeps the point without digits after
  /// it, and the zeros of `g`. Rounds the digits themselves: for one use.
  void Print(String &out, char letter, int32_t precision, bool keep_point);

private:
  static constexpr int32_t kPoint = 310;          ///< before it: 309 digits, and one that rounding may add
  static constexpr int32_t kRoom = kPoint + 1074; ///< after it: the digits of the smallest double

  void Double();
  void Halve();
  void Round(int32_t at);
  int32_t leading() const;
  void PutDigits(String &out, int32_t from, int32_t n) const;
  void PutFixed(String &out, int32_t precision, bool keep_point);
  void PutScientific(String &out, int32_t precision, bool keep_point);

  char digits_[kRoom] = {};    ///< 0 to 9; those outside first_ to end_ are 0
  int32_t first_ = kPoint - 1; ///< at least one digit stands before the point
  int32_t end_ = kPoint;
  bool negative_;
  bool finite_ = true;
  bool is_number_ = true;
};

} // namespace korb
