// Modal dialogs, whose texts come from the archive.
#pragma once

#include <cstdint>

#include "core/Windows.h"

namespace korb {

/// Runs the dialog of this name over the background window and gives what it ended with; -1 when it could not be made.
/// The procedure gets `parameter` as it is made.
INT_PTR RunDialog(const char *name, DLGPROC procedure, const void *parameter);
/// Runs a dialog that has to be left by its default button; otherwise ends the installation.
void RunPage(const char *name, DLGPROC procedure, const void *parameter);

/// For the procedure of a page: ends the dialog with its button's number when `word`, of WM_COMMAND, tells of a click
/// on one of the two. Gives whether it was.
BOOL EndOnButton(HWND dialog, WPARAM word);

} // namespace korb
