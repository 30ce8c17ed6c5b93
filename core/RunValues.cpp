#include "core/RunValues.h"

#include <initializer_list>

namespace korb {

uint64_t InstallFlags = 0;
String ProductName;
String InstallDir;
String CommonDir;
Array<Array<String>> TextTable;
Array<String> LanguageNames;
int32_t LanguageIndex = 0;

void ResetRunValues() {
  AutomaticMode = false;
  UninstallMode = false;
  InstallFlags = 0;
  for (String *text : {&ProductName, &InstallDir, &CommonDir})
    text->clear();
  TextTable.clear();
  LanguageNames.clear();
  LanguageIndex = 0;
}

} // namespace korb
