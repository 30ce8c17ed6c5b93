// The boxes in which a run asks its user. Each belongs to DialogOwner, so what is pending of the progress is shown
// first.
#pragma once

#include <cstdint>

#include "core/String.h"

namespace korb {

/// The system's picture in a box, by the platform's own numbers.
enum class BoxIcon : uint32_t { Stop = 0x10, Question = 0x20, Information = 0x40 };

/// Asks `question`, yes or no, under text `caption` of the archive. True for yes.
bool AskYesNo(const char *question, int32_t caption, BoxIcon icon = BoxIcon::Question);

/// Asks whether the run is to end before its time, and ends it on yes; returns on no.
void AskCancel();

/// Shows the archive's notice, if it has one and IF_NOTICE is set: what the user is to know, and may decline, before
/// anything else of the installation. True ends the run: the user declined. Not for a silent run.
bool RunNotice();

/// Asks in an uninstall run about the file `name` by text `question`, a format, and gives whether the answer was yes.
/// Without `flag`, an IF_ bit that asks for such questions, and in AutomaticMode it is yes.
bool MayRemove(uint64_t flag, int32_t question, int32_t caption, const String &name);

} // namespace korb
