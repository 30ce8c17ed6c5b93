// The error of the last system call, as code and text.
#pragma once

#include <cstdint>

namespace korb {

/// The system's text for the thread's last error, in the user's language, with the line break that it ends in. Never
/// null; empty when the error is 0 or has no text. Valid until the next call with another error than 0: ask right after
/// the call that failed.
const char *LastErrorText();

uint32_t LastErrorCode();
void SetLastErrorCode(uint32_t code);
void ClearLastError();

} // namespace korb
