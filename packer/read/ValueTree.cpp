#include "packer/read/ValueTree.h"

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
  if (kind_ == Kind::kText || kind_ == Kind::kNumber) {
    out << (kind_ == Kind::kText ? Quoted(text_) : text_);
    return;
  }
  const bool is_list = kind_ == Kind::kList;
  const char *separator = "\n";
  out << (is_list ? "[" : "{");
  for (const Value &value : list_) {
    out << separator << inner;
    value.WriteJson(out, indent + 2);
    separator = ",\n";
  }
  for (const auto &[name, value] : table_) {
    out << separator << inner << Quoted(name) << ": ";
    value.WriteJson(out, indent + 2);
    separator = ",\n";
  }
  if (*separator == ',')
    out << "\n" << outer;
  out << (is_list ? "]" : "}");
}

std::string Value::OnOneLine() const {
  std::string line = kind_ == Kind::kText ? Cut(text_) : text_;
  for (const Value &value : list_)
    line += (line.empty() ? "" : ", ") + value.OnOneLine();
  for (const auto &[name, value] : table_)
    line += (line.empty() ? "" : ", ") + name + " = " + value.OnOneLine();
  return kind_ == Kind::kList ? "[" + line + "]" : line;
}

void Value::WriteOutline(std::ostream &out, int indent) const {
  const std::string space(static_cast<size_t>(indent), ' ');
  for (const auto &[name, value] : table_) {
    if (value.kind_ == Kind::kTable) {
      out << space << name << "\n";
      value.WriteOutline(out, indent + 2);
    } else if (!value.list_.empty() && value.list_.front().kind_ == Kind::kTable) {
      out << space << name << " (" << value.list_.size() << ")\n";
      for (const Value &one : value.list_)
        out << space << "  " << one.OnOneLine() << "\n";
    } else {
      out << space << name << " = " << value.OnOneLine() << "\n";
    }
  }
}

} // namespace korb::packer
