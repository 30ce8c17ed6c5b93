// A program on the runtime of the one that ships, without a C library. It ends with the number of the first claim
// that does not hold, or 0.
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "core/Windows.h"

namespace {

struct Divided {
  uint64_t quotient, rest;
};

// Bit by bit, as on paper.
Divided Divide(uint64_t value, uint64_t divisor) {
  Divided result{0, 0};
  for (int bit = 63; bit >= 0; --bit) {
    const bool carry = result.rest >> 63;
    result.rest = result.rest << 1 | (value >> bit & 1);
    if (carry || result.rest >= divisor) {
      result.rest -= divisor;
      result.quotient |= uint64_t{1} << bit;
    }
  }
  return result;
}

// Each power of two, and its neighbours.
constexpr int kNumbers = 3 * 64;
uint64_t Number(int i) {
  return (uint64_t{1} << i / 3) + static_cast<uint64_t>(i % 3) - 1;
}

// What `value / divisor` gives with signs follows from what it gives without.
bool Divides() {
  for (int i = 0; i < kNumbers; ++i)
    for (int k = 1; k < kNumbers; ++k) {
      const uint64_t value = Number(i), divisor = Number(k);
      const Divided right = Divide(value, divisor);
      if (value / divisor != right.quotient || value % divisor != right.rest)
        return false;
      if (value >> 63 || divisor >> 63)
        continue;
      const int64_t a = static_cast<int64_t>(value), b = static_cast<int64_t>(divisor);
      const int64_t quotient = static_cast<int64_t>(right.quotient), rest = static_cast<int64_t>(right.rest);
      if (-a / b != -quotient || a / -b != -quotient || -a / -b != quotient || -a % b != -rest || a % -b != rest ||
          -a % -b != -rest)
        return false;
    }
  volatile int64_t least = INT64_MIN, ten = 10;
  return least / ten == -922337203685477580 && least % ten == -8 && ten / least == 0 && ten % least == 10;
}

// Every overlap of short blocks, at every alignment.
bool MovesBytes() {
  uint8_t bytes[64], expected[64];
  for (size_t from = 0; from < 20; ++from)
    for (size_t to = 0; to < 20; ++to)
      for (size_t n = 0; n < 20; ++n) {
        for (size_t i = 0; i < sizeof bytes; ++i)
          bytes[i] = expected[i] = static_cast<uint8_t>(i);
        for (size_t i = 0; i < n; ++i)
          expected[to + i] = static_cast<uint8_t>(from + i);
        if (memmove(bytes + to, bytes + from, n) != bytes + to || memcmp(bytes, expected, sizeof bytes) != 0)
          return false;
      }
  return true;
}

bool FillsAndCompares() {
  char text[32];
  for (size_t n = 0; n < sizeof text; ++n) {
    memset(text, 'x', sizeof text);
    memset(text, 0x1FF, n);
    for (size_t i = 0; i < sizeof text; ++i)
      if (text[i] != (i < n ? '\xFF' : 'x'))
        return false;
  }
  return strlen("") == 0 && strlen("four") == 4 && strcmp("a", "b") < 0 && strcmp("b\xE4", "b") > 0 &&
         strncmp("abc", "abd", 2) == 0 && memcmp("\x80", "\x7F", 1) > 0 && *strchr("a=b", '=') == '=' &&
         strchr("ab", '=') == nullptr && *strchr("ab", 0) == 0 && memchr("ab", 'b', 1) == nullptr;
}

bool TakesMemory() {
  char *block = static_cast<char *>(malloc(10));
  if (!block)
    return false;
  memcpy(block, "ninechars", 10);
  block = static_cast<char *>(realloc(block, 1000000));
  const bool kept = block && strcmp(block, "ninechars") == 0;
  // A refusal is an answer, and the old block stays.
  const bool refused = realloc(block, 0x7FFFFFF0) == nullptr;
  free(block);
  free(nullptr);
  return kept && refused;
}

bool DrawsNumbers() {
  bool differ = false;
  const int first = rand();
  for (int i = 0; i < 100; ++i) {
    const int number = rand();
    if (number < 0 || number > 0x7FFF)
      return false;
    differ |= number != first;
  }
  return differ;
}

struct Constructed {
  volatile int value;
  Constructed() : value(5) {}
} const TheConstructed;

} // namespace

// What this program needs of the core: never reached.
namespace korb {
void *heap_take(size_t size);
void *heap_take(size_t size) {
  return malloc(size);
}
} // namespace korb

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, char *arguments, int) {
  bool (*const claims[])() = {Divides, MovesBytes, FillsAndCompares, TakesMemory, DrawsNumbers};
  int number = 0;
  for (bool (*const claim)() : claims) {
    ++number;
    if (!claim())
      return number;
  }
  if (TheConstructed.value != 5)
    return 10;
  if (instance != GetModuleHandleA(nullptr))
    return 11;
  return strcmp(arguments, "/a \"two words\"") == 0 ? 0 : 12;
}
