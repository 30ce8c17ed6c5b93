// What can't be right in the numbered texts of a product's languages.
#pragma once

#include <string>
#include <string_view>

#include "packer/Product.h"
#include "packer/check/Findings.h"

namespace korb::packer {

void CheckTexts(const Product &product, Findings &findings);

/// What is wrong with `text` as a format for the arguments `form` (see TextRow): empty when nothing is.
std::string FormatFault(std::string_view text, std::string_view form);

} // namespace korb::packer
