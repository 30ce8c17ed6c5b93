#include "packer/UnfinishedFiles.h"

#include <cerrno>
#include <list>

#ifdef _WIN32
#include "core/Windows.h"

#include <fcntl.h>
#include <io.h>
#else
#include <csignal>
#include <fcntl.h>
#include <unistd.h>
#endif

namespace korb::packer {

namespace fs = std::filesystem;

namespace {

std::list<fs::path> unfinished;

#ifdef _WIN32

// The system calls its handler in a thread of its own.
class Lock {
public:
  Lock() { EnterCriticalSection(&Section()); }
  ~Lock() { LeaveCriticalSection(&Section()); }
  Lock(const Lock &) = delete;

private:
  static CRITICAL_SECTION &Section() {
    static CRITICAL_SECTION section;
    static const bool is_made = (InitializeCriticalSection(&section), true);
    (void)is_made;
    return section;
  }
};

BOOL WINAPI RemoveAll(DWORD) {
  const Lock lock;
  for (const fs::path &path : unfinished)
    DeleteFileW(path.c_str());
  return FALSE; // as if there were no handler
}

void Change(void (*change)(const fs::path &), const fs::path &path) {
  const Lock lock;
  change(path);
  static const bool is_asked = SetConsoleCtrlHandler(RemoveAll, TRUE) != 0;
  (void)is_asked;
}

#else

constexpr int kEnds[] = {SIGINT, SIGTERM, SIGHUP};

// In the middle of anything, but of a change of the list: those hold the signals back.
void RemoveAll(int signal) {
  for (const fs::path &path : unfinished)
    unlink(path.c_str());
  std::signal(signal, SIG_DFL);
  raise(signal);
}

void Change(void (*change)(const fs::path &), const fs::path &path) {
  sigset_t ends, before;
  sigemptyset(&ends);
  for (const int signal : kEnds)
    sigaddset(&ends, signal);
  sigprocmask(SIG_BLOCK, &ends, &before);
  change(path);
  for (const int signal : kEnds) {
    struct sigaction present = {};
    sigaction(signal, nullptr, &present);
    if (present.sa_handler != SIG_DFL) // somebody's wish that it doesn't end the program, or asked for already
      continue;
    present.sa_handler = RemoveAll;
    sigaction(signal, &present, nullptr);
  }
  sigprocmask(SIG_SETMASK, &before, nullptr);
}

#endif

} // namespace

#ifdef _WIN32

std::FILE *CreateNewFile(const fs::path &path) {
  const HANDLE handle = CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                                    CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE) {
    const DWORD error = GetLastError();
    errno = error == ERROR_FILE_EXISTS      ? EEXIST
            : error == ERROR_PATH_NOT_FOUND ? ENOENT
            : error == ERROR_DISK_FULL      ? ENOSPC
                                            : EACCES;
    return nullptr;
  }
  return _fdopen(_open_osfhandle(reinterpret_cast<intptr_t>(handle), _O_BINARY), "wb");
}

// A file that is read-only, or a program that runs, stays.
std::string WhyNotReplaceable(const fs::path &path) {
  const HANDLE handle =
      CreateFileW(path.c_str(), GENERIC_WRITE | DELETE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle != INVALID_HANDLE_VALUE) {
    CloseHandle(handle);
    return {};
  }
  const DWORD error = GetLastError();
  return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND ? ""
                                                                        : "the present file is read-only, or in use";
}

#else

std::FILE *CreateNewFile(const fs::path &path) {
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  return file < 0 ? nullptr : fdopen(file, "wb");
}

std::string WhyNotReplaceable(const fs::path &) {
  return {}; // a new file takes the name, whatever has it
}

#endif

void RemoveAtInterrupt(const fs::path &path) {
  Change([](const fs::path &file) { unfinished.push_back(file); }, path);
}

void ForgetUnfinished(const fs::path &path) {
  Change([](const fs::path &file) { unfinished.remove(file); }, path);
}

} // namespace korb::packer
