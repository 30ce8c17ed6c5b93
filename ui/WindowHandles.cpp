#include "ui/WindowHandles.h"

namespace korb {

HINSTANCE InstanceHandle = nullptr;
HWND MainWindow = nullptr;
HWND ProgressDialog = nullptr;

HWND DialogOwner() {
  if (IsWindow(ProgressDialog))
    return ProgressDialog;
  return IsWindow(MainWindow) ? MainWindow : nullptr;
}

} // namespace korb
