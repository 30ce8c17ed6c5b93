// Path variables in an author's texts: those that are none, and those that lead elsewhere than one thinks.
#pragma once

#include <string>

#include "packer/check/Findings.h"

namespace korb::packer {

/// Warns of what looks like a path variable in `text` and is none. `what` begins the message.
void CheckVariables(const std::string &text, const Place &place, const std::string &what, Findings &findings);

/// As CheckVariables, for a text that becomes a path: warns too where a drive in front makes a relative path of it.
void CheckPathText(const std::string &text, const Place &place, const std::string &what, Findings &findings);

} // namespace korb::packer
