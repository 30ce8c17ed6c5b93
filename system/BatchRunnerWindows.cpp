#include "system/BatchRunner.h"

#include "core/RunValues.h"
#include "core/Windows.h"
#include "files/DeferredFiles.h"
#include "files/LastError.h"
#include "files/OsVersion.h"
#include "files/PathText.h"
#include "files/ProgramPaths.h"
#include "files/RunProcess.h"
#include "files/WholeFile.h"
#include "format/Words.h"

namespace korb {

namespace {

/// The interpreter of Windows 9x is given 5,000 bytes of environment: the variables need more than its default.
constexpr const char *kCommand9x = "%s /e:5000 /c \"%s\"";
/// The interpreter of Windows NT keeps a lone pair of quotes only where it sees nothing but a plain path between them:
/// not in "C:\Program Files (x86)". Of two pairs it takes the outer one off, whatever is between them.
constexpr const char *kCommandNT = "%s /e:5000 /c \"\"%s\"\"";
/// It reads a batch in the code page of its console, which is another than the program's where that asks for UTF-8.
constexpr const char *kCommandUtf8 = "%s /e:5000 /c \"chcp 65001>nul&\"%s\"\"";

} // namespace

bool RunBatch(const String &directory, const String &script, bool hidden, String &log) {
  if (IsBlank(script))
    return true;
  const String path = PathJoin(directory, kBatchName);
  const bool written = WriteWholeFile(path, BatchText(directory, script, !AutomaticMode && !hidden));
  int32_t result = kProcessNotStarted;
  if (written) {
    const char *form = GetACP() == CP_UTF8 ? kCommandUtf8 : IsWindowsNT() ? kCommandNT : kCommand9x;
    const String command = str_format(form, CommandInterpreter, path);
    const ProcessOptions flags = RP_WAIT | RP_PUMP | (hidden ? RP_HIDE : RP_NONE);
    result = RunProcess(command.c_str(), flags, directory.is_empty() ? nullptr : directory.c_str());
  }
  if (result == kProcessNotStarted)
    log.append_format("%s could not be run: %s\r\n", path, LastErrorText());
  DeleteOrSchedule(path); // what a full disk left of it too
  return result == 0;
}

} // namespace korb
