#include "engine/SharedEntry.h"

#include <utility>

#include "format/Record.h"

namespace korb {

namespace {

bool TakeMark(String &path, char mark) {
  const bool marked = path.ends_with_char(mark);
  path.remove_last_if(mark);
  return marked;
}

} // namespace

SharedEntry ReadSharedEntry(String marked_path) {
  SharedEntry entry;
  entry.registers_itself = TakeMark(marked_path, kUnregisterMark);
  entry.keep = TakeMark(marked_path, kKeepMark);
  entry.path = std::move(marked_path);
  return entry;
}

bool TakeSharedEntry(String &text, SharedEntry &entry) {
  entry = ReadSharedEntry(text.take_quoted(0));
  if (entry.path.is_empty())
    return false;
  text.remove_first_if(';');
  return true;
}

void AppendSharedEntry(String &text, const String &marked_path) {
  if (!text.is_empty())
    text += ';';
  text += '"';
  text += marked_path;
  text += '"';
}

} // namespace korb
