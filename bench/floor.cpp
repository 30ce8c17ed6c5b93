// The least that putting files on a disk costs: plain calls of the system, no checks, contents mapped as an installer's
// are. It looks for a window message once, so that it is a program with windows for the system: for one without any,
// Wine loads half as much, and the start is all that a short run consists of.
//
//     floor LIST COUNT DIRECTORY       LIST as told in FloorFiles.h; DIRECTORY is made
#include <windows.h>

#include <cstdlib>
#include <cstring>

#include "bench/FloorFiles.h"

using namespace korb::bench;

int main(int argc, char **argv) {
  if (argc != 4)
    return 2;
  MSG message;
  PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE);
  const HANDLE list = CreateFileA(argv[1], GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  const HANDLE mapping = CreateFileMappingA(list, nullptr, PAGE_READONLY, 0, 0, nullptr);
  const char *base = static_cast<const char *>(MapViewOfFile(mapping, FILE_MAP_READ, 0, 0, 0));
  if (!base)
    return 3;
  const uint32_t count = strtoul(argv[2], nullptr, 10);
  const FloorFile *entry = reinterpret_cast<const FloorFile *>(base);
  const FloorFile *end = entry + count;
  const char *contents = base + ContentsAt(count);
  char path[MAX_PATH];
  strcpy(path, argv[3]);
  CreateDirectoryA(path, nullptr);
  char *name = path + strlen(path);
  *name++ = '\\';
  for (; entry != end; ++entry) {
    strcpy(name, entry->name);
    if (entry->size == kFloorDirectory) {
      CreateDirectoryA(path, nullptr);
      continue;
    }
    const HANDLE file = CreateFileA(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    const FILETIME modified = {static_cast<DWORD>(entry->modified), static_cast<DWORD>(entry->modified >> 32)};
    DWORD written;
    if (file == INVALID_HANDLE_VALUE || !WriteFile(file, contents, entry->size, &written, nullptr) ||
        !SetFileTime(file, nullptr, nullptr, &modified) || !CloseHandle(file) ||
        !SetFileAttributesA(path, entry->attributes))
      return 4;
    contents += entry->size;
  }
  return 0;
}
