#include "archive/RunValues.h"

#include "core/RunMode.h"

namespace korb {

uint64_t InstallFlags = 0;
String ProductName;
Array<Array<String>> TextTable;
Array<String> LanguageNames;
int32_t LanguageIndex = 0;

void ResetRunValues() {
  InstallFlags = 0;
  AutomaticMode = UninstallMode = false;
  ProductName.clear();
  InstallDir.clear();
  CommonDir.clear();
  TextTable.clear();
  LanguageNames.clear();
  LanguageIndex = 0;
}

} // namespace korb
