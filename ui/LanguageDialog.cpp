#include "ui/LanguageDialog.h"

#include "core/Failure.h"
#include "core/RunValues.h"
#include "core/Text.h"
#include "format/Texts.h"
#include "ui/BackgroundWindow.h"
#include "ui/DialogControls.h"
#include "ui/Dialogs.h"

namespace korb {

namespace {

constexpr int kLanguageNameSize = 255; // bytes

LRESULT AskList(HWND dialog, UINT message, int word = 0, const char *text = nullptr) {
  return SendMessageA(GetDlgItem(dialog, KORB_CONTROL_LANGUAGES), message, static_cast<WPARAM>(word),
                      reinterpret_cast<LPARAM>(text));
}

int32_t Selection(HWND dialog) {
  return static_cast<int32_t>(AskList(dialog, LB_GETCURSEL));
}

/// Goes to the entry that begins with `word`. The list would take an empty word for the beginning of its first entry.
bool Select(HWND dialog, const char *word) {
  return *word != '\0' && AskList(dialog, LB_SELECTSTRING, -1, word) != LB_ERR;
}

/// The system's name may say more than the archive's: "German (Standard)" is German.
void SelectSystemLanguage(HWND dialog) {
  char name[kLanguageNameSize];
  name[0] = '\0';
  GetLocaleInfoA(LOCALE_USER_DEFAULT, LOCALE_SLANGUAGE, name, sizeof name);
  text_cut_at(name, '(');
  text_blank_spaces(name);
  if (!Select(dialog, name) && !Select(dialog, "English"))
    AskList(dialog, LB_SETCURSEL);
}

/// Tells who has asked.
void Use(HWND dialog, int32_t language) {
  reinterpret_cast<void (*)(int32_t)>(GetWindowLongA(dialog, DWLP_USER))(language);
}

void ShowSelection(HWND dialog) {
  static constexpr DialogText kTexts[] = {TextOf(KORB_CONTROL_NEXT, kTextOkButton),
                                          TextOf(KORB_CONTROL_CANCEL, kTextCancelButton), kNoMoreTexts};
  const int32_t selection = Selection(dialog);
  if (LanguageNames.is_out_of_range(selection))
    return;
  Use(dialog, selection);
  ShowTexts(dialog, kTexts);
}

void FillList(HWND dialog) {
  for (int32_t i = 0; i < LanguageNames.count; ++i)
    AskList(dialog, LB_ADDSTRING, 0, LanguageNames.at(i));
}

INT_PTR CALLBACK LanguageProcedure(HWND dialog, UINT message, WPARAM word, LPARAM parameter) {
  if (message == WM_INITDIALOG) {
    SetWindowLongA(dialog, DWLP_USER, static_cast<LONG>(parameter));
    FillList(dialog);
    SelectSystemLanguage(dialog);
    ShowSelection(dialog);
    CenterDialog(dialog);
    return TRUE;
  }
  if (message != WM_COMMAND)
    return FALSE;
  if (word == MAKEWPARAM(KORB_CONTROL_LANGUAGES, LBN_SELCHANGE))
    ShowSelection(dialog);
  if (word == MAKEWPARAM(KORB_CONTROL_LANGUAGES, LBN_DBLCLK))
    word = KORB_CONTROL_NEXT;
  if (word == KORB_CONTROL_NEXT) {
    const int32_t selection = Selection(dialog);
    Use(dialog, LanguageNames.is_out_of_range(selection) ? 0 : selection);
  }
  return EndOnButton(dialog, word);
}

} // namespace

void ChooseLanguage(void (*use)(int32_t language)) {
  if (!AutomaticMode && LanguageNames.count != 1)
    RunPage("LanguageDlg", LanguageProcedure, reinterpret_cast<const void *>(use));
}

} // namespace korb
