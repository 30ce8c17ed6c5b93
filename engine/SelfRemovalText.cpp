#include "engine/SelfRemovalText.h"

#include "files/PathText.h"

namespace korb {

/// The loop has no pause: a batch has none that every system knows. It turns as long as the program needs to end.
String SelfRemovalText(const char *program, const char *install_dir, const char *subdirectory) {
  String text = str_format(":Repeat\r\ndel \"%s\"\r\nif exist \"%s\" goto Repeat\r\n", program, program);
  if (*subdirectory)
    text.append_format("rd \"%s\"\r\n", PathJoin(install_dir, subdirectory));
  text.append_format("rd \"%s\"\r\ndel \"%s\"\r\n", install_dir, kSelfRemovalBatch);
  // The interpreter drops a single one, and only the paths have any. Without regard to case, as all others in the
  // program: its one form takes 100 bytes less.
  text.replace("%", "%%", FIND_IGNORE_CASE);
  return text;
}

} // namespace korb
