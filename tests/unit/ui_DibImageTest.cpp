// Headers of pictures, good and bad.
#include <string>

#include "tests/support/Doctest.h"
#include "tests/support/TestInstaller.h"
#include "ui/DibImage.h"

using namespace korb;
using korb::test::Raw;

namespace {

std::string Core(uint16_t width, uint16_t height, uint16_t bits) {
  return Raw<uint32_t>(12) + Raw(width) + Raw(height) + Raw<uint16_t>(1) + Raw(bits);
}

std::string Info(int32_t width, int32_t height, uint16_t bits, uint32_t compression, uint32_t used, uint32_t size = 0) {
  return Raw<uint32_t>(40) + Raw(width) + Raw(height) + Raw<uint16_t>(1) + Raw(bits) + Raw(compression) + Raw(size) +
         std::string(8, '\0') + Raw(used) + std::string(4, '\0');
}

} // namespace

TEST_CASE("a header tells where the pixels begin, and a damaged one shows nothing") {
  const struct {
    const char *what;
    std::string block;
    int32_t width, height, colors, color_size, offset;
  } rows[] = {
      {"old, 8 bits", Core(3, 65535, 8) + "x", 3, 65535, 256, 3, 780},
      {"old, 23 bits", Core(1, 1, 23) + "x", 1, 1, 1 << 23, 3, 12 + (3 << 23)},
      {"8 bits", Info(5, -7, 8, 0, 0), 5, -7, 256, 4, 1064},
      {"8 bits, few colours", Info(5, 7, 8, 0, 2), 5, 7, 2, 4, 48},
      {"16 bits, masks", Info(5, 7, 16, 3, 0), 5, 7, 0, 4, 52},
      {"15 bits", Info(5, 7, 15, 0, 0), 5, 7, 32768, 4, 40 + 4 * 32768},
      {"colours below 0", Info(5, 7, 24, 0, 0x80000000), 5, 7, INT32_MIN, 4, INT32_MAX},
      {"offset beyond 32 bits", Info(5, 7, 24, 0, 0x7FFFFFFF), 5, 7, INT32_MAX, 4, INT32_MAX},
      {"width below 0", Info(-5, 7, 24, 0, 0), -5, 7, 0, 4, 40},
      {"12 bytes", Core(3, 2, 24), 0, 0, 0, 0, 0},
      {"39 bytes", Info(5, 7, 8, 0, 0).substr(0, 39), 0, 0, 0, 0, 0},
      {"a later header", Raw<uint32_t>(108) + std::string(200, '\1'), 0, 0, 0, 0, 0},
  };
  for (const auto &row : rows) {
    CAPTURE(row.what);
    DibImage image;
    image.set_block(row.block.data(), static_cast<int32_t>(row.block.size()));
    CHECK(image.width == row.width);
    CHECK(image.height == row.height);
    CHECK(image.color_count == row.colors);
    CHECK(image.color_size == row.color_size);
    CHECK(image.bits_offset == row.offset);
    CHECK(image.parse() == (row.width > 0));
    image.set_block(nullptr, 5);
    image.set_block("x", 0);
    CHECK(image.width == row.width); // nothing given changes nothing
  }
}

TEST_CASE("a block has all of its pixels to the last byte, or is not drawn") {
  const struct {
    const char *what;
    std::string header;
    size_t pixels; ///< the least that is enough
  } rows[] = {
      {"rows fill up to 4 bytes", Info(3, 2, 24, 0, 0), 24},
      {"the top row first", Info(33, -2, 1, 0, 1), 4 + 16},
      {"old", Core(2, 3, 24), 24},
      {"masks", Info(3, 1, 16, 3, 0), 12 + 8},
      {"compressed", Info(100, 100, 8, 1, 1, 17), 4 + 17},
  };
  for (const auto &row : rows) {
    CAPTURE(row.what);
    DibImage image;
    const std::string block = row.header + std::string(row.pixels, 'p');
    image.set_block(block.data(), static_cast<int32_t>(block.size()));
    CHECK(image.has_all_pixels());
    image.set_block(block.data(), static_cast<int32_t>(block.size() - 1));
    CHECK_FALSE(image.has_all_pixels());
  }
  for (const std::string &header :
       {Info(INT32_MAX, INT32_MIN, 32, 0, 0), Info(2, INT32_MIN, 32, 3, 0), Info(1, 1, 65535, 0, 0),
        Info(1, 1, 0, 0, 1), Info(9, 9, 8, 1, 1), Info(1, 1, 8, 0, 0xFFFFFFFF), Core(65535, 65535, 24)}) {
    DibImage image;
    const std::string block = header + std::string(100, 'p');
    image.set_block(block.data(), static_cast<int32_t>(block.size()));
    CHECK_FALSE(image.has_all_pixels());
  }
}
