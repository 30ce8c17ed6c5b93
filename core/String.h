// The byte string that everything else rests on.
//
// A length-counted block that always ends in a NUL and may hold NULs, so it serves as a byte buffer too. Values are
// copied, never shared. There is no code page here: case, classes and numbers are ASCII. Positions and counts are in
// bytes and signed; a search gives -1 for nothing. Impossible arguments change nothing and give the operation's empty
// result; only `at` is fatal.
#pragma once

#include <cstdint>

#include "core/Collection.h"
#include "core/Format.h"
#include "core/Options.h"
#include "core/Text.h"

namespace korb {

template <>
inline constexpr const char *TypeName<String> = "String";

/// As a count: to the end, no limit, or measure the text.
inline constexpr int32_t STRING_ALL = 0x7FFFFFFF;
/// A block is sized to the wanted length plus this, the terminator included.
inline constexpr int32_t STRING_SLACK = 21;
/// A block shrinks only when it exceeds the wanted length by more than this.
inline constexpr int32_t STRING_SHRINK_MARGIN = 512;

// How `find` and `replace` look.
enum FindOptions : uint32_t {
  FIND_NONE = 0,
  FIND_IGNORE_CASE = 0x0001,
  FIND_WHOLE_WORD = 0x0002,  ///< no word character on either side
  FIND_WILDCARD = 0x0004,    ///< `?` in the pattern is any one byte
  FIND_FIRST_ONLY = 0x0008,  ///< `replace`: one replacement, and its position as the result
  FIND_SKIP_QUOTED = 0x0010, ///< text between double quotes is not searched
  FIND_REVERSE = 0x0020,     ///< strictly before `start`, toward the beginning
  FIND_RETURN_END = 0x2000,  ///< give the position after the match
  FIND_ANY_OF = 0x4000,      ///< the pattern is a set of bytes
};
template <>
inline constexpr bool IsOptionWord<FindOptions> = true;

// How `find_line_end` looks.
enum LineOptions : uint32_t {
  LINE_NONE = 0,
  LINE_SKIP_QUOTED = 0x10,    ///< breaks between double quotes don't count
  LINE_AT_BREAK = 0x40,       ///< give the break itself, not what follows it
  LINE_LENGTH_IF_NONE = 0x80, ///< give the length when there is none, not -1
};
template <>
inline constexpr bool IsOptionWord<LineOptions> = true;

// How `split` cuts.
enum SplitOptions : uint32_t {
  SPLIT_NONE = 0,
  SPLIT_KEEP_EMPTY = 0x0001,
  SPLIT_NUL_ENDS = 0x0002, ///< a NUL ends a piece
  SPLIT_LINES = 0x0004,    ///< CR, LF or a pair of them ends a piece
  SPLIT_TRIM = 0x0008,
  SPLIT_SKIP_QUOTED = 0x0010,       ///< delimiters between double quotes don't count
  SPLIT_KEEP_DELIMITER = 0x0020,    ///< a piece includes the delimiter that ended it
  SPLIT_UNIQUE = 0x0100,            ///< drop later entries of the destination that repeat one
  SPLIT_UNQUOTE = 0x0200,           ///< take one pair of double quotes off each piece
  SPLIT_UNDOUBLE = 0x0400,          ///< in an unquoted piece, "" becomes "
  SPLIT_DOUBLED_DELIMITER = 0x0800, ///< a doubled delimiter is text
};
template <>
inline constexpr bool IsOptionWord<SplitOptions> = true;

class String {
public:
  [[gnu::noinline]] String();
  String(const char *text);
  String(const String &other);
  String(String &&other) noexcept;
  /// As `assign(p, n)`.
  String(const char *p, int32_t n);
  ~String() { clear(); }

  String &operator=(const String &other);
  String &operator=(String &&other) noexcept;
  String &operator=(const char *text);

