// Other programs, started and waited for.
#pragma once

#include <optional>
#include <string>

#include "core/Windows.h"

namespace korb::test {

/// A program that a test started; it is ended with the object.
class Process {
public:
  /// Starts a command line, in `directory` or in the test's own. Throws std::runtime_error when it can't be started.
  explicit Process(std::string command_line, const std::string &directory = std::string());
  ~Process();
  Process(const Process &) = delete;

  /// The exit code, as soon as the program has ended; nothing when it still runs after `milliseconds`.
  std::optional<DWORD> Wait(int milliseconds = 60000);
  DWORD Id() const { return id_; }

private:
  HANDLE handle_ = nullptr;
  DWORD id_ = 0;
};

/// Runs a command line to its end and gives its exit code. Throws std::runtime_error when it takes too long.
DWORD Run(const std::string &command_line, const std::string &directory = std::string(), int milliseconds = 60000);

} // namespace korb::test
