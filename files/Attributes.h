// Attributes of files, as the system's bits (FILE_ATTRIBUTE_...).
#pragma once

#include <cstdint>

namespace korb {

inline constexpr uint32_t kNoAttributes = 0xFFFFFFFF;

/// kNoAttributes when there is no such file or directory.
uint32_t GetAttributes(const char *path);
/// False when there is no such file, or it refuses.
bool SetAttributes(const char *path, uint32_t attributes);

// These three read first and write only what changes. False when the attributes can't be read or written.

bool ClearAttributes(const char *path, uint32_t mask);
/// Takes the bits of `mask` from `value`, the others stay.
bool ChangeAttributes(const char *path, uint32_t value, uint32_t mask);
bool SetReadOnly(const char *path, bool read_only);

} // namespace korb
