#include "engine/ReleaseSharedFiles.h"

#include "core/RunValues.h"
#include "core/Windows.h"
#include "engine/ComSession.h"
#include "engine/RecordNames.h"
#include "engine/SelfRegistration.h"
#include "engine/SharedEntry.h"
#include "files/DeferredFiles.h"
#include "files/FileInfo.h"
#include "format/Record.h"
#include "format/Texts.h"
#include "registry/RegistryKey.h"
#include "ui/Questions.h"

namespace korb {

namespace {

/// True when nobody else counts the file. One that is not counted at all is nobody's.
bool IsLastReference(RegistryKey &counts, const String &path) {
  int32_t count = counts.ReadNumber(path, 0);
  if (count < 1)
    return true;
  counts.WriteNumber(path, --count, RK_DELETE_EMPTY);
  return count < 1;
}

/// The file is unregistered before anybody is asked whether it goes, and whether or not it is there.
void RemoveSharedFile(const SharedEntry &entry) {
  if (entry.registers_itself) {
    ComSession session;
    CallServer(entry.path, "DllUnregisterServer");
  }
  if (FileExists(entry.path) && MayRemove(IF_ASK_SHARED_REMOVAL, kTextSharedQuestion, kTextSharedCaption, entry.path))
    DeleteOrSchedule(entry.path);
}

} // namespace

bool ReleaseSharedFiles(String files) {
  RegistryKey counts;
  if (counts.OpenSoftware(kSharedFileKey, false) == KEY_NOT_OPENED)
    return false;
  SharedEntry entry;
  while (TakeSharedEntry(files, entry))
    if (IsLastReference(counts, entry.path) && !entry.keep)
      RemoveSharedFile(entry);
  return true;
}

} // namespace korb
