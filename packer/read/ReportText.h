// Values of an archive as reports show them.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include <nlohmann/json.hpp>

#include "core/Date.h"
#include "packer/Words.h"

namespace korb::packer {

using Json = nlohmann::ordered_json;

/// `value` in JSON, on one line without an `indent`. A terminal would obey DEL, which JSON itself lets stand.
std::string Written(const Json &value, int indent = -1);

/// "0x0000001F".
std::string HexText(uint64_t value, int digits = 8);

/// "2001-02-03 04:05:06", or "none".
std::string DateText(const FileDate &date);

/// The names of the bits that are set; what has none is one number at the end.
Json WordsOf(std::span<const NamedValue> names, uint32_t bits);

} // namespace korb::packer
