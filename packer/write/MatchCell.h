// A part of the input, with the matches that start in it.
#pragma once

#include <array>
#include <vector>

#include "packer/write/ByteCompare.h"
#include "packer/write/TokenCode.h"

namespace korb::packer {

struct Match {
  uint32_t length;
  uint32_t distance; ///< to the earlier occurrence; what can be copied is never longer than this
};

inline constexpr uint32_t kCell = 1u << 17;  ///< positions of a cell; the last has fewer
inline constexpr uint32_t kTakenWhole = 512; ///< a copy or fill of that length is written without looking further
inline constexpr uint32_t kTreeClasses = 2;  ///< parts of the trees that can be searched at the same time
inline constexpr uint32_t kTreeBytes = 6;    ///< what all positions of a tree have in common, nearly always

/// The stages of the search fill it in one after the other: Repeats and MatchScan, then MatchTrees, one part for each
/// class. Indices are positions from `begin` on.
struct MatchCell {
  /// The bytes from `begin` to `end`, which may lie in a later cell, equal those `distance` before.
  struct Repeat {
    uint32_t begin, end, distance;
  };

  struct Query {
    uint32_t position, hash;
  };

  struct Range {
    uint32_t begin;
    uint16_t count, tree_class;
  };

  uint32_t begin = 0, end = 0;
  std::vector<Repeat> repeats; ///< rising, none within another

  /// The latest occurrences of 4 and of 5 bytes: `nearest[nearest_begin[i]]` up to `nearest[nearest_begin[i + 1]]`.
  std::vector<Match> nearest;
  std::vector<uint32_t> nearest_begin;

  /// What is to be looked for in the trees, and what was found there: `farther_of[i]` within its class.
  std::array<std::vector<Query>, kTreeClasses> queries;
  std::array<std::vector<Match>, kTreeClasses> farther;
  std::vector<Range> farther_of;

  void Reset(uint32_t from, uint32_t to) {
    begin = from;
    end = to;
    repeats.clear();
    nearest.clear();
    nearest_begin.clear();
    for (uint32_t part = 0; part < kTreeClasses; ++part) {
      queries[part].clear();
      farther[part].clear();
    }
    farther_of.assign(to - from, {0, 0, 0});
  }

  std::span<const Match> NearestAt(uint32_t position) const {
    const uint32_t *at = &nearest_begin[position - begin];
    return std::span(nearest).subspan(at[0], at[1] - at[0]);
  }

  std::span<const Match> FartherAt(uint32_t position) const {
    const Range range = farther_of[position - begin];
    return std::span(farther[range.tree_class]).subspan(range.begin, range.count);
  }
};

/// Appends `match`, which is longer and from farther back than those from index `first` on. One that costs no more than
/// the last takes its place.
inline void AddMatch(std::vector<Match> &matches, size_t first, Match match) {
  const auto can_be_copied = [](Match m) { return m.length <= m.distance && m.distance >= kMinDistance; };
  if (matches.size() > first && can_be_copied(matches.back()) && can_be_copied(match) &&
      DistanceBits(matches.back().distance) == DistanceBits(match.distance))
    matches.back() = match;
  else
    matches.push_back(match);
}

} // namespace korb::packer
