// How long work tells how far it is.
#pragma once

#include <functional>

namespace korb::packer {

/// Told now and then what is being done, in a word or two, and how much of it, 0 to 100. May be empty.
using Progress = std::function<void(const char *step, int percent)>;

} // namespace korb::packer
