// The configuration stream: all that an archive says about its product, apart from the payload.
#pragma once

#include "packer/Product.h"

namespace korb::packer {

/// The plain stream, every field in its place. Throws PackError when a text holds a 0 byte or when the patch hasn't
/// its size; counts and numbers are written as given, whatever a reader makes of them. Options among `without` are off.
Bytes WriteConfig(const Product &product, uint64_t without = 0);

/// A configuration as the archive stores it.
struct StoredConfig {
  Bytes block;  ///< packed and scrambled
  uint32_t key; ///< for the header: scrambles, and verifies what comes out
};

/// Packs and scrambles `plain`. At least `size` bytes come out, the rest being filled up after the last token, where
/// no reader looks. Throws PackError when the block passes the format's limit.
StoredConfig StoreConfig(const Bytes &plain, size_t size = 0);

/// A calendar day as the five values of the program's Date, which archives hold as they are; all 0 for no day.
void PutDayRecord(Bytes &out, const Day &day);

} // namespace korb::packer
