// What a program's application manifest says about the code page of its texts.
#pragma once

#include "packer/Bytes.h"

namespace korb::packer {

/// Whether `program` asks the system to take its texts as UTF-8, as Windows 10 1903 and later do. Any bytes are a
/// program; those without a manifest don't ask.
bool AsksForUtf8(const Bytes &program);

/// Lets `program`, which holds the setting as a comment in its manifest, ask for UTF-8. Nothing else in it changes or
/// moves. False when it neither asks already nor has that comment.
bool AskForUtf8(Bytes &program);

} // namespace korb::packer
