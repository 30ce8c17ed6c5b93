// Reads a configuration where there is no machine to install on.
#pragma once

#include "archive/ConfigHost.h"

namespace korb::packer {

/// Folders have no names, so directories stay as the archive gives them. `background` takes the picture.
class NoMachine final : public ConfigHost {
public:
  explicit NoMachine(String &background) : background_(background) {}
  void CreateMainWindow() override {}
  String CommonFilesFolder() override { return String(); }
  String ProgramFilesFolder() override { return String(); }
  String WindowsDirectory() override { return "<os>"; }
  void ExpandPathVariables(String &) override {}
  void NormalisePath(String &, const String &) override {}
  void CreateDirectoryTree(const String &) override {}
  void LoadBackground(const String &block) override { background_ = block; }

private:
  String &background_;
};

} // namespace korb::packer
