// What the user sees of a run's course: a step text and a bar, and time enough to read them.
//
// Whatever shows something here, or waits, keeps the windows alive by pumping messages, so a confirmed cancel may end
// the process in it. Without a dialog nothing is shown, and the run goes on all the same.
#pragma once

#include <cstdint>

#include "core/Format.h"

namespace korb {

void CreateProgressDialog();
void DestroyProgressDialog();

// A step text and a place of the bar are shown at once, or, where something was shown within the last frame of a
// screen, by a later one of these calls, as far as nothing newer has come by then. Whoever goes on to something that
// may last calls ShowPendingProgress (core/MessagePump.h) first; WaitPhase, where it waits, and DialogOwner do so
// themselves.

/// Shows a formatted line as the step text.
void SetStepTextArgs(const char *format, const FormatArgs &args);
template <class... T>
void SetStepTextFormat(const char *format, const T &...values) {
  SetStepTextArgs(format, PackedArgs<sizeof...(T)>(values...));
}

/// Starts a phase, whose time WaitPhase counts.
void StartPhase();
/// Starts a phase and shows text `number` of the archive, a format without arguments.
void SetStepText(int32_t number);
/// Moves the bar; 0 to 100.
void SetProgress(int32_t percent);
/// SetStepText and SetProgress in one.
void SetStep(int32_t number, int32_t percent);

/// What ShowPendingProgress does.
void FlushProgress();

/// True as long as less than `milliseconds` have gone since the tick count `start`. The counter may have wrapped in
/// between; a clock that stepped back counts by how far it did.
inline bool PhaseHasTimeLeft(uint32_t start, uint32_t now, int32_t milliseconds) {
  uint32_t elapsed = now - start;
  if (elapsed > 0x7FFFFFFF)
    elapsed = 0 - elapsed;
  // Half the counter's range has no sign to turn: it stays negative and ends the wait.
  return static_cast<int32_t>(elapsed) >= 0 && static_cast<int32_t>(elapsed) < milliseconds;
}

/// Waits until the phase has lasted `milliseconds`, so that a quick one stays readable. Returns at once in
/// AutomaticMode, and early when a window closes.
void WaitPhase(int32_t milliseconds);

} // namespace korb
