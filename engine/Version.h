// Dotted version texts, such as "1.20.3b".
#pragma once

#include <cstdint>

#include "core/String.h"

namespace korb {

/// Below 0 when `a` is older than `b`, 0 when they are equal, above 0 when it is newer.
///
/// Numbers are compared place by place, and a shorter list is older: 1.2 comes before 1.2.0. The last letter of each
/// decides between equal lists, with its case, no letter being the oldest. Whatever is neither digit, letter nor dot
/// only separates. Any text has an order, and one without digits has an empty list.
int32_t CompareVersions(const char *a, const char *b);

/// Upper-cases `version` and pads each dotted component on the left with zeros to ten characters; a longer one stays.
/// The numbers keep their value, an empty component becomes one that counts.
void NormaliseVersion(String &version);

} // namespace korb
