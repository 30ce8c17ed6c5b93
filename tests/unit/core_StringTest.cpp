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
  for (const Row &row : {Row{0, 1, 22}, Row{1, 22, 43}, Row{1000, 509, 1021}, Row{1000, 508, 529}, Row{1000, 0, 0},
                         Row{1000, -1, 0}, Row{1000, 1020, 1021}, Row{1000, 1021, 1042}}) {
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
  CHECK_FALSE(text.try_set_length(0x7FFFFFEB));
  CHECK_FALSE(text.try_grow_by(STRING_ALL));
  CHECK_FALSE(text.try_grow_by(-1));
  const std::string report = Trapped([&] { text.set_length(0x7FFFFFEB); });
  CHECK(report.substr(0, 98) ==
        "Out Of Memory.  Make sure your hard drive is not full.\nRequested size = 2147483648 (0x80000000)\n\nS");
  CHECK(Trapped([&] { text.insert_char('x', 1, STRING_ALL); }).substr(0, 14) == "Out Of Memory.");
  CHECK(text == "abc");
}

TEST_CASE("a length grows by a count or to a least one, with NULs") {
  String text("abc");
  CHECK(text.grow_by(2) == 3); // where the new ones begin
  CHECK(text.grow_by(-1) == 5);
  for (const auto &[least, length] : {std::pair{2, 5}, {7, 7}, {100, 100}}) {
    text.ensure_length(least);
    CHECK(text.length() == length);
  }
  CHECK(Std(text) == "abc" + std::string(97, '\0'));
}

TEST_CASE("a length follows what was written into the block, and an emptied one is still a block") {
  String text("abc");
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
      {[](String &s) { s.assign(s.c_str() + 2); }, ""},
      {[](String &s) { s.assign_limited("abc", 2); }, "ab"},
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
  for (const int32_t outside : {6, -1}) {
    CAPTURE(outside);
    CHECK(Trapped([&] { text.at(outside); }) == "internal error Core 844");
    CHECK(text.char_at(outside) == '\0');
    CHECK(text.dword_at(outside) == 0xFFFFFFFF);
  }
  CHECK(text.dword_at(2) == 0x66656463);
  CHECK(text.dword_at(3) == 0xFFFFFFFF);
  CHECK(String().dword_at(0) == 0xFFFFFFFF);
}

TEST_CASE("words are put, and bytes copied out, only where they fit") {
  String text("abcdef");
  CHECK(text.put_word(4, 0x5958));
  CHECK_FALSE(text.put_word(5, 0));
  CHECK_FALSE(text.put_dword(3, 0));
  CHECK(text.put_dword(0, 0x34333231));
  CHECK(text == "1234XY");
  char out[4] = "---";
  text.copy_out(out, 5, 2);
  text.copy_out(out, -1, 2);
  text.copy_out(out, 0, -1);
  CHECK(out == "---"s);
  text.copy_out(out, 4, 2);
  CHECK(out == "XY-"s);
}

TEST_CASE("an empty string begins and ends with a NUL, and no string contains one") {
  CHECK(String().starts_with_char('\0'));
  CHECK(String().ends_with_char('\0'));
  CHECK_FALSE(String("XY").contains_char('\0'));
  CHECK(String("XY").contains_char('Y'));
}

TEST_CASE("strings compare with texts and with strings, in the case and length that are asked for") {
  const auto sign = [](int32_t value) { return value < 0 ? -1 : (value > 0 ? 1 : 0); };
  struct Row {
    const char *text, *other;
    bool case_sensitive;
    int32_t max, with_text, with_string;
  };
  for (const Row &row : {Row{"", "", true, STRING_ALL, 0, -1}, Row{"", "x", true, STRING_ALL, -1, -1},
                         Row{"abc", "ABC", true, STRING_ALL, 1, 1}, Row{"abc", "ABC", false, STRING_ALL, 0, 0},
                         Row{"abc", "abcd", true, STRING_ALL, -1, -1}, Row{"abcd", "abcx", true, 3, 0, 0},
                         Row{"abc", "abc", true, 0, -1, -1}, Row{"a_", "aB", false, STRING_ALL, -1, -1},
                         Row{"\xE4", "\xC4", false, STRING_ALL, 1, 1}}) {
    const String text(row.text);
    CAPTURE(text);
    CAPTURE(row.other);
    CHECK(sign(text.compare(row.other, row.case_sensitive, row.max)) == row.with_text);
    CHECK(sign(text.compare(String(row.other), row.case_sensitive, row.max)) == row.with_string);
  }
}

