// Values with names, for reports that people and programs read.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace korb::packer {

/// A text (UTF-8), a number, a list, or a table whose entries keep their order.
class Value {
public:
  using List = std::vector<Value>;
  using Table = std::vector<std::pair<std::string, Value>>;

  Value() : kind_(Kind::kTable) {}
  Value(std::string text) : kind_(Kind::kText), text_(std::move(text)) {}
  Value(const char *text) : Value(std::string(text)) {}
  Value(int64_t number) : kind_(Kind::kNumber), text_(std::to_string(number)) {}
  Value(int32_t number) : Value(int64_t{number}) {}
  Value(List list) : kind_(Kind::kList), list_(std::move(list)) {}

  /// Adds an entry to a table.
  Value &Add(std::string name, Value value) {
    table_.emplace_back(std::move(name), std::move(value));
    return *this;
  }

  void WriteJson(std::ostream &out, int indent = 0) const;
  /// One line for each value below `*this`, a table; a table in a list takes one line in all. Long texts are cut.
  void WriteOutline(std::ostream &out, int indent = 0) const;

private:
  std::string OnOneLine() const;

  enum class Kind { kText, kNumber, kList, kTable } kind_;
  std::string text_; // digits, of a number
  List list_;
  Table table_;
};

} // namespace korb::packer