  /// Copies `n` bytes; STRING_ALL measures the text. A null `p` or `n` below 1 empties. `p` may lie in this string.
  void assign(const char *p, int32_t n = STRING_ALL);
  void assign_char(char c);
  /// Copies up to the first NUL, at most `max` bytes.
  void assign_limited(const char *p, int32_t max = STRING_ALL);
  /// As `assign`; false, and the string as it was, when the heap refuses.
  bool try_assign(const char *p, int32_t n);
  /// Takes over the heap block `p` of `n` bytes (malloc); `n` below 1 frees it.
  void attach(char *p, int32_t n);
  /// Hands the block to the caller, who frees it (free), and empties the string. Null when empty.
  char *detach();
  void clear();

  int32_t length() const { return length_; }
  bool is_empty() const { return length_ < 1; }
  /// Never null; ends in a NUL.
  const char *c_str() const { return data_; }
  operator const char *() const { return c_str(); }
  /// The block for writing into; null when the string owns none.
  char *data() { return capacity_ ? data_ : nullptr; }
  const char *data() const { return capacity_ ? data_ : nullptr; }
  bool is_out_of_range(int32_t i) const { return i < 0 || i >= length_; }
  /// Byte `i`; out of range ends the process.
  char &at(int32_t i);
  /// Byte `i`, 0 when out of range.
  char char_at(int32_t i) const { return is_out_of_range(i) ? '\0' : data_[i]; }
  char first_char() const { return data_[0]; }
  char last_char() const { return length_ > 0 ? data_[length_ - 1] : '\0'; }
  bool starts_with_char(char c) const { return first_char() == c; }
  bool ends_with_char(char c) const { return last_char() == c; }
  bool ends_with_newline() const { return is_line_break(last_char()); }
  bool contains_char(char c) const;
  /// 4 bytes, little-endian; 0xFFFFFFFF when they are not all there.
  uint32_t dword_at(int32_t offset) const;
  /// Store 2 or 4 bytes, little-endian; false when they don't fit inside the length.
  bool put_word(int32_t offset, uint32_t value);
  bool put_dword(int32_t offset, uint32_t value);
  /// Copies bytes out; does nothing unless all of them are there.
  void copy_out(void *dest, int32_t pos, int32_t count) const;
  /// Checksum32 over the bytes.
  uint32_t checksum() const;

  /// Cuts or lengthens; new bytes are 0. Below 1 frees the block.
  void set_length(int32_t n);
  /// As `set_length`; false, and the string as it was, when the heap refuses.
  bool try_set_length(int32_t n);
  /// Lengthens by `n` and gives the old length, where the new bytes stand. Not above 0 changes nothing.
  int32_t grow_by(int32_t n);
  /// Lengthens by `n`; false, and the string as it was, when `n` is negative or the heap refuses.
  bool try_grow_by(int32_t n);
  /// Lengthens to `n` where shorter; never cuts.
  void ensure_length(int32_t n);
  /// Takes the length from the first NUL, after somebody else wrote into the block.
  void sync_length();

  /// Below 0, 0 or above 0, over at most `max` bytes. An empty string is below every text but an empty one; against a
  /// String it is below even an empty one.
  int32_t compare(const char *text, bool case_sensitive, int32_t max = STRING_ALL) const;
  int32_t compare(const String &other, bool case_sensitive, int32_t max = STRING_ALL) const;
  int32_t compare_exact(const char *text) const { return compare(text, true, STRING_ALL); }
  bool equals_no_case(const char *text) const { return compare(text, false, STRING_ALL) == 0; }
  /// Compares the first `max` bytes of `text` at most, with case. An empty comparison is false.
  bool starts_with(const char *text, int32_t max = STRING_ALL) const;

