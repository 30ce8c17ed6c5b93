#include "archive/LoadedImage.h"

#include <cstring>

#include "core/Windows.h"
#include "format/Archive.h"

namespace korb {

LoadedImage OwnImage() {
  // The loader has accepted these headers, so they hold together.
  const uint8_t *base = reinterpret_cast<const uint8_t *>(GetModuleHandleA(nullptr));
  int32_t pe_offset;
  memcpy(&pe_offset, base + pe::kHeaderOffsetAt, sizeof pe_offset);
  LoadedImage image;
  image.base = base;
  memcpy(&image.size, base + pe_offset + pe::kImageSizeAt, sizeof image.size);
  return image;
}

} // namespace korb
