// A machine in memory, for the rules of engine/ that ask the registry: RegistryKey, and the few calls about files that
// go with it, as the native tests link them. What the real ones do is the business of tests/win32.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "core/String.h"

namespace korb::test {

struct RegistryText {
  std::string text; ///< of a number, its digits
  bool expands = false;
};

struct IgnoringCase {
  bool operator()(const std::string &a, const std::string &b) const {
    return text_compare_no_case(a.c_str(), b.c_str(), INT32_MAX) < 0;
  }
};

/// The one machine of a test, from its making to its end.
class MemoryMachine {
public:
  MemoryMachine();
  ~MemoryMachine();

  /// A value and the keys above it; `name` is empty for the default value. A path begins below the classes, or with
  /// "machine\Software\" or "user\Software\".
  void Set(const std::string &path, const std::string &name, const std::string &text, bool expands = false);
  /// All keys, a line each: `[path] name=text ...`, with '%' before a text that expands.
  std::string Registry() const;

  std::map<std::string, std::map<std::string, RegistryText, IgnoringCase>, IgnoringCase> keys;
  bool refuses_keys = false;      ///< none can be made or opened
  std::set<std::string> files;    ///< and directories
  std::set<std::string> held;     ///< files that can't be deleted
  bool says_yes = true;           ///< to each question about a file
  std::vector<std::string> calls; ///< "unregister x", "ask x", "delete x"
};

} // namespace korb::test
