#include "ui/RunDialog.h"

#include "core/Failure.h"
#include "ui/DialogControls.h"
#include "ui/WindowHandles.h"

namespace korb {

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

} // namespace korb
