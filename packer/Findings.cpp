#include "packer/Findings.h"

#include <tuple>

namespace korb::packer {

std::string Findings::Report(const std::string &file) const {
  std::vector<Finding> sorted = list_;
  std::stable_sort(sorted.begin(), sorted.end(), [](const Finding &a, const Finding &b) {
    return std::tie(a.place.line, a.place.column) < std::tie(b.place.line, b.place.column);
  });
  std::string report;
  for (const Finding &finding : sorted) {
    report += file;
    if (finding.place.line != 0)
      report += ":" + std::to_string(finding.place.line) + ":" + std::to_string(finding.place.column);
    report += finding.severity == Severity::kError ? ": error: " : ": warning: ";
    report += finding.message + "\n";
  }
  return report;
}

} // namespace korb::packer
