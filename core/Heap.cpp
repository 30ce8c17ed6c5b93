#include "core/Heap.h"

#include <cstdlib>

namespace korb {

void *heap_take(size_t size) {
  return heap_resize(nullptr, size);
}

void *heap_resize(void *block, size_t size) {
  void *resized = realloc(block, size);
  if (!resized)
    OutOfMemory(size);
  return resized;
}

void *heap_try_resize(void *block, size_t size) {
  return realloc(block, size);
}

} // namespace korb
