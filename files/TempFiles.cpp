#include "files/TempFiles.h"

#include "core/Windows.h"

namespace korb {

const char *TempDirectory() {
  static String directory;
  if (!directory.is_empty())
    return directory;
  const DWORD length = GetTempPathA(0, nullptr);
  if (length > 0) {
    directory.set_length(static_cast<int32_t>(length));
    directory.set_length(static_cast<int32_t>(GetTempPathA(length + 1, directory.data())));
    directory.remove_last_if('\\');
  }
  if (directory.is_empty())
    directory = "c:\\temp";
  return directory;
}

String TempFileName(const char *directory) {
  if (!directory || !*directory)
    directory = TempDirectory();
  char name[MAX_PATH];
  return GetTempFileNameA(directory, "TQT", 0, name) ? String(name) : String();
}

} // namespace korb
