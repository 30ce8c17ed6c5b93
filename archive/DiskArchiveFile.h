// The running executable on disk, as an ArchiveFile.
#pragma once

#include "archive/ArchiveFile.h"
#include "files/DiskFile.h"

namespace korb {

/// Reads through `file`, which is open and outlives this.
class DiskArchiveFile final : public ArchiveFile {
public:
  explicit DiskArchiveFile(DiskFile &file) : file_(file) {}

  int32_t Size() override;
  bool Seek(int32_t position) override;
  bool ReadAt(int32_t position, void *destination, int32_t count) override;
  bool ReadSpan(String &text, int32_t position, int32_t count) override;

private:
  DiskFile &file_;
};

} // namespace korb
