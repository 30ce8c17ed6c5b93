#include "tests/support/TokenText.h"

#include <cstdint>

namespace korb::test {

std::string BitsOf(const std::string &text) {
  std::string bits;
  auto put = [&bits](uint64_t value, size_t width) {
    for (size_t i = 0; i < width; ++i)
      bits += static_cast<char>('0' + (value >> i & 1));
  };
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '0' || text[i] == '1') {
      bits += text[i];
    } else if (text[i] == '[') {
      while (text[++i] != ']')
        put(static_cast<uint8_t>(text[i]), 8);
    } else if (text[i] == '<') {
      size_t end = 0;
      const uint64_t value = std::stoull(text.substr(i + 1), &end);
      put(value, std::stoul(text.substr(i + end + 2)));
      i = text.find('>', i);
    }
  }
  return bits;
}

std::string BlockOf(const std::string &text, uint32_t size, char padding) {
  std::string bits = BitsOf("<2663852961:32>") + BitsOf("<" + std::to_string(size) + ":32>") + BitsOf(text);
  bits.resize((bits.size() + 7) / 8 * 8, padding);
  std::string block(bits.size() / 8, '\0');
  for (size_t i = 0; i < bits.size(); ++i)
    block[i / 8] = static_cast<char>(block[i / 8] | (bits[i] - '0') << i % 8);
  return block;
}

} // namespace korb::test
