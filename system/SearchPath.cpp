#include "system/SearchPath.h"

namespace korb {

String SearchPathLine(const char *directory) {
  return str_format("PATH=%%PATH%%;%s\r\n", directory);
}

String SearchPathAddition(const String &text, const String &line) {
  if (text.find(line, 0, FIND_IGNORE_CASE) >= 0)
    return String();
  return text.ends_with_char('\n') ? line : "\r\n" + line;
}

bool RemoveSearchPathLine(String &text, const String &line) {
  if (text.remove_all(line, STRING_ALL, false) > 0)
    return true;
  return text.remove_all(line.mid(0, line.length() - 2), STRING_ALL, false) > 0;
}

} // namespace korb
