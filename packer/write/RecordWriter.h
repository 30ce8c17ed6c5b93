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

/// The payload as an archive stores it.
struct Payload {
  Bytes stored;               ///< all records, packed with IF_PACKED_PAYLOAD
  std::vector<int32_t> sizes; ///< bytes of each file, for the header
  size_t plain_size = 0;      ///< bytes of all records before packing
};

/// Writes the records of all files. Throws PackError for an empty name, a text with a 0 byte, a file above
/// kMaxFileSize, or a payload beyond what the format can hold.
Payload WritePayload(const Product &product, const ProgressCallback &progress = {});

} // namespace korb::packer
