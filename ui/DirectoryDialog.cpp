#include "ui/DirectoryDialog.h"

#include "core/RunValues.h"
#include "format/Texts.h"
#include "ui/BrowseForDirectory.h"
#include "ui/DialogControls.h"
#include "ui/Dialogs.h"

namespace korb {

namespace {

constexpr int kTypedLength = MAX_PATH - 1; ///< characters that fit into a path
constexpr int kLongestDirectory = 2048;    ///< of a command line, which may bring more; the terminator included

String Typed(HWND dialog) {
  char text[kLongestDirectory];
  GetDlgItemTextA(dialog, KORB_CONTROL_DIRECTORY, text, sizeof text);
  return text;
}

void FillDialog(HWND dialog, const String &directory) {
  static constexpr DialogText kTexts[] = {TextOf(KORB_CONTROL_LABEL, kTextDirectoryPrompt),
                                          TextOf(KORB_CONTROL_NEXT, kTextOkButton),
                                          TextOf(KORB_CONTROL_CANCEL, kTextCancelButton),
                                          TextOf(KORB_CONTROL_BROWSE, kTextBrowseButton),
                                          TextOf(0, kTextDirectoryCaption),
                                          kNoMoreTexts};
  CenterDialog(dialog);
  ShowTexts(dialog, kTexts);
  SetControlText(dialog, KORB_CONTROL_DIRECTORY, directory);
  SendMessageA(GetDlgItem(dialog, KORB_CONTROL_DIRECTORY), EM_LIMITTEXT, kTypedLength, 0);
}

INT_PTR CALLBACK DirectoryProcedure(HWND dialog, UINT message, WPARAM word, LPARAM parameter) {
  if (message == WM_INITDIALOG) {
    SetWindowLongA(dialog, DWLP_USER, static_cast<LONG>(parameter));
    FillDialog(dialog, *reinterpret_cast<const String *>(parameter));
    return TRUE;
  }
  if (message != WM_COMMAND)
    return FALSE;
  if (word == KORB_CONTROL_NEXT)
    *reinterpret_cast<String *>(GetWindowLongA(dialog, DWLP_USER)) = Typed(dialog);
  if (word == KORB_CONTROL_BROWSE) {
    String path = Typed(dialog);
    if (BrowseForDirectory(dialog, path))
      SetControlText(dialog, KORB_CONTROL_DIRECTORY, path);
  }
  return EndOnButton(dialog, word);
}

} // namespace

bool ChooseDirectory(String &directory) {
  return RunDialog("ChooseDirDlg", DirectoryProcedure, &directory) == KORB_CONTROL_NEXT;
}

} // namespace korb
