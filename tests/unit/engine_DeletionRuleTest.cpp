#include <doctest/doctest.h>

#include "engine/DeletionRule.h"
#include "tests/support/FailureTrap.h"

using namespace korb;
using namespace korb::test;

TEST_CASE("an old file is deleted when its date or its size is the one that the record means") {
  const FileDate found{2001, 5, 17, 10, 30, 2};
  struct Row {
    int kind;
    const char *value;
    uint64_t size;
    bool due;
  };
  const Row rows[] = {
      {1, "5/17/2001 10:30:02", 0, true},
      {1, "5/17/2001 10:30:03", 0, false},
      {1, "5/17/2001", 0, true},            // a day without a time is all of it
      {1, "5/17/2001 0:00:00", 0, false},   // but midnight is a time
      {1, "17-May-2001 whenever", 0, true}, // and what is no time is none
      {1, "5/17/01", 0, true},              // in the century that is nearest
      {2, "5/17/2001 10:30:02", 0, true},   // from here on
      {2, "5/17/2001 10:30:03", 0, false},
      {2, "5/16/2001", 0, true},
      {3, "5/17/2001 10:30:02", 0, true}, // up to here
      {3, "5/17/2001 10:30:01", 0, false},
      {3, "5/18/2001", 0, true},
      {4, "1,234", 1234, true},
      {4, "about 1234 bytes", 1234, true},
      {4, "none", 0, true},
      {5, "0", 0, true},
      {5, "1235", 1234, false},
      {5, "100", 0x1'0000'0005, true}, // sizes have 64 bits
      {6, "1234", 1234, true},
      {6, "1233", 1234, false},
      {6, "-1", 0x8000'0000'0000'0000, true}, // with a sign
      {0, "no date", 5, true},                // all other kinds look at nothing
      {7, "no date", 5, true},
      {-1, "no date", 5, true},
  };
  for (const Row &row : rows) {
    CAPTURE(row.kind);
    CAPTURE(row.value);
    FileDeletion record;
    record.kind = static_cast<int8_t>(row.kind);
    record.value = row.value;
    CHECK(IsDeletionDue(record, found, row.size, 2026) == row.due);
  }
}

TEST_CASE("a condition on dates without a date is damage") {
  for (const char *value : {"", "soon", "2/30/2001"}) {
    CAPTURE(value);
    FileDeletion record;
    record.kind = kDeleteDateFrom;
    record.value = value;
    CHECK(TrappedCode([&] { IsDeletionDue(record, FileDate{2001, 5, 17, 0, 0, 0}, 0, 2026); }) == 65);
  }
}
