#include "packer/manifest/Toml.h"

#include <algorithm>

#include "packer/check/TextRules.h"

namespace korb::packer {

namespace {

std::string_view View(const Bytes &text, size_t size) {
  return {reinterpret_cast<const char *>(text.data()), size};
}

bool FailsAssertion(std::string_view text) {
  try {
    (void)toml::parse(text);
  } catch (const toml::parse_error &) {
  } catch (const TomlAssertion &) {
    return true;
  }
  return false;
}

// The bytes up to and with the character that an assertion of the library stumbles over: the library reads from front
// to back, so every longer text fails it too.
size_t BytesToAssertion(const Bytes &text) {
  size_t good = 0, bad = text.size();
  while (bad - good > 1) {
    const size_t middle = good + (bad - good) / 2;
    (FailsAssertion(View(text, middle)) ? bad : good) = middle;
  }
  return bad;
}

bool IsContinuation(uint8_t byte) {
  return (byte & 0xC0) == 0x80;
}

Place PlaceAt(const Bytes &text, size_t at, const std::string &file) {
  Place place{1, 1, file};
  for (size_t i = 0; i < at; ++i)
    if (text[i] == '\n')
      ++place.line, place.column = 1;
    else if (!IsContinuation(text[i]))
      ++place.column;
  return place;
}

// What the library asserts of an author's input is how names begin.
void TellAssertion(const Bytes &text, const std::string &file, Findings &findings) {
  const size_t end = BytesToAssertion(text);
  size_t begin = end - 1;
  while (begin > 0 && IsContinuation(text[begin]))
    --begin;
  const std::string shown = text[begin] <= ' ' ? "" : " '" + std::string(View(text, end).substr(begin)) + "'";
  findings.Error(PlaceAt(text, begin, file),
                 "no name can begin" + (shown.empty() ? " here" : " with" + shown) +
                     ": names of tables and keys are letters, digits, '-' and '_', or stand in quotes");
}

// Where the string that begins at `at` ends, as far as it does: at its last quote, or at the end of its line.
size_t EndOfString(std::string_view text, size_t at) {
  const char quote = text[at];
  const size_t quotes = text.substr(at, 3) == std::string(3, quote) ? 3 : 1;
  for (at += quotes; at < text.size(); ++at) {
    if (quote == '"' && text[at] == '\\')
      ++at;
    else if (quotes == 1 && (text[at] == quote || text[at] == '\n'))
      return at;
    else if (quotes == 3 && text.substr(at, 3) == std::string(3, quote)) {
      at += 2;
      for (int inside = 0; inside < 2 && at + 1 < text.size() && text[at + 1] == quote; ++inside)
        ++at; // up to two of its own stand before the closing ones
      return at;
    }
  }
  return at;
}

// The library nests a table in a table for each part of a dotted key, and walks through them by recursion: of too many
// parts its stack would overflow. Nobody means them, so this tells where they are.
std::optional<size_t> FindDeepKey(std::string_view text) {
  constexpr int kMostDots = 15;
  int dots = 0;
  for (size_t at = 0; at < text.size(); ++at)
    if (text[at] == '"' || text[at] == '\'')
      at = EndOfString(text, at);
    else if (text[at] == '#')
      at = std::min(text.find('\n', at), text.size()) - 1;
    else if (std::string_view("=,[]{}\n").find(text[at]) != std::string_view::npos)
      dots = 0;
    else if (text[at] == '.' && ++dots > kMostDots)
      return at;
  return std::nullopt;
}

} // namespace

void FailTomlAssertion(const char *condition) {
  throw TomlAssertion(condition);
}

Place PlaceOf(const toml::source_region &source) {
  return {source.begin.line, source.begin.column, source.path ? *source.path : std::string()};
}

std::optional<toml::table> ParseToml(const Bytes &text, const std::string &file, Findings &findings) {
  findings.KeepSource(file, std::string(View(text, text.size())));
  if (const auto deep = FindDeepKey(View(text, text.size()))) {
    findings.Error(PlaceAt(text, *deep, file), "no key has so many parts");
    return std::nullopt;
  }
  try {
    return toml::parse(View(text, text.size()), file);
  } catch (const toml::parse_error &error) {
    std::string reason(error.description());
    if (reason.find("unknown escape sequence") != reason.npos)
      reason += std::string("; ") + kSingleQuotes;
    findings.Error(PlaceOf(error.source()), std::move(reason));
  } catch (const TomlAssertion &) {
    TellAssertion(text, file, findings);
  }
  return std::nullopt;
}

} // namespace korb::packer
