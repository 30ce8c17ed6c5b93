// Any bytes as a picture: reading its header stays inside, and what may be drawn has its pixels in the block.
#include <cstdlib>

#include "ui/DibImage.h"

using namespace korb;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  DibImage image;
  image.set_block(reinterpret_cast<const char *>(data), static_cast<int32_t>(size));
  if (image.is_empty() || image.block.is_out_of_range(image.bits_offset) || !image.has_all_pixels())
    return 0;
  const bool compressed = image.color_size == 4 && image.block.dword_at(16) != 0 && image.block.dword_at(16) != 3;
  const int64_t row = (int64_t{image.width} * image.bit_count + 7) / 8;
  const int64_t bytes = compressed ? int64_t{image.block.dword_at(20)} : row * std::abs(int64_t{image.height});
  if (bytes <= 0 && image.height != 0)
    abort();
  if (image.bits_offset + bytes > static_cast<int64_t>(size))
    abort();
  return 0;
}
