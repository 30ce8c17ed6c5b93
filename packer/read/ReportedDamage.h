// How a report of the archive's reader ends: thrown, where the installer would show its box and end.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace korb::packer {

/// Its `what` tells both of its fields on one line.
struct ReportedDamage : std::runtime_error {
  ReportedDamage(const std::string &damage_text, int32_t damage_code)
      : runtime_error(OneLine(damage_text, damage_code)), text(damage_text), code(damage_code) {}

  std::string text; ///< what is wrong, in words
  int32_t code;     ///< the damage code that the installer would show; 0 when it would show something else

private:
  static std::string OneLine(std::string text, int32_t code) {
    for (size_t at; (at = text.find("\r\n")) != text.npos;)
      text.replace(at, 2, " ");
    return code == 0 ? text : text + " (damage code " + std::to_string(code) + ")";
  }
};

} // namespace korb::packer
