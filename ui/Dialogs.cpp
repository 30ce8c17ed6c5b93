#include "ui/Dialogs.h"

#include "core/Failure.h"
#include "files/SystemFunction.h"
#include "ui/DialogControls.h"
#include "ui/TextLookup.h"
#include "ui/WindowHandles.h"

#include <commctrl.h>

namespace korb {

namespace {

constexpr const char *kControls = "comctl32.dll";
constexpr uint16_t kFirstWithManifests = 0x0501; // major, minor

/// Fits `size` into the screen and gives where it starts.
int Center(int screen, int &size) {
  if (size > screen)
    size = screen;
  return (screen - size) >> 1;
}

} // namespace

void InitControls() {
  // Windows XP shows no dialog at all unless the version of the library that the manifest names is loaded. To a system
  // that reads manifests the bare name is that, never a file in the program's folder; to others it could be one.
  const uint16_t version = static_cast<uint16_t>(GetVersion());
  if (__builtin_bswap16(version) >= kFirstWithManifests)
    LoadLibraryA(kControls);
  else if (const auto init = KORB_SYSTEM_FUNCTION(kControls, InitCommonControls))
    init();
}

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
