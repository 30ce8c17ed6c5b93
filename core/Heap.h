// Blocks of the process heap, and what happens when there are no more.
//
// Everything in the program takes its memory here, `operator new` and the containers too, so that nobody has to ask
// whether it came. That is why no handler is installed: these functions call OutOfMemory themselves.
#pragma once

#include <cstddef>
#include <cstdint>

namespace korb {

/// `size` bytes, uninitialised; a refusal ends the process in OutOfMemory. The caller frees them with `free`.
void *heap_take(size_t size);
/// realloc of such a block, which may be null; a refusal ends the process in OutOfMemory.
void *heap_resize(void *block, size_t size);
/// realloc that may be refused: null then, and the old block is as it was.
void *heap_try_resize(void *block, size_t size);

/// Reports that `size` bytes were refused, with the top of the stack, and ends the process. Allocates nothing.
[[noreturn]] void OutOfMemory(size_t size);

} // namespace korb
