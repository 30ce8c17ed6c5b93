#include "engine/RunLists.h"

#include "engine/UninstallList.h"

namespace korb {

String ErrorReport;
String LogText;
String UninstallDir;
Vector<String> SharedFileList;
Vector<String> ComFileList;
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
