// Libraries that register themselves with the system.
#pragma once

#include <cstdint>

#include "core/String.h"
#include "core/Vector.h"

namespace korb {

enum class ServerCall : uint8_t {
  NotLoaded,  ///< the library could not be loaded
  NoFunction, ///< it has no such function
  Called,     ///< whatever the function said of its success
};

/// Loads the library at `path`, calls its `function`, which takes no arguments, and lets the library go. No box of the
/// system appears for what is missing. Needs a ComSession.
ServerCall CallServer(const char *path, const char *function);

/// Calls the library's own function that takes its registration back, whatever comes of it.
void UnregisterServer(const char *path);

/// Registers each of `com_files`, and says in `log_text` what came of it.
void RegisterComFiles(const Vector<String> &com_files, String &log_text);

} // namespace korb
