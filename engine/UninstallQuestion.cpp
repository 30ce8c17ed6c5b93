#include "engine/UninstallQuestion.h"

#include "archive/RunValues.h"
#include "core/RunMode.h"
#include "ui/TextLookup.h"
#include "ui/WindowHandles.h"

namespace korb {

bool MayRemove(uint64_t flag, int32_t question, int32_t caption, const String &name) {
  if (AutomaticMode || !HasInstallFlag(flag))
    return true;
  return MessageBoxA(DialogOwner(), str_format(TextLookup(question), name), TextLookup(caption),
                     MB_YESNO | MB_ICONQUESTION) == IDYES;
}

} // namespace korb
