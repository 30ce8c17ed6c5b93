// The running executable as the archive code sees it: a file that can be read and no more.
#pragma once

#include <cstdint>

#include "core/String.h"

namespace korb {

/// Positions and counts are bytes from the start of the file. Every false result means that not all bytes came; the
/// destination then has no defined contents.
class ArchiveFile {
public:
  /// Size of the whole file.
  virtual int32_t Size() = 0;
  /// Moves the file's position; false when the file refuses, as for a negative one.
  virtual bool Seek(int32_t position) = 0;
  /// Reads exactly `count` bytes at `position` and leaves the file's own position as it was.
  virtual bool ReadAt(int32_t position, void *destination, int32_t count) = 0;
  /// Replaces `text` by the `count` bytes at `position`; false when the span passes the end of the file.
  virtual bool ReadSpan(String &text, int32_t position, int32_t count) = 0;

protected:
  ~ArchiveFile() = default;
};

} // namespace korb
