// Changing a String in place: its ends, its blanks, its quotes, its line ends.

#include <cstring>
#include <utility>

#include "core/String.h"

namespace korb {

namespace {

bool IsIn(char c, const char *set) {
  return c != '\0' && strchr(set, c);
}

} // namespace

void String::remove_first(int32_t n) {
  if (n > 0)
    erase(0, n < length_ ? n : length_);
}

void String::remove_last(int32_t n) {
  if (n > 0)
    set_length(n < length_ ? length_ - n : 0);
}

void String::remove_both_ends(int32_t n) {
  remove_first(n);
  remove_last(n);
}

void String::remove_first_if(char c) {
  if (!is_empty() && data_[0] == c)
    remove_first(1);
}

void String::remove_last_if(char c) {
  if (!is_empty() && last_char() == c)
    remove_last(1);
}

bool String::remove_prefix(const char *text, int32_t max) {
  if (!text)
    return false;
  const int32_t length = text_length(text);
  const int32_t n = length < max ? length : max;
  if (n < 1 || n > length_ || text_compare_no_case(data_, text, n) != 0)
    return false;
  remove_first(n);
  return true;
}

bool String::remove_first_in_set(const char *set) {
  if (!set || is_empty() || !IsIn(data_[0], set))
    return false;
  remove_first(1);
  return true;
}

int32_t String::remove_char(char c, int32_t start, int32_t count) {
  if (start < 0)
    start = 0;
  if (count < 1 || start >= length_)
    return 0;
  int32_t kept = start;
  for (int32_t i = start; i < length_; ++i)
    if (data_[i] != c)
      data_[kept++] = data_[i];
  const int32_t removed = length_ - kept;
  set_length(kept);
  return removed;
}

int32_t String::remove_all(const char *text, int32_t max, bool case_sensitive) {
  if (!text)
    return 0;
  if (owns(text)) // the bytes that it lies in are about to move
    return remove_all(String(text), max, case_sensitive);
  const int32_t length = text_length(text);
  int32_t removed = 0;
  for (int32_t at = 0; removed < max; ++removed) {
    at = find(text, at, case_sensitive ? FIND_NONE : FIND_IGNORE_CASE, length);
    if (at < 0)
      break;
    erase(at, length);
  }
  return removed;
}

bool String::cut_after_char(char c) {
  const int32_t at = find_char(c);
  if (at < 0)
    return false;
  erase_to_end(at);
  return true;
}

void String::trim() {
  trim_right();
  trim_left();
}

void String::trim_left_set(const char *set) {
  if (!set)
    return;
  int32_t n = 0;
  while (n < length_ && IsIn(data_[n], set))
    ++n;
  remove_first(n);
}

void String::trim_right_set(const char *set) {
  if (!set)
    return;
  int32_t n = length_;
  while (n > 0 && IsIn(data_[n - 1], set))
    --n;
  set_length(n);
}

void String::trim_right_char(char c) {
  int32_t n = length_;
  while (n > 0 && data_[n - 1] == c)
    --n;
  set_length(n);
}

void String::quote() {
  insert_char('"', 0);
  *this += '"';
}

void String::ensure_prefix_char(char c) {
  if (is_empty() || data_[0] != c)
    insert_char(c, 0);
}

bool String::unquote(char c) {
  if (is_empty() || data_[0] != c || last_char() != c)
    return false;
  remove_both_ends(1);
  return true;
}

void String::ensure_trailing_newline() {
  if (!ends_with_newline())
    *this += "\r\n";
}

void String::to_upper() {
  for (int32_t i = 0; i < length_; ++i)
    data_[i] = static_cast<char>(to_upper_char(data_[i]));
}

void String::normalize_line_ends() {
  // One growth for the whole text: an archive may bring a text of nothing but line feeds.
  int32_t missing = 0;
  for (int32_t i = 0; i < length_; ++i) {
    if (!is_line_break(data_[i]))
      continue;
    if (is_line_break(char_at(i + 1)) && data_[i + 1] != data_[i])
      ++i;
    else
      ++missing;
  }
  String text;
  text.resize(int64_t{length_} + missing, false);
  char *to = text.data_;
  for (int32_t i = 0; i < length_; ++i) {
    const char c = data_[i];
    if (!is_line_break(c)) {
      *to++ = c;
      continue;
    }
    *to++ = '\r';
    *to++ = '\n';
    if (is_line_break(char_at(i + 1)) && data_[i + 1] != c)
      ++i;
  }
  *this = std::move(text);
}

} // namespace korb
