// The windows of a run, and whom a box belongs to.
#pragma once

#include "core/Windows.h"

namespace korb {

/// The program's module. Filled by the entry point.
extern HINSTANCE InstanceHandle;
/// The background window, null when there is none.
extern HWND MainWindow;
/// The modeless progress dialog, null when there is none.
extern HWND ProgressDialog;

/// The owner of a box: the progress dialog, else the background window, else none. A window that is gone, since its
/// user closed it, counts as none: a box with a dead owner would not appear at all. A box keeps the run waiting, so all
/// pending progress is shown first.
HWND DialogOwner();

} // namespace korb
