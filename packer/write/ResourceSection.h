// The section of a program that holds its resources.
#pragma once

#include <map>

#include "packer/Bytes.h"
#include "packer/PeResources.h"

namespace korb::packer {

/// Resources with what is in them.
using ResourceContents = std::map<ResourceName, Bytes>;

/// The bytes of a section that begins at `address` of the image and holds `resources`, and nothing else.
Bytes ResourceSection(const ResourceContents &resources, uint32_t address);

} // namespace korb::packer
