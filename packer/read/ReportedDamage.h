// How a report of the archive's reader ends: thrown, where the installer would show its box and end.
#pragma once

#include <cstdint>
#include <string>

namespace korb::packer {

struct ReportedDamage {
  std::string text; ///< what is wrong, in words
  int32_t code = 0; ///< the damage code that the installer would show; 0 when it would show something else

  /// Both on one line.
  std::string Tell() const {
    std::string line = text;
    for (size_t at; (at = line.find("\r\n")) != line.npos;)
      line.replace(at, 2, " ");
    return code == 0 ? line : line + " (damage code " + std::to_string(code) + ")";
  }
};

} // namespace korb::packer
