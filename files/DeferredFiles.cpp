#include "files/DeferredFiles.h"

namespace korb {

void AddRename(String &text, const char *left, const char *right) {
  const int32_t behind = text.find("[rename]", 0, FIND_IGNORE_CASE | FIND_RETURN_END);
  if (behind >= 0) {
    text.insert_string(str_format("\r\n%s=%s", left, right), behind);
  } else {
    text.ensure_trailing_newline(); // an empty file gets an empty line in front
    text.append_format("[rename]\r\n%s=%s", left, right);
  }
}

} // namespace korb
