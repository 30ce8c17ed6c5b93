#include "ui/CancelQuestion.h"

#include "archive/TextNumber.h"
#include "core/Failure.h"
#include "ui/TextLookup.h"
#include "ui/WindowHandles.h"

namespace korb {

void AskCancel() {
  if (MessageBoxA(DialogOwner(), TextLookup(kTextCancelQuestion), TextLookup(kTextWarningCaption),
                  MB_YESNO | MB_ICONQUESTION) == IDYES)
    CancelInstall();
}

} // namespace korb
