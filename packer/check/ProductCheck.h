// What is wrong with a product before it is packed: limits that the installer would report as damage, and what it would
// do without a word but nobody can have meant.
#pragma once

#include "packer/Product.h"
#include "packer/check/Findings.h"

namespace korb::packer {

/// Adds errors and warnings about `product` to `findings`.
void CheckProduct(const Product &product, Findings &findings);

/// Warns of what looks like a path variable in `text` and is none. `what` begins the message.
void CheckVariables(const std::string &text, const Place &place, const std::string &what, Findings &findings);

/// As CheckVariables, for a text that becomes a path: warns too where a drive in front makes a relative path of it.
void CheckPathText(const std::string &text, const Place &place, const std::string &what, Findings &findings);

// Its parts.
void CheckFiles(const Product &product, Findings &findings);
void CheckLists(const Product &product, Findings &findings);
void CheckTexts(const Product &product, Findings &findings);

} // namespace korb::packer
