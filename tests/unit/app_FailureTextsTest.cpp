#include "app/FailureTexts.h"
#include "core/RunValues.h"
#include "tests/support/Testing.h"

TEST_CASE("reports use the archive's words where it has any") {
  TextTable.clear();
  CHECK(std::string(ErrorCaption()) == "Error");
  TextTable.set_count(22);
  TextTable.at(13).set_count(1);
  TextTable.at(21).set_count(1);
  CHECK(std::string(ErrorCaption()) == "Error"); // an empty text is none
  TextTable.at(13).at(0) = "<product> is broken (%d)";
  TextTable.at(21).at(0) = "Oh";
  ProductName = "Thing";
  CHECK(str_format(CorruptFormat(), 20) == "Thing is broken (20)");
  CHECK(std::string(ErrorCaption()) == "Oh");
  TextTable.clear();
}
