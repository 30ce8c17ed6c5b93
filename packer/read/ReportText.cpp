#include "packer/read/ReportText.h"

#include <cstdio>

namespace korb::packer {

std::string Written(const Json &value, int indent) {
  std::string text = value.dump(indent, ' ', false, Json::error_handler_t::replace);
  for (size_t at; (at = text.find('\x7F')) != text.npos;)
    text.replace(at, 1, "\\u007f");
  return text;
}

std::string HexText(uint64_t value, int digits) {
  char text[24];
  std::snprintf(text, sizeof text, "0x%0*llX", digits, static_cast<unsigned long long>(value));
  return text;
}

std::string DateText(const FileDate &date) {
  char text[80];
  if (!date.has_date())
    return "none";
  std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", date.year, date.month, date.day, date.hour,
                date.minute, date.second);
  return text;
}

Json WordsOf(std::span<const NamedValue> names, uint32_t bits) {
  Json words = Json::array();
  for (const NamedValue &named : names)
    if (bits & static_cast<uint32_t>(named.value)) {
      words.push_back(named.name);
      bits &= ~static_cast<uint32_t>(named.value);
    }
  if (bits)
    words.push_back(HexText(bits));
  return words;
}

} // namespace korb::packer
