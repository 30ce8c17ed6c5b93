// What one installation adds to Install.LOG.
#pragma once

#include "core/Date.h"
#include "engine/Journal.h"

namespace korb {

/// The block of one run: who, when, where, then what `journal` holds. `version` is the product's, or blank.
String InstallLogBlock(const String &version, bool is_reinstall, const Journal &journal, const DateTime &now);

} // namespace korb
