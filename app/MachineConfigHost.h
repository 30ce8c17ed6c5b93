// Answers from the machine what reading the configuration asks for.
#pragma once

#include "archive/ConfigHost.h"
#include "archive/InstallConfig.h"

namespace korb {

class MachineConfigHost final : public ConfigHost {
public:
  /// `looks` are those of the window that it makes, and live as long as that.
  explicit MachineConfigHost(const Looks &looks) : looks_(looks) {}
  void CreateMainWindow() override;
  String CommonFilesFolder() override;
  String ProgramFilesFolder() override;
  String WindowsDirectory() override;
  void ExpandPathVariables(String &text) override;
  void NormalisePath(String &path, const String &base) override;
  void CreateDirectoryTree(const String &path) override;
  void LoadBackground(const String &block) override;

private:
  const Looks &looks_;
};

} // namespace korb
