#include "tests/support/Testing.h"
#include "ui/Progress.h"

TEST_CASE("a phase's time survives the wrap of the tick counter") {
  struct Row {
    uint32_t start, now;
    int32_t milliseconds;
    bool left;
  };
  for (const Row &row : {
           Row{1000, 1000, 1, true}, Row{1000, 1499, 500, true}, Row{1000, 1500, 500, false}, Row{1000, 1000, 0, false},
           Row{0xFFFFFF00, 0x000000F0, 500, true}, Row{0xFFFFFF00, 0x00000100, 500, false},
           Row{1000, 900, 500, true},     // the clock stepped back by less
           Row{1000, 500, 500, false},    // ... and by as much
           Row{0, 0x80000000, 500, false} // half the range, of either sign
       }) {
    CAPTURE(row.start);
    CAPTURE(row.now);
    CHECK(PhaseHasTimeLeft(row.start, row.now, row.milliseconds) == row.left);
  }
}
