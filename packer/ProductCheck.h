// What is wrong with a product before it is packed: limits that the installer would report as damage, and what it would
// do without a word but nobody can have meant.
#pragma once

#include "packer/Findings.h"
#include "packer/Product.h"

namespace korb::packer {

/// Adds errors and warnings about `product` to `findings`.
void CheckProduct(const Product &product, Findings &findings);

// Its parts.
void CheckFiles(const Product &product, Findings &findings);
void CheckLists(const Product &product, Findings &findings);
void CheckTexts(const Product &product, Findings &findings);

} // namespace korb::packer
