#include "packer/write/MatchScan.h"

namespace korb::packer {

namespace {

constexpr uint32_t kBlock = 1u << 12;                    // positions that are in the trees together, or not
constexpr uint32_t kLivelyShare = 32;                    // what part of a block's positions need a match
constexpr uint32_t kAwakeningShare = 64, kProbeStep = 2; // the same after a block without, where every second is asked
constexpr int kRecentBits = 16;
constexpr uint32_t kNearBytes = 5;
constexpr uint32_t kHashedBytes = 8; // as many are loaded for a hash, where there are

constexpr uint32_t kPlacesAhead = 20, kBytesAhead = 8; // positions: how far ahead memory is fetched

constexpr uint64_t kMixer = 0x9E3779B185EBCA87;

// The upper bits of the result depend on all of the lowest `count` bytes of `bytes`, and on nothing else.
uint64_t HashBytes(uint64_t bytes, uint32_t count) {
  return (bytes << (64 - 8 * count)) * kMixer;
}

} // namespace

MatchScan::MatchScan(std::span<const uint8_t> data, uint32_t nice_length)
    : data_(data), size_(static_cast<uint32_t>(data.size())), nice_length_(nice_length), repeats_(data), runs_(data),
      latest4_(data.size(), 18), latest5_(data.size(), 20), recent_(size_t{1} << kRecentBits) {}

MatchScan::Latest::Latest(size_t size, int most_bits) {
  const int bits = std::clamp(static_cast<int>(std::bit_width(size)), 8, most_bits);
  shift = static_cast<uint32_t>(64 - bits);
  places.assign(size_t{1} << bits, 0);
}

void MatchScan::Look(MatchCell &cell) {
  repeats_.Find(cell);
  repeat_ = 0;
  for (uint32_t begin = cell.begin; begin < cell.end; begin += kBlock) {
    const uint32_t end = std::min(cell.end, begin + kBlock);
    if (is_dull_ && !Awakens(begin, end))
      cell.nearest_begin.insert(cell.nearest_begin.end(), end - begin, static_cast<uint32_t>(cell.nearest.size()));
    else
      LookAtBlock(begin, end, cell);
  }
  cell.nearest_begin.push_back(static_cast<uint32_t>(cell.nearest.size()));
}

// Whether a block after a dull one is of another kind: by what occurred in the dull ones, and in itself.
bool MatchScan::Awakens(uint32_t begin, uint32_t end) {
  uint32_t found = 0;
  for (uint32_t position = begin; position < end && size_ - position >= kHashedBytes; position += kProbeStep) {
    const uint64_t hash = HashBytes(LoadBytes(data_.data() + position, kHashedBytes), kMinMatch);
    uint32_t &recent = recent_[static_cast<size_t>(hash >> (64 - kRecentBits))];
    const uint32_t print = static_cast<uint32_t>(hash >> 16);
    found += recent == print;
    recent = print;
  }
  return found * kProbeStep * kAwakeningShare >= end - begin;
}

void MatchScan::LookAtBlock(uint32_t begin, uint32_t end, MatchCell &cell) {
  std::array<size_t, kTreeClasses> before;
  for (uint32_t part = 0; part < kTreeClasses; ++part)
    before[part] = cell.queries[part].size();
  uint32_t found = 0, looked_at = 0;
  for (uint32_t position = begin; position < end; ++position) {
    cell.nearest_begin.push_back(static_cast<uint32_t>(cell.nearest.size()));
    if (IsTakenWhole(position, cell) || size_ - position < kMinMatch)
      continue;
    ++looked_at;
    found += LookAt(position, cell);
  }
  is_dull_ = found * kLivelyShare < looked_at;
  if (is_dull_)
    for (uint32_t part = 0; part < kTreeClasses; ++part)
      cell.queries[part].resize(before[part]);
}

bool MatchScan::IsTakenWhole(uint32_t position, const MatchCell &cell) {
  while (repeat_ < cell.repeats.size() && cell.repeats[repeat_].end <= position)
    ++repeat_;
  if (repeat_ < cell.repeats.size() && cell.repeats[repeat_].begin <= position &&
      cell.repeats[repeat_].end - position >= kTakenWhole)
    return true;
  return runs_.LengthAt(position) >= kTakenWhole;
}

// Whether a match begins at `position`. One of the least length counts: columns of numbers have hardly any longer.
bool MatchScan::LookAt(uint32_t position, MatchCell &cell) {
  const uint8_t *here = data_.data() + position;
  const uint32_t left = size_ - position, limit = std::min(left, nice_length_);
  const uint64_t bytes = LoadBytes(here, std::min(left, kHashedBytes));
  // Most of the time would be spent waiting for the memory that later positions will look at.
  if (left >= kPlacesAhead + kHashedBytes) {
    const uint64_t later = LoadBytes(here + kPlacesAhead, kHashedBytes);
    const uint64_t soon = LoadBytes(here + kBytesAhead, kHashedBytes);
    Fetch(&latest4_.Of(HashBytes(later, kMinMatch)));
    Fetch(&latest5_.Of(HashBytes(later, kNearBytes)));
    Fetch(data_.data() + latest4_.Of(HashBytes(soon, kMinMatch)));
    Fetch(data_.data() + latest5_.Of(HashBytes(soon, kNearBytes)));
  }
  const size_t first = cell.nearest.size();
  uint32_t shorter = kMinMatch - 1, longest = 0;
  const auto look = [&](uint32_t &latest) {
    const uint32_t distance = position + 1 - latest;
    const uint32_t length = latest == 0 ? 0 : CommonLength(here - distance, here, 0, limit);
    latest = position + 1;
    if (length <= shorter)
      return;
    AddMatch(cell.nearest, first, {length, distance});
    shorter = std::max(shorter, std::min(length, distance));
    longest = std::max(longest, length);
  };
  look(latest4_.Of(HashBytes(bytes, kMinMatch)));
  look(latest5_.Of(HashBytes(bytes, kNearBytes)));
  if (left >= kTreeBytes) {
    const uint64_t hash = HashBytes(bytes, kTreeBytes);
    cell.queries[static_cast<size_t>(hash >> 63)].push_back({position, static_cast<uint32_t>(hash >> 32)});
  }
  return longest > 0;
}

} // namespace korb::packer
