// Answers from the machine what reading the configuration asks for.
#pragma once

#include "archive/ConfigHost.h"

namespace korb {

class MachineConfigHost final : public ConfigHost {
public:
  void CreateMainWindow() override;
  String CommonFilesFolder() override;
  String ProgramFilesFolder() override;
  String WindowsDirectory() override;
  void ExpandPathVariables(String &text) override;
  void NormalisePath(String &path, const String &base) override;
  void CreateDirectoryTree(const String &path) override;
  void LoadBackground(const String &block) override;
};

} // namespace korb
