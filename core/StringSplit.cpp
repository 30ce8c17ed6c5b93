// Cutting a String into pieces.

#include <cstring>

#include "core/Collection.h"
#include "core/String.h"

namespace korb {

namespace {

/// Where a piece ends, and where the one after it starts.
struct Cut {
  int32_t end;
  int32_t next;
};

Cut FindCut(const String &text, int32_t pos, const char *delimiters, SplitOptions flags) {
  const int32_t length = text.length();
  const char *p = text.c_str();
  for (int32_t i = pos; i < length; ++i) {
    const char c = p[i];
    const bool doubled = i + 1 < length && p[i + 1] == c;
    if (c == '"' && (flags & SPLIT_SKIP_QUOTED)) {
      do
        ++i;
      while (i < length && p[i] != '"');
    } else if (c == '\0') {
      if (flags & SPLIT_NUL_ENDS)
        return {i, i + 1};
    } else if ((flags & SPLIT_LINES) && is_line_break(c)) {
      return {i, i + 1 < length && is_line_break(p[i + 1]) && !doubled ? i + 2 : i + 1};
    } else if (strchr(delimiters, c)) {
      if (!(flags & SPLIT_DOUBLED_DELIMITER) || !doubled)
        return {i, i + 1};
      ++i;
    }
  }
  return {length, length};
}

/// Removes each entry that repeats an earlier one. Goes from the end, so that no place still to be visited moves.
void RemoveRepeated(Collection<String> &entries) {
  CollectionIterator late;
  entries.end(late);
  while (const String *entry = entries.prev(late)) {
    CollectionIterator early;
    entries.begin(early);
    const String *other;
    do
      other = entries.next(early);
    while (other != entry && *other != *entry);
    if (other != entry)
      entries.remove_current(late);
  }
}

} // namespace

int32_t String::split(Collection<String> &dest, const char *delimiters, SplitOptions flags) const {
  if (!delimiters)
    delimiters = "";
  int32_t added = 0;
  for (int32_t pos = 0; pos < length_;) {
    const Cut cut = FindCut(*this, pos, delimiters, flags);
    String piece = mid(pos, (flags & SPLIT_KEEP_DELIMITER ? cut.next : cut.end) - pos);
    if (flags & SPLIT_TRIM)
      piece.trim();
    if ((flags & SPLIT_UNQUOTE) && piece.unquote('"') && (flags & SPLIT_UNDOUBLE))
      piece.replace("\"\"", "\"");
    if (flags & SPLIT_TRIM)
      piece.trim();
    if (!piece.is_empty() || (flags & SPLIT_KEEP_EMPTY)) {
      dest.append(piece);
      ++added;
    }
    if (cut.next >= length_ && cut.end < length_ && (flags & SPLIT_KEEP_EMPTY)) {
      dest.append(String());
      ++added;
    }
    pos = cut.next;
  }
  if (flags & SPLIT_UNIQUE)
    RemoveRepeated(dest);
  return added;
}

} // namespace korb
