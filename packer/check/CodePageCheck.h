// What an author has to know of texts in UTF-8.
#pragma once

#include "packer/Product.h"
#include "packer/check/Findings.h"

namespace korb::packer {

/// Warns once of what systems before Windows 10 1903, which know no such setting, will show and name wrongly.
void CheckCodePage(const Product &product, Findings &findings);

} // namespace korb::packer
