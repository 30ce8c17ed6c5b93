// What can't be right in the files of a product.
#pragma once

#include "packer/Product.h"
#include "packer/check/Findings.h"

namespace korb::packer {

void CheckFiles(const Product &product, Findings &findings);

} // namespace korb::packer
