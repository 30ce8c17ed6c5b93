#include <doctest/doctest.h>

#include "ui/PhaseTime.h"

using namespace korb;

TEST_CASE("a phase's time survives the wrap of the tick counter") {
  struct Row {
    uint32_t start, now;
    int32_t milliseconds;
    bool left;
  };
  const Row rows[] = {
      {1000, 1000, 1, true},
      {1000, 1499, 500, true},
      {1000, 1500, 500, false},
      {1000, 1000, 0, false},
      {0xFFFFFF00, 0x000000F0, 500, true},
      {0xFFFFFF00, 0x00000100, 500, false},
      {1000, 900, 500, true},      // the clock stepped back by less
      {1000, 500, 500, false},     // ... and by as much
      {0, 0x80000000, 500, false}, // half the range, of either sign
  };
  for (const Row &row : rows) {
    CAPTURE(row.start);
    CAPTURE(row.now);
    CHECK(PhaseHasTimeLeft(row.start, row.now, row.milliseconds) == row.left);
  }
}
