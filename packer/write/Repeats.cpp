#include "packer/write/Repeats.h"

namespace korb::packer {

namespace {

constexpr uint32_t kWindow = 32; // a byte's value is shifted out of the hash after that many
constexpr uint32_t kPlaceShift = 28;

// Any numbers do that have nothing to do with each other.
constexpr std::array<uint32_t, 256> kByteValues = [] {
  std::array<uint32_t, 256> values{};
  uint32_t seed = 1;
  for (uint32_t &value : values) {
    for (int bit : {13, -17, 5})
      seed ^= bit > 0 ? seed << bit : seed >> -bit;
    value = seed * 0x9E3779B1u;
  }
  return values;
}();

} // namespace

Repeats::Repeats(std::span<const uint8_t> data) : data_(data) {
  const int bits = std::clamp(static_cast<int>(std::bit_width(data.size())) - 4, 8, 26);
  hash_shift_ = static_cast<uint32_t>(32 - bits);
  places_.assign(size_t{1} << bits, 0);
}

void Repeats::Find(MatchCell &cell) {
  const uint8_t *data = data_.data();
  const uint32_t size = static_cast<uint32_t>(data_.size());
  if (last_.end > cell.begin)
    cell.repeats.push_back({cell.begin, last_.end, last_.distance});
  for (uint32_t position = cell.begin; position < cell.end; ++position) {
    hash_ = (hash_ << 1) + kByteValues[data[position]];
    const uint32_t end = position + 1;
    if (hash_ >> kPlaceShift != 0 || end < kWindow)
      continue;
    uint32_t &place = places_[(hash_ * 2654435761u) >> hash_shift_];
    const uint32_t earlier = place;
    place = end;
    if (earlier == 0 || position < last_.end)
      continue;
    const uint32_t distance = end - earlier;
    uint32_t begin = end - kWindow;
    if (std::memcmp(data + begin, data + begin - distance, kWindow) != 0)
      continue;
    const uint32_t least = std::max(cell.begin, last_.end);
    while (begin > least && begin > distance && data[begin - 1] == data[begin - 1 - distance])
      --begin;
    last_ = {std::max(begin, least), CommonLength(data + end - distance, data + end, 0, size - end) + end, distance};
    cell.repeats.push_back(last_);
  }
}

} // namespace korb::packer
