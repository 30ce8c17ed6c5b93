// The first look at each part of the input.
#pragma once

#include "packer/write/Repeats.h"

namespace korb::packer {

/// Finds what takes one look at a small table: for each position the latest occurrences of its 4 and of its 5 bytes,
/// the nearest and thus the cheapest that there are; and decides where the trees are to be searched at all. They are
/// not where a copy or fill will be taken whole, nor in dull blocks, where hardly any five bytes have occurred before:
/// such data has been packed already, or is noise, and would cost the most time of all for nothing.
class MatchScan {
public:
  /// Matches need not be looked at beyond `nice_length`.
  MatchScan(std::span<const uint8_t> data, uint32_t nice_length);

  /// Fills `repeats`, `nearest` and `queries` of `cell`, which holds its place. Cells have to come in their order.
  void Look(MatchCell &cell);

private:
  struct Latest { // places by hash: position + 1, 0 for none
    Latest(size_t size, int most_bits);
    uint32_t &Of(uint64_t hash) { return places[static_cast<size_t>(hash >> shift)]; }
    uint32_t shift;
    std::vector<uint32_t> places;
  };

  bool Awakens(uint32_t begin, uint32_t end);
  void LookAtBlock(uint32_t begin, uint32_t end, MatchCell &cell);
  bool IsTakenWhole(uint32_t position, const MatchCell &cell);
  bool LookAt(uint32_t position, MatchCell &cell);

  std::span<const uint8_t> data_;
  uint32_t size_, nice_length_;
  Repeats repeats_;
  ByteRuns runs_;
  Latest latest4_, latest5_;
  std::vector<uint32_t> recent_; // by hash: the print of the five bytes in dull blocks
  size_t repeat_ = 0;            // of the cell: those before it are over
  bool is_dull_ = false;         // the last block
};

} // namespace korb::packer
