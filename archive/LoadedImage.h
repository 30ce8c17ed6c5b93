// The running executable as the loader mapped it.
#pragma once

#include <cstdint>

namespace korb {

/// The archive's header and configuration are read from here, so that they are not copied.
struct LoadedImage {
  const uint8_t *base = nullptr; ///< stays mapped for the whole run
  int32_t size = 0;              ///< mapped bytes
};

/// The image of this process.
LoadedImage OwnImage();

} // namespace korb
