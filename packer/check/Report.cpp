#include "packer/check/Report.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <tuple>

#include <nlohmann/json.hpp>

#include "packer/CodePage.h"
#include "packer/check/Findings.h"
#include "packer/check/TextRules.h"

namespace korb::packer {

namespace {

using Json = nlohmann::ordered_json;

constexpr size_t kMostShown = 120;  // characters of a line
constexpr size_t kShownBefore = 60; // of those, before the place in a line that is longer

const char *WordOf(Severity severity) {
  return severity == Severity::kError ? "error" : severity == Severity::kWarning ? "warning" : "note";
}

// The bytes of the character that `text` begins with; 0 when it begins with none.
size_t CharacterSize(std::string_view text) {
  for (size_t size = 1; size <= std::min<size_t>(text.size(), 4); ++size)
    if (IsUtf8(text.substr(0, size)))
      return size;
  return 0;
}

char32_t CodeOf(std::string_view character) {
  const auto lead = static_cast<unsigned char>(character[0]);
  char32_t code = character.size() == 1 ? lead : lead & (0x7FU >> character.size());
  for (const char c : character.substr(1))
    code = code << 6 | (static_cast<unsigned char>(c) & 0x3F);
  return code;
}

bool IsControl(char32_t code) {
  return code < 0x20 || (code >= 0x7F && code < 0xA0) || code == 0x2028 || code == 0x2029;
}

// How many cells of a terminal a character takes, roughly: those of East Asia and most pictures take two.
size_t CellsOf(char32_t code) {
  struct Range {
    char32_t first, last;
    size_t cells;
  };
  constexpr Range kRanges[] = {{0x300, 0x36F, 0},    {0x1100, 0x115F, 2}, {0x200B, 0x200F, 0}, {0x20D0, 0x20FF, 0},
                               {0x2E80, 0xA4CF, 2},  {0xAC00, 0xD7A3, 2}, {0xF900, 0xFAFF, 2}, {0xFE00, 0xFE0F, 0},
                               {0xFE30, 0xFE6F, 2},  {0xFF00, 0xFF60, 2}, {0xFFE0, 0xFFE6, 2}, {0x1F300, 0x1FAFF, 2},
                               {0x20000, 0x3FFFD, 2}};
  for (const Range &range : kRanges)
    if (code >= range.first && code <= range.last)
      return range.cells;
  return 1;
}

// The characters of a line, each as it is shown, and what takes its place in the line below.
struct ShownCharacter {
  std::string text, blank;
};

std::vector<ShownCharacter> CharactersOf(std::string_view line) {
  std::vector<ShownCharacter> characters;
  while (!line.empty()) {
    const size_t size = CharacterSize(line);
    const std::string_view character = line.substr(0, std::max<size_t>(size, 1));
    line.remove_prefix(character.size());
    const char32_t code = size == 0 ? 0 : CodeOf(character);
    if (code == '\t')
      characters.push_back({"\t", "\t"});
    else if (size == 0 || IsControl(code))
      characters.push_back({"\uFFFD", " "});
    else
      characters.push_back({std::string(character), std::string(CellsOf(code), ' ')});
  }
  return characters;
}

// "1 warning and 2 errors", without those of which there are none.
std::string TellCounts(size_t warnings, size_t errors) {
  const auto tell = [](size_t count, const char *what) {
    return count == 0 ? std::string() : std::to_string(count) + " " + what + (count == 1 ? "" : "s");
  };
  return tell(warnings, "warning") + (warnings > 0 && errors > 0 ? " and " : "") + tell(errors, "error");
}

class Reporter {
public:
  Reporter(const Findings &findings, const std::string &file, ReportForm form)
      : findings_(findings), file_(file), form_(form) {}

  std::string Tell(const std::vector<Finding> &list) {
    for (const Finding &finding : list) {
      TellOne(finding.place, WordOf(finding.severity),
              finding.message + (finding.name.empty() ? "" : " [" + std::string(finding.name) + "]"));
      for (const Note &note : finding.notes)
        TellOne(note.place, "note", note.message);
    }
    return std::move(report_);
  }

