// The ways in which a run ends or complains.
//
// Declared here, at the bottom, because every layer reports; defined at the top: the program shows real boxes
// (app/Failure.cpp), the test programs record the report and unwind (tests/support/FailureTrap.cpp).
// Every road ends the process with exit code 1, a successful installation included, so nobody may read success
// from it.
#pragma once

#include <cstdint>

#include "core/Format.h"

namespace korb {

enum class DamageCode : int32_t;

/// Takes the windows down and ends the process with code 1. Nothing is unwound and nothing is rolled back.
[[noreturn]] void ExitInstaller();

/// The user declined: ends the run as ExitInstaller does. A name of its own marks the places where a person decided.
[[noreturn]] void CancelInstall();

/// Shows `text` in a stop box captioned "FATAL ERROR", in a silent run too, and ends the process. Allocates nothing,
/// so that the report of exhausted memory may use it.
[[noreturn]] void FatalMessage(const char *text);

/// Takes a finished argument list; FatalFormat below is the way to call it.
[[noreturn]] void FatalFormatArgs(const char *format, const FormatArgs &args);

/// FatalMessage with a formatted text. A conversion that does not match its argument shows the format itself.
template <class... T>
[[noreturn]] void FatalFormat(const char *format, const T &...values) {
  FatalFormatArgs(format, PackedArgs<sizeof...(T)>(values...));
}

/// An impossible state in the program itself. `module` and `line` are fixed marks in the message, not real source
/// lines, so that one fault keeps one report over all versions.
[[noreturn]] void InternalError(const char *module, int32_t line);

/// Damage in the archive, by the number that people look up (format/Damage.h). The text comes from the archive's own
/// text table once that is loaded, and is built in before.
[[noreturn]] void CorruptInstaller(DamageCode code);

/// A wrong command line: shows `text` with the usage and ends the process.
[[noreturn]] void UsageError(const char *text);

/// Takes a finished argument list; ReportError below is the way to call it.
void ReportErrorArgs(const char *format, const FormatArgs &args);

/// A refusal or fault that does not end the process by itself: shows a box, unless the text is blank (nothing but
/// space, CR, LF and TAB), or the run is silent and the archive did not ask for its errors. Returns after the
/// answer.
template <class... T>
void ReportError(const char *format, const T &...values) {
  ReportErrorArgs(format, PackedArgs<sizeof...(T)>(values...));
}

} // namespace korb
