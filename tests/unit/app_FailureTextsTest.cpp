#include "app/FailureTexts.h"
#include "archive/RunValues.h"
#include "tests/support/Testing.h"

TEST_CASE("reports use the archive's words where it has any") {
  TextTable.clear();
  const std::string built_in = str_format(CorruptFormat(), 20).c_str();
  CHECK(built_in.find("This installation program is corrupt.  This is") == 0);
  CHECK(built_in.substr(built_in.size() - 18) == "\r\n\r\nError code: 20");
  CHECK(std::string(ErrorCaption()) == "Error");

  TextTable.set_count(22);
  TextTable.at(13).set_count(1);
  TextTable.at(21).set_count(1);
  CHECK(str_format(CorruptFormat(), 20) == built_in.c_str()); // an empty text is none
  TextTable.at(13).at(0) = "<product> is broken (%d)";
  TextTable.at(21).at(0) = "Oh";
  ProductName = "Thing";
  CHECK(str_format(CorruptFormat(), 20) == "Thing is broken (20)");
  CHECK(std::string(ErrorCaption()) == "Oh");
  TextTable.at(13).at(0) = "%s"; // an author's mistake is shown, and nothing else
  CHECK(str_format(CorruptFormat(), 20) == "%s");
  TextTable.clear();
}

TEST_CASE("the usage names the complaint and the program") {
  const std::string usage = str_format(kUsageFormat, "What?", "setup.exe").c_str();
  CHECK(usage.find("What?\n\nUsage:\nsetup.exe [/a] [/d:\"dir\"] [/n:\"name\"] [/u:\"name\"] [/r:\"program\"]\n\n") ==
        0);
  CHECK(usage.find("\n/a                  \tAutomatic mode\n/d:\"dir\"        \tOverride") != std::string::npos);
  CHECK(usage.find("by name\r\n/r:") != std::string::npos);
}
