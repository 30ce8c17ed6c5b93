#include "core/DecimalDigits.h"

#include <cstring>

#include "core/String.h"

namespace korb {

namespace {

constexpr uint32_t kLimbBase = 1000000000; ///< 9 digits, and divisible by 2 nine times
constexpr int32_t kLimbDigits = 9;
constexpr int32_t kMaxShiftDown = 9;
constexpr int32_t kMaxShiftUp = 29; ///< a limb shifted this far fits in 64 bits

/// Fixed-point number of base 1,000,000,000, most significant limb first.
struct Limbs {
  // 309 digits in front of the point, 1,074 behind it, and what the shifts need.
  uint32_t limb[160] = {};
  int32_t first = 38; ///< most significant limb in use
  int32_t point = 40; ///< first limb behind the point
  int32_t end = 40;

  void ShiftUp(int32_t bits) {
    uint32_t carry = 0;
    for (int32_t i = end; i-- > first;) {
      const uint64_t wide = (uint64_t{limb[i]} << bits) + carry;
      limb[i] = static_cast<uint32_t>(wide % kLimbBase);
      carry = static_cast<uint32_t>(wide / kLimbBase);
    }
    if (carry)
      limb[--first] = carry;
  }
  void ShiftDown(int32_t bits) {
    uint32_t carry = 0;
    for (int32_t i = first; i < end; ++i) {
      const uint32_t lost = limb[i] & ((1u << bits) - 1);
      limb[i] = (limb[i] >> bits) + carry;
      carry = (kLimbBase >> bits) * lost;
    }
    if (carry)
      limb[end++] = carry;
  }
};

} // namespace

DecimalDigits::DecimalDigits(double value) {
  uint64_t bits;
  memcpy(&bits, &value, sizeof bits);
  negative_ = bits >> 63 != 0;
  int32_t exponent = static_cast<int32_t>(bits >> 52 & 0x7FF);
  uint64_t mantissa = bits & 0xFFFFFFFFFFFFFull;
  if (exponent == 0x7FF) {
    finite_ = false;
    whole_ = mantissa != 0; // tells the two apart
    return;
  }
  if (exponent)
    mantissa |= 1ull << 52;
  else
    exponent = 1;
  exponent -= 1075;

  Limbs number;
  number.limb[39] = static_cast<uint32_t>(mantissa % kLimbBase);
  number.limb[38] = static_cast<uint32_t>(mantissa / kLimbBase);
  if (mantissa == 0)
    exponent = 0;
  for (int32_t left = exponent; left > 0; left -= kMaxShiftUp)
    number.ShiftUp(left < kMaxShiftUp ? left : kMaxShiftUp);
  for (int32_t left = -exponent; left > 0; left -= kMaxShiftDown)
    number.ShiftDown(left < kMaxShiftDown ? left : kMaxShiftDown);

  for (int32_t i = number.first; i < number.end; ++i) {
    if (i == number.point)
      whole_ = count_;
    uint32_t rest = number.limb[i];
    for (int32_t k = kLimbDigits; k-- > 0; rest /= 10)
      digits_[count_ + k] = static_cast<char>(rest % 10);
    count_ += kLimbDigits;
  }
  if (number.end == number.point)
    whole_ = count_;
  // Zeros in front go, but for the one before the point.
  int32_t zeros = 0;
  while (zeros < whole_ - 1 && digits_[zeros] == 0)
    ++zeros;
  memmove(digits_, digits_ + zeros, static_cast<size_t>(count_ - zeros));
  whole_ -= zeros;
  count_ -= zeros;
}

/// The number with its first `kept` digits, which may be none or fewer, rounded.
DecimalDigits DecimalDigits::Rounded(int32_t kept) const {
  DecimalDigits result(*this);
  if (kept >= count_)
    return result;
  bool up = false;
  if (kept >= 0) {
    bool exact_half = digits_[kept] == 5;
    for (int32_t i = kept + 1; exact_half && i < count_; ++i)
      exact_half = digits_[i] == 0;
    const bool odd = kept > 0 && digits_[kept - 1] % 2 != 0;
    up = exact_half ? odd : digits_[kept] >= 5;
  }
  const int32_t start = kept < 0 ? 0 : kept;
  memset(result.digits_ + start, 0, static_cast<size_t>(count_ - start));
  result.count_ = start > whole_ ? start : whole_;
  if (!up)
    return result;
  int32_t i = kept - 1;
  for (; i >= 0 && result.digits_[i] == 9; --i)
    result.digits_[i] = 0;
  if (i >= 0) {
    ++result.digits_[i];
    return result;
  }
  memmove(result.digits_ + 1, result.digits_, static_cast<size_t>(result.count_));
  result.digits_[0] = 1;
  ++result.whole_;
  ++result.count_;
  return result;
}

int32_t DecimalDigits::first_digit() const {
  for (int32_t i = 0; i < count_; ++i)
    if (digits_[i] != 0)
      return i;
  return -1;
}

/// `n` digits from number `from` on; zeros follow the last.
void DecimalDigits::PrintDigits(String &out, int32_t from, int32_t n) const {
  const int32_t at = out.grow_by(n);
  for (int32_t i = 0; i < n; ++i)
    out.at(at + i) = static_cast<char>('0' + (from + i < count_ ? digits_[from + i] : 0));
}

void DecimalDigits::PrintFixed(String &out, int32_t precision, bool keep_point) const {
  const DecimalDigits rounded = Rounded(whole_ + precision);
  rounded.PrintDigits(out, 0, rounded.whole_);
  if (precision > 0 || keep_point)
    out += '.';
  rounded.PrintDigits(out, rounded.whole_, precision);
}

void DecimalDigits::PrintScientific(String &out, int32_t precision, bool keep_point) const {
  const int32_t first = first_digit();
  const DecimalDigits rounded = Rounded(first < 0 ? count_ : first + 1 + precision);
  int32_t at = rounded.first_digit();
  int32_t exponent = at < 0 ? 0 : rounded.whole_ - 1 - at;
  if (at < 0)
    at = 0;
  rounded.PrintDigits(out, at, 1);
  if (precision > 0 || keep_point)
    out += '.';
  rounded.PrintDigits(out, at + 1, precision);
  out += exponent < 0 ? "e-" : "e+";
  if (exponent < 0)
    exponent = -exponent;
  if (exponent >= 100)
    out += static_cast<char>('0' + exponent / 100);
  out += static_cast<char>('0' + exponent / 10 % 10);
  out += static_cast<char>('0' + exponent % 10);
}

void DecimalDigits::Print(String &out, char letter, int32_t precision, bool keep_point) const {
  if (!finite_) {
    out += whole_ ? "nan" : "inf";
    return;
  }
  if (letter == 'f') {
    PrintFixed(out, precision, keep_point);
    return;
  }
  if (letter == 'e') {
    PrintScientific(out, precision, keep_point);
    return;
  }
  if (precision == 0)
    precision = 1;
  const int32_t first = first_digit();
  const DecimalDigits rounded = Rounded(first < 0 ? count_ : first + precision);
  const int32_t at = rounded.first_digit();
  const int32_t exponent = at < 0 ? 0 : rounded.whole_ - 1 - at;
  String body;
  const bool fixed = exponent < precision && exponent >= -4;
  if (fixed)
    PrintFixed(body, precision - 1 - exponent, keep_point);
  else
    PrintScientific(body, precision - 1, keep_point);
  if (!keep_point && body.contains_char('.')) {
    const String tail = body.cut_from_match("e", 0);
    body.trim_right_char('0');
    body.remove_last_if('.');
    body += tail;
  }
  out += body;
}

} // namespace korb
