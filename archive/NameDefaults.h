// What a configuration leaves to the names of product and publisher. The packer asks too: a name may be none that a
// folder can have.
#pragma once

#include "core/String.h"
#include "core/Text.h"

namespace korb {

/// The directory for shared files, relative to the system's Common Files folder.
inline const String &DefaultCommonDir(const String &publisher, const String &product) {
  return IsBlank(publisher) ? product : publisher;
}

/// The start menu group: appended to `group`, which is empty.
inline void AppendDefaultGroup(String &group, const String &publisher, const String &product) {
  if (!publisher.is_empty()) {
    group = publisher;
    group += '\\';
  }
  group += product;
}

} // namespace korb