  /// FIND_... flags. A reverse search that is to begin at the end takes STRING_ALL as its `start`.
  int32_t find(const char *pattern, int32_t start = 0, FindOptions flags = FIND_NONE,
               int32_t pattern_length = STRING_ALL) const;
  /// Of the flags, FIND_IGNORE_CASE and FIND_SKIP_QUOTED count.
  int32_t find_char(char c, int32_t start = 0, FindOptions flags = FIND_NONE) const;
  /// The last one at or before `start`. Of the flags, FIND_SKIP_QUOTED counts.
  int32_t rfind_char(char c, int32_t start = STRING_ALL, FindOptions flags = FIND_NONE) const;
  /// The first byte that is in `set`, or is not. An empty set holds nothing, a null one finds nothing; a NUL is in
  /// none.
  int32_t find_any(const char *set, int32_t start = 0) const;
  int32_t find_not_in(const char *set, int32_t start = 0) const;
  int32_t find_space() const { return find_any(" \r\n\t"); }
  /// A digit, `+`, `-` or `.`.
  int32_t find_number_start(int32_t start) const;
  /// LINE_... flags.
  int32_t find_line_end(int32_t start, LineOptions flags = LINE_NONE) const;

  // The splices, insertions and erasures take `pos` from 0 to the length and change nothing with another. Their source
  // may lie in this string; a null one inserts nothing.

  /// Replaces `remove` bytes at `pos`, or what is left of so many, by `n` bytes of `src`.
  void splice(int32_t pos, int32_t remove, const char *src, int32_t n);
  void splice_string(int32_t pos, int32_t remove, const String &other);
  void splice_text(int32_t pos, int32_t remove, const char *text);
  void splice_fill(int32_t pos, int32_t remove, char c, int32_t n);
  void insert_char(char c, int32_t pos, int32_t count = 1) { splice_fill(pos, 0, c, count); }
  void insert_string(const String &other, int32_t pos, int32_t max = STRING_ALL);
  void insert_text(const char *text, int32_t pos, int32_t max = STRING_ALL);
  void prepend(const char *text) { splice_text(0, 0, text); }
  void erase(int32_t pos, int32_t count = STRING_ALL) { splice(pos, count, nullptr, 0); }
  void erase_to_end(int32_t pos) { erase(pos, STRING_ALL); }
  void append(const char *p, int32_t n);
  String &operator+=(char c);
  String &operator+=(const char *text);
  String &operator+=(const String &other);
  void remove_first(int32_t n);
  void remove_last(int32_t n);
  void remove_both_ends(int32_t n);
  void remove_first_if(char c);
  void remove_last_if(char c);
  /// Without regard to case; false when it does not start so, or nothing is compared.
  bool remove_prefix(const char *text, int32_t max = STRING_ALL);
  /// Takes off the first byte when it is in `set`; false when it is not.
  bool remove_first_in_set(const char *set);
  /// Takes off one leading `/` or `-`.
  bool strip_switch_char() { return remove_first_in_set("/-"); }
  /// Removes every `c` from `start` to the end and gives their number. `count` only decides whether at all.
  int32_t remove_char(char c, int32_t start = 0, int32_t count = STRING_ALL);
  /// Removes the first `max` matches and gives their number; what closes up over a removal is not searched again.
  int32_t remove_all(const char *text, int32_t max = STRING_ALL, bool case_sensitive = true);
  /// Cuts from the first `c` to the end; false when there is none.
  bool cut_after_char(char c);
  void trim();
  void trim_left() { trim_left_set(" \r\n\t"); }
  void trim_right() { trim_right_set(" \r\n\t"); }
  void trim_left_set(const char *set);
  void trim_right_set(const char *set);
  void trim_right_char(char c);
  /// Puts a double quote at each end, whatever stands there.
  void quote();
  void ensure_prefix_char(char c);
  /// Takes one `c` off each end when both are there; a lone `c` becomes empty.
  bool unquote(char c);
  void ensure_trailing_newline();
  void to_upper();
  /// Every line end becomes CR LF.
  void normalize_line_ends();

