#include "archive/DiskArchiveFile.h"

namespace korb {

int32_t DiskArchiveFile::Size() {
  return file_.Size();
}

bool DiskArchiveFile::Seek(int32_t position) {
  return file_.Seek(position);
}

bool DiskArchiveFile::ReadAt(int32_t position, void *destination, int32_t count) {
  return file_.ReadAt(position, destination, count);
}

bool DiskArchiveFile::ReadSpan(String &text, int32_t position, int32_t count) {
  return file_.ReadSpan(text, position, count);
}

} // namespace korb
