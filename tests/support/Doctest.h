// The framework of the tests, which shows a text in a failure by its contents, not by its address, and a list by its
// items.
#pragma once

#include <doctest/doctest.h>

#include <vector>

namespace doctest {

template <>
struct StringMaker<const char *> {
  static String convert(const char *text) { return text != nullptr ? text : "null"; }
};

template <class T>
struct StringMaker<std::vector<T>> {
  static String convert(const std::vector<T> &items) {
    String all("{");
    for (const T &item : items)
      all += (all.size() > 1 ? ", " : "") + toString(item);
    return all + "}";
  }
};

} // namespace doctest
