#include "app/FailureTexts.h"

#include "format/Texts.h"
#include "ui/TextLookup.h"

namespace korb {

namespace {

const char kCorruptFormat[] =
    "This installation program is corrupt.  This is usually caused by a faulty download, but it can also be caused by "
    "a virus on your computer.  The installation cannot proceed.\r\n\r\nDelete the corrupted installer (to prevent "
    "caching), then re-download it.  If the problem persists, check your system for viruses.\r\n\r\nError code: %d";

const char *TextOr(int32_t number, const char *built_in) {
  const char *text = TextLookup(number);
  return *text != '\0' ? text : built_in;
}

} // namespace

const char kUsageFormat[] = "%s\n\nUsage:\n%s [/a] [/d:\"dir\"] [/n:\"name\"] [/u:\"name\"] [/r:\"program\"]\n\n"
                            "/a                  \tAutomatic mode\n"
                            "/d:\"dir\"        \tOverride installation directory\n"
                            "/n:\"name\"\tOverride product name\n"
                            "/u:\"name\"\tUninstall product by name\r\n"
                            "/r:\"program\"\tRun the specified program after a successful installation";

const char kInternalErrorFormat[] = "Internal Fatal Error\r\nModule: %s\r\nLine: %d";

const char kOwnFileFormat[] = "Error code 1: The self-extracting archive could not open itself.  Filename:\n%s";

const char *CorruptFormat() {
  return TextOr(kTextCorrupt, kCorruptFormat);
}

const char *ErrorCaption() {
  return TextOr(kTextErrorCaption, "Error");
}

} // namespace korb
