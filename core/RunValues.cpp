#include "core/RunValues.h"

#include <initializer_list>

namespace korb {

uint64_t InstallFlags = 0;
String ProductName;
String Version;
String InstallDir;
String CommonDir;
String UninstallSubdir;
String UninstallerImage;
uint32_t TitleColor = 0;
uint32_t TopColor = 0;
uint32_t BottomColor = 0;
bool MonoColor = true;
uint8_t TitleShadow = 1;
Array<Array<String>> TextTable;
Array<String> LanguageNames;
int32_t LanguageIndex = 0;

void ResetRunValues() {
  AutomaticMode = false;
  UninstallMode = false;
  InstallFlags = 0;
  for (String *text : {&ProductName, &Version, &InstallDir, &CommonDir, &UninstallSubdir, &UninstallerImage})
    text->clear();
  TitleColor = TopColor = BottomColor = 0;
  MonoColor = true;
  TitleShadow = 1;
  TextTable.clear();
  LanguageNames.clear();
  LanguageIndex = 0;
}

} // namespace korb
