#include "files/KernelFunction.h"

#include "core/Windows.h"

namespace korb {

void *KernelFunction(const char *name) {
  return reinterpret_cast<void *>(GetProcAddress(LoadLibraryA("kernel32.dll"), name));
}

} // namespace korb
