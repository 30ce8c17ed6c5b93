// Searching, replacing, splitting, and taking parts off the front.
#include <random>

#include "core/Vector.h"
#include "tests/support/Testing.h"

namespace {

String Make(const std::string &bytes) {
  return String(bytes.data(), static_cast<int32_t>(bytes.size()));
}

/// The entries, each in brackets.
std::string Show(const Collection<String> &entries) {
  std::string all;
  CollectionIterator it;
  entries.begin(it);
  while (const String *entry = entries.next(it))
    all += "[" + Std(*entry) + "]";
  return all;
}

} // namespace

TEST_CASE("a pattern is found by every combination of flags") {
  const struct {
    std::string text;
    const char *pattern;
    int32_t start;
    FindOptions flags;
    int32_t result;
  } rows[] = {
      {"abcabc", "bc", 2, FIND_NONE, 4},
      {"abcabc", "bc", -9, FIND_NONE, 1},
      {"abcabc", "BC", 0, FIND_NONE, -1},
      {"abcabc", "BC", 0, FIND_IGNORE_CASE, 1},
      {"abcabc", "bc", 0, FIND_RETURN_END, 3},
      {"abcabc", "", 0, FIND_NONE, -1},
      {"abc", "abcd", 0, FIND_NONE, -1},
      {"", "a", 0, FIND_REVERSE, -1},
      {"abcabc", "abc", 0, FIND_REVERSE, -1},
      {"abcabc", "abc", 4, FIND_REVERSE, 3},
      {"abcabc", "abc", STRING_ALL, FIND_REVERSE, 3},
      {"abcabc", "abc", INT32_MIN, FIND_REVERSE, -1},
      {"a_b", "a", 0, FIND_WHOLE_WORD, -1},
      {"xa a.", "a", 0, FIND_WHOLE_WORD, 3},
      {"a-b", "a", 0, FIND_WHOLE_WORD, 0},
      {"axC", "a?c", 0, FIND_WILDCARD, -1},
      {"axC", "A?c", 0, FIND_WILDCARD | FIND_IGNORE_CASE, 0},
      {"a\0c"s, "a?c", 0, FIND_WILDCARD, 0},
      {"a?c", "?", 0, FIND_NONE, 1},
      {"say \"abc\" abc", "abc", 0, FIND_SKIP_QUOTED, 10},
      {"say \"abc abc", "abc", 0, FIND_SKIP_QUOTED, -1},
      {"abc \"abc\"", "abc", STRING_ALL, FIND_SKIP_QUOTED | FIND_REVERSE, 5}, // no quote stands at its places
      {"x;y", ",;", 0, FIND_ANY_OF | FIND_RETURN_END, 2},
      {"x?y", "?", 0, FIND_ANY_OF | FIND_WILDCARD, 1},
      {"xyZ", "z", 0, FIND_ANY_OF | FIND_IGNORE_CASE, 2},
      {"x\0y"s, "y", 0, FIND_ANY_OF, 2},
      {"xy;", ";!", STRING_ALL, FIND_ANY_OF | FIND_REVERSE, 2},
  };
  for (const auto &row : rows)
    CHECK_MESSAGE(Make(row.text).find(row.pattern, row.start, row.flags) == row.result, row.text, " / ",
                  std::string(row.pattern), " / ", row.flags);
  CHECK(String("abcd").find("bcX", 0, FIND_NONE, 2) == 1);
  CHECK(String("abcd").find("bc", 0, FIND_NONE, 0) == -1);
  CHECK(String("abcd").find(nullptr) == -1);
}

TEST_CASE("a character is found forward and backward, outside quotes on demand") {
  const String text("a\"b\"B.12");
  CHECK(text.find_char('b', 0, FIND_SKIP_QUOTED) == -1);
  CHECK(text.find_char('b', 0, FIND_SKIP_QUOTED | FIND_IGNORE_CASE) == 4);
  CHECK(String("\"b").find_char('b', 0, FIND_SKIP_QUOTED) == -1);
  CHECK(text.rfind_char('"', 2) == 1);
  CHECK(text.rfind_char('b', STRING_ALL, FIND_SKIP_QUOTED) == -1);
  CHECK(text.rfind_char('a', STRING_ALL, FIND_SKIP_QUOTED) == 0);
  CHECK(text.rfind_char('a', -1) == -1);
}

