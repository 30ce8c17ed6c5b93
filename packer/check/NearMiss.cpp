#include "packer/check/NearMiss.h"

#include <algorithm>
#include <cctype>
#include <vector>

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
