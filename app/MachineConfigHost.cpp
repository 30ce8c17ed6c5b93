#include "app/MachineConfigHost.h"

#include "files/Directories.h"
#include "files/PathText.h"
#include "files/ProgramPaths.h"
#include "system/PathVariables.h"
#include "system/SystemFolders.h"
#include "ui/BackgroundWindow.h"
#include "ui/WindowHandles.h"

namespace korb {

void MachineConfigHost::CreateMainWindow() {
  korb::CreateMainWindow(InstanceHandle, nullptr, looks_);
}

String MachineConfigHost::CommonFilesFolder() {
  return korb::CommonFilesFolder();
}

String MachineConfigHost::ProgramFilesFolder() {
  return korb::ProgramFilesFolder();
}

String MachineConfigHost::WindowsDirectory() {
  return korb::WindowsDirectory;
}

void MachineConfigHost::ExpandPathVariables(String &text) {
  korb::ExpandPathVariables(text);
}

void MachineConfigHost::NormalisePath(String &path, const String &base) {
  korb::NormalisePath(path, base);
}

void MachineConfigHost::CreateDirectoryTree(const String &path) {
  korb::CreateDirectoryTree(path);
}

void MachineConfigHost::LoadBackground(const String &block) {
  BackgroundImage.set_block(block, block.length());
}

} // namespace korb
