// The names that a font file gives its fonts.
#pragma once

#include <string>
#include <vector>

#include "packer/Bytes.h"

namespace korb::packer {

/// Whether `file` begins as a font that the system can be told of: TrueType and OpenType, alone or as a collection, and
/// the bitmap fonts of .fon and .fnt files. Any bytes are a file.
bool IsFontFile(const Bytes &file);

/// What the fonts in `file` may be called, the best first: their full names, in US English, then in other languages, as
/// UTF-8. The fonts of a collection are joined by " & ", as the system's own list of fonts has them. Empty when there
/// is none. Any bytes are a file.
std::vector<std::string> FontNames(const Bytes &file);

} // namespace korb::packer
