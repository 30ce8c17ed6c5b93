// What gathering the payload needs of the layers above: progress, and the user who changes disks.
#pragma once

#include <cstdint>

#include "core/ByteStream.h"
#include "core/String.h"

namespace korb {

/// The program shows dialogs and opens files; tests play the user.
class PayloadHost {
public:
  /// Moves the progress bar; 0 to 100.
  virtual void SetProgress(int32_t percent) = 0;
  /// Shows step text `number` and moves the bar.
  virtual void SetStep(int32_t number, int32_t percent) = 0;
  /// Keeps the step on screen until it has stood for `milliseconds`.
  virtual void WaitPhase(int32_t milliseconds) = 0;
  /// Text `number` of the archive, never null; valid until the end of the run.
  virtual const char *Text(int32_t number) = 0;

  /// Asks for the next disk with `message`; true when the user pressed OK.
  virtual bool AskForVolume(const String &message) = 0;
  /// The user declined: asks whether to cancel, which ends the run; returns when the answer is no.
  virtual void AskCancel() = 0;
  /// Opens the volume file at `path` for reading and sets `size` to its bytes. Null when it can't be opened. The host
  /// owns the stream, one at a time, until CloseVolume.
  virtual ByteSource *OpenVolume(const String &path, int32_t &size) = 0;
  /// Closes the volume that OpenVolume gave, so that the disk can be taken out.
  virtual void CloseVolume() = 0;

protected:
  ~PayloadHost() = default;
};

} // namespace korb
