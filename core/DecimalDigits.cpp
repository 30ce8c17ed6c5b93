#include "core/DecimalDigits.h"

#include <cstring>

#include "core/String.h"

namespace korb {

FormatArg::FormatArg(double value) : kind(Kind::Double), real(value) {
  print_real = [](double number, String &out, bool &negative, char letter, int32_t precision, bool keep_point) {
    DecimalDigits digits(number);
    negative = digits.is_negative();
    digits.Print(out, letter, precision, keep_point);
    return digits.is_finite();
  };
}

// A number that occurs takes some fifty steps of some twenty digits, the largest and smallest a thousand of a thousand.
DecimalDigits::DecimalDigits(double value) {
  uint64_t bits;
  memcpy(&bits, &value, sizeof bits);
  negative_ = bits >> 63 != 0;
  int32_t exponent = static_cast<int32_t>(bits >> 52 & 0x7FF);
  uint64_t mantissa = bits & 0xFFFFFFFFFFFFFull;
  if (exponent == 0x7FF) {
    finite_ = false;
    is_number_ = mantissa == 0;
    return;
  }
  if (exponent)
    mantissa |= 1ull << 52;
  else
    exponent = 1;
  exponent -= 1075;
  for (; exponent < 0 && mantissa % 2 == 0; ++exponent)
    mantissa /= 2;

  first_ = kPoint;
  do
    digits_[--first_] = static_cast<char>(mantissa % 10);
  while ((mantissa /= 10) != 0);
  for (; exponent > 0; --exponent)
    Double();
  for (; exponent < 0; ++exponent)
    Halve();
  while (first_ < kPoint - 1 && digits_[first_] == 0)
    ++first_;
}

void DecimalDigits::Double() {
  int32_t carry = 0;
  for (int32_t i = end_; i-- > first_;) {
    const int32_t sum = digits_[i] * 2 + carry;
    carry = sum >= 10;
    digits_[i] = static_cast<char>(carry ? sum - 10 : sum);
  }
  if (carry)
    digits_[--first_] = 1;
}

void DecimalDigits::Halve() {
  int32_t carry = 0;
  for (int32_t i = first_; i < end_; ++i) {
    const int32_t digit = digits_[i] + carry;
    digits_[i] = static_cast<char>(digit / 2);
    carry = digit % 2 * 10;
  }
  if (carry)
    digits_[end_++] = 5;
}

/// Drops the digits from place `at` on, which lies after the first digit that counts.
void DecimalDigits::Round(int32_t at) {
  if (at >= end_)
    return;
  bool half = digits_[at] == 5;
  for (int32_t i = at + 1; i < end_; ++i)
    half = half && digits_[i] == 0;
  bool up = half ? digits_[at - 1] % 2 != 0 : digits_[at] >= 5;
  memset(digits_ + at, 0, static_cast<size_t>(end_ - at));
  end_ = at;
  while (up) {
    up = digits_[--at] == 9;
    digits_[at] = static_cast<char>(up ? 0 : digits_[at] + 1);
  }
  if (at < first_)
    first_ = at;
}

/// Place of the first digit that is not 0; of the one before the point when all are.
int32_t DecimalDigits::leading() const {
  for (int32_t i = first_; i < end_; ++i)
    if (digits_[i] != 0)
      return i;
  return kPoint - 1;
}

/// `n` digits from place `from` on; zeros follow the last.
void DecimalDigits::PutDigits(String &out, int32_t from, int32_t n) const {
  const int32_t at = out.grow_by(n);
  for (int32_t i = 0; i < n; ++i)
    out.at(at + i) = static_cast<char>('0' + (from + i < kRoom ? digits_[from + i] : 0));
}

void DecimalDigits::PutFixed(String &out, int32_t precision, bool keep_point) {
  Round(kPoint + precision);
  PutDigits(out, first_, kPoint - first_);
  if (precision > 0 || keep_point)
    out += '.';
  PutDigits(out, kPoint, precision);
}

void DecimalDigits::PutScientific(String &out, int32_t precision, bool keep_point) {
  Round(leading() + 1 + precision);
  const int32_t at = leading();
  PutDigits(out, at, 1);
  if (precision > 0 || keep_point)
    out += '.';
  PutDigits(out, at + 1, precision);
  const int32_t exponent = kPoint - 1 - at;
  out.append_format(exponent < 0 ? "e-%02d" : "e+%02d", exponent < 0 ? -exponent : exponent);
}

void DecimalDigits::Print(String &out, char letter, int32_t precision, bool keep_point) {
  if (!finite_) {
    out += is_number_ ? "inf" : "nan";
    return;
  }
  if (letter == 'f') {
    PutFixed(out, precision, keep_point);
    return;
  }
  if (letter == 'e') {
    PutScientific(out, precision, keep_point);
    return;
  }
  if (precision == 0)
    precision = 1;
  Round(leading() + precision);
  const int32_t exponent = kPoint - 1 - leading();
  String body;
  if (exponent < precision && exponent >= -4)
    PutFixed(body, precision - 1 - exponent, keep_point);
  else
    PutScientific(body, precision - 1, keep_point);
  if (!keep_point && body.contains_char('.')) {
    const String tail = body.cut_from_match("e");
    body.trim_right_char('0');
    body.remove_last_if('.');
    body += tail;
  }
  out += body;
}

} // namespace korb
