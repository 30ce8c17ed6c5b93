// What the program's dialogs have in common: how they are run, where they come up, and what their controls say.
#pragma once

#include <cstdint>

#include "core/Windows.h"

namespace korb {

/// Makes the system ready for the controls of dialogs and boxes. Comes before the first of either.
void InitControls();

/// Runs the modal dialog of this name over the background window and gives what it ended with; -1 when it could not be
/// made. The procedure gets `parameter` as it is made.
INT_PTR RunDialog(const char *name, DLGPROC procedure, const void *parameter);
/// Runs a dialog that has to be left by its default button; otherwise ends the installation.
void RunPage(const char *name, DLGPROC procedure, const void *parameter);

// For the procedures.

/// Ends the dialog with its button's number when `word`, of WM_COMMAND, tells of a click on one of the two. Gives
/// whether it was.
BOOL EndOnButton(HWND dialog, WPARAM word);

/// Moves a window to the middle of the screen, and makes it no larger than that. Every dialog calls it as it comes up.
void CenterDialog(HWND window);

/// Shows a text, never null, in the control of that number. Nothing happens where the dialog has none.
void SetControlText(HWND dialog, int32_t control, const char *text);

/// Which text of the archive a control shows.
struct DialogText {
  int8_t control; ///< less kFirstControl; 0: the dialog itself, which shows it as its title
  int8_t number;  ///< below 0: the end of the list
};
inline constexpr int32_t kFirstControl = 1000;

/// One entry of a list; `control` is its number in full, or 0.
constexpr DialogText TextOf(int32_t control, int32_t number) {
  return {static_cast<int8_t>(control != 0 ? control - kFirstControl : 0), static_cast<int8_t>(number)};
}
inline constexpr DialogText kNoMoreTexts{0, -1};

/// Gives controls their texts, in the language in force. The list ends with kNoMoreTexts.
void ShowTexts(HWND dialog, const DialogText *texts);

} // namespace korb
