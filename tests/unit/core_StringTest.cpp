// String: its block, what it holds, how it compares and how it is edited.
#include <cstdlib>
#include <cstring>
#include <random>

#include "tests/support/Testing.h"

namespace {

/// Shows what the block looks like.
struct Probe : String {
  using String::String;
  int32_t capacity() const { return capacity_; }
  bool sound() const {
    return data_[length_] == '\0' &&
           (data_ != no_text_ ? length_ >= 0 && capacity_ > length_ : length_ == 0 && capacity_ == 0);
  }
};

} // namespace

TEST_CASE("a block has the wanted length and 21 bytes, and is given back only when it is much too large") {
  struct Row {
    int32_t from, to, capacity;
  };
  for (const Row &row :
       {Row{0, 1, 22}, Row{1, 21, 22}, Row{1, 22, 43}, Row{1000, 510, 1021}, Row{1000, 509, 1021}, Row{1000, 508, 529},
        Row{1000, 0, 0}, Row{1000, -1, 0}, Row{10, 10, 31}, Row{1000, 1020, 1021}, Row{1000, 1021, 1042}}) {
    for (const bool may_refuse : {false, true}) {
      Probe text;
      text.set_length(row.from);
      CHECK_MESSAGE((may_refuse ? text.try_set_length(row.to) : (text.set_length(row.to), true)), row.to);
      CHECK_MESSAGE(text.capacity() == row.capacity, row.from, " to ", row.to);
      CHECK(text.length() == (row.to < 0 ? 0 : row.to));
      CHECK(text.sound());
    }
  }
}

TEST_CASE("blocks are taken over and handed out") {
  Probe text;
  text.attach(static_cast<char *>(memcpy(malloc(3), "abc", 3)), 3);
  CHECK(text.capacity() == 4);
  char *block = text.detach();
  CHECK(block == "abc"s);
  CHECK((text.sound() && *text.c_str() == '\0'));
  text.attach(block, 0); // freed: the sanitizer would see it leak
  text.attach(nullptr, 5);
  CHECK(text.is_empty());
}

TEST_CASE("a length that no block can have is a refusal of the heap") {
  String text("abc");
  CHECK(Values{text.try_set_length(0x7FFFFFEB), text.try_grow_by(STRING_ALL), text.try_grow_by(-1),
               text.try_grow_by(0)} == Values{0, 0, 0, 1});
  const std::string report = Trapped([&] { text.set_length(0x7FFFFFEB); });
  CHECK(report.substr(0, 98) ==
        "Out Of Memory.  Make sure your hard drive is not full.\nRequested size = 2147483648 (0x80000000)\n\nS");
  CHECK(Trapped([&] { text.insert_char('x', 1, STRING_ALL); }).substr(0, 14) == "Out Of Memory.");
  CHECK(text == "abc");
}

TEST_CASE("lengths change by grow_by, ensure_length and sync_length as each says") {
  String text("abc");
  const auto ensured = [&](int32_t n) { return text.ensure_length(n), text.length(); };
  CHECK(Values{text.grow_by(2), text.grow_by(-1), text.length()} == Values{3, 5, 5});
  CHECK(Values{ensured(2), ensured(7), ensured(100)} == Values{5, 7, 100});
  CHECK(Std(text) == "abc" + std::string(97, '\0'));
  memcpy(text.data(), "xy", 3);
  text.sync_length();
  CHECK(text == "xy");
  *text.data() = '\0';
  text.sync_length();
  CHECK(text.is_empty());
  CHECK(text.compare(String(), true) == 0); // holds a block, so it is not below the other
  CHECK(text.take_first_char() == '\0');
}

