// The reports of core/Failure.h as the program gives them: in boxes.
#include "core/Failure.h"

#include "app/FailureTexts.h"
#include "core/MessagePump.h"
#include "core/RunValues.h"
#include "core/String.h"
#include "files/ProgramPaths.h"
#include "ui/Progress.h"
#include "ui/WindowHandles.h"

namespace korb {

/// A mark for whoever looks at the process with a debugger; the program never asks.
volatile bool FatalReported = false;

void ExitInstaller() {
  DestroyProgressDialog();
  if (IsWindow(MainWindow)) {
    ShowWindow(MainWindow, SW_MINIMIZE);
    DestroyWindow(MainWindow);
  }
  MainWindow = nullptr;
  PumpMessages();
  ExitProcess(1);
}

void CancelInstall() {
  ExitInstaller();
}

void FatalMessage(const char *text) {
  FatalReported = true;
  MessageBoxA(DialogOwner(), text, "FATAL ERROR", MB_TASKMODAL | MB_ICONHAND);
  ExitInstaller();
}

void FatalFormatArgs(const char *format, const FormatArgs &args) {
  String text;
  text.format_args(format, args);
  FatalMessage(text);
}

void InternalError(const char *module, int32_t line) {
  FatalFormat(kInternalErrorFormat, module, line);
}

void CorruptInstaller(DamageCode code) {
  FatalFormat(CorruptFormat(), static_cast<int32_t>(code));
}

void UsageError(const char *text) {
  FatalFormat(kUsageFormat, text, ProgramName.c_str());
}

void ReportErrorArgs(const char *format, const FormatArgs &args) {
  if (AutomaticMode && !HasInstallFlag(IF_SHOW_ERRORS))
    return;
  String text;
  text.format_args(format, args);
  if (IsBlank(text))
    return;
  MessageBoxA(DialogOwner(), text, ErrorCaption(), MB_ICONHAND);
}

} // namespace korb
