// The clock of the machine.
#pragma once

#include "core/Date.h"

namespace korb {

/// Local date and time.
DateTime Now();

} // namespace korb
