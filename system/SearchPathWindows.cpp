#include "system/SearchPath.h"

#include "core/RunValues.h"
#include "core/Windows.h"
#include "files/DiskFile.h"
#include "files/ProgramPaths.h"
#include "system/SystemFolders.h"

namespace korb {

String EditAutoexecPath(bool add) {
  String name;
  name += BootDriveLetter();
  name += ":\\autoexec.bat";

  DiskFile file;
  String text;
  bool done =
      file.Open(name, add ? DF_OPEN_ALWAYS : DF_OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL) == OPEN_OK && file.ReadAll(&text);
  const String line = SearchPathLine(ShortPath(InstallDir));
  if (done && add) {
    const String addition = SearchPathAddition(text, line);
    done = addition.is_empty() || (file.SeekFromEnd(0) && file.WriteString(addition));
  } else if (done && RemoveSearchPathLine(text, line)) {
    done = file.Seek(0) && file.WriteString(text) && file.Truncate();
  }
  if (done)
    return String();
  return str_format("Unable to modify %s.  You will need to manually %s %s %s the PATH environment variable.\r\n\r\n",
                    name, add ? "add" : "remove", InstallDir, add ? "to" : "from");
}

} // namespace korb
