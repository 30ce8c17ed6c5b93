// The choice of the directory that the product goes to.
#pragma once

#include "core/String.h"

namespace korb {

/// Shows `directory` to be changed, by typing or by browsing; whatever stands there in the end is the result. False,
/// and `directory` as it was, when the user declines.
bool ChooseDirectory(String &directory);

} // namespace korb
