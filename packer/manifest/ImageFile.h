// Pictures as authors have them, brought into the forms that an archive holds.
#pragma once

#include <optional>
#include <string>

#include "packer/Bytes.h"

namespace korb::packer {

/// The bitmap of a BMP file without its file header, and without a gap before its pixels: the installer has nothing
/// else than the bitmap's own header to find them by. Nothing when `file` is no BMP file whose header the installer
/// understands, when its pixels begin too early for that header, or when they are cut off.
std::optional<Bytes> BitmapOf(const Bytes &file);

/// Why BitmapOf has nothing for `file`, as the end of a sentence.
std::string BitmapFault(const Bytes &file);

} // namespace korb::packer
