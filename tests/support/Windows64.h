// What is elsewhere for 32-bit programs, as the tests are, where Windows is a 64-bit one.
#pragma once

#include <string>

#include "core/Windows.h"

namespace korb::test {

inline const bool kWindows64 = [] {
  BOOL emulated = FALSE;
  return IsWow64Process(GetCurrentProcess(), &emulated) && emulated;
}();

inline const std::string kProgramFiles = kWindows64 ? "C:\\Program Files (x86)" : "C:\\Program Files";

/// Where below HKEY_LOCAL_MACHINE the keys really are that such a program sees below Software.
inline const std::string kSoftware = kWindows64 ? "Software\\Wow6432Node\\" : "Software\\";

/// Where the files really are that such a program sees in C:\windows\system32.
inline const std::string kSystem32 = kWindows64 ? "C:\\windows\\syswow64" : "C:\\windows\\system32";

/// As long as it is there, this thread sees all files where they really are.
class RealFiles {
public:
  RealFiles() { Wow64DisableWow64FsRedirection(&before_); }
  ~RealFiles() { Wow64RevertWow64FsRedirection(before_); }
  RealFiles(const RealFiles &) = delete;

private:
  void *before_ = nullptr;
};

} // namespace korb::test
