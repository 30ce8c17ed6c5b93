#include "system/ExitSystem.h"

#include "core/Windows.h"
#include "files/SystemFunction.h"

namespace korb {

namespace {

/// Nothing to do where the functions are missing: there are no privileges then. Disabling takes every privilege back,
/// not just this one; the process is about to end.
void AdjustPrivilege(const char *name, bool enable) {
  static constexpr const char *kLibrary = "advapi32.dll";
  static const auto open = KORB_SYSTEM_FUNCTION(kLibrary, OpenProcessToken);
  static const auto lookup = KORB_SYSTEM_FUNCTION(kLibrary, LookupPrivilegeValueA);
  static const auto adjust = KORB_SYSTEM_FUNCTION(kLibrary, AdjustTokenPrivileges);
  if (!open || !lookup || !adjust)
    return;
  HANDLE token;
  if (!open(GetCurrentProcess(), TOKEN_ADJUST_PRIVILEGES | TOKEN_QUERY, &token))
    return;
  TOKEN_PRIVILEGES privileges;
  privileges.PrivilegeCount = 1;
  privileges.Privileges[0].Attributes = SE_PRIVILEGE_ENABLED;
  if (!lookup(nullptr, name, &privileges.Privileges[0].Luid))
    return; // the token goes with the process
  adjust(token, !enable, &privileges, 0, nullptr, nullptr);
  CloseHandle(token);
}

UINT FlagsOf(ExitAction action) {
  switch (action) {
  case kExitPowerOff:
    return EWX_POWEROFF;
  case kExitRestart:
    return EWX_REBOOT;
  case kExitLogOff:
    return EWX_LOGOFF;
  default:
    return EWX_SHUTDOWN;
  }
}

} // namespace

bool ExitSystem(ExitAction action, bool force) {
  static constexpr const char *kShutdown = "SeShutdownPrivilege";
  AdjustPrivilege(kShutdown, true);
  const bool taken = ExitWindowsEx(FlagsOf(action) | (force ? EWX_FORCE : EWX_FORCEIFHUNG), 0) != 0;
  AdjustPrivilege(kShutdown, false);
  return taken;
}

} // namespace korb