TEST_CASE("a string takes its contents from anywhere, itself included") {
  using Edit = void (*)(String &);
  String text("hello world");
  const std::pair<Edit, std::string> steps[] = {
      {[](String &s) { s.assign(s.c_str() + 2, 3); }, "llo"},
      {[](String &s) { s.assign(s.c_str() + 1); }, "lo"},
      {[](String &s) { s = s.c_str(); }, "lo"},
      {[](String &s) { s.assign(s.c_str() + 2); }, ""},
      {[](String &s) { s.assign_limited("abc", 2); }, "ab"},
      {[](String &s) { s.assign_limited("abc", STRING_ALL); }, "abc"},
      {[](String &s) { s.assign_limited("a\0c", 3); }, "a"},
      {[](String &s) { s.assign("a\0cd", 4); }, "a\0cd"s},
      {[](String &s) { s.set_length(1); }, "a"},
      {[](String &s) { CHECK(s.try_assign(s.c_str() + 2, 2)); }, "cd"}, // still in the block
      {[](String &s) { CHECK(s.try_assign("new text", STRING_ALL)); }, "new text"},
      {[](String &s) { CHECK(s.try_assign(nullptr, 4)); }, ""},
      {[](String &s) { s = static_cast<const char *>(nullptr); }, ""}};
  for (const auto &[edit, contents] : steps) {
    edit(text);
    CHECK(Std(text) == contents);
  }
}

TEST_CASE("no edit, whatever its arguments, leaves anything but what a plain model gives") {
  std::mt19937 random(1);
  const auto number = [&random](int32_t low, int32_t high) {
    return low + static_cast<int32_t>(random() % static_cast<uint32_t>(high - low + 1));
  };
  for (int round = 0; round < 200; ++round) {
    Probe text;
    std::string model;
    for (int step = 0; step < 60; ++step) {
      const int32_t size = static_cast<int32_t>(model.size()), pos = number(-1, size + 1), n = number(0, 40);
      const int32_t remove = random() % 8 ? number(-1, 30) : STRING_ALL, from = number(0, size);
      const size_t at = static_cast<size_t>(pos), gone = remove < 0 ? 0 : static_cast<size_t>(remove);
      std::string piece(static_cast<size_t>(n), static_cast<char>('a' + step % 26));
      const int32_t kind = number(0, 4);
      if (kind == 0) {
        text.splice(pos, remove, piece.data(), n);
      } else if (kind == 1) {
        piece.assign(piece.size(), 'Z');
        text.splice_fill(pos, remove, 'Z', n);
      } else if (kind == 2) {
        piece.clear();
        text.erase(pos, remove);
      } else if (kind == 3) { // a piece of itself
        piece = model.substr(static_cast<size_t>(from), piece.size());
        text.splice(pos, remove, text.c_str() + from, static_cast<int32_t>(piece.size()));
      } else {
        const std::string middle = pos > size ? "" : model.substr(pos < 0 ? 0 : at, gone);
        CHECK(Std(text.mid(pos, remove)) == middle);
        CHECK(Std(text.cut(pos, remove)) == middle);
        if (pos <= size)
          model.erase(pos < 0 ? 0 : at, gone);
      }
      if (kind < 4 && pos >= 0 && pos <= size)
        model.replace(at, gone, piece);
      REQUIRE(Std(text) == model);
      REQUIRE(text.sound());
    }
  }
}

TEST_CASE("positions outside give each operation's empty result, and only at() is fatal") {
  String text("abcdef");
  for (const int32_t outside : {6, -1})
    CHECK(Trapped([&] { text.at(outside); }) == "internal error Core 844");
  CHECK(Values{text.at(5), text.char_at(6), text.char_at(-1), text.dword_at(2), text.dword_at(3), text.dword_at(-1),
               String().dword_at(0)} == Values{'f', 0, 0, 0x66656463, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF});
  CHECK(Values{text.put_word(4, 0x5958), text.put_word(5, 0), text.put_dword(3, 0), text.put_dword(0, 0x34333231)} ==
        Values{1, 0, 0, 1});
  CHECK(text == "1234XY");
  char out[4] = "---";
  text.copy_out(out, 5, 2);
  text.copy_out(out, -1, 2);
  text.copy_out(out, 0, -1);
  CHECK(out == "---"s);
  text.copy_out(out, 4, 2);
  CHECK(out == "XY-"s);
  CHECK(Values{String().starts_with_char('\0'), String().ends_with_char('\0'), text.contains_char('\0'),
               text.contains_char('Y')} == Values{1, 1, 0, 1});
}

