// What the program has in place of a C runtime: its entry, memory and text primitives, the heap, random numbers.
//
// The first Windows 95 brings no C library, and the compiler's own start-up uses instructions that its machines lack.
// Only the program is linked with this file; the tests run on the ordinary runtime through the same names. It is left
// out of the optimisation of the whole program, which would take these functions away before it adds calls of them.

// The loops below must not become calls of themselves.
#pragma GCC optimize("no-tree-loop-distribute-patterns")

#include <cstddef>
#include <cstdint>
#include <new>

#include "core/Heap.h"
#include "core/Windows.h"

namespace {

// One division of the processor: the quotient must fit into 32 bits.
uint32_t Divide(uint32_t high, uint32_t low, uint32_t divisor, uint32_t &rest) {
  uint32_t quotient;
  asm("divl %4" : "=a"(quotient), "=d"(rest) : "0"(low), "1"(high), "rm"(divisor) : "cc");
  return quotient;
}

uint64_t Divide(uint64_t value, uint64_t divisor, uint64_t &rest) {
  const uint32_t high = static_cast<uint32_t>(value >> 32);
  if (divisor >> 32 == 0) {
    uint32_t left;
    const uint32_t upper = Divide(0, high, static_cast<uint32_t>(divisor), left);
    const uint32_t lower = Divide(left, static_cast<uint32_t>(value), static_cast<uint32_t>(divisor), left);
    rest = left;
    return static_cast<uint64_t>(upper) << 32 | lower;
  }
  // Such a quotient has at most 32 bits, so the upper half is where the rest starts.
  uint32_t quotient = static_cast<uint32_t>(value);
  rest = high;
  for (int bit = 0; bit < 32; ++bit) {
    const bool carry = rest >> 63;
    rest = rest << 1 | quotient >> 31;
    quotient <<= 1;
    if (carry || rest >= divisor) {
      rest -= divisor;
      ++quotient;
    }
  }
  return quotient;
}

uint64_t Magnitude(int64_t value) {
  return value < 0 ? 0 - static_cast<uint64_t>(value) : static_cast<uint64_t>(value);
}

} // namespace

