#include "files/RunProcess.h"

#include "core/MessagePump.h"
#include "core/String.h"
#include "core/Windows.h"

namespace korb {

namespace {

constexpr DWORD kPumpEvery = 1; ///< milliseconds
/// Read as true. The number asks for no console, since it does not reach the creation flags.
constexpr BOOL kInherit = 0x10;

void SetShow(STARTUPINFOA &startup, ProcessOptions flags) {
  if (!(flags & (RP_MAXIMIZE | RP_MINIMIZE | RP_HIDE)))
    return;
  startup.dwFlags = STARTF_USESHOWWINDOW;
  startup.wShowWindow = flags & RP_MAXIMIZE ? SW_SHOWMAXIMIZED : (flags & RP_MINIMIZE ? SW_MINIMIZE : SW_HIDE);
}

int32_t Await(HANDLE process, bool pump) {
  if (pump)
    while (WaitForSingleObject(process, kPumpEvery) == WAIT_TIMEOUT)
      PumpMessages();
  else
    WaitForSingleObject(process, INFINITE);
  DWORD code;
  return GetExitCodeProcess(process, &code) ? static_cast<int32_t>(code) : kProcessCodeUnknown;
}

} // namespace

int32_t RunProcess(const char *command, ProcessOptions flags, const char *directory) {
  if (!command || !*command)
    return kProcessNotStarted;
  STARTUPINFOA startup = {};
  startup.cb = sizeof startup;
  SetShow(startup, flags);
  const DWORD priority = flags & RP_HIGH_PRIORITY
                             ? HIGH_PRIORITY_CLASS
                             : (flags & RP_IDLE_PRIORITY ? IDLE_PRIORITY_CLASS : NORMAL_PRIORITY_CLASS);
  String line(command); // the system writes into it
  ShowPendingProgress();
  PROCESS_INFORMATION process;
  if (!CreateProcessA(nullptr, line.data(), nullptr, nullptr, flags & RP_INHERIT ? kInherit : FALSE, priority, nullptr,
                      directory, &startup, &process)) {
    if (flags & RP_REPORT)
      MessageBoxA(nullptr, str_format("Unable to create process:\r\n%s", command), "Error", MB_ICONHAND);
    return kProcessNotStarted;
  }
  const int32_t result = flags & RP_WAIT ? Await(process.hProcess, (flags & RP_PUMP) != 0) : kProcessCodeUnknown;
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return result;
}

} // namespace korb