TEST_CASE("the first character in a set, and the first outside it, is found") {
  const String text("a\"b\"B.12");
  CHECK(text.find_any("12") == 6);
  CHECK(text.find_any("") == -1);
  CHECK(text.find_any("a", 8) == -1);
  CHECK(text.find_not_in("") == 0);
  CHECK(text.find_not_in(nullptr) == -1);
  CHECK(Make("ab\0"s).find_any("\0x") == -1);
  CHECK(Make("ab\0"s).find_not_in("ab") == 2);
  CHECK(text.find_number_start(0) == 5);
}

TEST_CASE("a line ends with its break, whichever it is") {
  struct Row {
    const char *text;
    int32_t start;
    LineOptions flags;
    int32_t result;
  };
  for (const Row &row :
       {Row{"ab\r\nc", 0, LINE_NONE, 4}, Row{"ab\r\nc", 0, LINE_AT_BREAK, 2}, Row{"ab\r\nc", 4, LINE_NONE, -1},
        Row{"ab\r\nc", 4, LINE_LENGTH_IF_NONE, 5}, Row{"ab\n", 3, LINE_LENGTH_IF_NONE, 3},
        Row{"ab\n", -1, LINE_NONE, -1}, Row{"\"a\n\"b\nc", 0, LINE_SKIP_QUOTED, 6},
        Row{"\"a\nb", 0, LINE_SKIP_QUOTED, -1}, Row{"\"a\nb", 0, LINE_SKIP_QUOTED | LINE_LENGTH_IF_NONE, 4}})
    CHECK_MESSAGE(String(row.text).find_line_end(row.start, row.flags) == row.result, std::string(row.text), " / ",
                  row.flags);
}

namespace {

struct Replacement {
  const char *before, *old, *with;
  uint32_t flags;
  int32_t start, max, skip, result;
  const char *after;
};

void CheckReplacements(std::initializer_list<Replacement> rows) {
  for (const Replacement &row : rows) {
    CAPTURE(row.before);
    CAPTURE(row.old);
    CAPTURE(row.with);
    CAPTURE(row.flags);
    String text(row.before);
    CHECK(text.replace(row.old, row.with, static_cast<FindOptions>(row.flags), row.start, row.max, row.skip) ==
          row.result);
    CHECK(Std(text) == row.after);
  }
}

} // namespace

TEST_CASE("a replacement minds its start, its count and what it skips") {
  CheckReplacements({
      {"a.a.a", "a", nullptr, 0, 0, STRING_ALL, 0, 3, ".."},
      {"a.a.a", "a", "x", 0, 1, STRING_ALL, 0, 2, "a.x.x"},
      {"a.a.a", "a", "x", 0, 0, 1, 1, 2, "a.x.a"},
      {"a.a.a", "a", "xy", 0, 0, 1, 1, 2, "a.xy.a"},
      {"a.a.a", "a", "xy", 0, 0, STRING_ALL, 9, 3, "a.a.a"},
      {"a.a.a", "", "x", 0, 0, STRING_ALL, 0, 0, "a.a.a"},
  });
}

TEST_CASE("a replacement of the first only gives its place") {
  CheckReplacements({
      {"ab", "x", "yy", FIND_FIRST_ONLY, 0, STRING_ALL, 0, -1, "ab"},
      {"ab", "b", "y", FIND_FIRST_ONLY, 0, 0, 0, -1, "ab"},
      {".a.a", "a", "xy", FIND_FIRST_ONLY, 0, STRING_ALL, 0, 1, ".xy.a"},
      {".a.a", "a", "x", FIND_FIRST_ONLY, 0, STRING_ALL, 1, 3, ".a.x"},
      {".a.a", "a", "xy", FIND_FIRST_ONLY, 0, STRING_ALL, 1, 1, ".a.a"},
      {".a", "a", "x", FIND_FIRST_ONLY, 0, STRING_ALL, 1, -1, ".a"},
  });
}

