// What Windows shows of an installer without starting it.
#pragma once

#include "packer/write/StubImage.h"

namespace korb::packer {

/// Gives `program` the product's name, version, publisher and copyright in place of its own, and the product's icon if
/// it has one. A program without resources stays as it is; throws PackError when an icon is meant for it.
void PutFace(const Product &product, StubImage &program);

} // namespace korb::packer
