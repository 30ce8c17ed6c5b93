#include "files/SystemFunction.h"

#include "core/Windows.h"
#include "files/PathText.h"

namespace korb {

void *SystemFunction(const char *library, const char *name) {
  char directory[MAX_PATH];
  directory[0] = '\0';
  GetSystemDirectoryA(directory, sizeof directory);
  return reinterpret_cast<void *>(GetProcAddress(LoadLibraryA(PathJoin(directory, library)), name));
}

} // namespace korb
