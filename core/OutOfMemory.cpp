// The report of a heap that is used up. Nothing here allocates or formats: the digits are written by hand into a block
// that was there from the start.

#include <cstring>

#include "core/Failure.h"
#include "core/Heap.h"
#ifdef _WIN32
#include "core/Windows.h"
#endif

namespace korb {

namespace {

[[maybe_unused]] constexpr int32_t kDumpedWords = 80;
[[maybe_unused]] constexpr int32_t kWordsInRow = 8;

char Report[1024];

/// The report's box keeps windows alive that may want memory too: then the process ends at once.
struct Reporting {
  Reporting() {
#ifdef _WIN32
    if (active)
      ExitProcess(1);
#endif
    active = true;
  }
  ~Reporting() {
    active = false;
  } // runs where a test unwinds, never in the program
  static inline bool active;
};

char *PutText(char *to, const char *text) {
  while (*text)
    *to++ = *text++;
  return to;
}

char *PutDecimal(char *to, uint32_t value) {
  uint32_t unit = 1;
  while (value / unit >= 10)
    unit *= 10;
  for (; unit > 0; unit /= 10)
    *to++ = static_cast<char>('0' + value / unit % 10);
  return to;
}

char *PutHex(char *to, uint32_t value) {
  for (int32_t shift = 28; shift >= 0; shift -= 4)
    *to++ = "0123456789ABCDEF"[value >> shift & 15];
  return to;
}

#ifdef _WIN32
/// Words from `top` upward, a row of them after each CR. Stops at the end of the stack.
char *PutStack(char *to, const volatile uint32_t *top) {
  const uint32_t *stack_end;
  asm("movl %%fs:4, %0" : "=r"(stack_end)); // the thread's block: the stack ends here
  for (int32_t i = 0; i < kDumpedWords && top + i < stack_end; ++i) {
    *to++ = i % kWordsInRow == 0 ? '\r' : ' ';
    to = PutHex(to, top[i]);
  }
  return to;
}
#endif

} // namespace

void OutOfMemory(size_t size) {
  const Reporting reporting;
  // Shows a reader of the dump where it begins.
  [[maybe_unused]] volatile uint32_t marker[2] = {0x11223344, 0x55667788};
  const uint32_t requested = static_cast<uint32_t>(size);
  char *to = PutText(Report, "Out Of Memory.  Make sure your hard drive is not full.\nRequested size = ");
  to = PutDecimal(to, requested);
  to = PutText(to, " (0x");
  to = PutHex(to, requested);
  to = PutText(to, ")\n\nStack contents:");
#ifdef _WIN32
  to = PutStack(to, marker);
#endif
  *to = '\0';
  FatalMessage(Report);
}

} // namespace korb
