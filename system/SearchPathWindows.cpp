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
  if (file.Open(name, add ? DF_OPEN_ALWAYS : DF_OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL) != OPEN_OK ||
      !file.ReadAll(&text))
    return str_format("Unable to modify %s.  You will need to manually %s %s %s the PATH environment variable.\r\n\r\n",
                      name, add ? "add" : "remove", InstallDir, add ? "to" : "from");

  const String line = SearchPathLine(ShortPath(InstallDir));
  if (add) {
    const String addition = SearchPathAddition(text, line);
    if (!addition.is_empty() && file.SeekFromEnd(0))
      file.WriteString(addition);
  } else if (RemoveSearchPathLine(text, line)) {
    file.Seek(0);
    file.WriteString(text);
    file.Truncate();
  }
  return String();
}

} // namespace korb
