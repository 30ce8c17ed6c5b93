#include "engine/FileError.h"

#include "files/LastError.h"
#include "format/Texts.h"
#include "ui/TextLookup.h"

namespace korb {

void AppendFileError(String &report, const char *path) {
  // Taken first: looking a text up may change the system's last error.
  const String reason = LastErrorText();
  report.append_format("%s %s\r\n%s\r\n", TextLookup(kTextFileFailed), path, reason);
}

} // namespace korb
