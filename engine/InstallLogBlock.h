// What one installation adds to Install.LOG.
#pragma once

#include "core/Date.h"
#include "core/String.h"

namespace korb {

/// The block of one run: who, when, where, then `log_text` and `report`, which tells how it ended.
/// `version` is the product's, or blank.
String InstallLogBlock(const String &version, bool is_reinstall, const String &report, const String &log_text,
                       const DateTime &now);

} // namespace korb
