// Compares the keys and the names of warnings that a page of the manual has in its tables with those of the packer.
// Ends with 0 when they are the same; else it names those that are on one side alone.
#include <fstream>
#include <iostream>
#include <set>
#include <sstream>
#include <string>

#include "format/Texts.h"
#include "packer/Words.h"
#include "packer/check/Findings.h"
#include "packer/manifest/ManifestReader.h"

using namespace korb;
using namespace korb::packer;

namespace {

using Keys = std::set<std::string, std::less<>>;

// What stands between backquotes in the first cell of a table's row.
Keys Quoted(const std::string &line) {
  Keys words;
  std::istringstream cell(line.substr(0, line.find('|', 1)));
  for (std::string outside, word; std::getline(cell, outside, '`') && std::getline(cell, word, '`');)
    words.insert(word);
  return words;
}

Keys DocumentedKeys(std::istream &page) {
  Keys keys;
  std::string table, line;
  while (std::getline(page, line)) {
    if (line.starts_with("#"))
      table.clear();
    if (line == "## Warnings")
      table = "warning";
    if (line == "## Before the tables")
      table = "root";
    if (line.starts_with("## `[")) {
      table = line.substr(line.find_first_not_of("#` ["));
      table.erase(table.find(']'));
    }
    if (line.starts_with("| `") && !table.empty())
      for (const std::string &word : Quoted(line))
        keys.insert(table + "." + word);
    for (size_t begin, end; (begin = line.find("`%")) != line.npos && (end = line.find("%`", begin)) != line.npos;
         line.erase(begin, 2))
      if (end > begin + 2) // `%%` is none
        keys.insert("variable " + line.substr(begin + 1, end - begin));
    if (line.starts_with("| ") && line.size() > 2 && line[2] >= '0' && line[2] <= '9') // number, name, arguments
      keys.insert("text " + line.substr(2, line.find("` |") - 1));
  }
  // The words of a kind stand in a table of their own.
  for (const char *kind : {"program", "shared", "font", "startup", "system", "system-com"})
    keys.erase(std::string("file.") + kind);
  return keys;
}

Keys KeysOfTheCode() {
  Keys keys;
  const auto &known = KnownKeys();
  for (const auto &[key, form] : known) {
    const size_t dot = key.find('.');
    // What all files share is told once.
    const bool shared = key.starts_with("tree.") || key.starts_with("file_defaults.");
    if (dot != key.npos && !(shared && known.contains("file." + key.substr(dot + 1)) && !key.ends_with(".source") &&
                             !key.ends_with(".target")))
      keys.insert(key);
  }
  for (const auto &[key, form] : known)
    if (key.find('.') == key.npos && form.kind != KeyForm::kTable && form.kind != KeyForm::kTables)
      keys.insert("root." + key);
  for (std::string_view name : WarningWords())
    keys.insert("warning." + std::string(name));
  for (std::string_view variable : kPathVariables)
    keys.insert("variable " + std::string(variable));
  for (size_t number = 0; number < std::size(kTextRows); ++number)
    keys.insert("text " + std::to_string(number) + " | `" + kTextRows[number].name + "`");
  return keys;
}

int Tell(const Keys &keys, const Keys &others, const char *complaint) {
  int count = 0;
  for (const std::string &key : keys)
    if (!others.contains(key)) {
      std::cout << key << complaint << "\n";
      ++count;
    }
  return count;
}

} // namespace

int main(int, char **argv) {
  std::ifstream page(argv[1]);
  const Keys documented = DocumentedKeys(page), real = KeysOfTheCode();
  const int faults =
      Tell(real, documented, ": the manual lacks it") + Tell(documented, real, ": the packer has no such thing");
  std::cout << documented.size() << " keys in the manual\n";
  return faults == 0 && !documented.empty() ? 0 : 1;
}
