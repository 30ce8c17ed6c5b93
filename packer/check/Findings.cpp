#include "packer/check/Findings.h"

#include <cctype>
#include <set>
#include <tuple>

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

void Findings::Merge(const Findings &others) {
  const auto key = [](const Place &place) { return std::tie(place.file, place.line, place.column); };
  std::set<std::tuple<std::string, uint32_t, uint32_t>> wrong;
  for (const Finding &finding : list_)
    if (finding.severity == Severity::kError)
      wrong.emplace(key(finding.place));
  for (const Finding &finding : others.list_)
    if (!wrong.contains(key(finding.place)) &&
        (finding.severity == Severity::kError || finding.place.line != 0 || wrong.empty()))
      list_.push_back(finding);
}

std::string Findings::Report(const std::string &file) const {
  std::vector<Finding> sorted = list_;
  std::stable_sort(sorted.begin(), sorted.end(), [](const Finding &a, const Finding &b) {
    return std::tie(a.place.file, a.place.line, a.place.column) < std::tie(b.place.file, b.place.line, b.place.column);
  });
  std::string report;
  for (const Finding &finding : sorted) {
    report += finding.place.file.empty() ? file : finding.place.file;
    if (finding.place.line != 0)
      report += ":" + std::to_string(finding.place.line) + ":" + std::to_string(finding.place.column);
    report += finding.severity == Severity::kError ? ": error: " : ": warning: ";
    report += finding.message + (finding.name.empty() ? "" : " [" + std::string(finding.name) + "]") + "\n";
  }
  return report;
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
