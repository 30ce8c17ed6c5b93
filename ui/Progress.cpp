#include "ui/Progress.h"

#include "core/MessagePump.h"
#include "core/RunMode.h"
#include "core/String.h"
#include "ui/PhaseTime.h"
#include "ui/TextLookup.h"
#include "ui/WindowHandles.h"

#include <commctrl.h>

namespace korb {

namespace {

constexpr int kStepTextControl = 1011;
constexpr DWORD kWaitStep = 50; // milliseconds

// Keeps its value when the dialog goes: a position posted to a window that is gone harms nothing.
HWND ProgressBar = nullptr;
uint32_t PhaseStart = 0;

} // namespace

// The dialog itself is not built yet: ProgressDialog and ProgressBar stay null, and all below works without them.
void CreateProgressDialog() {}

void DestroyProgressDialog() {
  if (IsWindow(ProgressDialog))
    DestroyWindow(ProgressDialog);
  ProgressDialog = nullptr;
}

void SetStepTextArgs(const char *format, const FormatArgs &args) {
  if (ProgressDialog != nullptr) {
    String text;
    text.format_args(format, args);
    SetDlgItemTextA(ProgressDialog, kStepTextControl, text.c_str());
    UpdateWindow(ProgressDialog);
  }
  PumpMessages();
}

void StartPhase() {
  PhaseStart = GetTickCount();
}

void SetStepText(int32_t number) {
  StartPhase();
  SetStepTextFormat(TextLookup(number));
}

void SetProgress(int32_t percent) {
  if (ProgressBar != nullptr)
    PostMessageA(ProgressBar, PBM_SETPOS, static_cast<WPARAM>(percent), 0);
  PumpMessages();
}

void SetStep(int32_t number, int32_t percent) {
  SetStepText(number);
  SetProgress(percent);
}

void WaitPhase(int32_t milliseconds) {
  if (AutomaticMode)
    return;
  for (int32_t i = 0; i < milliseconds && !PumpMessages() && PhaseHasTimeLeft(PhaseStart, GetTickCount(), milliseconds);
       ++i)
    Sleep(kWaitStep);
}

} // namespace korb
