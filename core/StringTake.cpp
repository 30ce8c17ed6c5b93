// Parts of a String: copied out, taken off its front, read as numbers.

#include <utility>

#include "core/String.h"

namespace korb {

String String::mid(int32_t pos, int32_t count) const {
  if (pos < 0)
    pos = 0;
  if (count > length_ - pos)
    count = length_ - pos;
  return count < 1 ? String() : String(data_ + pos, count);
}

String String::cut(int32_t pos, int32_t count) {
  String part = mid(pos, count);
  erase(pos < 0 ? 0 : pos, count);
  return part;
}

String String::cut_from_match(const char *text, FindOptions flags) {
  const int32_t at = find(text, 0, flags);
  return at < 0 ? String() : cut(at);
}

char String::take_first_char() {
  const char c = first_char();
  remove_first(1);
  return c;
}

/// Where the first line stops and, with its end, how many bytes it takes.
int32_t String::scan_line(int32_t &line_length) const {
  for (int32_t i = 0; i < length_; ++i) {
    const char c = data_[i];
    if (c != '\0' && !is_line_break(c))
      continue;
    line_length = i;
    const char other = c == '\n' ? '\r' : '\n';
    return c != '\0' && i + 1 < length_ && data_[i + 1] == other ? i + 2 : i + 1;
  }
  line_length = length_;
  return length_;
}

String String::take_line() {
  int32_t line_length;
  const int32_t whole = scan_line(line_length);
  String line = mid(0, line_length);
  remove_first(whole);
  return line;
}

String String::take_line_with_end() {
  int32_t line_length;
  return cut(0, scan_line(line_length));
}

String String::take_delimited(char quote, int32_t start) {
  if (is_out_of_range(start) || data_[start] != quote)
    return String();
  // The text moves to the front of its own run, each byte once.
  int32_t end = start + 1;
  int32_t to = start;
  for (; end < length_; ++end) {
    if (data_[end] == quote && (++end >= length_ || data_[end] != quote))
      break;
    data_[to++] = data_[end];
  }
  String text = mid(start, to - start);
  erase(start, end - start);
  return text;
}

String String::next_word() {
  String word;
  trim_left();
  while (!is_empty()) {
    if (data_[0] == '"') {
      String run = take_quoted(0);
      run.quote();
      word += run;
      continue;
    }
    const char c = take_first_char();
    if (is_space(c))
      break;
    word += c;
  }
  return word;
}

void String::format_args(const char *fmt, const FormatArgs &args) {
  String text; // an argument may be this very string
  AppendFormat(text, fmt, args);
  *this = std::move(text);
}

int32_t String::to_int() const {
  return static_cast<int32_t>(to_int64());
}

int64_t String::to_int64() const {
  const int32_t at = find_number_start(0);
  if (at < 0)
    return 0;
  String digits = mid(at);
  digits.remove_char(',');
  return text_to_int64(digits);
}

int32_t String::parse_int(int32_t *pos) const {
  const int32_t start = pos ? *pos : 0;
  if (is_out_of_range(start))
    return INT32_MIN;
  const char *p = data_ + start;
  const int32_t value = text_skip_number(p);
  if (pos)
    *pos = static_cast<int32_t>(p - data_);
  return value;
}

bool to_bool(String value) {
  value.trim();
  if (value.is_empty() || value == "0")
    return false;
  return !value.equals_no_case("n") && !value.equals_no_case("no") && !value.equals_no_case("f") &&
         !value.equals_no_case("false");
}

String string_from_int64(int64_t value) {
  return str_format("%d", value);
}

} // namespace korb
