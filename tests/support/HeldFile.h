// A file that another program holds, for tests of what is in use.
#pragma once

#include "core/Windows.h"
#include "tests/support/Doctest.h"

namespace korb::test {

/// Keeps everybody else from opening the file.
class HeldFile {
public:
  explicit HeldFile(const char *path)
      : handle_(CreateFileA(path, GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr)) {
    REQUIRE(handle_ != INVALID_HANDLE_VALUE);
  }
  ~HeldFile() { Release(); }
  HeldFile(const HeldFile &) = delete;

  void Release() {
    if (handle_ != INVALID_HANDLE_VALUE)
      CloseHandle(handle_);
    handle_ = INVALID_HANDLE_VALUE;
  }

private:
  HANDLE handle_;
};

} // namespace korb::test
