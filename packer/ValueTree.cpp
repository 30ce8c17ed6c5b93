#include "packer/ValueTree.h"

#include <cstdio>

namespace korb::packer {

namespace {

constexpr size_t kLongestText = 100;

std::string Quoted(const std::string &text) {
  std::string out = "\"";
  for (char c : text) {
    const char *const escapes = "\"\"\\\\\nn\rr\tt";
    bool escaped = false;
    for (const char *pair = escapes; *pair; pair += 2)
      if (c == pair[0]) {
        out += {'\\', pair[1]};
        escaped = true;
      }
    if (escaped)
      continue;
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) {
      char code[8];
      std::snprintf(code, sizeof code, "\\u%04x", static_cast<unsigned>(c));
      out += code;
    } else {
      out += c;
    }
  }
  return out + "\"";
}

// The beginning of a long text, cut between characters.
std::string Cut(const std::string &text) {
  if (text.size() <= kLongestText)
    return Quoted(text);
  size_t end = kLongestText;
  while ((text[end] & 0xC0) == 0x80)
    --end;
  return Quoted(text.substr(0, end)) + "... (" + std::to_string(text.size()) + " bytes)";
}

} // namespace

void Value::WriteJson(std::ostream &out, int indent) const {
  const std::string inner(static_cast<size_t>(indent) + 2, ' '), outer(static_cast<size_t>(indent), ' ');
  const char *separator = "\n";
  if (const auto *list = std::get_if<List>(&value_)) {
    out << "[";
    for (const Value &value : *list) {
      out << separator << inner;
      value.WriteJson(out, indent + 2);
      separator = ",\n";
    }
    out << (list->empty() ? "]" : "\n" + outer + "]");
  } else if (const auto *table = std::get_if<Table>(&value_)) {
    out << "{";
    for (const auto &[name, value] : *table) {
      out << separator << inner << Quoted(name) << ": ";
      value.WriteJson(out, indent + 2);
      separator = ",\n";
    }
    out << (table->empty() ? "}" : "\n" + outer + "}");
  } else if (const auto *text = std::get_if<std::string>(&value_)) {
    out << Quoted(*text);
  } else {
    out << OnOneLine();
  }
}

std::string Value::OnOneLine() const {
  if (const auto *text = std::get_if<std::string>(&value_))
    return Cut(*text);
  if (const auto *number = std::get_if<int64_t>(&value_))
    return std::to_string(*number);
  if (const auto *flag = std::get_if<bool>(&value_))
    return *flag ? "true" : "false";
  std::string line;
  if (const auto *list = std::get_if<List>(&value_))
    for (const Value &value : *list)
      line += (line.empty() ? "" : ", ") + value.OnOneLine();
  if (const auto *table = std::get_if<Table>(&value_))
    for (const auto &[name, value] : *table)
      line += (line.empty() ? "" : ", ") + name + " = " + value.OnOneLine();
  return std::holds_alternative<List>(value_) ? "[" + line + "]" : line;
}

void Value::WriteOutline(std::ostream &out, int indent) const {
  const std::string space(static_cast<size_t>(indent), ' ');
  for (const auto &[name, value] : std::get<Table>(value_)) {
    const auto *list = std::get_if<List>(&value.value_);
    const bool of_tables = list && !list->empty() && std::holds_alternative<Table>(list->front().value_);
    if (std::holds_alternative<Table>(value.value_)) {
      out << space << name << "\n";
      value.WriteOutline(out, indent + 2);
    } else if (of_tables) {
      out << space << name << " (" << list->size() << ")\n";
      for (const Value &one : *list)
        out << space << "  " << one.OnOneLine() << "\n";
    } else {
      out << space << name << " = " << value.OnOneLine() << "\n";
    }
  }
}

} // namespace korb::packer
