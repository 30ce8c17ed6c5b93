#include "packer/write/MatchFinder.h"

namespace korb::packer {

namespace {

constexpr uint32_t kMaxPeriodicBack = 1u << 16;

} // namespace

MatchFinder::MatchFinder(std::span<const uint8_t> data, korb::packer::Search search)
    : data_(data), size_(static_cast<uint32_t>(data.size())), nice_length_(search.nice_length),
      scan_(data, search.nice_length), trees_(data, search) {}

void MatchFinder::Scan(uint32_t cell) {
  const uint32_t begin = cell * kCell;
  CellOf(cell).Reset(begin, begin + std::min(kCell, size_ - begin));
  scan_.Look(CellOf(cell));
}

void MatchFinder::Search(uint32_t cell, uint32_t tree_class) {
  trees_.Find(CellOf(cell), tree_class);
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

void MatchFinder::Offer(uint32_t position, Match match, std::vector<Match> &matches) {
  if (match.distance < match.length)
    AddPeriodic(position, match, matches);
  else if (match.distance >= kMinDistance && (matches.empty() || match.length > matches.back().length))
    matches.push_back(match);
}

void MatchFinder::Find(uint32_t position, std::vector<Match> &matches) {
  matches.clear();
  const MatchCell &cell = CellOf(position / kCell);
  const uint8_t *here = data_.data() + position;
  for (const std::span<const Match> found : {cell.NearestAt(position), cell.FartherAt(position)})
    for (Match match : found) {
      if (match.length == nice_length_)
        match.length = CommonLength(here - match.distance, here, match.length, size_ - position);
      Offer(position, match, matches);
    }
  if (cell.begin != repeats_of_) {
    repeats_of_ = cell.begin;
    repeat_ = 0;
  }
  while (repeat_ < cell.repeats.size() && cell.repeats[repeat_].end <= position)
    ++repeat_;
  if (repeat_ == cell.repeats.size() || cell.repeats[repeat_].begin > position)
    return;
  const MatchCell::Repeat repeat = cell.repeats[repeat_];
  if (repeat.end - position >= kMinMatch)
    Offer(position, {repeat.end - position, repeat.distance}, matches);
}

} // namespace korb::packer
