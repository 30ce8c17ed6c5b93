// String: its block, what it holds, how it compares and how it is edited.
#include <doctest/doctest.h>

#include <cstdlib>
#include <cstring>
#include <random>
#include <string>

#include "core/String.h"
#include "tests/support/FailureTrap.h"

using namespace korb;
using korb::test::Trapped;
using namespace std::string_literals;

namespace {

std::string Bytes(const String &text) {
  return std::string(text.c_str(), static_cast<size_t>(text.length()));
}

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
  const struct {
    int32_t from, to, capacity;
  } rows[] = {{0, 1, 22},   {1, 21, 22},   {1, 22, 43},  {1000, 510, 1021},  {1000, 509, 1021}, {1000, 508, 529},
              {1000, 0, 0}, {1000, -1, 0}, {10, 10, 31}, {1000, 1020, 1021}, {1000, 1021, 1042}};
  for (const auto &row : rows) {
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
  char *block = static_cast<char *>(malloc(3));
  memcpy(block, "abc", 3);
  text.attach(block, 3);
  CHECK(text.capacity() == 4);
  CHECK(text == "abc");
  block = text.detach();
  CHECK(std::string(block) == "abc");
  CHECK(text.sound());
  CHECK(*text.c_str() == '\0');
  text.attach(block, 0); // freed: the sanitizer would see it leak
  text.attach(nullptr, 5);
  CHECK(text.is_empty());
}

TEST_CASE("a length that no block can have is a refusal of the heap") {
  String text("abc");
  CHECK_FALSE(text.try_set_length(0x7FFFFFEB));
  CHECK_FALSE(text.try_grow_by(STRING_ALL));
  CHECK_FALSE(text.try_grow_by(-1));
  CHECK(text.try_grow_by(0));
  CHECK(text == "abc");
  const std::string report = Trapped([&] { text.set_length(0x7FFFFFEB); });
  CHECK(report.substr(0, 98) ==
        "Out Of Memory.  Make sure your hard drive is not full.\nRequested size = 2147483648 (0x80000000)\n\nS");
  CHECK(Trapped([&] { text.insert_char('x', 1, STRING_ALL); }).substr(0, 14) == "Out Of Memory.");
  CHECK(text == "abc");
}

TEST_CASE("lengths change by grow_by, ensure_length and sync_length as each says") {
  String text("abc");
  CHECK(text.grow_by(2) == 3);
  CHECK(text.length() == 5);
  CHECK(text.grow_by(-1) == 5);
  text.ensure_length(2);
  CHECK(text.length() == 5);
  text.ensure_length(7); // inside the block
  CHECK(text.length() == 7);
  text.ensure_length(100);
  CHECK(Bytes(text) == "abc" + std::string(97, '\0'));
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
  String text("hello world");
  text.assign(text.c_str() + 2, 3);
  CHECK(text == "llo");
  text.assign(text.c_str() + 1);
  CHECK(text == "lo");
  text = text.c_str();
  CHECK(text == "lo");
  text.assign(text.c_str() + 2);
  CHECK(text.is_empty());
  text.assign_limited("abc", 2);
  CHECK(text == "ab");
  text.assign_limited("abc", STRING_ALL);
  CHECK(text == "abc");
  text.assign_limited("a\0c", 3);
  CHECK(Bytes(text) == "a");
  text.assign("a\0c", 3);
  CHECK(Bytes(text) == "a\0c"s);
  CHECK(text.try_assign(text.c_str() + 2, 1));
  CHECK(text == "c");
  CHECK(text.try_assign("new text", STRING_ALL));
  CHECK(text == "new text");
  CHECK(text.try_assign(nullptr, 4));
  CHECK(text.is_empty());
  text = static_cast<const char *>(nullptr);
  CHECK(*text.c_str() == '\0');
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
      const int32_t pos = number(-1, static_cast<int32_t>(model.size()) + 1);
      const int32_t remove = random() % 8 ? number(-1, 30) : STRING_ALL;
      const int32_t n = number(0, 40);
      std::string piece(static_cast<size_t>(n), static_cast<char>('a' + step % 26));
      const bool accepted = pos >= 0 && pos <= static_cast<int32_t>(model.size());
      const size_t at = static_cast<size_t>(pos);
      const size_t gone = remove < 0 ? 0 : static_cast<size_t>(remove);
      switch (random() % 5) {
      case 0:
        text.splice(pos, remove, piece.data(), n);
        if (accepted)
          model.replace(at, gone, piece);
        break;
      case 1:
        text.splice_fill(pos, remove, 'Z', n);
        if (accepted)
          model.replace(at, gone, std::string(static_cast<size_t>(n), 'Z'));
        break;
      case 2:
        text.erase(pos, remove);
        if (accepted)
          model.erase(at, gone);
        break;
      case 3: { // a piece of itself
        const size_t from = model.empty() ? 0 : random() % model.size();
        const int32_t length = number(0, static_cast<int32_t>(model.size() - from));
        piece = model.substr(from, static_cast<size_t>(length));
        text.splice(pos, remove, text.c_str() + from, length);
        if (accepted)
          model.replace(at, gone, piece);
        break;
      }
      default:
        CHECK(Bytes(text.mid(pos, remove)) ==
              (pos > static_cast<int32_t>(model.size()) ? std::string() : model.substr(pos < 0 ? 0 : at, gone)));
        Bytes(text.cut(pos, remove));
        if (pos <= static_cast<int32_t>(model.size()))
          model.erase(pos < 0 ? 0 : at, gone);
      }
      REQUIRE(Bytes(text) == model);
      REQUIRE(text.sound());
    }
  }
}

