#include "ui/PageDialog.h"

#include "format/Texts.h"
#include "ui/DialogControls.h"
#include "ui/Dialogs.h"
#include "ui/TextLookup.h"

namespace korb {

namespace {

struct PageKind {
  const char *dialog;
  TextNumber first_page;
  DialogText texts[5];
};

constexpr PageKind kLicense = {
    "LicenseDlg",
    kTextFirstLicensePage,
    {TextOf(KORB_CONTROL_NEXT, kTextLicenseAccept), TextOf(KORB_CONTROL_CANCEL, kTextLicenseRefuse),
     TextOf(KORB_CONTROL_LABEL, kTextLicensePrompt), TextOf(0, kTextLicenseTitle), kNoMoreTexts}};
constexpr PageKind kReadme = {"ReadmeDlg",
                              kTextFirstReadmePage,
                              {TextOf(KORB_CONTROL_NEXT, kTextOkButton), TextOf(KORB_CONTROL_CANCEL, kTextCancelButton),
                               TextOf(KORB_CONTROL_LABEL, kTextReadmePrompt), TextOf(0, kTextReadmeTitle),
                               kNoMoreTexts}};

struct Page {
  const PageKind &kind;
  const String &text;
};

WNDPROC EditProcedure = nullptr; // the system's, of any edit control

/// Keeps the reader's place: the system marks a whole text that Tab leads to, and goes to its end, if it may.
LRESULT CALLBACK PageTextProcedure(HWND page, UINT message, WPARAM word, LPARAM parameter) {
  const LRESULT result = CallWindowProcA(EditProcedure, page, message, word, parameter);
  return message == WM_GETDLGCODE ? result & ~DLGC_HASSETSEL : result;
}

INT_PTR CALLBACK PageProcedure(HWND dialog, UINT message, WPARAM word, LPARAM parameter) {
  if (message == WM_INITDIALOG) {
    const Page &page = *reinterpret_cast<const Page *>(parameter);
    SetControlText(dialog, KORB_CONTROL_PAGE, page.text);
    ShowTexts(dialog, page.kind.texts);
    CenterDialog(dialog);
    const HWND text = GetDlgItem(dialog, KORB_CONTROL_PAGE);
    EditProcedure =
        reinterpret_cast<WNDPROC>(SetWindowLongPtrA(text, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(PageTextProcedure)));
    SetFocus(text);
    return FALSE;
  }
  return message == WM_COMMAND && EndOnButton(dialog, word);
}

void ShowPage(const PageKind &kind, String text) {
  if (IsBlank(text))
    return;
  SubstituteNames(text);
  const Page page = {kind, text};
  RunPage(kind.dialog, PageProcedure, &page);
}

void ShowPages(const PageKind &kind, const Array<String> &pages) {
  ShowPage(kind, TextLookup(kind.first_page));
  for (int32_t i = 0; i < pages.count; ++i)
    ShowPage(kind, pages.at(i));
}

} // namespace

void ShowLicensePages(const Array<String> &pages) {
  ShowPages(kLicense, pages);
}

void ShowReadmePages(const Array<String> &pages) {
  ShowPages(kReadme, pages);
}

} // namespace korb
