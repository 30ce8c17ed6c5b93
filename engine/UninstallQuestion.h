// Questions about single files of an uninstall run.
#pragma once

#include <cstdint>

#include "core/String.h"

namespace korb {

/// Asks about `name` by text `question`, a format, and gives whether the answer was yes. Without `flag`, an IF_ bit
/// that asks for such questions, and in AutomaticMode it is yes.
bool MayRemove(uint64_t flag, int32_t question, int32_t caption, const String &name);

} // namespace korb