TEST_CASE("comparisons") {
  const auto sign = [](int32_t value) { return value < 0 ? -1 : (value > 0 ? 1 : 0); };
  struct Row {
    const char *text, *other;
    bool case_sensitive;
    int32_t max, with_text, with_string;
  };
  for (const Row &row : {Row{"", "", true, STRING_ALL, 0, -1}, Row{"x", "", true, STRING_ALL, 1, 1},
                         Row{"", "x", true, STRING_ALL, -1, -1}, Row{"abc", "abc", true, STRING_ALL, 0, 0},
                         Row{"abc", "ABC", true, STRING_ALL, 1, 1}, Row{"abc", "ABC", false, STRING_ALL, 0, 0},
                         Row{"abc", "abcd", true, STRING_ALL, -1, -1}, Row{"abcd", "abc", true, STRING_ALL, 1, 1},
                         Row{"abcd", "abcx", true, 3, 0, 0}, Row{"abc", "abc", true, 0, -1, -1},
                         Row{"a_", "aB", false, STRING_ALL, -1, -1}, Row{"\xE4", "\xC4", false, STRING_ALL, 1, 1}}) {
    const String text(row.text);
    CAPTURE(text);
    CHECK(Values{sign(text.compare(row.other, row.case_sensitive, row.max)),
                 sign(text.compare(String(row.other), row.case_sensitive, row.max))} ==
          Values{row.with_text, row.with_string});
  }
  const String with_nul("ab\0c", 4);
  CHECK(Values{with_nul.compare("ab", true), with_nul == "ab", with_nul == String("ab"), with_nul == String("ab\0d", 4),
               String() == ""} == Values{0, 0, 0, 0, 1});
  // Nothing is below what is empty, whatever its bytes and however few are looked at.
  CHECK(Values{String("\0", 1).compare(String(), true), String("\0", 1).compare("", true),
               String("x").compare(String(), true, 0)} == Values{1, 1, 1});
  const String file("Setup.exe");
  CHECK(Values{file.starts_with("Setup"), file.starts_with("SetXX", 3), file.starts_with("setup"),
               file.starts_with("Setup.exe!"), file.starts_with(""),
               file.starts_with(nullptr)} == Values{1, 1, 0, 0, 0, 0});
}

