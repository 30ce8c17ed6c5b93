#include "files/WholeFile.h"

#include <cstring>

#include "core/Windows.h"
#include "files/DiskFile.h"

namespace korb {

namespace {

constexpr int32_t kCompareBlock = 0x1000;
constexpr int32_t kAppendAttempts = 10;
constexpr DWORD kAppendWait = 100; ///< milliseconds

} // namespace

OpenCode ReadWholeFile(const char *path, String &text) {
  DiskFile file;
  const OpenCode code = file.Open(path, DF_READ_SHARED, FILE_ATTRIBUTE_NORMAL);
  if (code != OPEN_OK)
    return code;
  const int32_t size = file.Size();
  text.set_length(size);
  if (size <= 0 || file.Read(text.data(), size))
    return OPEN_OK;
  text.clear();
  return OPEN_NOT_LOADED;
}

bool WriteWholeFile(const char *path, const void *data, int32_t count) {
  if (count == STRING_ALL)
    count = text_length(static_cast<const char *>(data));
  DiskFile file;
  if (file.Open(path, DF_CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL) != OPEN_OK)
    return false;
  return !data || count < 1 || file.Write(data, count);
}

bool WriteWholeFile(const char *path, const String &text) {
  return WriteWholeFile(path, text.data(), text.length());
}

bool AppendToFile(const char *path, const char *text, AppendOptions flags) {
  if (!path || !*path)
    return false;
  for (int32_t attempt = 0; attempt < kAppendAttempts; ++attempt) {
    DiskFile file;
    const FileOptions creation = flags & AF_EXISTING_ONLY ? DF_OPEN_EXISTING : DF_OPEN_ALWAYS;
    if (file.Open(path, creation | DF_AT_END, FILE_ATTRIBUTE_NORMAL) != OPEN_OK)
      return false;
    if (flags & AF_NEW_LINE)
      file.EnsureNewline();
    if (!text || file.WriteText(text))
      return true;
    if (flags & AF_ONE_ATTEMPT)
      return false;
    Sleep(kAppendWait);
  }
  return false;
}

/// Kept out of its one caller, whose frame is so large that each access to it takes a longer instruction.
[[gnu::noinline]] bool FileMatches(const void *data, int32_t count, const char *path) {
  DiskFile file;
  if (count < 0 || file.Open(path, DF_READ_SHARED, FILE_ATTRIBUTE_NORMAL) != OPEN_OK || file.Size() != count)
    return false;
  String block;
  for (const char *p = static_cast<const char *>(data); count > 0;) {
    const int32_t size = count < kCompareBlock ? count : kCompareBlock;
    block.set_length(size);
    if (!file.Read(block.data(), size) || memcmp(block.data(), p, static_cast<size_t>(size)) != 0)
      return false;
    p += size;
    count -= size;
  }
  return true;
}

} // namespace korb
