#include "packer/write/MatchFinder.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <new>

#include "packer/write/TokenCode.h"

namespace korb::packer {

namespace {

constexpr uint32_t kMaxPeriodicBack = 1u << 16;

uint32_t LoadU32(const uint8_t *bytes) {
  uint32_t value;
  std::memcpy(&value, bytes, sizeof value);
  return value;
}

// How far `a` and `b` agree from `length` on, at most up to `limit`.
uint32_t CommonLength(const uint8_t *a, const uint8_t *b, uint32_t length, uint32_t limit) {
  if constexpr (std::endian::native == std::endian::little) {
    while (length + 8 <= limit) {
      uint64_t x, y;
      std::memcpy(&x, a + length, sizeof x);
      std::memcpy(&y, b + length, sizeof y);
      if (x != y)
        return length + static_cast<uint32_t>(std::countr_zero(x ^ y)) / 8;
      length += 8;
    }
  }
  while (length < limit && a[length] == b[length])
    ++length;
  return length;
}

} // namespace

MatchFinder::MatchFinder(std::span<const uint8_t> data, Search search) : data_(data), search_(search) {
  const uint32_t size = static_cast<uint32_t>(data.size());
  const int size_bits = std::bit_width(size);
  const int hash_bits = std::clamp(size_bits, 8, 24);
  hash_shift_ = static_cast<uint32_t>(32 - hash_bits);
  heads_.assign(size_t{1} << hash_bits, 0);
  if (size_t{2} * size > children_.max_size()) // to 32 bits, the same as memory that isn't there
    throw std::bad_alloc();
  children_.resize(size_t{2} * size);
}

void MatchFinder::Descend(uint32_t position, uint32_t limit, std::vector<Match> *matches) {
  const uint8_t *data = data_.data();
  const uint8_t *here = data + position;
  uint32_t &head = heads_[(LoadU32(here) * 2654435761u) >> hash_shift_];
  uint32_t candidate = head;
  head = position + 1;

  uint32_t *less = &children_[size_t{2} * position];
  uint32_t *greater = less + 1;
  uint32_t less_length = 0, greater_length = 0, best = kMinMatch - 1;
  for (int depth = search_.depth; candidate != 0 && depth > 0; --depth) {
    const uint32_t earlier = candidate - 1;
    const uint32_t distance = position - earlier;
    uint32_t *pair = &children_[size_t{2} * earlier];
    const uint32_t length = CommonLength(data + earlier, here, std::min(less_length, greater_length), limit);
    // What counts is what can be copied, so an overlapping match doesn't hide a shorter one from farther away.
    if (matches && length > best) {
      best = std::max(best, std::min(length, distance));
      matches->push_back({length, distance});
    }
    if (length == limit) {
      *less = pair[0];
      *greater = pair[1];
      return;
    }
    if (data[earlier + length] < here[length]) {
      *less = candidate;
      less = pair + 1;
      candidate = *less;
      less_length = length;
    } else {
      *greater = candidate;
      greater = pair;
      candidate = *greater;
      greater_length = length;
    }
  }
  *less = 0;
  *greater = 0;
}

uint32_t MatchFinder::ExtendMatch(uint32_t position, uint32_t distance, uint32_t length, uint32_t end) const {
  return CommonLength(data_.data() + position - distance, data_.data() + position, length, end - position);
}

// How many bytes before `position` go on with `period`, as far as that can be of use.
uint32_t MatchFinder::PeriodicBack(uint32_t position, uint32_t period) {
  if (period != period_ || position > periodic_seen_ || position < periodic_begin_) {
    uint32_t begin = position;
    while (begin > period && position - begin < kMaxPeriodicBack && data_[begin - 1] == data_[begin - 1 - period])
      --begin;
    period_ = period;
    periodic_begin_ = begin;
  }
  return position - periodic_begin_;
}

// A match that overlaps itself shows a period. It can't be copied as it stands, but any multiple of the period that
// lies inside the periodic stretch gives the same bytes from farther away.
void MatchFinder::AddPeriodic(uint32_t position, Match overlapping, std::vector<Match> &matches) {
  const uint32_t period = overlapping.distance;
  const uint32_t farthest = period + PeriodicBack(position, period);
  periodic_seen_ = position + overlapping.length;
  const auto add = [&](uint32_t distance) {
    const uint32_t length = std::min(overlapping.length, distance);
    if (distance >= kMinDistance && length >= kMinMatch && (matches.empty() || length > matches.back().length))
      matches.push_back({length, distance});
  };
  uint32_t distance = period;
  for (; distance < overlapping.length && distance <= farthest / 2; distance *= 2)
    add(distance);
  add(distance);
  add(std::min(farthest, overlapping.length + period - 1) / period * period);
}

void MatchFinder::Find(uint32_t position, uint32_t end, std::vector<Match> &matches) {
  matches.clear();
  const uint32_t left = static_cast<uint32_t>(data_.size()) - position;
  if (left < kMinMatch)
    return;
  raw_.clear();
  const uint32_t limit = std::min(left, search_.nice_length);
  Descend(position, limit, &raw_);
  for (Match match : raw_) {
    match.length = match.length == limit
                       ? ExtendMatch(position, match.distance, limit, static_cast<uint32_t>(data_.size()))
                       : match.length;
    match.length = std::min(match.length, end - position);
    if (match.length < kMinMatch)
      continue;
    if (match.distance < match.length)
      AddPeriodic(position, match, matches);
    else if (match.distance >= kMinDistance && (matches.empty() || match.length > matches.back().length))
      matches.push_back(match);
  }
}

void MatchFinder::Enter(uint32_t position) {
  const uint32_t left = static_cast<uint32_t>(data_.size()) - position;
  if (left >= kMinMatch)
    Descend(position, std::min(left, search_.nice_length), nullptr);
}

} // namespace korb::packer