extern "C" {

// What the compiler calls for 64-bit divisions. Its own are five times as long.

uint64_t __udivdi3(uint64_t value, uint64_t divisor) {
  uint64_t rest;
  return Divide(value, divisor, rest);
}

uint64_t __umoddi3(uint64_t value, uint64_t divisor) {
  uint64_t rest;
  Divide(value, divisor, rest);
  return rest;
}

uint64_t __udivmoddi4(uint64_t value, uint64_t divisor, uint64_t *rest) {
  return Divide(value, divisor, *rest);
}

int64_t __divmoddi4(int64_t value, int64_t divisor, int64_t *rest) {
  uint64_t left;
  const uint64_t quotient = Divide(Magnitude(value), Magnitude(divisor), left);
  *rest = static_cast<int64_t>(value < 0 ? 0 - left : left);
  return static_cast<int64_t>((value < 0) != (divisor < 0) ? 0 - quotient : quotient);
}

int64_t __divdi3(int64_t value, int64_t divisor) {
  int64_t rest;
  return __divmoddi4(value, divisor, &rest);
}

int64_t __moddi3(int64_t value, int64_t divisor) {
  int64_t rest;
  __divmoddi4(value, divisor, &rest);
  return rest;
}

// The linker's list of constructors: -1, the functions, 0.
extern void (*__CTOR_LIST__[])();

// Copies run by the processor's own string instructions.

void *memcpy(void *dest, const void *src, size_t n) {
  void *to = dest;
  size_t words = n >> 2;
  asm volatile("rep movsl" : "+D"(to), "+S"(src), "+c"(words) : : "memory");
  size_t rest = n & 3;
  asm volatile("rep movsb" : "+D"(to), "+S"(src), "+c"(rest) : : "memory");
  return dest;
}

void *memmove(void *dest, const void *src, size_t n) {
  if (static_cast<uint8_t *>(dest) - static_cast<const uint8_t *>(src) >= static_cast<ptrdiff_t>(n) || dest <= src)
    return memcpy(dest, src, n);
  uint8_t *to = static_cast<uint8_t *>(dest) + n - 1;
  const uint8_t *from = static_cast<const uint8_t *>(src) + n - 1;
  asm volatile("std\n\trep movsb\n\tcld" : "+D"(to), "+S"(from), "+c"(n) : : "memory");
  return dest;
}

void *memset(void *dest, int value, size_t n) {
  void *to = dest;
  size_t words = n >> 2;
  const uint32_t word = static_cast<uint8_t>(value) * 0x01010101u;
  asm volatile("rep stosl" : "+D"(to), "+c"(words) : "a"(word) : "memory");
  size_t rest = n & 3;
  asm volatile("rep stosb" : "+D"(to), "+c"(rest) : "a"(word) : "memory");
  return dest;
}

int memcmp(const void *a, const void *b, size_t n) {
  const uint8_t *p = static_cast<const uint8_t *>(a);
  const uint8_t *q = static_cast<const uint8_t *>(b);
  for (; n > 0; --n, ++p, ++q)
    if (*p != *q)
      return *p - *q;
  return 0;
}

void *memchr(const void *text, int c, size_t n) {
  const uint8_t *p = static_cast<const uint8_t *>(text);
  for (; n > 0; --n, ++p)
    if (*p == static_cast<uint8_t>(c))
      return const_cast<uint8_t *>(p);
  return nullptr;
}

size_t strlen(const char *text) {
  const char *end = text;
  while (*end)
    ++end;
  return static_cast<size_t>(end - text);
}

int strncmp(const char *a, const char *b, size_t n) {
  for (; n > 0; --n, ++a, ++b) {
    if (*a != *b)
      return static_cast<uint8_t>(*a) - static_cast<uint8_t>(*b);
    if (!*a)
      break;
  }
  return 0;
}

int strcmp(const char *a, const char *b) {
  return strncmp(a, b, SIZE_MAX);
}

char *strchr(const char *text, int c) {
  for (;; ++text) {
    if (*text == static_cast<char>(c))
      return const_cast<char *>(text);
    if (!*text)
      return nullptr;
  }
}

void *malloc(size_t size) {
  return HeapAlloc(GetProcessHeap(), 0, size);
}

void free(void *block) {
  if (block)
    HeapFree(GetProcessHeap(), 0, block);
}

void *realloc(void *block, size_t size) {
  return block ? HeapReAlloc(GetProcessHeap(), 0, block, size) : malloc(size);
}

int rand() {
  static uint32_t state = GetTickCount();
  state = state * 214013 + 2531011;
  return static_cast<int>(state >> 16 & 0x7FFF);
}

void __cxa_pure_virtual() {
  ExitProcess(1);
}

/// The loader's way in. WinMain gets the command line after the program's own name, as any C start-up gives it.
void WinMainCRTStartup() {
  for (void (**constructor)() = __CTOR_LIST__ + 1; *constructor; ++constructor)
    (*constructor)();

  char *line = GetCommandLineA();
  const char end = *line == '"' ? *line++ : ' ';
  while (*line && *line != end && (end == '"' || *line != '\t'))
    ++line;
  if (*line == '"')
    ++line;
  while (*line == ' ' || *line == '\t')
    ++line;

  STARTUPINFOA startup;
  startup.dwFlags = 0;
  GetStartupInfoA(&startup);
  const int show = startup.dwFlags & STARTF_USESHOWWINDOW ? startup.wShowWindow : SW_SHOWDEFAULT;
  ExitProcess(static_cast<UINT>(WinMain(GetModuleHandleA(nullptr), nullptr, line, show)));
}

} // extern "C"

void *operator new(size_t size) {
  return korb::heap_take(size);
}

void *operator new[](size_t size) {
  return korb::heap_take(size);
}

void operator delete(void *block) noexcept {
  free(block);
}

void operator delete[](void *block) noexcept {
  free(block);
}

void operator delete(void *block, size_t) noexcept {
  free(block);
}

void operator delete[](void *block, size_t) noexcept {
  free(block);
}
