// What a run of a finished installer would do to a machine, in its order.
//
// The plan is made by the program's own code, on a machine that only notes what it is told (PlannedMachine.h). The
// phases and their order are those of Installation::Run (app/Installation.cpp), which is a contract.
#pragma once

#include <filesystem>
#include <ostream>
#include <string>

#include "packer/CodePage.h"
#include "packer/plan/TargetSystem.h"

namespace korb::packer {

struct PlanRequest {
  std::filesystem::path installer;
  const TargetSystem *system = nullptr;
  bool has_64_bits = false;
  std::string directory;       ///< the user's choice, as by /d:; empty: the installer's own. UTF-8
  bool silent = false;         ///< as by /a
  int page = kDefaultCodePage; ///< of the installer's texts, unless it asks for UTF-8
  bool json = false;
};

/// Writes the plan, as text or as JSON. False when the installer is damaged, which goes to `problems`: there is no plan
/// then. Throws PackError when there is no such installer, or `directory` can't be written in its code page.
bool WritePlan(const PlanRequest &request, std::ostream &out, std::ostream &problems);

} // namespace korb::packer
