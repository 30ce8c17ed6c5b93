#include "engine/UninstallData.h"

#include "engine/RecordNames.h"
#include "engine/UninstallRecord.h"
#include "files/WholeFile.h"

namespace korb {

bool WriteUninstallData() {
  return WriteWholeFile(UninstallDataPath(), UninstallRecordText());
}

} // namespace korb
