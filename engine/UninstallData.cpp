#include "engine/UninstallData.h"

#include "engine/RecordNames.h"
#include "engine/UninstallRecord.h"
#include "files/WholeFile.h"

namespace korb {

bool WriteUninstallData(const String &uninstall_dir, const UninstallList &list, const String &association_lines) {
  return WriteWholeFile(UninstallDataPath(uninstall_dir), UninstallRecordText(list.text(), association_lines));
}

} // namespace korb