TEST_CASE("edits of the ends, of characters and of line ends") {
  using Edit = void (*)(String &);
  const struct {
    const char *before;
    Edit edit;
    const char *after;
  } rows[] = {
      {" \t a b\r\n", [](String &s) { s.trim(); }, "a b"},
      {" \v ", [](String &s) { s.trim(); }, "\v"},
      {"xxaxx", [](String &s) { s.trim_right_char('x'); }, "xxa"},
      {"--a", [](String &s) { s.trim_left_set("-"); }, "a"},
      {"abc", [](String &s) { s.remove_first(9); }, ""},
      {"abc", [](String &s) { s.remove_last(9); }, ""},
      {"abc", [](String &s) { s.remove_last(-1); }, "abc"},
      {"abc", [](String &s) { s.remove_both_ends(1); }, "b"},
      {"abc", [](String &s) { s.remove_first_if('b'), s.remove_last_if('c'); }, "ab"},
      {"Setup.exe", [](String &s) { CHECK(s.remove_prefix("SETUP")); }, ".exe"},
      {"Setup", [](String &s) { CHECK_FALSE(s.remove_prefix("")); }, "Setup"},
      {"Set", [](String &s) { CHECK_FALSE(s.remove_prefix("Setup")); }, "Set"},
      {"//a", [](String &s) { CHECK(s.strip_switch_char()); }, "/a"},
      {"a/", [](String &s) { CHECK_FALSE(s.strip_switch_char()); }, "a/"},
      {"", [](String &s) { CHECK_FALSE(s.strip_switch_char()); }, ""},
      {"banana", [](String &s) { CHECK(s.remove_char('a', 2, 1) == 2); }, "bann"},
      {"banana", [](String &s) { CHECK(s.remove_char('a', -5) == 3); }, "bnn"},
      {"banana", [](String &s) { CHECK(s.remove_char('a', 6) == 0); }, "banana"},
      {"aabb", [](String &s) { CHECK(s.remove_all("ab") == 1); }, "ab"},
      {"abABab", [](String &s) { CHECK(s.remove_all("AB", 2, false) == 2); }, "ab"},
      {"ababab", [](String &s) { CHECK(s.remove_all(s.c_str() + 4) == 3); }, ""},
      {"a;b;c", [](String &s) { CHECK(s.cut_after_char(';')); }, "a"},
      {"abc", [](String &s) { CHECK_FALSE(s.cut_after_char(';')); }, "abc"},
      {"\"a\"", [](String &s) { s.quote(); }, "\"\"a\"\""},
      {"\"\"a\"\"", [](String &s) { CHECK(s.unquote('"')); }, "\"a\""},
      {"\"", [](String &s) { CHECK(s.unquote('"')); }, ""},
      {"\"a", [](String &s) { CHECK_FALSE(s.unquote('"')); }, "\"a"},
      {"exe", [](String &s) { s.ensure_prefix_char('.'), s.ensure_prefix_char('.'); }, ".exe"},
      {"", [](String &s) { s.ensure_trailing_newline(); }, "\r\n"},
      {"a\r", [](String &s) { s.ensure_trailing_newline(); }, "a\r"},
      {"a", [](String &s) { s.ensure_trailing_newline(); }, "a\r\n"},
      {"az{\xE4`", [](String &s) { s.to_upper(); }, "AZ{\xE4`"},
      {"a\nb\rc", [](String &s) { s.normalize_line_ends(); }, "a\r\nb\r\nc"},
      {"\n\r\n", [](String &s) { s.normalize_line_ends(); }, "\r\n\r\n"},
      {"\r\r\n\n", [](String &s) { s.normalize_line_ends(); }, "\r\n\r\n\r\n"},
      {"ad", [](String &s) { s.insert_text("bcX", 1, 2), s.insert_text(nullptr, 0); }, "abcd"},
      {"ad", [](String &s) { s.insert_string(s, 1, 1), s.prepend("-"); }, "-aad"},
      {"ab", [](String &s) { s.append(s.c_str() + 1, 1), s += s; }, "abbabb"},
      {"ab", [](String &s) { s = s + 'c' + "d" + String("e") + nullptr; }, "abcde"},
      {"abcXdef", [](String &s) { CHECK(s.cut_from_match("x", FIND_IGNORE_CASE) == "Xdef"); }, "abc"},
      {"abc", [](String &s) { CHECK(s.cut_from_match("x").is_empty()); }, "abc"},
  };
  for (const auto &row : rows) {
    String text(row.before);
    row.edit(text);
    CHECK(Std(text) == row.after);
  }
}

TEST_CASE("texts without a length") {
  CHECK(Values{text_length(nullptr), text_last_char("ab"), text_last_char(nullptr)} == Values{0, 'b', 0});
  CHECK(text_skip_space(" \t\r\n\vx") == "\vx"s);
  CHECK(text_find_any("path;x", ";,") == ";x"s);
  CHECK(Values{*text_find_any("path", ";,"), text_find_any("a", nullptr) == nullptr} == Values{'\0', 1});
  char cut[] = "a=b=c", blanks[] = "a b c";
  CHECK(text_cut_at(cut, '='));
  CHECK(cut == "a"s);
  CHECK_FALSE(text_cut_at(cut, '='));
  text_blank_spaces(blanks);
  CHECK(memcmp(blanks, "a\0b\0c", 6) == 0);
  CHECK(Values{IsBlank(nullptr), IsBlank(" \r\n\t"), IsBlank(" \v")} == Values{1, 1, 0});
  for (int c = -128; c < 256; ++c) {
    const bool lower = c >= 'a' && c <= 'z', upper = c >= 'A' && c <= 'Z';
    CHECK(Values{is_alpha(c), is_word_char(c), to_upper_char(c), to_lower_char(c)} ==
          Values{lower || upper, lower || upper || (c >= '0' && c <= '9') || c == '_', lower ? c - 32 : c & 0xFF,
                 upper ? c + 32 : c & 0xFF});
  }
}

