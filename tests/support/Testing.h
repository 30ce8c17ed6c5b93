// What nearly every test begins with: the framework, the trap for reports, and values that print.
#pragma once

#include <string>
#include <vector>

#include "core/String.h"
#include "tests/support/Doctest.h"
#include "tests/support/FailureTrap.h"

namespace korb::test {

/// All bytes of a text, NULs too.
inline std::string Std(const String &text) {
  return std::string(text.c_str(), static_cast<size_t>(text.length()));
}

/// Numbers and truths that one claim compares, taken from left to right; when it fails, all of them are shown.
struct Values {
  template <class... T>
  explicit Values(T... values) : all{static_cast<int64_t>(values)...} {}
  bool operator==(const Values &) const = default;
  std::vector<int64_t> all;
};

} // namespace korb::test

namespace doctest {

template <>
struct StringMaker<korb::String> {
  static String convert(const korb::String &text) { return korb::test::Std(text).c_str(); }
};

template <>
struct StringMaker<korb::test::Values> {
  static String convert(const korb::test::Values &values) {
    std::string all;
    for (const int64_t value : values.all)
      all += std::to_string(value) + " ";
    return all.c_str();
  }
};

} // namespace doctest

using namespace korb;
using namespace korb::test;
using namespace std::string_literals;
