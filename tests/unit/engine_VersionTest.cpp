#include "engine/Version.h"
#include "tests/support/Testing.h"

namespace {

int Sign(int32_t value) {
  return (value > 0) - (value < 0);
}

} // namespace

TEST_CASE("versions are ordered by their numbers, then by their last letter") {
  struct Row {
    const char *a, *b;
    int order;
  };
  for (const Row &row : {
           Row{"", "", 0}, Row{"1.2", "1.2", 0}, Row{"1.2", "1.2.0", -1},         // a shorter list is older
           Row{"1.10", "1.9", 1},                                                 // numbers, not characters
           Row{"0010.02", "10.2", 0},                                             // leading zeros don't count
           Row{".5", "0.5", 0},                                                   // a leading dot stands for a 0
           Row{"..5", "0.5", 0},                                                  // ... only once
           Row{"1..2", "1.2", 0},                                                 // later ones only separate
           Row{"1,2 3", "1.2.3", 0},                                              // so does anything else
           Row{"v1.2", "1.2v", 0},                                                // a letter counts wherever it stands
           Row{"1.2a", "1.2", 1}, Row{"1.2b", "1.2a", 1}, Row{"1.2a", "1.2A", 1}, // with its case
           Row{"1a2b", "1.2.b", 0},                                               // the last one wins
           Row{"1.2b", "1.2.0a", -1}, // letters only decide between equal lists
           Row{"b", "a", 1},          // also between empty ones
           Row{"4294967297", "1", 0}  // wraps
       }) {
    CAPTURE(std::string(row.a));
    CAPTURE(std::string(row.b));
    CHECK(Sign(CompareVersions(row.a, row.b)) == row.order);
    CHECK(Sign(CompareVersions(row.b, row.a)) == -row.order);
  }
}

TEST_CASE("a file's version gets capitals and components of ten characters") {
  struct Row {
    const char *version, *normalised;
  };
  for (const Row &row :
       {Row{"", ""}, Row{"1", "0000000001"}, Row{"1.20b", "0000000001.000000020B"}, Row{"1.", "0000000001.0000000000"},
        Row{".1", "0000000000.0000000001"}, Row{"12345678901.1", "12345678901.0000000001"}}) {
    String version(row.version);
    NormaliseVersion(version);
    CHECK(version == row.normalised);
  }
}
