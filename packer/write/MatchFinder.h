// Finds earlier occurrences of what stands at a position.
#pragma once

#include "packer/write/MatchScan.h"
#include "packer/write/MatchTrees.h"

namespace korb::packer {

/// The whole search, cell by cell, in three stages that may be at work on three cells at the same time: `Scan` on one,
/// `Search`, for each class, on the one before, and `Find` on the one before that. What is found depends on none of
/// this, only on the data.
class MatchFinder {
public:
  MatchFinder(std::span<const uint8_t> data, korb::packer::Search search);

  /// The two stages, to be called for each cell in its order. They end the use of the third cell before.
  void Scan(uint32_t cell);
  void Search(uint32_t cell, uint32_t tree_class);

  /// Fills `matches`, length and nearly always distance rising, with what can be copied at `position`, which must rise
  /// from call to call. No copy overlaps its own output, and the distance is `kMinDistance` at least.
  void Find(uint32_t position, std::vector<Match> &matches);

private:
  MatchCell &CellOf(uint32_t cell) { return cells_[cell % cells_.size()]; }
  void Offer(uint32_t position, Match match, std::vector<Match> &matches);
  uint32_t PeriodicBack(uint32_t position, uint32_t period);
  void AddPeriodic(uint32_t position, Match overlapping, std::vector<Match> &matches);

  std::span<const uint8_t> data_;
  uint32_t size_, nice_length_;
  MatchScan scan_;
  MatchTrees trees_;
  std::array<MatchCell, 3> cells_;
  uint32_t repeats_of_ = 0; // the begin of the cell that was last read,
  size_t repeat_ = 0;       // and which of its repeats are over
  // The periodic stretch that was last looked at: data[x] == data[x - period] for x from `periodic_begin_` on.
  uint32_t period_ = 0, periodic_begin_ = 0, periodic_seen_ = 0;
};

} // namespace korb::packer
