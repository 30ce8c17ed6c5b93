#include "packer/write/PackEstimate.h"

#include "packer/write/BlockEncoder.h"
#include "packer/write/Repeats.h"

namespace korb::packer {

namespace {

constexpr size_t kPieces = 16, kMaxPiece = 1u << 20;

uint64_t RepeatedBytes(std::span<const uint8_t> plain) {
  Repeats repeats(plain);
  MatchCell cell;
  uint64_t sum = 0;
  for (size_t begin = 0; begin < plain.size(); begin += kCell) {
    cell.Reset(static_cast<uint32_t>(begin), static_cast<uint32_t>(std::min(plain.size(), begin + kCell)));
    repeats.Find(cell);
    for (const MatchCell::Repeat &repeat : cell.repeats)
      sum += std::min(repeat.end, cell.end) - repeat.begin;
  }
  return sum;
}

// Pieces from all of its parts, one behind the other.
Bytes SampleOf(std::span<const uint8_t> plain) {
  Bytes sample;
  for (size_t i = 0; i < kPieces; ++i) {
    const size_t part = plain.size() / kPieces;
    const auto piece = plain.subspan(part * i, std::min(part, kMaxPiece));
    sample.insert(sample.end(), piece.begin(), piece.end());
  }
  return sample;
}

} // namespace

uint64_t EstimatePackedSize(std::span<const uint8_t> plain) {
  const Bytes sample = SampleOf(plain);
  if (sample.empty())
    return plain.size();
  const uint64_t fresh = sample.size() - RepeatedBytes(sample); // at least what occurs for the first time
  return (plain.size() - RepeatedBytes(plain)) * PackBlock(sample).size() / fresh;
}

} // namespace korb::packer
