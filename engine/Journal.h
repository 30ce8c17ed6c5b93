// The two reports of a run, which travel from phase to phase.
#pragma once

#include "core/String.h"

namespace korb {

struct Journal {
  /// Every step that failed, for the user at the end. A run with any text here does not start the program of /r.
  String error_report;
  /// Lines for Install.LOG, each ended by "\r\n".
  String log_text;
};

} // namespace korb
