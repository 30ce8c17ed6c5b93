#include "ui/DialogText.h"

#include "ui/TextLookup.h"

namespace korb {

void SetControlText(HWND dialog, int32_t control, const char *text) {
  SetWindowTextA(control != 0 ? GetDlgItem(dialog, control) : dialog, text);
}

void ShowTexts(HWND dialog, const DialogText *texts) {
  for (; texts->number >= 0; ++texts)
    SetControlText(dialog, texts->control != 0 ? texts->control + kFirstControl : 0, TextLookup(texts->number));
}

} // namespace korb
