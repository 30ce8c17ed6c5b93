// The clock of the machine.
#pragma once

#include "core/Date.h"

namespace korb {

/// Local date and time.
DateTime Now();
/// The date of it.
inline Date today() {
  return Now().date;
}

} // namespace korb
