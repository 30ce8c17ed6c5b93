// The least that putting files on a disk costs, and taking them away: plain calls of the system, no checks, contents
// mapped as an installer's are. It looks for a window message once, so that it is a program with windows for the
// system: for one without any, Wine loads half as much, and the start is all that a short run consists of.
//
//     floor place LIST COUNT DIRECTORY       LIST as told in FloorFiles.h; DIRECTORY is made
//     floor delete LIST COUNT DIRECTORY      takes them and DIRECTORY away
#include <windows.h>

#include <cstdlib>
#include <cstring>

#include "bench/FloorFiles.h"

using namespace korb::bench;

namespace {

char path[MAX_PATH]; // of DIRECTORY, and from `name` on of an entry
char *name;

bool Place(const FloorFile *entry, const FloorFile *end, const char *contents) {
  CreateDirectoryA(path, nullptr);
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
      return false;
    contents += entry->size;
  }
  return true;
}

/// From the end, where a directory comes after its files.
bool Delete(const FloorFile *entry, const FloorFile *end) {
  *name++ = '\\';
  while (end != entry) {
    strcpy(name, (--end)->name);
    if (!(end->size == kFloorDirectory ? RemoveDirectoryA(path) : DeleteFileA(path)))
      return false;
  }
  name[-1] = '\0';
  return RemoveDirectoryA(path);
}

} // namespace

int main(int argc, char **argv) {
  if (argc != 5)
    return 2;
  MSG message;
  PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE);
  const HANDLE list = CreateFileA(argv[2], GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  const HANDLE mapping = CreateFileMappingA(list, nullptr, PAGE_READONLY, 0, 0, nullptr);
  const char *base = static_cast<const char *>(MapViewOfFile(mapping, FILE_MAP_READ, 0, 0, 0));
  if (!base)
    return 3;
  const uint32_t count = strtoul(argv[3], nullptr, 10);
  const FloorFile *entry = reinterpret_cast<const FloorFile *>(base);
  strcpy(path, argv[4]);
  name = path + strlen(path);
  const bool done = strcmp(argv[1], "place") == 0 ? Place(entry, entry + count, base + ContentsAt(count))
                                                  : Delete(entry, entry + count);
  return done ? 0 : 4;
}