TEST_CASE("a replacement finds what a search with its flags finds, and takes over what wildcards stood for") {
  CheckReplacements({
      {"a.a", "a", "x", FIND_REVERSE | FIND_RETURN_END, 0, STRING_ALL, 0, 2, "x.x"},
      {"A.a", "a", "xy", FIND_IGNORE_CASE, 0, STRING_ALL, 0, 2, "xy.xy"},
      {"--", "-", "x", FIND_WHOLE_WORD, 0, STRING_ALL, 0, 1, "x-"}, // in place, the neighbour has become a letter
      {"1a2 3a4", "?a?", "?-?", FIND_WILDCARD, 0, STRING_ALL, 0, 2, "1-2 3-4"},
      {"1a2", "?a?", "<?,?,?>", FIND_WILDCARD, 0, STRING_ALL, 0, 1, "<1,2,?>"},
      {"1a2", "1a", "?", FIND_WILDCARD, 0, STRING_ALL, 0, 1, "?2"},
      {"a,b;", ",;", "+", FIND_ANY_OF, 0, STRING_ALL, 0, 2, "a+b+"},
      {"a?", "??x", "??", FIND_ANY_OF | FIND_WILDCARD, 0, STRING_ALL, 0, 1, "a??"},
  });
}

TEST_CASE("a replacement may be of parts of the string itself, or by a character") {
  String text("abcab");
  CHECK(text.replace(text.c_str() + 3, text.c_str(), FIND_NONE) == 2);
  CHECK(text == "abcabcabcab");
  CHECK(text.replace_with_char("bc", '-', FIND_NONE, 3) == 2);
  CHECK(text == "abca-a-ab");
}

TEST_CASE("replace agrees with a plain model, whatever the lengths") {
  std::mt19937 random(7);
  const auto word = [&random](size_t longest) {
    std::string text(random() % (longest + 1), 'a');
    for (char &c : text)
      c = static_cast<char>('a' + random() % 2);
    return text;
  };
  for (int round = 0; round < 3000; ++round) {
    const std::string before = word(40), old = "a" + word(2), with = word(4);
    std::string model = before;
    int32_t count = 0;
    for (size_t at = 0; (at = model.find(old, at)) != std::string::npos; at += with.size(), ++count)
      model.replace(at, old.size(), with);
    String text = Make(before);
    REQUIRE_MESSAGE(text.replace(old.c_str(), with.c_str()) == count, before, " ", old);
    REQUIRE_MESSAGE(Std(text) == model, before, " ", old, " ", with);
  }
}

namespace {

struct Split {
  std::string text;
  const char *delimiters;
  uint32_t flags;
  int32_t added;
  std::string pieces;
};

void CheckSplits(std::initializer_list<Split> rows) {
  for (const Split &row : rows) {
    CAPTURE(row.text);
    CAPTURE(row.flags);
    Vector<String> pieces;
    CHECK(Make(row.text).split(pieces, row.delimiters, static_cast<SplitOptions>(row.flags)) == row.added);
    CHECK(Show(pieces) == row.pieces);
  }
}

} // namespace

TEST_CASE("a text is split at delimiters, NULs or lines") {
  CheckSplits({
      {",a,,", ",", SPLIT_KEEP_EMPTY, 4, "[][a][][]"},
      {",a,,", ",", SPLIT_NONE, 1, "[a]"},
      {"", ",", SPLIT_KEEP_EMPTY, 0, ""},
      {"a,", ",", SPLIT_KEEP_DELIMITER | SPLIT_KEEP_EMPTY, 2, "[a,][]"},
      {"a\0b,c"s, ",", SPLIT_NONE, 2, "[a\0b][c]"s},
      {"a\0b"s, nullptr, SPLIT_NUL_ENDS, 2, "[a][b]"},
      {"a\r\nb\n\rc\n\nd", nullptr, SPLIT_LINES, 4, "[a][b][c][d]"},
      {"a\n\nd\r", nullptr, SPLIT_LINES | SPLIT_KEEP_EMPTY, 4, "[a][][d][]"},
      {"a\r\nb", ",", 0, 1, "[a\r\nb]"},
  });
}

