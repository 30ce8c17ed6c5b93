#include "ui/Progress.h"

#include "core/MessagePump.h"
#include "core/RunValues.h"
#include "core/String.h"
#include "format/Texts.h"
#include "ui/DialogControls.h"
#include "ui/Dialogs.h"
#include "ui/Questions.h"
#include "ui/TextLookup.h"
#include "ui/WindowHandles.h"

#include <commctrl.h>

namespace korb {

namespace {

constexpr DWORD kWaitStep = 50; // milliseconds
constexpr DWORD kFrame = 16;    // nobody sees what is replaced sooner

HWND ProgressBar = nullptr; // keeps its value when the dialog goes
uint32_t PhaseStart = 0;

// What was told last, and whether any of it is not on screen yet.
int32_t Percent = 0;
String StepText;
bool IsPending = false;
uint32_t ShownTick = 0; ///< when anything was last shown

/// Nothing is pending any more when the first message is handled: it may be a cancel, whose question comes back here.
void ShowState() {
  ShownTick = GetTickCount();
  IsPending = false;
  if (ProgressDialog) {
    PostMessageA(ProgressBar, PBM_SETPOS, static_cast<WPARAM>(Percent), 0);
    SetControlText(ProgressDialog, KORB_CONTROL_STEP, StepText);
    UpdateWindow(ProgressDialog);
  }
  while (PumpMessages()) { // it stops at a window that closes, with the bar's new place still queued
  }
}

// Painting takes longer than writing a small file, and a look for messages a tenth of it.
void ShowInTime() {
  IsPending = true;
  if (GetTickCount() - ShownTick >= kFrame)
    ShowState();
}

/// The bar lies over its frame, a pixel beyond it on each side. Without a theme its trough would have the dialog's own
/// colour, and nobody would see where it ends.
void MakeBar(HWND dialog) {
  WINDOWPLACEMENT frame;
  frame.length = sizeof frame;
  GetWindowPlacement(GetDlgItem(dialog, KORB_CONTROL_BAR_PLACE), &frame);
  const RECT &place = frame.rcNormalPosition;
  ProgressBar = CreateWindowExA(0, PROGRESS_CLASSA, "", WS_CHILD | WS_VISIBLE | PBS_SMOOTH, place.left - 1,
                                place.top - 1, place.right - place.left + 3, place.bottom - place.top + 3, dialog,
                                nullptr, InstanceHandle, nullptr);
  SendMessageA(ProgressBar, PBM_SETBKCOLOR, 0, static_cast<LPARAM>(GetSysColor(COLOR_WINDOW)));
}

/// Nothing that is being removed can be taken back.
bool MayCancel() {
  return !UninstallMode && !HasInstallFlag(IF_NO_CANCEL);
}

INT_PTR CALLBACK ProgressProcedure(HWND dialog, UINT message, WPARAM word, LPARAM) {
  if (message == WM_INITDIALOG) {
    CenterDialog(dialog);
    MakeBar(dialog);
    SetWindowTextA(dialog, TextLookup(UninstallMode ? kTextUninstallTitle : kTextInstallTitle));
    SetControlText(dialog, KORB_CONTROL_LABEL, TextLookup(UninstallMode ? kTextUninstallLabel : kTextInstallLabel));
    SetControlText(dialog, KORB_CONTROL_CANCEL, TextLookup(kTextCancelButton));
    if (!MayCancel())
      EnableWindow(GetDlgItem(dialog, KORB_CONTROL_CANCEL), FALSE);
    return TRUE;
  }
  if (message == WM_COMMAND && LOWORD(word) == KORB_CONTROL_CANCEL && MayCancel()) {
    AskCancel();
    return TRUE;
  }
  return FALSE;
}

} // namespace

void CreateProgressDialog() {
  ProgressDialog = CreateDialogParamA(InstanceHandle, "ProgressDlg", DialogOwner(), ProgressProcedure, 0);
}

void DestroyProgressDialog() {
  if (IsWindow(ProgressDialog))
    DestroyWindow(ProgressDialog);
  ProgressDialog = nullptr;
}

void SetStepTextArgs(const char *format, const FormatArgs &args) {
  StepText.format_args(format, args);
  ShowInTime();
}

void StartPhase() {
  PhaseStart = GetTickCount();
}

void SetStepText(int32_t number) {
  StartPhase();
  SetStepTextFormat(TextLookup(number));
}

void SetProgress(int32_t percent) {
  Percent = percent;
  ShowInTime();
}

void SetStep(int32_t number, int32_t percent) {
  Percent = percent;
  SetStepText(number);
}

void FlushProgress() {
  if (IsPending)
    ShowState();
}

void WaitPhase(int32_t milliseconds) {
  if (AutomaticMode)
    return;
  FlushProgress();
  for (int32_t i = 0; i < milliseconds && !PumpMessages() && PhaseHasTimeLeft(PhaseStart, GetTickCount(), milliseconds);
       ++i)
    Sleep(kWaitStep);
}

} // namespace korb
