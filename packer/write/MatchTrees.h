// Earlier occurrences, in the order of their contents.
#pragma once

#include <memory>

#include "packer/write/MatchCell.h"

namespace korb::packer {

/// How far the search goes.
struct Search {
  int depth;            ///< earlier positions that are looked at, at most
  uint32_t nice_length; ///< a match of this length or more is as good as any: the rest of the search is left out
};

/// Binary trees of earlier positions, one for each hash of six bytes, kept in the order of their contents, so that the
/// descent to a new position meets ever longer matches, the nearest of each length first. No position is ever dropped,
/// so the window is the whole input. A bounded depth keeps the time linear where trees degenerate; a suffix array would
/// give all matches, but takes twice the memory and, for a few hundredths of a percent, several times the code. A tree
/// belongs to one of `kTreeClasses` by its hash, and what is in one class has no bearing on the others. Memory: 8 bytes
/// for each position that is entered, and up to 64 MB.
class MatchTrees {
public:
  MatchTrees(std::span<const uint8_t> data, Search search);

  /// Enters the queries of one class of `cell`, and fills `farther` and `farther_of` with what is longer than the
  /// nearest. Cells have to come in their order; classes may be at work at the same time.
  void Find(MatchCell &cell, uint32_t tree_class);

private:
  uint32_t &HeadOf(uint32_t hash) { return heads_[hash >> hash_shift_]; }
  void Descend(MatchCell::Query query, uint32_t shorter, std::vector<Match> &matches);

  std::span<const uint8_t> data_;
  Search search_;
  uint32_t hash_shift_;
  std::vector<uint32_t> heads_; // by hash: latest position + 1, 0 for none
  // Two for each position, the same form. Not filled beforehand: what is never entered takes no memory.
  std::unique_ptr<uint32_t[]> children_;
};

} // namespace korb::packer
