#include "engine/DeletionRule.h"
#include "tests/support/Testing.h"

TEST_CASE("an old file is deleted when its date or its size is the one that the record means") {
  const FileDate found{2001, 5, 17, 10, 30, 2};
  struct Row {
    int kind;
    const char *value;
    uint64_t size;
    bool due;
  };
  for (const Row &row : {Row{1, "5/17/2001 10:30:02", 0, true},
                         Row{1, "5/17/2001 10:30:03", 0, false},
                         Row{1, "5/17/2001", 0, true},            // a day without a time is all of it
                         Row{1, "5/17/2001 0:00:00", 0, false},   // but midnight is a time
                         Row{1, "17-May-2001 whenever", 0, true}, // and what is no time is none
                         Row{1, "5/17/01", 0, true},              // in the century that is nearest
                         Row{2, "5/17/2001 10:30:02", 0, true},   // from here on
                         Row{2, "5/17/2001 10:30:03", 0, false},
                         Row{3, "5/17/2001 10:30:02", 0, true}, // up to here
                         Row{3, "5/17/2001 10:30:01", 0, false},
                         Row{4, "about 1234 bytes", 1234, true},
                         Row{4, "none", 0, true},
                         Row{5, "0", 0, true},
                         Row{5, "1235", 1234, false},
                         Row{5, "100", 0x1'0000'0005, true}, // sizes have 64 bits
                         Row{6, "1234", 1234, true},
                         Row{6, "1233", 1234, false},
                         Row{6, "-1", 0x8000'0000'0000'0000, true}, // with a sign
                         Row{0, "no date", 5, true},                // all other kinds look at nothing
                         Row{-1, "no date", 5, true}}) {
    CAPTURE(row.kind);
    CAPTURE(std::string(row.value));
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
