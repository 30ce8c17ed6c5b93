#include "engine/RunLists.h"

#include "engine/UninstallList.h"

namespace korb {

String UninstallDir;
String UninstallerPath;
String UninstallCommand;
bool IsReinstall = false;
Vector<String> SharedFileList;
Vector<String> ComFileList;
String SharedFiles;
String AssociationLines;
String ProductFonts;
Vector<ShortcutRecord> ShortcutList;

void ResetPlacementLists() {
  ClearUninstallList();
  SharedFileList.clear();
  ComFileList.clear();
  ProductFonts.clear();
  ShortcutList.clear();
}

} // namespace korb
