#include "ui/DialogText.h"

#include "ui/TextLookup.h"

namespace korb {

void SetControlText(HWND dialog, int32_t control, const char *text) {
  SetWindowTextA(GetDlgItem(dialog, control), text);
}

void ShowTexts(HWND dialog, const DialogText *texts) {
  for (; texts->number >= 0; ++texts)
    SetWindowTextA(texts->control != 0 ? GetDlgItem(dialog, texts->control + kFirstControl) : dialog,
                   TextLookup(texts->number));
}

} // namespace korb
