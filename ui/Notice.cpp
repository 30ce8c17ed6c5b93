#include "ui/Notice.h"

#include "archive/RunValues.h"
#include "core/Text.h"
#include "format/Texts.h"
#include "ui/TextLookup.h"
#include "ui/WindowHandles.h"

namespace korb {

bool RunNotice() {
  const char *text = TextLookup(kTextNotice);
  return HasInstallFlag(IF_NOTICE) && !IsBlank(text) &&
         MessageBoxA(DialogOwner(), text, TextLookup(kTextNoticeCaption), MB_OKCANCEL | MB_ICONINFORMATION) != IDOK;
}

} // namespace korb
