#include "core/String.h"

#include <cstdlib>
#include <cstring>
#include <utility>

#include "core/Checksum.h"
#include "core/Failure.h"
#include "core/Heap.h"

namespace korb {

namespace {

int32_t Smaller(int32_t a, int32_t b) {
  return a < b ? a : b;
}

/// Ends at a NUL in both, as texts are compared.
int32_t CompareBytes(const char *a, const char *b, bool case_sensitive, int32_t n) {
  return case_sensitive ? strncmp(a, b, static_cast<size_t>(n)) : text_compare_no_case(a, b, n);
}

} // namespace

// Out of line: nearly every function has one, and a call is shorter than the three stores.
String::String() : data_(no_text_), length_(0), capacity_(0) {}

String::String(const char *text) : String() {
  assign(text);
}

String::String(const String &other) : String() {
  assign(other.data_, other.length_);
}

String::String(String &&other) noexcept : data_(other.data_), length_(other.length_), capacity_(other.capacity_) {
  other.data_ = no_text_;
  other.length_ = other.capacity_ = 0;
}

String::String(const char *p, int32_t n) : String() {
  assign(p, n);
}

// NOLINTNEXTLINE(bugprone-unhandled-self-assignment): assign takes parts of the text itself too.
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
  if (p < data_ || p >= data_ + length_) {
    splice(0, STRING_ALL, p, n);
    return;
  }
  if (p == data_ && n == length_)
    return;
  // A part of this very string: the old block must stand until the bytes are out of it.
  char *block = static_cast<char *>(heap_take(static_cast<size_t>(n) + STRING_SLACK));
  memcpy(block, p, static_cast<size_t>(n));
  block[n] = '\0';
  free(data());
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
  if (owns(p)) {
    String copy;
    if (!copy.try_assign(p, n))
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
  char *block = data();
  data_ = no_text_;
  length_ = capacity_ = 0;
  return block;
}

void String::clear() {
  free(data());
  data_ = no_text_;
  length_ = capacity_ = 0;
}

char &String::at(int32_t i) {
  if (is_out_of_range(i))
    InternalError("Core", 844);
  return data_[i];
}

bool String::contains_char(char c) const {
  return length_ > 0 && memchr(data_, c, static_cast<size_t>(length_));
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

bool String::resize(int64_t n, bool may_refuse) {
  if (n < 1) {
    clear();
    return true;
  }
  if (n == length_)
    return true;
  if (capacity_ <= n || n < capacity_ - STRING_SHRINK_MARGIN) {
    const size_t size = static_cast<size_t>(n + STRING_SLACK);
    const bool too_long = n > STRING_ALL - STRING_SLACK;
    if (!may_refuse && too_long)
      OutOfMemory(size);
    void *block = too_long ? nullptr : (may_refuse ? heap_try_resize(data(), size) : heap_resize(data(), size));
    if (!block)
      return false;
    data_ = static_cast<char *>(block);
    capacity_ = static_cast<int32_t>(n) + STRING_SLACK;
  }
  // New bytes are 0, so that what somebody fails to fill is the same in every run.
  const int32_t kept = n < length_ ? static_cast<int32_t>(n) : length_;
  memset(data_ + kept, 0, static_cast<size_t>(n + 1 - kept));
  length_ = static_cast<int32_t>(n);
  return true;
}

void String::set_length(int32_t n) {
  resize(n, false);
}

bool String::try_set_length(int32_t n) {
  return resize(n, true);
}

int32_t String::grow_by(int32_t n) {
  const int32_t old = length_;
  if (n > 0)
    resize(int64_t{length_} + n, false);
  return old;
}

bool String::try_grow_by(int32_t n) {
  return n >= 0 && resize(int64_t{length_} + n, true);
}

void String::ensure_length(int32_t n) {
  if (n >= capacity_) {
    set_length(n);
  } else if (n > length_) {
    memset(data_ + length_, 0, static_cast<size_t>(n + 1 - length_));
    length_ = n;
  }
}

void String::sync_length() {
  length_ = text_length(data_);
}

bool operator==(const String &a, const String &b) {
  return a.length_ == b.length_ && (a.length_ == 0 || memcmp(a.data_, b.data_, static_cast<size_t>(a.length_)) == 0);
}

bool operator==(const String &a, const char *b) {
  return a.length_ == text_length(b) && (a.length_ == 0 || memcmp(a.data_, b, static_cast<size_t>(a.length_)) == 0);
}

int32_t String::compare(const char *text, bool case_sensitive, int32_t max) const {
  if (!text || !*text)
    return is_empty() ? 0 : 1;
  if (capacity_ == 0)
    return -1;
  const int32_t n = Smaller(Smaller(length_, text_length(text)) + 1, max);
  return n < 1 ? -1 : CompareBytes(data_, text, case_sensitive, n);
}

int32_t String::compare(const String &other, bool case_sensitive, int32_t max) const {
  if (capacity_ == 0)
    return -1;
  if (other.is_empty())
    return is_empty() ? 0 : 1;
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
    resize(int64_t{pos} + n, false);
  } else if (remove > n) {
    memmove(data_ + pos + n, data_ + pos + remove, tail);
    set_length(length_ + n - remove);
  } else if (remove < n) {
    resize(int64_t{length_} + n - remove, false);
    memmove(data_ + pos + n, data_ + pos + remove, tail);
  }
  return true;
}

void String::splice(int32_t pos, int32_t remove, const char *src, int32_t n) {
  if (!src)
    n = 0;
  if (n > 0 && owns(src)) {
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

} // namespace korb