TEST_CASE("what is behind a NUL counts, and nothing is below what is empty") {
  const String with_nul("ab\0c", 4);
  CHECK(with_nul.compare("ab", true) == 0);
  CHECK_FALSE(with_nul == "ab");
  CHECK_FALSE(with_nul == String("ab"));
  CHECK_FALSE(with_nul == String("ab\0d", 4));
  CHECK(String() == "");
  CHECK(String("\0", 1).compare(String(), true) == 1);
  CHECK(String("\0", 1).compare("", true) == 1);
  CHECK(String("x").compare(String(), true, 0) == 1);
}

TEST_CASE("a beginning is compared in its own case, as far as it is asked for") {
  const String file("Setup.exe");
  CHECK(file.starts_with("SetXX", 3));
  for (const char *other : {"setup", "Setup.exe!", "", static_cast<const char *>(nullptr)})
    CHECK_FALSE_MESSAGE(file.starts_with(other), (other != nullptr ? std::string(other) : "null"));
}

namespace {

struct EditRow {
  const char *before;
  void (*edit)(String &);
  const char *after;
};

void CheckEdits(std::initializer_list<EditRow> rows) {
  for (const EditRow &row : rows) {
    CAPTURE(row.before);
    String text(row.before);
    row.edit(text);
    CHECK(Std(text) == row.after);
  }
}

} // namespace

TEST_CASE("ends are trimmed and removed, as far as there is anything") {
  CheckEdits({{" \t a b\r\n", [](String &s) { s.trim(); }, "a b"},
              {" \v ", [](String &s) { s.trim(); }, "\v"},
              {"xxaxx", [](String &s) { s.trim_right_char('x'); }, "xxa"},
              {"--a", [](String &s) { s.trim_left_set("-"); }, "a"},
              {"abc", [](String &s) { s.remove_first(9); }, ""},
              {"abc", [](String &s) { s.remove_last(-1); }, "abc"},
              {"abc", [](String &s) { s.remove_both_ends(1); }, "b"},
              {"abc", [](String &s) { s.remove_first_if('b'), s.remove_last_if('c'); }, "ab"},
              {"Setup.exe", [](String &s) { CHECK(s.remove_prefix("SETUP")); }, ".exe"},
              {"Setup", [](String &s) { CHECK_FALSE(s.remove_prefix("")); }, "Setup"},
              {"Set", [](String &s) { CHECK_FALSE(s.remove_prefix("Setup")); }, "Set"},
              {"//a", [](String &s) { CHECK(s.strip_switch_char()); }, "/a"},
              {"", [](String &s) { CHECK_FALSE(s.strip_switch_char()); }, ""}});
}

TEST_CASE("characters and pieces are removed, and what follows one is cut off") {
  CheckEdits({{"banana", [](String &s) { CHECK(s.remove_char('a', 2, 1) == 2); }, "bann"},
              {"banana", [](String &s) { CHECK(s.remove_char('a', -5) == 3); }, "bnn"},
              {"aabb", [](String &s) { CHECK(s.remove_all("ab") == 1); }, "ab"},
              {"banana", [](String &s) { CHECK(s.remove_char('a', 6) == 0); }, "banana"},
              {"abABab", [](String &s) { CHECK(s.remove_all("AB", 2, false) == 2); }, "ab"},
              {"ababab", [](String &s) { CHECK(s.remove_all(s.c_str() + 4) == 3); }, ""},
              {"a;b;c", [](String &s) { CHECK(s.cut_after_char(';')); }, "a"},
              {"abcXdef", [](String &s) { CHECK(s.cut_from_match("x", FIND_IGNORE_CASE) == "Xdef"); }, "abc"},
              {"abc", [](String &s) { CHECK(s.cut_from_match("x").is_empty()); }, "abc"}});
}

TEST_CASE("quotes, prefixes, line ends and case are made as asked") {
  CheckEdits({{"\"a\"", [](String &s) { s.quote(); }, "\"\"a\"\""},
              {"\"\"a\"\"", [](String &s) { CHECK(s.unquote('"')); }, "\"a\""},
              {"\"", [](String &s) { CHECK(s.unquote('"')); }, ""},
              {"\"a", [](String &s) { CHECK_FALSE(s.unquote('"')); }, "\"a"},
              {"exe", [](String &s) { s.ensure_prefix_char('.'), s.ensure_prefix_char('.'); }, ".exe"},
              {"", [](String &s) { s.ensure_trailing_newline(); }, "\r\n"},
              {"a\r", [](String &s) { s.ensure_trailing_newline(); }, "a\r"},
              {"a", [](String &s) { s.ensure_trailing_newline(); }, "a\r\n"},
              {"az{\xE4`", [](String &s) { s.to_upper(); }, "AZ{\xE4`"},
              {"a\nb\rc", [](String &s) { s.normalize_line_ends(); }, "a\r\nb\r\nc"},
              {"\r\r\n\n", [](String &s) { s.normalize_line_ends(); }, "\r\n\r\n\r\n"}});
}

