// Functions of the system that not every Windows has.
#pragma once

namespace korb {

/// The function of that name in kernel32.dll, or null where there is none. Importing it would keep the program from
/// starting there.
void *KernelFunction(const char *name);

} // namespace korb
