#include "ui/Dialogs.h"

#include "core/Failure.h"
#include "ui/DialogControls.h"
#include "ui/TextLookup.h"
#include "ui/WindowHandles.h"

namespace korb {

namespace {

/// Fits `size` into the screen and gives where it starts.
int Center(int screen, int &size) {
  if (size > screen)
    size = screen;
  return (screen - size) >> 1;
}

} // namespace

INT_PTR RunDialog(const char *name, DLGPROC procedure, const void *parameter) {
  return DialogBoxParamA(InstanceHandle, name, DialogOwner(), procedure, reinterpret_cast<LPARAM>(parameter));
}

void RunPage(const char *name, DLGPROC procedure, const void *parameter) {
  if (RunDialog(name, procedure, parameter) != KORB_CONTROL_NEXT)
    ExitInstaller();
}

BOOL EndOnButton(HWND dialog, WPARAM word) {
  return (word == KORB_CONTROL_NEXT || word == KORB_CONTROL_CANCEL) && EndDialog(dialog, static_cast<INT_PTR>(word));
}

void CenterDialog(HWND window) {
  RECT rect;
  GetWindowRect(window, &rect);
  int width = rect.right - rect.left + 1;
  int height = rect.bottom - rect.top + 1;
  const int x = Center(GetSystemMetrics(SM_CXSCREEN), width);
  const int y = Center(GetSystemMetrics(SM_CYSCREEN), height);
  MoveWindow(window, x, y, width, height, TRUE);
}

void SetControlText(HWND dialog, int32_t control, const char *text) {
  SetWindowTextA(GetDlgItem(dialog, control), text);
}

void ShowTexts(HWND dialog, const DialogText *texts) {
  for (; texts->number >= 0; ++texts)
    SetWindowTextA(texts->control != 0 ? GetDlgItem(dialog, texts->control + kFirstControl) : dialog,
                   TextLookup(texts->number));
}

} // namespace korb
