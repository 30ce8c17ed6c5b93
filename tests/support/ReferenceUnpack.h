// The block decoder in its obvious form, bit by bit, that the fast one is held against.
#pragma once

#include <string>

namespace korb::test {

struct Unpacked {
  bool good = false;
  std::string bytes; ///< empty unless good

  bool operator==(const Unpacked &) const = default;
};

/// What `block` unpacks to. Takes the stated size at once, as the real one does.
Unpacked ReferenceUnpack(const std::string &block);

/// The same from UnpackBlock, which must leave its arguments alone when it fails, and the block always.
Unpacked RealUnpack(const std::string &block);

} // namespace korb::test
