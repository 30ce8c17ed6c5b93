// The images of an icon file.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "packer/Bytes.h"

namespace korb::packer {

/// An image as icon files and programs hold it.
struct IconImage {
  uint16_t width = 0, height = 0; ///< 1 to 256 pixels
  uint16_t bits = 0;              ///< of a pixel
  bool is_png = false;            ///< else a bitmap and a mask; systems before Vista know nothing else
  Bytes data = {};

  bool operator==(const IconImage &) const = default;
};

/// What was found in an icon file.
struct IconFile {
  std::vector<IconImage> images; ///< those that can be shown, in the file's order
  std::string fault;             ///< the first thing that is wrong, as the end of a message; empty for a good icon
};

/// Reads an icon file. Any bytes are a file.
IconFile ReadIconFile(const Bytes &file);

/// The images of the icon that Windows shows of a program, such as "32x32, 8 bits". Any bytes are a program; those
/// without an icon give none.
std::vector<std::string> IconImagesOf(const Bytes &program);

} // namespace korb::packer