TEST_CASE("positions outside give each operation's empty result, and only at() is fatal") {
  String text("abcdef");
  CHECK(text.at(5) == 'f');
  CHECK(Trapped([&] { text.at(6); }) == "internal error Core 844");
  CHECK(Trapped([&] { text.at(-1); }) == "internal error Core 844");
  CHECK(text.char_at(6) == '\0');
  CHECK(text.char_at(-1) == '\0');
  CHECK(text.dword_at(2) == 0x66656463u);
  CHECK(text.dword_at(3) == 0xFFFFFFFFu);
  CHECK(text.dword_at(-1) == 0xFFFFFFFFu);
  CHECK(String().dword_at(0) == 0xFFFFFFFFu);
  CHECK(text.put_word(4, 0x5958));
  CHECK_FALSE(text.put_word(5, 0));
  CHECK_FALSE(text.put_dword(3, 0));
  CHECK(text.put_dword(0, 0x34333231));
  CHECK(text == "1234XY");
  char out[4] = "---";
  text.copy_out(out, 5, 2);
  text.copy_out(out, -1, 2);
  text.copy_out(out, 0, -1);
  CHECK(std::string(out) == "---");
  text.copy_out(out, 4, 2);
  CHECK(std::string(out) == "XY-");
  CHECK(String().starts_with_char('\0'));
  CHECK(String().ends_with_char('\0'));
  CHECK_FALSE(text.contains_char('\0'));
  CHECK(text.contains_char('Y'));
}

TEST_CASE("comparisons") {
  const auto sign = [](int32_t value) { return value < 0 ? -1 : (value > 0 ? 1 : 0); };
  const struct {
    const char *text, *other;
    bool case_sensitive;
    int32_t max, with_text, with_string;
  } rows[] = {
      {"", "", true, STRING_ALL, 0, -1},         {"x", "", true, STRING_ALL, 1, 1},
      {"", "x", true, STRING_ALL, -1, -1},       {"abc", "abc", true, STRING_ALL, 0, 0},
      {"abc", "ABC", true, STRING_ALL, 1, 1},    {"abc", "ABC", false, STRING_ALL, 0, 0},
      {"abc", "abcd", true, STRING_ALL, -1, -1}, {"abcd", "abc", true, STRING_ALL, 1, 1},
      {"abcd", "abcx", true, 3, 0, 0},           {"abc", "abc", true, 0, -1, -1},
      {"a_", "aB", false, STRING_ALL, -1, -1},   {"\xE4", "\xC4", false, STRING_ALL, 1, 1},
  };
  for (const auto &row : rows) {
    const String text(row.text);
    CHECK_MESSAGE(sign(text.compare(row.other, row.case_sensitive, row.max)) == row.with_text, std::string(row.text),
                  "/", std::string(row.other));
    CHECK_MESSAGE(sign(text.compare(String(row.other), row.case_sensitive, row.max)) == row.with_string,
                  std::string(row.text), "/", std::string(row.other));
  }
  const String with_nul("ab\0c", 4);
  CHECK(with_nul.compare("ab", true) == 0);
  CHECK(with_nul != "ab");
  CHECK(with_nul != String("ab"));
  CHECK(with_nul != String("ab\0d", 4));
  CHECK(String() == "");

  CHECK(String("Setup.exe").starts_with("Setup"));
  CHECK(String("Setup.exe").starts_with("SetXX", 3));
  CHECK_FALSE(String("Setup.exe").starts_with("setup"));
  CHECK_FALSE(String("Setup").starts_with("Setup.exe"));
  CHECK_FALSE(String("Setup").starts_with(""));
  CHECK_FALSE(String("Setup").starts_with(nullptr));
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
      {"abc", [](String &s) { CHECK(s.cut_from_match("x", 0).is_empty()); }, "abc"},
  };
  for (const auto &row : rows) {
    String text(row.before);
    row.edit(text);
    CHECK_MESSAGE(Bytes(text) == row.after, std::string(row.before));
  }
}

