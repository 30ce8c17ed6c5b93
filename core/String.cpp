#include "core/String.h"

#include <cstdlib>
#include <cstring>
#include <utility>

#include "core/Checksum.h"
#include "core/Failure.h"
#include "core/Heap.h"

namespace korb {

namespace {

constexpr char kBlanks[] = " \r\n\t";

int32_t Smaller(int32_t a, int32_t b) {
  return a < b ? a : b;
}

bool IsIn(char c, const char *set) {
  return c != '\0' && strchr(set, c) != nullptr;
}

/// The sign of the first difference, as the comparison over `n` bytes gives it.
int32_t CompareBytes(const char *a, const char *b, bool case_sensitive, int32_t n) {
  return case_sensitive ? strncmp(a, b, static_cast<size_t>(n)) : text_compare_no_case(a, b, n);
}

} // namespace

String::String(const char *text) {
  assign(text);
}

String::String(const String &other) {
  assign(other.data_, other.length_);
}

String::String(String &&other) noexcept : data_(other.data_), length_(other.length_), capacity_(other.capacity_) {
  other.data_ = nullptr;
  other.length_ = other.capacity_ = 0;
}

String::String(const char *p, int32_t n) {
  assign(p, n);
}

String &String::operator=(const String &other) {
  assign(other.data_, other.length_);
  return *this;
}

String &String::operator=(String &&other) noexcept {
  std::swap(data_, other.data_);
  std::swap(length_, other.length_);
  std::swap(capacity_, other.capacity_);
  return *this;
}

String &String::operator=(const char *text) {
  assign(text);
  return *this;
}

void String::assign(const char *p, int32_t n) {
  if (n < 1 || !p) {
    clear();
    return;
  }
  if (n == STRING_ALL)
    n = text_length(p);
  if (!data_ || p < data_ || p >= data_ + length_) {
    splice(0, STRING_ALL, p, n);
    return;
  }
  if (p == data_ && n == length_)
    return;
  // A part of this very string: the old block must stand until the bytes are out of it.
  char *block = static_cast<char *>(heap_take(static_cast<size_t>(n) + STRING_SLACK));
  memcpy(block, p, static_cast<size_t>(n));
  block[n] = '\0';
  free(data_);
  data_ = block;
  length_ = n;
  capacity_ = n + STRING_SLACK;
}

void String::assign_char(char c) {
  assign(&c, 1);
}

void String::assign_limited(const char *p, int32_t max) {
  const void *end = p && max > 0 ? memchr(p, 0, static_cast<size_t>(max)) : nullptr;
  assign(p, end ? static_cast<int32_t>(static_cast<const char *>(end) - p) : max);
}

bool String::try_assign(const char *p, int32_t n) {
  if (n < 1 || !p) {
    clear();
    return true;
  }
  if (n == STRING_ALL)
    n = text_length(p);
  if (data_ && p >= data_ && p < data_ + length_) {
    String copy;
    if (!copy.try_assign(p, Smaller(n, length_ - static_cast<int32_t>(p - data_))))
      return false;
    *this = std::move(copy);
    return true;
  }
  if (!try_set_length(n))
    return false;
  if (n > 0)
    memcpy(data_, p, static_cast<size_t>(n));
  return true;
}

void String::attach(char *p, int32_t n) {
  clear();
  if (!p)
    return;
  if (n < 1) {
    free(p);
    return;
  }
  data_ = static_cast<char *>(heap_resize(p, static_cast<size_t>(n) + 1));
  length_ = n;
  capacity_ = n + 1;
  data_[n] = '\0';
}

char *String::detach() {
  char *block = data_;
  data_ = nullptr;
  length_ = capacity_ = 0;
  return block;
}

void String::clear() {
  free(data_);
  data_ = nullptr;
  length_ = capacity_ = 0;
}

char &String::at(int32_t i) {
  if (is_out_of_range(i))
    InternalError("Core", 844);
  return data_[i];
}

bool String::contains_char(char c) const {
  return length_ > 0 && memchr(data_, c, static_cast<size_t>(length_)) != nullptr;
}

uint32_t String::dword_at(int32_t offset) const {
  uint32_t value = 0xFFFFFFFF;
  copy_out(&value, offset, 4);
  return value;
}

bool String::put_word(int32_t offset, uint32_t value) {
  if (offset < 0 || offset > length_ - 2)
    return false;
  memcpy(data_ + offset, &value, 2);
  return true;
}

bool String::put_dword(int32_t offset, uint32_t value) {
  if (offset < 0 || offset > length_ - 4)
    return false;
  memcpy(data_ + offset, &value, 4);
  return true;
}

void String::copy_out(void *dest, int32_t pos, int32_t count) const {
  if (count > 0 && pos >= 0 && pos <= length_ - count)
    memcpy(dest, data_ + pos, static_cast<size_t>(count));
}

uint32_t String::checksum() const {
  return Checksum32(data_, length_);
}

bool String::resize(int32_t n, bool may_refuse) {
  if (n < 1) {
    clear();
    return true;
  }
  if (n == length_)
    return true;
  if (capacity_ <= n || n < capacity_ - STRING_SHRINK_MARGIN) {
    const size_t size = static_cast<size_t>(n) + STRING_SLACK;
    if (n > STRING_ALL - STRING_SLACK) {
      if (may_refuse)
        return false;
      OutOfMemory(size);
    }
    void *block = may_refuse ? heap_try_resize(data_, size) : heap_resize(data_, size);
    if (!block)
      return false;
    data_ = static_cast<char *>(block);
    capacity_ = n + STRING_SLACK;
  }
  length_ = n;
  data_[n] = '\0';
  return true;
}

void String::set_length(int32_t n) {
  resize(n, false);
}

bool String::try_set_length(int32_t n) {
  return resize(n, true);
}

/// The sum of two lengths, at the limit where it would pass it; the heap then refuses it.
static int32_t Sum(int32_t a, int32_t b) {
  const int64_t sum = int64_t{a} + b;
  return sum > STRING_ALL ? STRING_ALL : static_cast<int32_t>(sum);
}

int32_t String::grow_by(int32_t n) {
  const int32_t old = length_;
  if (n > 0)
    set_length(Sum(length_, n));
  return old;
}

bool String::try_grow_by(int32_t n) {
  return n >= 0 && try_set_length(Sum(length_, n));
}

void String::ensure_length(int32_t n) {
  if (n >= capacity_) {
    set_length(n);
  } else if (n > length_) {
    length_ = n;
    data_[n] = '\0';
  }
}

void String::sync_length() {
  length_ = text_length(data_);
}

bool operator==(const String &a, const String &b) {
  return a.length_ == b.length_ && (a.length_ == 0 || memcmp(a.data_, b.data_, static_cast<size_t>(a.length_)) == 0);
}

int32_t String::compare(const char *text, bool case_sensitive, int32_t max) const {
  if (!text || !*text)
    return is_empty() ? 0 : 1;
  if (!data_)
    return -1;
  const int32_t n = Smaller(Smaller(length_, text_length(text)) + 1, max);
  return n < 1 ? -1 : CompareBytes(data_, text, case_sensitive, n);
}

int32_t String::compare(const String &other, bool case_sensitive, int32_t max) const {
  if (!data_)
    return -1;
  const int32_t n = Smaller(Smaller(length_, other.length_) + 1, max);
  return n < 1 ? -1 : CompareBytes(data_, other.c_str(), case_sensitive, n);
}

bool String::starts_with(const char *text, int32_t max) const {
  if (!text)
    return false;
  const int32_t n = Smaller(text_length(text), max);
  return n > 0 && n <= length_ && strncmp(data_, text, static_cast<size_t>(n)) == 0;
}

bool String::make_gap(int32_t pos, int32_t remove, int32_t n) {
  if (pos < 0 || pos > length_ || (remove < 1 && n < 1) || (remove > 0 && n < 0))
    return false;
  remove = remove < 1 ? 0 : Smaller(remove, length_ - pos);
  const size_t tail = static_cast<size_t>(length_ - pos - remove) + 1;
  if (remove == length_ - pos) {
    set_length(Sum(pos, n));
  } else if (remove > n) {
    memmove(data_ + pos + n, data_ + pos + remove, tail);
    set_length(length_ + n - remove);
  } else if (remove < n) {
    set_length(Sum(length_, n - remove));
    memmove(data_ + pos + n, data_ + pos + remove, tail);
  }
  return true;
}

void String::splice(int32_t pos, int32_t remove, const char *src, int32_t n) {
  if (!src)
    n = 0;
  if (n > 0 && data_ && src >= data_ && src < data_ + capacity_) {
    const String copy(src, n); // the gap moves the block that `src` lies in
    splice(pos, remove, copy.data_, copy.length_);
  } else if (make_gap(pos, remove, n) && n > 0) {
    memcpy(data_ + pos, src, static_cast<size_t>(n));
  }
}

void String::splice_string(int32_t pos, int32_t remove, const String &other) {
  splice(pos, remove, other.data_, other.length_);
}

void String::splice_text(int32_t pos, int32_t remove, const char *text) {
  splice(pos, remove, text, text_length(text));
}

void String::splice_fill(int32_t pos, int32_t remove, char c, int32_t n) {
  if (make_gap(pos, remove, n) && n > 0)
    memset(data_ + pos, c, static_cast<size_t>(n));
}

void String::insert_string(const String &other, int32_t pos, int32_t max) {
  splice_string(pos, 0, max < other.length_ ? other.mid(0, max) : other);
}

void String::insert_text(const char *text, int32_t pos, int32_t max) {
  if (!text)
    return;
  String part;
  part.assign_limited(text, max);
  splice_string(pos, 0, part);
}

void String::append(const char *p, int32_t n) {
  splice(length_, 0, p, n == STRING_ALL ? text_length(p) : n);
}

String &String::operator+=(char c) {
  splice(length_, 0, &c, 1);
  return *this;
}

String &String::operator+=(const char *text) {
  splice_text(length_, 0, text);
  return *this;
}

String &String::operator+=(const String &other) {
  splice_string(length_, 0, other);
  return *this;
}

String operator+(const String &a, char b) {
  String sum(a);
  sum += b;
  return sum;
}

String operator+(const String &a, const char *b) {
  String sum(a);
  sum += b;
  return sum;
}

String operator+(const String &a, const String &b) {
  String sum(a);
  sum += b;
  return sum;
}

void String::remove_first(int32_t n) {
  if (n > 0)
    erase(0, Smaller(n, length_));
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
  const int32_t n = Smaller(text_length(text), max);
  if (n < 1 || n > length_ || text_compare_no_case(data_, text, n) != 0)
    return false;
  remove_first(n);
  return true;
}

bool String::remove_first_in_set(const char *set) {
  if (!set || !data_ || !IsIn(data_[0], set))
    return false;
  remove_first(1);
  return true;
}

int32_t String::remove_char(char c, int32_t start, int32_t count) {
  if (start < 0)
    start = 0;
  if (Smaller(count, length_ - start) < 1)
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
  int32_t removed = 0;
  for (int32_t at = 0; removed < max; ++removed) {
    at = find(text, at, case_sensitive ? 0 : FIND_IGNORE_CASE);
    if (at < 0)
      break;
    erase(at, text_length(text));
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
  if (!data_ || !set)
    return;
  int32_t n = 0;
  while (n < length_ && IsIn(data_[n], set))
    ++n;
  remove_first(n);
}

void String::trim_right_set(const char *set) {
  if (!data_ || !set)
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
  text.set_length(Sum(length_, missing));
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

String String::mid(int32_t pos, int32_t count) const {
  if (pos < 0)
    pos = 0;
  count = Smaller(count, length_ - pos);
  return count < 1 ? String() : String(data_ + pos, count);
}

String String::cut(int32_t pos, int32_t count) {
  String part = mid(pos, count);
  erase(pos < 0 ? 0 : pos, count);
  return part;
}

String String::cut_from_match(const char *text, uint32_t flags) {
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
  int32_t end = start + 1;
  for (; end < length_; ++end) {
    if (data_[end] != quote)
      continue;
    if (end + 1 >= length_ || data_[end + 1] != quote)
      break;
    erase(end, 1);
  }
  String text = mid(start + 1, end - start - 1);
  erase(start, end - start + 1);
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
    if (IsIn(c, kBlanks))
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
  const int32_t value = text_skip_number(p, 0);
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
