// atlas FOLDER or MAP: shows maps. With /greet it ends at once.
#include <cstdio>
#include <cstring>

#include "core/Windows.h"

namespace {

void ShowMap(const char *path) {
  std::FILE *file = std::fopen(path, "r");
  if (!file)
    return;
  std::printf("%s\n", path);
  for (int c; (c = std::fgetc(file)) != EOF;)
    std::putchar(c);
  std::fclose(file);
}

void ShowFolder(const char *folder) {
  char path[2 * MAX_PATH];
  std::snprintf(path, sizeof path, "%s\\*.kmap", folder);
  WIN32_FIND_DATAA entry;
  const HANDLE find = FindFirstFileA(path, &entry);
  if (find == INVALID_HANDLE_VALUE)
    return;
  do {
    std::snprintf(path, sizeof path, "%s\\%s", folder, entry.cFileName);
    ShowMap(path);
  } while (FindNextFileA(find, &entry));
  FindClose(find);
}

} // namespace

int main(int argc, char **argv) {
  const char *what = argc > 1 ? argv[1] : "maps";
  if (std::strcmp(what, "/greet") == 0)
    return 0;
  if (GetFileAttributesA(what) & FILE_ATTRIBUTE_DIRECTORY)
    ShowFolder(what);
  else
    ShowMap(what);
  return 0;
}
