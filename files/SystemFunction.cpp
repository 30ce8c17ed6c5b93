#include "files/SystemFunction.h"

#include "core/Windows.h"

namespace korb {

void *SystemFunction(const char *library, const char *name) {
  return reinterpret_cast<void *>(GetProcAddress(LoadLibraryA(library), name));
}

} // namespace korb