  String mid(int32_t pos, int32_t count = STRING_ALL) const;
  /// `mid`, removed from here.
  String cut(int32_t pos, int32_t count = STRING_ALL);
  /// Cuts from the first match to the end; empty when there is none.
  String cut_from_match(const char *text, FindOptions flags = FIND_NONE);
  char take_first_char();
  /// Takes off the first line; its end (CR, LF, a pair of them, or NUL) goes too.
  String take_line();
  String take_line_with_end();
  /// Takes off the run that `quote` opens at `start`, without its quotes; a doubled one inside stands for one. Empty,
  /// and nothing changed, when there is no quote at `start`.
  String take_delimited(char quote, int32_t start);
  String take_quoted(int32_t start) { return take_delimited('"', start); }
  /// Takes off the first command-line word; quoted runs belong to it and keep their quotes.
  String next_word();

  /// Appends the pieces to `dest` and gives how many. SPLIT_... flags. Implemented in core/StringSplit.cpp.
  int32_t split(Collection<String> &dest, const char *delimiters, SplitOptions flags = SPLIT_NONE) const;
  int32_t split_lines(Collection<String> &dest) const {
    return split(dest, nullptr, SPLIT_KEEP_EMPTY | SPLIT_NUL_ENDS | SPLIT_LINES);
  }

  /// Replaces matches of `old`, FIND_... flags, after the first `skip` of them, at most `max`. Gives the number of
  /// matches, skipped ones included; with FIND_FIRST_ONLY the position of the one that was replaced, or -1. What was
  /// written is not searched again.
  int32_t replace(const char *old, const char *with, FindOptions flags = FIND_NONE, int32_t start = 0,
                  int32_t max = STRING_ALL, int32_t skip = 0);
  int32_t replace_with_char(const char *old, char c, FindOptions flags = FIND_NONE, int32_t start = 0);

  /// See AppendFormat for what a format may hold.
  template <class... T>
  void format(const char *fmt, const T &...values) {
    format_args(fmt, PackedArgs<sizeof...(T)>(values...));
  }
  template <class... T>
  void append_format(const char *fmt, const T &...values) {
    AppendFormat(*this, fmt, PackedArgs<sizeof...(T)>(values...));
  }
  void format_args(const char *fmt, const FormatArgs &args);

  /// From the first digit, sign or point on, commas left out: "v2" is 2 and "1,234" is 1234.
  int32_t to_int() const;
  int64_t to_int64() const;
  /// Reads one sign and digits at `*pos` and moves it; null is position 0. Out of range is 0x80000000.
  int32_t parse_int(int32_t *pos) const;

protected:
  friend bool operator==(const String &a, const String &b);
  friend bool operator==(const String &a, const char *b);

  /// Makes `n` bytes of room at `pos` in place of `remove` bytes. False, and nothing changed, with a `pos` outside or
  /// nothing to do.
  bool make_gap(int32_t pos, int32_t remove, int32_t n);
  /// Whether `p` points into the block, which any change of length may move.
  bool owns(const char *p) const { return p >= data_ && p < data_ + capacity_; }
  /// Both forms of set_length. A sum of lengths comes in 64 bits: what no string can hold is a refusal of the heap.
  bool resize(int64_t n, bool may_refuse);
  /// What the first line takes with its end; `line_length` without.
  int32_t scan_line(int32_t &line_length) const;

  /// What a string without a block points to: then nobody has to ask whether there is one. Never written.
  static inline char no_text_[1] = {};

  char *data_;
  int32_t length_;
  int32_t capacity_; ///< of the block; 0 when there is none
};

/// The same length and the same bytes, NULs included.
bool operator==(const String &a, const String &b);
bool operator==(const String &a, const char *b);

String operator+(const String &a, char b);
String operator+(const String &a, const char *b);
String operator+(const String &a, const String &b);

template <class... T>
String str_format(const char *fmt, const T &...values) {
  String text;
  text.format(fmt, values...);
  return text;
}

/// "0", n, no, f, false (in any case) and nothing are false, all else is true. Blanks around don't count.
bool to_bool(String value);
/// Signed decimal.
String string_from_int64(int64_t value);

} // namespace korb
