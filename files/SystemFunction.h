// Functions of the system that not every Windows has.
#pragma once

namespace korb {

/// The function of that name in a library of the system, or null where either is missing. Importing it would keep the
/// program from starting there. The library stays loaded for the whole run.
void *SystemFunction(const char *library, const char *name);

} // namespace korb
