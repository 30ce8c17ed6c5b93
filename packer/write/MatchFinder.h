// Finds earlier occurrences of what stands at a position.
#pragma once

#include <span>
#include <vector>

#include "packer/Bytes.h"

namespace korb::packer {

struct Match {
  uint32_t length;   ///< never above `distance`: a copy may not overlap its own output
  uint32_t distance; ///< 4 and up
};

/// Binary trees of earlier positions, one for each hash of four bytes, kept in the order of their contents, so that the
/// descent to a new position meets ever longer matches, the nearest of each length first. No position is ever dropped,
/// so the window is the whole input. A bounded depth keeps the time linear where trees degenerate; a suffix array would
/// give all matches, but takes twice the memory and, for a few hundredths of a percent, several times the code. Memory:
/// 8 bytes a position, and up to 64 MB.
class MatchFinder {
public:
  struct Search {
    int depth;            ///< earlier positions that are looked at, at most
    uint32_t nice_length; ///< a match of this length or more is as good as any: the rest of the search is left out
  };

  MatchFinder(std::span<const uint8_t> data, Search search);

  /// Enters `position`, which must rise from call to call, and fills `matches`, length and distance rising, with what
  /// can be copied there without passing `end`.
  void Find(uint32_t position, uint32_t end, std::vector<Match> &matches);

  /// Enters `position` without looking for anything.
  void Enter(uint32_t position);

private:
  void Descend(uint32_t position, uint32_t limit, std::vector<Match> *matches);
  uint32_t ExtendMatch(uint32_t position, uint32_t distance, uint32_t length, uint32_t end) const;
  uint32_t PeriodicBack(uint32_t position, uint32_t period);
  void AddPeriodic(uint32_t position, Match overlapping, std::vector<Match> &matches);

  std::span<const uint8_t> data_;
  Search search_;
  uint32_t hash_shift_;
  std::vector<uint32_t> heads_;    // by hash: latest position + 1, 0 for none
  std::vector<uint32_t> children_; // two for each position, the same form
  std::vector<Match> raw_;
  // The periodic stretch that was last looked at: data[x] == data[x - period] for x from `periodic_begin_` on.
  uint32_t period_ = 0, periodic_begin_ = 0, periodic_seen_ = 0;
};

} // namespace korb::packer
