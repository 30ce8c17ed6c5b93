// Unpacks the blocks that an archive is stored in. The format: docs/block-format.md.
#pragma once

#include <cstdint>

namespace korb {

class String;

/// Unpacks the `*size` bytes at `*block`. On success `*block` is a new heap block that the caller frees (free), or null
/// when it holds nothing, and `*size` its bytes; the packed block stays the caller's. False, and both unchanged, when
/// the bytes are no packed block, or when its tokens don't add up to exactly the size that it states.
///
/// The bytes may be hostile: nothing is read outside the packed block, nothing is written outside the new one, and no
/// byte of it is left undefined. It is taken at the stated size at once, so a damaged size may end in the report of
/// exhausted memory. Memory: the new block and 4 KB.
///
/// A true result doesn't mean that the contents are right. In particular a block that breaks off within the literals of
/// its last token is good, with zeros for that token; it is for the caller's checksum to tell.
bool UnpackBlock(uint8_t **block, int32_t *size);

/// Replaces `text` by what it unpacks to. False, and `text` unchanged, as with UnpackBlock.
bool UnpackString(String &text);

/// The tokens of the packed block of `size` bytes at `block`, its 8-byte head included, to exactly `out_size` bytes at
/// `out`. False when they make more or less; what stands in `out` then means nothing. Sizes are 8 to 0x0FFFFFFF and not
/// below 0.
bool UnpackTokens(const uint8_t *block, int32_t size, uint8_t *out, int32_t out_size);

} // namespace korb
