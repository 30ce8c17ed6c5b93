#include "ui/Questions.h"

#include "core/Failure.h"
#include "core/RunValues.h"
#include "core/Windows.h"
#include "format/Texts.h"
#include "ui/TextLookup.h"
#include "ui/WindowHandles.h"

namespace korb {

bool AskYesNo(const char *question, int32_t caption, BoxIcon icon) {
  return MessageBoxA(DialogOwner(), question, TextLookup(caption), MB_YESNO | static_cast<UINT>(icon)) == IDYES;
}

void AskCancel() {
  if (AskYesNo(TextLookup(kTextCancelQuestion), kTextProductCaption))
    CancelInstall();
}

bool RunNotice() {
  const char *text = TextLookup(kTextNotice);
  return HasInstallFlag(IF_NOTICE) && !IsBlank(text) &&
         MessageBoxA(DialogOwner(), text, TextLookup(kTextNoticeCaption), MB_OKCANCEL | MB_ICONINFORMATION) != IDOK;
}

bool MayRemove(uint64_t flag, int32_t question, int32_t caption, const String &name) {
  if (AutomaticMode || !HasInstallFlag(flag))
    return true;
  return AskYesNo(str_format(TextLookup(question), name), caption);
}

} // namespace korb
