#include "core/RunValues.h"
#include "tests/support/Testing.h"
#include "ui/TextLookup.h"

namespace {

/// An archive with two languages and three texts, the last without any.
struct Texts {
  Texts() {
    TextTable.clear();
    TextTable.set_count(3);
    for (int32_t i = 0; i < 2; ++i)
      TextTable.at(i).set_count(2);
    TextTable.at(0).at(0) = "<PRODUCT> on <Os>, <product>";
    TextTable.at(0).at(1) = "zwei";
    TextTable.at(1).at(0) = "plain";
    OsNameInTexts = "System";
    LanguageIndex = 0;
  }
  ~Texts() {
    TextTable.clear();
    LanguageIndex = 0;
  }
};

} // namespace

TEST_CASE_FIXTURE(Texts, "a text is found by number and language, with the names put in") {
  struct Row {
    int32_t number, language;
    const char *expected;
  };
  ProductName = "P<os>"; // the system's name goes in second, so it is found here too
  for (const Row &row : {Row{0, 0, "PSystem on System, PSystem"}, Row{0, 1, "zwei"}, Row{1, 0, "plain"}, Row{1, 1, ""},
                         Row{2, 0, ""}, Row{3, 0, ""}, Row{-1, 0, ""}, Row{0, 2, ""}, Row{0, -1, ""}}) {
    CAPTURE(row.number);
    CAPTURE(row.language);
    LanguageIndex = row.language;
    CHECK(std::string(TextLookup(row.number)) == row.expected);
  }
}

TEST_CASE_FIXTURE(Texts, "a text keeps the names of its first lookup, and stays in its place") {
  ProductName = "P";
  const char *first = TextLookup(0);
  ProductName = "Other";
  CHECK(TextLookup(0) == first);
  CHECK(std::string(first) == "P on System, P");
}

TEST_CASE_FIXTURE(Texts, "a text doesn't grow by a name that holds its own placeholder") {
  TextTable.at(1).at(0) = "<product>"; // grew at each lookup
  ProductName = "<Product><product>";
  for (int i = 0; i < 2; ++i)
    CHECK(std::string(TextLookup(1)) == "<product>");
}
