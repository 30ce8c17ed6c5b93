#include "ui/WindowHandles.h"

#include "core/MessagePump.h"

namespace korb {

HINSTANCE InstanceHandle = nullptr;
HWND MainWindow = nullptr;
HWND ProgressDialog = nullptr;

HWND DialogOwner() {
  ShowPendingProgress();
  if (IsWindow(ProgressDialog))
    return ProgressDialog;
  return IsWindow(MainWindow) ? MainWindow : nullptr;
}

} // namespace korb
