#include <doctest/doctest.h>

#include <string>

#include "engine/SharedEntry.h"

using namespace korb;

TEST_CASE("the entries of a list of shared files come back one by one, and rubbish ends the list") {
  struct Row {
    const char *text;
    const char *entries; // path, marks, semicolon
    const char *rest;
  };
  const Row rows[] = {
      {"\"c:\\a.dll\";\"c:\\b.dll \";\"c:\\c.dll^\"", "c:\\a.dll;c:\\b.dll keep;c:\\c.dll com;", ""},
      {"\"c:\\a.dll ^\"", "c:\\a.dll keep com;", ""},
      {"\"c:\\a.dll^ \"", "c:\\a.dll^ keep;", ""}, // a mark is off the path only in this order
      {"\"c:\\a\"\"b\"\"c.dll\"", "c:\\a\"b\"c.dll;", ""},
      {"\"c:\\a.dll\"\"c:\\b.dll\"", "c:\\a.dll\"c:\\b.dll;", ""},
      {"\"c:\\a.dll\"; \"c:\\b.dll\"", "c:\\a.dll;", " \"c:\\b.dll\""},
      {"c:\\a.dll;\"c:\\b.dll\"", "", "c:\\a.dll;\"c:\\b.dll\""},
      {"\" ^\";\"c:\\b.dll\"", "", ";\"c:\\b.dll\""},
      {"\"", "", ""},
  };
  for (const Row &row : rows) {
    CAPTURE(row.text);
    String text(row.text);
    std::string entries;
    SharedEntry entry;
    while (TakeSharedEntry(text, entry))
      entries +=
          std::string(entry.path.c_str()) + (entry.keep ? " keep" : "") + (entry.registers_itself ? " com" : "") + ";";
    CHECK(entries == row.entries);
    CHECK(text == row.rest);
  }
  String text;
  AppendSharedEntry(text, "c:\\a.dll ");
  AppendSharedEntry(text, "c:\\b.dll^");
  CHECK(text == "\"c:\\a.dll \";\"c:\\b.dll^\"");
}
