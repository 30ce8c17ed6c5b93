// A plan as people read it.
#pragma once

#include <ostream>

#include "packer/read/ReportText.h"

namespace korb::packer {

/// Writes `plan`, as WritePlan makes it, a line for each step.
void WritePlanText(const Json &plan, std::ostream &out);

} // namespace korb::packer