TEST_CASE("pieces are trimmed, and quotes kept together or taken off, as asked") {
  CheckSplits({
      {" \" a \" ", ",", SPLIT_TRIM | SPLIT_UNQUOTE, 1, "[a]"},
      {"\"a,b\",c", ",", SPLIT_SKIP_QUOTED, 2, "[\"a,b\"][c]"},
      {"a,\"b,c", ",", SPLIT_SKIP_QUOTED, 2, "[a][\"b,c]"},
      {"\"a\"\"b\",c\"\"d", ",", SPLIT_UNQUOTE | SPLIT_UNDOUBLE, 2, "[a\"b][c\"\"d]"},
      {"\"a\"\"b\"", ",", SPLIT_UNQUOTE, 1, "[a\"\"b]"},
  });
}

TEST_CASE("a doubled delimiter can stand for itself, and a piece be kept once") {
  CheckSplits({
      {"a,,b,c", ",", SPLIT_DOUBLED_DELIMITER, 2, "[a,,b][c]"},
      {"a,;b", ",;", SPLIT_DOUBLED_DELIMITER | SPLIT_KEEP_EMPTY, 3, "[a][][b]"},
      {"a,b,a,A,b,a", ",", SPLIT_UNIQUE, 6, "[a][b][A]"},
  });
}

TEST_CASE("a split adds to what is there, which counts among the unique") {
  Vector<String> lines;
  lines.append("a");
  CHECK(Make("a\n\r\0b"s).split_lines(lines) == 3);
  CHECK(Show(lines) == "[a][a][][b]");
  CHECK(String("c").split(lines, nullptr, SPLIT_UNIQUE) == 1);
  CHECK(Show(lines) == "[a][][b][c]");
}

TEST_CASE("lines are taken off one by one") {
  const struct {
    std::string text, lines, lines_with_ends;
  } rows[] = {{"a\n\rb", "[a][b]", "[a\n\r][b]"},
              {"a\r\n\r\n", "[a][]", "[a\r\n][\r\n]"},
              {"a\0\nb"s, "[a][][b]", "[a\0][\n][b]"s},
              {"", "", ""}};
  for (const auto &row : rows) {
    CAPTURE(row.text);
    std::string lines, lines_with_ends;
    for (String text = Make(row.text); !text.is_empty();)
      lines += "[" + Std(text.take_line()) + "]";
    for (String text = Make(row.text); !text.is_empty();)
      lines_with_ends += "[" + Std(text.take_line_with_end()) + "]";
    CHECK(lines == row.lines);
    CHECK(lines_with_ends == row.lines_with_ends);
  }
}

TEST_CASE("a quoted run is taken out, its doubled quotes made single") {
  const struct {
    const char *text;
    int32_t start;
    const char *taken, *rest;
  } rows[] = {
      {"\"a b\" c", 0, "a b", " c"}, {"\"\"x", 0, "", "x"},       {"abc", 0, "", "abc"}, {"abc", 3, "", "abc"},
      {"x\"abc", 1, "abc", "x"},     {"\"a\"\"\"", 0, "a\"", ""}, {"\"", 0, "", ""},     {"\"\"\"\"", 0, "\"", ""}};
  for (const auto &row : rows) {
    String text(row.text);
    CHECK_MESSAGE(Std(text.take_quoted(row.start)) == row.taken, std::string(row.text));
    CHECK_MESSAGE(Std(text) == row.rest, std::string(row.text));
  }
  String many(std::string(4000001, '"').c_str()); // took the rest of the day
  CHECK(many.take_quoted(0).length() == 2000000);
}

TEST_CASE("words are taken off, quoted ones whole") {
  const struct {
    const char *line, *words;
  } lines[] = {{"  /a /d:\"c:\\my dir\" x", "[/a][/d:\"c:\\my dir\"][x]"},
               {"\"a\"\"b\"c d", "[\"a\"b\"c][d]"},
               {"\"open end", "[\"open end\"]"},
               {"   ", ""}};
  for (const auto &row : lines) {
    std::string words;
    String line(row.line);
    for (String word = line.next_word(); !word.is_empty(); word = line.next_word())
      words += "[" + Std(word) + "]";
    CHECK_MESSAGE(words == row.words, std::string(row.line));
    CHECK(line.is_empty());
  }
}