TEST_CASE("texts are put in, parts of the string itself too") {
  CheckEdits({{"ad", [](String &s) { s.insert_text("bcX", 1, 2), s.insert_text(nullptr, 0); }, "abcd"},
              {"ad", [](String &s) { s.insert_string(s, 1, 1), s.prepend("-"); }, "-aad"},
              {"ab", [](String &s) { s.append(s.c_str() + 1, 1), s += s; }, "abbabb"},
              {"ab", [](String &s) { s = s + 'c' + "d" + String("e") + nullptr; }, "abcde"}});
}

TEST_CASE("texts without a length are measured and searched, and none is empty") {
  CHECK(text_length(nullptr) == 0);
  CHECK(text_last_char(nullptr) == '\0');
  CHECK(text_skip_space(" \t\r\n\vx") == "\vx"s);
  CHECK(text_find_any("path;x", ";,") == ";x"s);
  CHECK(text_find_any("path", ";,") == ""s);
  CHECK(text_find_any("a", nullptr) == nullptr);
  CHECK(IsBlank(nullptr));
  CHECK(IsBlank(" \r\n\t"));
  CHECK_FALSE(IsBlank(" \v"));
}

TEST_CASE("texts without a length are cut in their place") {
  char cut[] = "a=b=c", blanks[] = "a b c";
  CHECK(text_cut_at(cut, '='));
  CHECK(cut == "a"s);
  CHECK_FALSE(text_cut_at(cut, '='));
  text_blank_spaces(blanks);
  CHECK(memcmp(blanks, "a\0b\0c", 6) == 0);
}

TEST_CASE("only the letters of ASCII have a case") {
  for (int c = -128; c < 256; ++c) {
    CAPTURE(c);
    const bool lower = c >= 'a' && c <= 'z', upper = c >= 'A' && c <= 'Z';
    CHECK(is_alpha(c) == (lower || upper));
    CHECK(is_word_char(c) == (lower || upper || (c >= '0' && c <= '9') || c == '_'));
    CHECK(to_upper_char(c) == (lower ? c - 32 : c & 0xFF));
    CHECK(to_lower_char(c) == (upper ? c + 32 : c & 0xFF));
  }
}

TEST_CASE("numbers are read from texts") {
  struct Row {
    const char *text;
    int32_t value;
  };
  for (const Row &row : {Row{"12.5", 12}, Row{"-1,000", -1000}, Row{"v2", 2}, Row{"file.12", 0}, Row{"1,2,3", 123},
                         Row{"4294967295", -1}, Row{"+7", 7}, Row{"", 0}, Row{"-2147483648", INT32_MIN}, Row{"- 5", 0},
                         Row{"4294967298", 2}})
    CHECK_MESSAGE(String(row.text).to_int() == row.value, std::string(row.text));
  CHECK(String("x-9,223,372,036,854,775,808").to_int64() == INT64_MIN);
  CHECK(string_from_int64(INT64_MIN) == "-9223372036854775808");
  CHECK(text_to_double("-12.375") == doctest::Approx(-12.375));
  CHECK(text_to_double(".5e3") == 0.5);
}

TEST_CASE("a number is parsed from a position, which moves past it") {
  struct Row {
    const char *text;
    int32_t pos, value, end;
  };
  for (const Row &row :
       {Row{"12-34", 0, 12, 2}, Row{"12-34", 2, -34, 5}, Row{"12", 2, INT32_MIN, 2}, Row{"12", -1, INT32_MIN, -1},
        Row{"+x", 0, 0, 1}, Row{" 1", 0, 0, 0}, Row{"", 0, INT32_MIN, 0}}) {
    CAPTURE(row.text);
    int32_t pos = row.pos;
    CHECK(String(row.text).parse_int(&pos) == row.value);
    CHECK(pos == row.end);
  }
  CHECK(String().parse_int(nullptr) == INT32_MIN);
}

TEST_CASE("a number is skipped in a text, with what its flags take along") {
  struct Row {
    const char *text;
    NumberOptions flags;
    int32_t value;
    const char *rest;
  };
  for (const Row &row :
       {Row{" 1 ,2", NUMBER_SKIP_SPACE, 1, " ,2"}, Row{"1 , 2", NUMBER_SKIP_SPACE_AFTER | NUMBER_SKIP_COMMA, 1, "2"},
        Row{"-5", NUMBER_NO_SIGN, 0, "-5"}, Row{"-5", NUMBER_NONE, -5, ""},
        Row{"- ,", NUMBER_SKIP_SPACE_AFTER | NUMBER_SKIP_COMMA, 0, " ,"},
        Row{"1 , 2", NUMBER_SKIP_SPACE_AFTER, 1, ", 2"}, Row{"4294967296", NUMBER_NO_SIGN, 0, ""}}) {
    CAPTURE(row.text);
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
