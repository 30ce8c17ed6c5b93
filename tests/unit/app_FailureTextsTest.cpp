#include "app/FailureTexts.h"
#include "core/RunValues.h"
#include "format/Texts.h"
#include "tests/support/Testing.h"

namespace {

/// A run whose archive has these two texts.
struct Texts {
  Texts() {
    TextTable.clear();
    TextTable.set_count(kTextErrorCaption + 1);
    for (const TextNumber number : {kTextCorrupt, kTextErrorCaption})
      TextTable.at(number).set_count(1);
    ProductName = "Thing";
  }
  ~Texts() { TextTable.clear(); }
};

} // namespace

TEST_CASE("before there is an archive, and where its text is empty, a report has the program's own caption") {
  TextTable.clear();
  CHECK(std::string(ErrorCaption()) == "Error");
  const Texts empty;
  CHECK(std::string(ErrorCaption()) == "Error");
}

TEST_CASE_FIXTURE(Texts, "reports use the archive's words where it has any") {
  TextTable.at(kTextCorrupt).at(0) = "<product> is broken (%d)";
  TextTable.at(kTextErrorCaption).at(0) = "Oh";
  CHECK(str_format(CorruptFormat(), 20) == "Thing is broken (20)");
  CHECK(std::string(ErrorCaption()) == "Oh");
}
