// Values with names, for reports that people and programs read.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace korb::packer {

/// A text (UTF-8), a number, a truth value, a list, or a table whose entries keep their order.
class Value {
public:
  using List = std::vector<Value>;
  using Table = std::vector<std::pair<std::string, Value>>;

  Value() : value_(Table()) {}
  Value(std::string text) : value_(std::move(text)) {}
  Value(const char *text) : value_(std::string(text)) {}
  Value(bool flag) : value_(flag) {}
  Value(int64_t number) : value_(number) {}
  Value(int32_t number) : value_(int64_t{number}) {}
  Value(List list) : value_(std::move(list)) {}

  /// Adds an entry to a table.
  Value &Add(std::string name, Value value) {
    std::get<Table>(value_).emplace_back(std::move(name), std::move(value));
    return *this;
  }

  void WriteJson(std::ostream &out, int indent = 0) const;
  /// One line for each value below `*this`, a table; a table in a list takes one line in all. Long texts are cut.
  void WriteOutline(std::ostream &out, int indent = 0) const;

private:
  std::string OnOneLine() const;

  std::variant<std::string, int64_t, bool, List, Table> value_;
};

} // namespace korb::packer
