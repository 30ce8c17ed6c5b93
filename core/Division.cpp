// 64-bit division for the program: the compiler calls these by name. Its own are larger than all of their uses here.

// The compiler must not see through the loop and call what it is compiling.
#pragma GCC optimize("no-tree-loop-distribute-patterns")

#include <cstdint>

extern "C" {

/// Quotient; `*rest` takes the remainder. A zero divisor faults, as the processor's own division does.
uint64_t __udivmoddi4(uint64_t n, uint64_t divisor, uint64_t *rest) {
  uint32_t high = static_cast<uint32_t>(n >> 32);
  uint32_t low = static_cast<uint32_t>(n);
  if (divisor >> 32 == 0) {
    const uint32_t d = static_cast<uint32_t>(divisor);
    uint32_t carry = 0;
    asm("divl %4" : "=a"(high), "=d"(carry) : "0"(high), "1"(carry), "r"(d));
    asm("divl %4" : "=a"(low), "=d"(carry) : "0"(low), "1"(carry), "r"(d));
    *rest = carry;
    return static_cast<uint64_t>(high) << 32 | low;
  }
  // The quotient has 32 bits at most; hardly anybody divides by so much.
  uint64_t remainder = high;
  uint32_t quotient = 0;
  for (int bit = 0; bit < 32; ++bit) {
    remainder = remainder << 1 | low >> 31;
    low <<= 1;
    quotient <<= 1;
    if (remainder >= divisor) {
      remainder -= divisor;
      quotient |= 1;
    }
  }
  *rest = remainder;
  return quotient;
}

uint64_t __udivdi3(uint64_t n, uint64_t divisor) {
  uint64_t rest;
  return __udivmoddi4(n, divisor, &rest);
}

uint64_t __umoddi3(uint64_t n, uint64_t divisor) {
  uint64_t rest;
  __udivmoddi4(n, divisor, &rest);
  return rest;
}

int64_t __divmoddi4(int64_t n, int64_t divisor, int64_t *rest) {
  uint64_t remainder;
  const uint64_t quotient = __udivmoddi4(n < 0 ? 0 - static_cast<uint64_t>(n) : static_cast<uint64_t>(n),
                                         divisor < 0 ? 0 - static_cast<uint64_t>(divisor) : static_cast<uint64_t>(divisor),
                                         &remainder);
  *rest = static_cast<int64_t>(n < 0 ? 0 - remainder : remainder);
  return static_cast<int64_t>((n < 0) != (divisor < 0) ? 0 - quotient : quotient);
}

int64_t __divdi3(int64_t n, int64_t divisor) {
  int64_t rest;
  return __divmoddi4(n, divisor, &rest);
}

int64_t __moddi3(int64_t n, int64_t divisor) {
  int64_t rest;
  __divmoddi4(n, divisor, &rest);
  return rest;
}

} // extern "C"
