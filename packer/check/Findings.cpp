#include "packer/check/Findings.h"

#include <set>
#include <tuple>

namespace korb::packer {

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
    report += finding.message + "\n";
  }
  return report;
}

} // namespace korb::packer
