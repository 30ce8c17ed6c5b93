// What is wrong with a product before it is packed: limits that the installer would report as damage, and what it would
// do without a word but nobody can have meant.
#pragma once

#include "packer/Product.h"
#include "packer/check/Findings.h"

namespace korb::packer {

/// Adds errors and warnings about `product` to `findings`, but for those that follow from what is there (Merge).
void CheckProduct(const Product &product, Findings &findings);

} // namespace korb::packer
