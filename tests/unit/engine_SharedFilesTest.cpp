#include "engine/SharedFiles.h"
#include "tests/support/Testing.h"

TEST_CASE("the entries of a list of shared files come back one by one, and rubbish ends the list") {
  struct Row {
    const char *text;
    const char *entries; // path, marks, semicolon
    const char *rest;
  };
  for (const Row &row :
       {Row{"\"c:\\a.dll\";\"c:\\b.dll \";\"c:\\c.dll^\"", "c:\\a.dll;c:\\b.dll keep;c:\\c.dll com;", ""},
        Row{"\"c:\\a.dll ^\"", "c:\\a.dll keep com;", ""},
        Row{"\"c:\\a.dll^ \"", "c:\\a.dll^ keep;", ""}, // a mark is off the path only in this order
        Row{"\"c:\\a\"\"b\"\"c.dll\"", "c:\\a\"b\"c.dll;", ""},
        Row{"\"c:\\a.dll\"\"c:\\b.dll\"", "c:\\a.dll\"c:\\b.dll;", ""},
        Row{"\"c:\\a.dll\"; \"c:\\b.dll\"", "c:\\a.dll;", " \"c:\\b.dll\""},
        Row{"c:\\a.dll;\"c:\\b.dll\"", "", "c:\\a.dll;\"c:\\b.dll\""},
        Row{"\" ^\";\"c:\\b.dll\"", "", ";\"c:\\b.dll\""}, Row{"\"", "", ""}}) {
    CAPTURE(std::string(row.text));
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
