#include "tests/support/Process.h"

#include <stdexcept>

namespace korb::test {

Process::Process(std::string command_line, const std::string &directory) {
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process;
  const std::string shown = command_line; // the system writes to the other one
  if (!CreateProcessA(nullptr, command_line.data(), nullptr, nullptr, FALSE, 0, nullptr,
                      directory.empty() ? nullptr : directory.c_str(), &startup, &process))
    throw std::runtime_error("can't start " + shown + ": error " + std::to_string(GetLastError()));
  CloseHandle(process.hThread);
  handle_ = process.hProcess;
  id_ = process.dwProcessId;
}

Process::~Process() {
  TerminateProcess(handle_, 99);
  WaitForSingleObject(handle_, 5000);
  CloseHandle(handle_);
}

std::optional<DWORD> Process::Wait(int milliseconds) {
  DWORD code = 0;
  if (WaitForSingleObject(handle_, static_cast<DWORD>(milliseconds)) != WAIT_OBJECT_0 ||
      !GetExitCodeProcess(handle_, &code))
    return std::nullopt;
  return code;
}

DWORD Run(const std::string &command_line, const std::string &directory, int milliseconds) {
  Process process(command_line, directory);
  const std::optional<DWORD> code = process.Wait(milliseconds);
  if (!code)
    throw std::runtime_error("still runs after its time: " + command_line);
  return *code;
}

} // namespace korb::test
