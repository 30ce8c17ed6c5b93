// Searching and replacing in a String.

#include <cstring>
#include <utility>

#include "core/String.h"
#include "core/Vector.h"

namespace korb {

namespace {

/// Compares a pattern with the bytes at one place.
struct Matcher {
  const char *pattern;
  int32_t length; ///< of the pattern
  FindOptions flags;

  /// Bytes that one match takes.
  int32_t unit() const { return flags & FIND_ANY_OF ? 1 : length; }

  bool at(const char *text) const {
    if (flags & FIND_ANY_OF)
      return InSet(*text);
    for (int32_t i = 0; i < length; ++i) {
      if (flags & FIND_WILDCARD && pattern[i] == '?')
        continue;
      if (!Same(pattern[i], text[i]))
        return false;
      if (pattern[i] == '\0' && !(flags & FIND_WILDCARD)) // texts end here
        break;
    }
    return true;
  }

private:
  bool Same(char wanted, char found) const {
    return wanted == found || ((flags & FIND_IGNORE_CASE) && to_lower_char(wanted) == to_lower_char(found));
  }
  bool InSet(char c) const {
    for (const char *member = pattern; *member; ++member)
      if (Same(*member, c))
        return true;
    return false;
  }
};

/// The text that takes the place of `matched`. Each `?` of `with` keeps the byte that the next `?` of `old` stood for.
String WildcardMerge(const char *matched, const char *old, const char *with) {
  String merged(with);
  int32_t place = 0;
  for (int32_t i = 0; i < merged.length(); ++i) {
    if (with[i] != '?')
      continue;
    while (old[place] && old[place] != '?')
      ++place;
    if (old[place])
      merged.at(i) = matched[place++];
  }
  return merged;
}

} // namespace

int32_t String::find(const char *pattern, int32_t start, FindOptions flags, int32_t pattern_length) const {
  if (!pattern || is_empty())
    return -1;
  if (pattern_length == STRING_ALL)
    pattern_length = text_length(pattern);
  if (pattern_length < 1)
    return -1;
  const Matcher matcher{pattern, pattern_length, flags};
  const int32_t last = length_ - matcher.unit();
  const int32_t step = flags & FIND_REVERSE ? -1 : 1;
  if (step < 0)
    start = start > last ? last : (start < 1 ? -1 : start - 1);
  else if (start < 0)
    start = 0;

  for (int32_t pos = start; pos >= 0 && pos <= last; pos += step) {
    if ((flags & FIND_SKIP_QUOTED) && data_[pos] == '"') {
      do
        pos += step;
      while (pos >= 0 && pos < length_ && data_[pos] != '"');
      continue;
    }
    if (!matcher.at(data_ + pos))
      continue;
    if ((flags & FIND_WHOLE_WORD) &&
        ((pos > 0 && is_word_char(data_[pos - 1])) || (pos < last && is_word_char(data_[pos + matcher.unit()]))))
      continue;
    return flags & FIND_RETURN_END ? pos + matcher.unit() : pos;
  }
  return -1;
}

int32_t String::find_char(char c, int32_t start, FindOptions flags) const {
  for (int32_t pos = start < 0 ? 0 : start; pos < length_; ++pos) {
    if ((flags & FIND_SKIP_QUOTED) && data_[pos] == '"') {
      do
        ++pos;
      while (pos < length_ && data_[pos] != '"');
      continue;
    }
    if (data_[pos] == c || ((flags & FIND_IGNORE_CASE) && to_upper_char(data_[pos]) == to_upper_char(c)))
      return pos;
  }
  return -1;
}

int32_t String::rfind_char(char c, int32_t start, FindOptions flags) const {
  bool quoted = false;
  for (int32_t pos = start < length_ - 1 ? start : length_ - 1; pos >= 0; --pos) {
    if ((flags & FIND_SKIP_QUOTED) && data_[pos] == '"')
      quoted = !quoted;
    if (!quoted && data_[pos] == c)
      return pos;
  }
  return -1;
}

int32_t String::find_any(const char *set, int32_t start) const {
  if (!set || !*set)
    return -1;
  for (int32_t pos = start < 0 ? 0 : start; pos < length_; ++pos)
    if (data_[pos] && strchr(set, data_[pos]))
      return pos;
  return -1;
}

int32_t String::find_not_in(const char *set, int32_t start) const {
  if (!set)
    return -1;
  for (int32_t pos = start < 0 ? 0 : start; pos < length_; ++pos)
    if (!data_[pos] || !strchr(set, data_[pos]))
      return pos;
  return -1;
}

int32_t String::find_number_start(int32_t start) const {
  return find_any("0123456789+-.", start);
}

int32_t String::find_line_end(int32_t start, LineOptions flags) const {
  const int32_t none = flags & LINE_LENGTH_IF_NONE ? length_ : -1;
  if (is_out_of_range(start))
    return none;
  for (int32_t pos = start; pos < length_; ++pos) {
    const char c = data_[pos];
    if ((flags & LINE_SKIP_QUOTED) && c == '"') {
      do
        ++pos;
      while (pos < length_ && data_[pos] != '"');
    } else if (is_line_break(c)) {
      if (flags & LINE_AT_BREAK)
        return pos;
      const char next = char_at(pos + 1);
      return is_line_break(next) && next != c ? pos + 2 : pos + 1;
    }
  }
  return none;
}

int32_t String::replace(const char *old, const char *with, FindOptions flags, int32_t start, int32_t max,
                        int32_t skip) {
  const bool first_only = (flags & FIND_FIRST_ONLY) != 0;
  const int32_t nothing = first_only ? -1 : 0;
  const int32_t old_length = text_length(old);
  if (max < 1 || old_length == 0)
    return nothing;
  if (owns(old) || owns(with)) {
    const String old_copy(old);
    const String new_copy(with);
    return replace(old_copy, new_copy, flags, start, max, skip);
  }
  flags &= ~(FIND_REVERSE | FIND_RETURN_END);
  const bool merged = (flags & (FIND_WILDCARD | FIND_ANY_OF)) == FIND_WILDCARD;
  const int32_t span = flags & FIND_ANY_OF ? 1 : old_length; // bytes of one match
  const int32_t new_length = text_length(with);
  const bool in_place = new_length == span;

  // In place each match is overwritten as it is found. Otherwise the places are gathered first, and the length changes
  // once.
  Vector<int32_t> places;
  int32_t found = 0;
  int32_t replaced = 0;
  for (int32_t pos = start; replaced < max; pos += span) {
    pos = find(old, pos, flags, old_length);
    if (pos < 0)
      break;
    ++found;
    if (skip > 0) {
      --skip;
      // A single replacement that changes the length gives up here, one in place goes on to the next match.
      if (first_only && !in_place)
        return found;
      continue;
    }
    ++replaced;
    if (in_place)
      memcpy(data_ + pos, merged ? WildcardMerge(data_ + pos, old, with).c_str() : with, static_cast<size_t>(span));
    else
      places.append(pos);
    if (first_only) {
      start = pos;
      break;
    }
  }
  if (replaced == 0)
    return first_only ? -1 : found;

  if (!in_place) {
    String result;
    result.resize(length_ + int64_t{new_length - span} * places.count, false);
    int32_t from = 0;
    char *to = result.data_;
    for (int32_t i = 0; i <= places.count; ++i) {
      const int32_t place = i < places.count ? places.at(i) : length_;
      if (place > from)
        memcpy(to, data_ + from, static_cast<size_t>(place - from));
      to += place - from;
      if (i == places.count)
        break;
      if (new_length > 0)
        memcpy(to, merged ? WildcardMerge(data_ + place, old, with).c_str() : with, static_cast<size_t>(new_length));
      to += new_length;
      from = place + span;
    }
    *this = std::move(result);
  }
  return first_only ? start : found;
}

int32_t String::replace_with_char(const char *old, char c, FindOptions flags, int32_t start) {
  const char text[2] = {c, '\0'};
  return replace(old, text, flags, start);
}

} // namespace korb
