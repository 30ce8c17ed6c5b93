#include "files/ProgramPaths.h"

#include "core/Windows.h"
#include "files/PathText.h"
#include "files/SystemFunction.h"

#include <shellapi.h>

namespace korb {

String WindowsDirectory;
String ProgramPath;
String ProgramName;
String ProgramDirectory;
char ProgramDrive = 0;
String CommandInterpreter;

namespace {

constexpr DWORD kEnvironmentLimit = 31999;
constexpr INT_PTR kShellSuccess = 32;
constexpr DWORD kPathBytes = 3 * MAX_PATH; ///< of as many characters of UTF-8

} // namespace

void InitPaths() {
  static bool filled = false;
  if (filled)
    return;
  filled = true;
  // A path that does not fit is not written, or is cut off without its terminator.
  char path[kPathBytes + 1] = {};
  GetWindowsDirectoryA(path, MAX_PATH);
  WindowsDirectory = path;
  GetModuleFileNameA(nullptr, path, kPathBytes);
  ProgramPath = path;
  ProgramName = FilePart(ProgramPath);
  ProgramDirectory = DirectoryPart(ProgramPath);
  ProgramDrive = DriveLetter(ProgramPath);

  CommandInterpreter = "%comspec%";
  if (!ExpandEnvironment(CommandInterpreter) || IsBlank(CommandInterpreter))
    CommandInterpreter = PathJoin(WindowsDirectory, "command.com");
  if (CommandInterpreter.find_space() >= 0)
    CommandInterpreter.quote();
}

String ProgramRelative(const char *name) {
  return PathJoin(ProgramDirectory, name);
}

bool NormaliseToProgram(String &path) {
  return NormalisePath(path, ProgramDirectory);
}

bool ExpandEnvironment(String &text) {
  String expanded;
  expanded.set_length(static_cast<int32_t>(kEnvironmentLimit));
  const DWORD length = ExpandEnvironmentStringsA(text, expanded.data(), kEnvironmentLimit);
  if (length == 0 || length > kEnvironmentLimit)
    return false;
  text = expanded.c_str();
  return true;
}

String ShortPath(const char *path) {
  const int32_t length = text_length(path);
  if (length == 0)
    return String();
  const int32_t room = length * 2 > MAX_PATH ? length * 2 : MAX_PATH;
  String result;
  result.set_length(room);
  const DWORD got = GetShortPathNameA(path, result.data(), static_cast<DWORD>(room));
  if (got == 0 || got >= static_cast<DWORD>(room))
    return path;
  result.set_length(static_cast<int32_t>(got));
  return result;
}

bool ShellOpen(const char *path) {
  if (!path || !*path)
    return false;
  const auto open = KORB_SYSTEM_FUNCTION("shell32.dll", ShellExecuteA);
  if (!open)
    return false;
  const HINSTANCE result = open(nullptr, nullptr, path, nullptr, ProgramDirectory, SW_SHOW);
  return reinterpret_cast<INT_PTR>(result) > kShellSuccess;
}

} // namespace korb