TEST_CASE("numbers are read from texts") {
  struct Row {
    const char *text;
    int32_t value;
  };
  for (const Row &row :
       {Row{"12.5", 12}, Row{"abc", 0}, Row{"-1,000", -1000}, Row{"1,234", 1234}, Row{"v2", 2}, Row{"file.12", 0},
        Row{"a-b", 0}, Row{"1,2,3", 123}, Row{"4294967295", -1}, Row{"+7", 7}, Row{"", 0},
        Row{"-2147483648", INT32_MIN}, Row{"99 bottles", 99}, Row{"- 5", 0}, Row{"4294967298", 2}})
    CHECK_MESSAGE(String(row.text).to_int() == row.value, std::string(row.text));
  CHECK(String("x-9,223,372,036,854,775,808").to_int64() == INT64_MIN);
  CHECK(string_from_int64(INT64_MIN) == "-9223372036854775808");
  CHECK(text_to_double("-12.375") == doctest::Approx(-12.375));
  CHECK(text_to_double(".5e3") == 0.5);

  struct Parse {
    const char *text;
    int32_t pos, value, end;
  };
  for (const Parse &row :
       {Parse{"12-34", 0, 12, 2}, Parse{"12-34", 2, -34, 5}, Parse{"12", 2, INT32_MIN, 2},
        Parse{"12", -1, INT32_MIN, -1}, Parse{"+x", 0, 0, 1}, Parse{" 1", 0, 0, 0}, Parse{"", 0, INT32_MIN, 0}}) {
    int32_t pos = row.pos;
    CHECK(Values{String(row.text).parse_int(&pos), pos} == Values{row.value, row.end});
  }
  CHECK(Values{String("12").parse_int(nullptr), String().parse_int(nullptr)} == Values{12, INT32_MIN});

  struct Skip {
    const char *text;
    NumberOptions flags;
    int32_t value;
    const char *rest;
  };
  constexpr NumberOptions kListed = NUMBER_SKIP_SPACE_AFTER | NUMBER_SKIP_COMMA;
  for (const Skip &row :
       {Skip{" 1", NUMBER_NONE, 0, " 1"}, Skip{" 1 ,2", NUMBER_SKIP_SPACE, 1, " ,2"}, Skip{"1 , 2", kListed, 1, "2"},
        Skip{"1,2", NUMBER_SKIP_COMMA, 1, "2"}, Skip{"-5", NUMBER_NO_SIGN, 0, "-5"}, Skip{"-5", NUMBER_NONE, -5, ""},
        Skip{"- ,", kListed, 0, " ,"}, Skip{"1 , 2", NUMBER_SKIP_SPACE_AFTER, 1, ", 2"},
        Skip{"4294967296", NUMBER_NO_SIGN, 0, ""}}) {
    const char *p = row.text;
    CHECK(text_skip_number(p, row.flags) == row.value);
    CHECK(p == std::string(row.rest));
  }
}

TEST_CASE("only few words are false") {
  for (const char *text : {"", " ", "0", "n", "NO ", "F", "\tFalse\n"})
    CHECK_MESSAGE(!to_bool(text), std::string(text));
  for (const char *text : {"N/A", "00", "off", "0.0", "1", "yes", "falsely"})
    CHECK_MESSAGE(to_bool(text), std::string(text));
}
