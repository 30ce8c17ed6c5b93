#include "archive/RunValues.h"

namespace korb {

uint64_t InstallFlags = 0;
String ProductName;
String Version;
String UninstallSubdir;
uint32_t TitleColor = 0;
uint32_t TopColor = 0;
uint32_t BottomColor = 0;
bool MonoColor = true;
uint8_t TitleShadow = 1;
Array<Array<String>> TextTable;
Array<String> LanguageNames;
int32_t LanguageIndex = 0;

} // namespace korb
