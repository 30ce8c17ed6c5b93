#include "ui/CancelQuestion.h"

#include "core/Failure.h"
#include "format/Texts.h"
#include "ui/TextLookup.h"
#include "ui/WindowHandles.h"

namespace korb {

void AskCancel() {
  if (MessageBoxA(DialogOwner(), TextLookup(kTextCancelQuestion), TextLookup(kTextProductCaption),
                  MB_YESNO | MB_ICONQUESTION) == IDYES)
    CancelInstall();
}

} // namespace korb
