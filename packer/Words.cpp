#include "packer/Words.h"

#include <algorithm>

namespace korb::packer {

std::string WordFor(std::span<const NamedValue> names, int64_t value) {
  const auto found =
      std::find_if(names.begin(), names.end(), [&](const NamedValue &named) { return named.value == value; });
  return found == names.end() ? std::to_string(value) : std::string(found->name);
}

} // namespace korb::packer
