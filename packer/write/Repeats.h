// Long repeats, wherever in the input they are.
#pragma once

#include "packer/write/MatchCell.h"

namespace korb::packer {

/// Finds second occurrences of some fifty bytes and more. The content decides which places are remembered, one of some
/// sixteen: those where a hash of the last 32 bytes begins with zeros. So both occurrences have the same ones, whatever
/// lies between, and the table stays small: half a byte for each of the input's at most. Linear in time.
class Repeats {
public:
  explicit Repeats(std::span<const uint8_t> data);

  /// Fills `repeats` of `cell`. Cells have to come in their order.
  void Find(MatchCell &cell);

private:
  std::span<const uint8_t> data_;
  uint32_t hash_shift_;
  std::vector<uint32_t> places_; // by hash: the end of the latest 32 bytes, 0 for none
  uint32_t hash_ = 0;            // of the 32 bytes before the next position
  MatchCell::Repeat last_{0, 0, 0};
};

} // namespace korb::packer
