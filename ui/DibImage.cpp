#include "ui/DibImage.h"

#include <cstring>

namespace korb {

namespace {

constexpr int32_t kCoreHeader = 12;
constexpr int32_t kInfoHeader = 40;
constexpr int32_t kMaskBytes = 12;
constexpr int32_t kWidest = 0x3FFFFFE; // pixels of up to 32 bits whose sum stays below 2^31
constexpr uint32_t kUncompressed = 0;
constexpr uint32_t kMasks = 3;

// Every machine that this runs on is little-endian itself.
int32_t Word(const char *p) {
  uint16_t value;
  memcpy(&value, p, sizeof value);
  return value;
}

int32_t Number(const char *p) {
  int32_t value;
  memcpy(&value, p, sizeof value);
  return value;
}

} // namespace

void DibImage::parse_header(const char *p, int32_t n) {
  width = height = bit_count = color_count = color_size = bits_offset = 0;
  if (!p || n < kCoreHeader)
    return;
  int32_t header = Number(p);
  if (header == kCoreHeader) {
    width = Word(p + 4);
    height = Word(p + 6);
    bit_count = Word(p + 10);
    color_size = 3;
    if (bit_count < 24)
      color_count = 1 << bit_count;
  } else if (header == kInfoHeader && n >= kInfoHeader) {
    width = Number(p + 4);
    height = Number(p + 8);
    bit_count = Word(p + 14);
    color_size = 4;
    color_count = Number(p + 32);
    if (color_count == 0 && bit_count < 16)
      color_count = 1 << bit_count;
    if (static_cast<uint32_t>(Number(p + 16)) == kMasks)
      header += kMaskBytes;
  } else {
    return;
  }
  const int64_t offset = header + int64_t{color_count} * color_size;
  bits_offset = offset < 0 || offset > INT32_MAX ? INT32_MAX : static_cast<int32_t>(offset);
}

void DibImage::set_block(const char *p, int32_t n) {
  if (p && n > 0 && block.try_assign(p, n))
    parse();
}

bool DibImage::parse() {
  if (block.length() <= kCoreHeader)
    clear();
  else
    parse_header(block, block.length());
  return !is_empty();
}

bool DibImage::has_all_pixels() const {
  if (is_empty() || block.is_out_of_range(bits_offset))
    return true;
  if (color_count < 0) // pixels that lie in the header: the system would look for a palette after the block
    return false;
  const uint32_t there = static_cast<uint32_t>(block.length() - bits_offset);
  if (color_size == 4) {
    const uint32_t compression = block.dword_at(16);
    const uint32_t bytes = block.dword_at(20);
    if (compression != kUncompressed && compression != kMasks)
      return bytes > 0 && bytes <= there;
  }
  // Within these limits nothing overflows; the system takes nothing beyond them.
  if (bit_count > 32 || width > kWidest)
    return false;
  const uint32_t row = static_cast<uint32_t>(width * bit_count + 31) / 32 * 4;
  const uint32_t rows = height < 0 ? 0 - static_cast<uint32_t>(height) : static_cast<uint32_t>(height);
  return row > 0 && rows <= there / row;
}

} // namespace korb
