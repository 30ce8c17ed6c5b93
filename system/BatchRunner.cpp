#include "system/BatchRunner.h"

#include "core/RunMode.h"
#include "files/DeferredFiles.h"
#include "files/PathText.h"
#include "files/ProgramPaths.h"
#include "files/RunProcess.h"
#include "files/WholeFile.h"
#include "system/BatchText.h"

namespace korb {

namespace {

constexpr char kBatchName[] = "KORBBAT.BAT";
/// Bytes of environment that the interpreter of Windows 9x is given: the variables need more than its default.
constexpr int32_t kEnvironmentSize = 5000;

} // namespace

bool RunBatch(const String &directory, const String &script, bool hidden) {
  if (IsBlank(script.c_str()))
    return true;
  const String path = PathJoin(directory.c_str(), kBatchName);
  if (!WriteWholeFile(path.c_str(), BatchText(directory.c_str(), script, !AutomaticMode && !hidden)))
    return false;
  const String command = str_format("%s /e:%d /c \"%s\"", CommandInterpreter, kEnvironmentSize, path);
  const uint32_t flags = RP_WAIT | RP_PUMP | (hidden ? RP_HIDE : 0);
  const int32_t result = RunProcess(command.c_str(), flags, directory.is_empty() ? nullptr : directory.c_str());
  DeleteOrSchedule(path.c_str(), 0);
  return result == 0;
}

} // namespace korb
