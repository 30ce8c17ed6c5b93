// What can't be right in a product's old files, associations and uninstall values.
#pragma once

#include "packer/Product.h"
#include "packer/check/Findings.h"

namespace korb::packer {

void CheckLists(const Product &product, Findings &findings);

} // namespace korb::packer