TEST_CASE("texts without a length") {
  CHECK(text_length(nullptr) == 0);
  CHECK(text_last_char("ab") == 'b');
  CHECK(text_last_char(nullptr) == '\0');
  CHECK(std::string(text_skip_space(" \t\r\n\vx")) == "\vx");
  CHECK(std::string(text_find_any("path;x", ";,")) == ";x");
  CHECK(std::string(text_find_any("path", ";,")).empty());
  CHECK(text_find_any("a", nullptr) == nullptr);
  char cut[] = "a=b=c";
  CHECK(text_cut_at(cut, '='));
  CHECK(std::string(cut) == "a");
  CHECK_FALSE(text_cut_at(cut, '='));
  char blanks[] = "a b c";
  text_blank_spaces(blanks);
  CHECK(memcmp(blanks, "a\0b\0c", 6) == 0);
  CHECK(IsBlank(nullptr));
  CHECK(IsBlank(" \r\n\t"));
  CHECK_FALSE(IsBlank(" \v"));
  for (int c = -128; c < 256; ++c) {
    const bool lower = c >= 'a' && c <= 'z';
    const bool upper = c >= 'A' && c <= 'Z';
    CHECK(is_alpha(c) == (lower || upper));
    CHECK(is_word_char(c) == (lower || upper || (c >= '0' && c <= '9') || c == '_'));
    CHECK(to_upper_char(c) == (lower ? c - 32 : c & 0xFF));
    CHECK(to_lower_char(c) == (upper ? c + 32 : c & 0xFF));
  }
}

TEST_CASE("numbers are read from texts") {
  const struct {
    const char *text;
    int32_t value;
  } rows[] = {{"12.5", 12},       {"abc", 0},     {"-1,000", -1000}, {"1,234", 1234},
              {"v2", 2},          {"file.12", 0}, {"a-b", 0},        {"1,2,3", 123},
              {"4294967295", -1}, {"+7", 7},      {"", 0},           {"-2147483648", INT32_MIN},
              {"99 bottles", 99}, {"- 5", 0},     {"4294967298", 2}};
  for (const auto &row : rows)
    CHECK_MESSAGE(String(row.text).to_int() == row.value, std::string(row.text));
  CHECK(String("x-9,223,372,036,854,775,808").to_int64() == INT64_MIN);
  CHECK(string_from_int64(INT64_MIN) == "-9223372036854775808");
  CHECK(text_to_double("-12.375") == doctest::Approx(-12.375));
  CHECK(text_to_double(".5e3") == 0.5);

  const struct {
    const char *text;
    int32_t pos, value, end;
  } parses[] = {{"12-34", 0, 12, 2}, {"12-34", 2, -34, 5}, {"12", 2, INT32_MIN, 2}, {"12", -1, INT32_MIN, -1},
                {"+x", 0, 0, 1},     {" 1", 0, 0, 0},      {"", 0, INT32_MIN, 0}};
  for (const auto &row : parses) {
    int32_t pos = row.pos;
    CHECK_MESSAGE(String(row.text).parse_int(&pos) == row.value, std::string(row.text));
    CHECK_MESSAGE(pos == row.end, std::string(row.text));
  }
  CHECK(String("12").parse_int(nullptr) == 12);
  CHECK(String().parse_int(nullptr) == INT32_MIN);

  const struct {
    const char *text;
    uint32_t flags;
    int32_t value;
    const char *rest;
  } skips[] = {{" 1", 0, 0, " 1"},     {" 1 ,2", 1, 1, " ,2"}, {"1 , 2", 0x12, 1, "2"},
               {"1,2", 0x10, 1, "2"},  {"-5", 4, 0, "-5"},     {"-5", 0, -5, ""},
               {"- ,", 0x12, 0, " ,"}, {"1 , 2", 2, 1, ", 2"}, {"4294967296", 4, 0, ""}};
  for (const auto &row : skips) {
    const char *p = row.text;
    CHECK_MESSAGE(text_skip_number(p, row.flags) == row.value, std::string(row.text));
    CHECK_MESSAGE(std::string(p) == row.rest, std::string(row.text));
  }
}

TEST_CASE("only few words are false") {
  for (const char *text : {"", " ", "0", "n", "NO ", "F", "\tFalse\n"})
    CHECK_MESSAGE(!to_bool(text), std::string(text));
  for (const char *text : {"N/A", "00", "off", "0.0", "1", "yes", "falsely"})
    CHECK_MESSAGE(to_bool(text), std::string(text));
}
