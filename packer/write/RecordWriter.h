// The pieces that the configuration and the payload have in common, and the payload.
#pragma once

#include <string_view>

#include "packer/Product.h"
#include "packer/write/BlockEncoder.h"

namespace korb::packer {

/// `text` and its terminator. Throws PackError, naming `what`, when the text holds a 0 byte.
void PutText(Bytes &out, std::string_view text, std::string_view what);

/// The six values of a file's date.
void PutFileTime(Bytes &out, const FileTime &time);

/// How a payload is stored, and why.
enum class Storing {
  kAsWished,     ///< packed with IF_PACKED_PAYLOAD, unpacked without
  kNotSmaller,   ///< unpacked, since packing would not make it smaller by half a percent
  kNotUnpackable ///< unpacked, since the block would be larger than what can be unpacked
};

/// The payload as an archive stores it.
struct Payload {
  Bytes stored; ///< all records, packed or not
  Storing storing = Storing::kAsWished;
  std::vector<int32_t> sizes; ///< bytes of each file, for the header
  size_t plain_size = 0;      ///< bytes of all records before packing
};

/// Writes the records of all files, packed when that is wished for and helps. Throws PackError for a text with a 0
/// byte, a file above kMaxFileSize, or a payload beyond what the format can hold.
Payload WritePayload(const Product &product, const ProgressCallback &progress = {});

} // namespace korb::packer
