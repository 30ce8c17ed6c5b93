// Functions of the system that not every Windows has, and those that most runs have no use for.
#pragma once

namespace korb {

/// The function of that name in a library of the system, or null where either is missing. Importing it would keep the
/// program from starting there, and would load the library for every run: those of the shell take longer than a whole
/// installation of a hundred files. Only the system's own directory is searched, never the folder that a user has
/// downloaded the program to. The library stays loaded for the whole run.
void *SystemFunction(const char *library, const char *name);

} // namespace korb

/// The same with the type that the function is declared with. A template argument would lose its calling convention.
#define KORB_SYSTEM_FUNCTION(library, name) reinterpret_cast<decltype(&name)>(korb::SystemFunction(library, #name))
