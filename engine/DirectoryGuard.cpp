#include "engine/DirectoryGuard.h"

#include "files/PathText.h"

namespace korb {

bool MayDeleteWhole(const String &directory, const String &windows, const String &program_files) {
  String path(directory);
  path.trim_right_set("\\. "); // what the system drops; a root is no full path now
  const char *const text = path;
  return IsFullPath(text) && text[2] != '?' && text[2] != '.' &&
         text_compare_no_case(text, windows, windows.length()) != 0 && !path.equals_no_case(program_files);
}

} // namespace korb
