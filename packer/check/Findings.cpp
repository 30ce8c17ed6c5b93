#include "packer/check/Findings.h"

#include <cctype>
#include <set>
#include <tuple>

#include "packer/CodePage.h"

namespace korb::packer {

namespace {

// Slips between two words: characters to add, drop, change, or swap with the next.
size_t Slips(std::string_view a, std::string_view b) {
  std::vector<std::vector<size_t>> rows(a.size() + 1, std::vector<size_t>(b.size() + 1));
  for (size_t i = 0; i <= a.size(); ++i)
    for (size_t j = 0; j <= b.size(); ++j) {
      if (i == 0 || j == 0) {
        rows[i][j] = i + j;
        continue;
      }
      const auto low = [](char c) { return std::tolower(static_cast<unsigned char>(c)); };
      const bool same = low(a[i - 1]) == low(b[j - 1]);
      rows[i][j] = std::min({rows[i - 1][j] + 1, rows[i][j - 1] + 1, rows[i - 1][j - 1] + (same ? 0 : 1)});
      if (i > 1 && j > 1 && low(a[i - 1]) == low(b[j - 2]) && low(a[i - 2]) == low(b[j - 1]))
        rows[i][j] = std::min(rows[i][j], rows[i - 2][j - 2] + 1);
    }
  return rows[a.size()][b.size()];
}

} // namespace

void Findings::Allow(std::string_view name, const Place &place) {
  if (std::string fault = WarningFault(name); !fault.empty())
    Error(place, std::move(fault));
  else
    allowed_.emplace(name, Allowance{place});
}

void Findings::TellIdleAllowances() {
  for (const auto &[name, allowance] : allowed_)
    if (!allowance.is_used && allowance.place.line != 0)
      list_.push_back({Severity::kNote, allowance.place, "this build has no warning '" + name + "' to allow"});
}

void Findings::Add(Finding finding) {
  const auto allowed = allowed_.find(finding.name);
  if (allowed != allowed_.end())
    allowed->second.is_used = true;
  else
    list_.push_back(std::move(finding));
}

void Findings::ConvertTexts(int page) {
  for (Finding &finding : list_) {
    finding.message = FromCodePage(finding.message, page);
    for (Note &note : finding.notes)
      note.message = FromCodePage(note.message, page);
  }
}

void Findings::Merge(const Findings &others) {
  sources_.insert(others.sources_.begin(), others.sources_.end());
  for (const auto &[name, allowance] : others.allowed_) {
    const auto [known, is_new] = allowed_.try_emplace(name, allowance);
    known->second.is_used |= allowance.is_used;
  }
  const auto key = [](const Place &place) { return std::tie(place.file, place.line, place.column); };
  std::set<std::tuple<std::string, uint32_t, uint32_t>> wrong;
  for (const Finding &finding : list_)
    if (finding.severity == Severity::kError)
      wrong.emplace(key(finding.place));
  for (const Finding &finding : others.list_)
    if (!wrong.contains(key(finding.place)) &&
        (finding.severity == Severity::kError || finding.place.line != 0 || wrong.empty()))
      Add(finding);
}

std::vector<std::string_view> WarningWords() {
  std::vector<std::string_view> names;
  for (const WarningName &known : kWarningNames)
    names.push_back(known.name);
  return names;
}

std::string WarningFault(std::string_view name) {
  const std::vector<std::string_view> names = WarningWords();
  return std::ranges::find(names, name) != names.end()
             ? std::string()
             : "there is no warning called '" + std::string(name) + "'" + Suggestion(name, names);
}

std::string_view NearMiss(std::string_view word, std::span<const std::string_view> words) {
  std::string_view best;
  size_t least = word.size() < 5 ? 2 : word.size() < 9 ? 3 : 4;
  for (std::string_view candidate : words) {
    // A word that is cut short, or goes on, is near too.
    const size_t common = std::min(word.size(), candidate.size());
    const bool begins = common > 2 && word.substr(0, common) == candidate.substr(0, common);
    const size_t slips = begins ? 1 : Slips(word, candidate);
    if (slips < least) {
      least = slips;
      best = candidate;
    }
  }
  return best;
}

std::string Suggestion(std::string_view word, std::span<const std::string_view> words) {
  const std::string_view near = NearMiss(word, words);
  return near.empty() ? std::string() : "; did you mean '" + std::string(near) + "'?";
}

} // namespace korb::packer
