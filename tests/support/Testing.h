// What nearly every test begins with: the framework, the trap for reports, and strings that print.
#pragma once

#include <string>

#include "core/String.h"
#include "tests/support/Doctest.h"
#include "tests/support/FailureTrap.h"

namespace korb::test {

/// All bytes of a text, NULs too.
inline std::string Std(const String &text) {
  return std::string(text.c_str(), static_cast<size_t>(text.length()));
}

} // namespace korb::test

namespace doctest {

template <>
struct StringMaker<korb::String> {
  static String convert(const korb::String &text) { return korb::test::Std(text).c_str(); }
};

} // namespace doctest

using namespace korb;
using namespace korb::test;
using namespace std::string_literals;