  Json ToJson(const std::vector<Finding> &list) const {
    Json array = Json::array();
    for (const Finding &finding : list) {
      Json one = {{"severity", WordOf(finding.severity)}};
      if (!finding.name.empty())
        one["name"] = finding.name;
      AddPlace(one, finding.place);
      one["message"] = finding.message;
      one["notes"] = Json::array();
      for (const Note &note : finding.notes) {
        Json &last = one["notes"].emplace_back(Json::object());
        AddPlace(last, note.place);
        last["message"] = note.message;
      }
      array.push_back(std::move(one));
    }
    return array;
  }

private:
  const std::string &FileOf(const Place &place) const { return place.file.empty() ? file_ : place.file; }

  void AddPlace(Json &object, const Place &place) const {
    object["file"] = FileOf(place);
    if (place.line != 0) {
      object["line"] = place.line;
      object["column"] = place.column;
    }
  }

  void TellOne(const Place &place, const char *word, const std::string &message) {
    report_ += EscapeControls(FileOf(place));
    if (place.line != 0)
      report_ += ":" + std::to_string(place.line) + ":" + std::to_string(place.column);
    report_ += std::string(": ") + word + ": " + EscapeControls(message) + "\n";
    if (form_ == ReportForm::kText && place.line != 0)
      ShowLine(place);
  }

  void ShowLine(const Place &place) {
    const std::vector<std::string_view> &lines = LinesOf(place.file);
    if (place.line > lines.size())
      return;
    const std::vector<ShownCharacter> characters = CharactersOf(lines[place.line - 1]);
    const size_t at = std::min<size_t>(std::max<uint32_t>(place.column, 1) - 1, characters.size());
    const size_t begin = characters.size() > kMostShown && at > kShownBefore ? at - kShownBefore : 0;
    const size_t end = std::min(characters.size(), begin + kMostShown);
    std::string shown = begin > 0 ? "..." : "", below = begin > 0 ? "   " : "";
    for (size_t i = begin; i < end; ++i) {
      shown += characters[i].text;
      if (i < at)
        below += characters[i].blank;
    }
    char margin[16];
    std::snprintf(margin, sizeof margin, "%5u", place.line);
    report_ +=
        std::string(margin) + " | " + shown + (end < characters.size() ? "..." : "") + "\n      | " + below + "^\n";
  }

  const std::vector<std::string_view> &LinesOf(const std::string &file) {
    const auto [known, is_new] = lines_.try_emplace(file);
    const auto source = findings_.Sources().find(file);
    if (!is_new || source == findings_.Sources().end())
      return known->second;
    std::string_view rest = source->second;
    for (size_t end; !rest.empty(); rest.remove_prefix(std::min(rest.size(), end + 1))) {
      end = std::min(rest.find('\n'), rest.size());
      const std::string_view line = rest.substr(0, end);
      known->second.push_back(line.substr(0, line.size() - (line.ends_with('\r') ? 1 : 0)));
    }
    return known->second;
  }

  const Findings &findings_;
  const std::string &file_;
  ReportForm form_;
  std::map<std::string, std::vector<std::string_view>> lines_;
  std::string report_;
};

} // namespace

std::string EscapeControls(std::string_view text) {
  std::string out;
  while (!text.empty()) {
    const size_t size = CharacterSize(text);
    const std::string_view character = text.substr(0, std::max<size_t>(size, 1));
    text.remove_prefix(character.size());
    char number[8];
    if (size == 0)
      std::snprintf(number, sizeof number, "\\x%02X", static_cast<unsigned char>(character[0]));
    else
      std::snprintf(number, sizeof number, "\\u%04X", static_cast<unsigned>(CodeOf(character) & 0xFFFF));
    const std::string named = ControlCharacterIn(character);
    out += !named.empty()                              ? named
           : size == 0 || IsControl(CodeOf(character)) ? std::string(number)
                                                       : std::string(character);
  }
  return out;
}

std::string Findings::Report(const std::string &file, ReportForm form) const {
  std::vector<Finding> sorted = list_;
  std::stable_sort(sorted.begin(), sorted.end(), [](const Finding &a, const Finding &b) {
    return std::tie(a.place.file, a.place.line, a.place.column) < std::tie(b.place.file, b.place.line, b.place.column);
  });
  Reporter reporter(*this, file, form);
  if (form == ReportForm::kJson)
    return reporter.ToJson(sorted).dump(1, ' ', false, Json::error_handler_t::replace) + "\n";
  std::string report = reporter.Tell(sorted);
  const std::string counts = TellCounts(Count(Severity::kWarning), Count(Severity::kError));
  return report + (form == ReportForm::kShort || counts.empty() ? "" : counts + "\n");
}

} // namespace korb::packer
