#include "packer/write/MatchTrees.h"

#include <new>

namespace korb::packer {

namespace {

constexpr size_t kHeadAhead = 16, kNodeAhead = 8; // queries: how far ahead memory is fetched

} // namespace

MatchTrees::MatchTrees(std::span<const uint8_t> data, Search search) : data_(data), search_(search) {
  const int hash_bits = std::clamp(static_cast<int>(std::bit_width(data.size())), 8, 24);
  hash_shift_ = static_cast<uint32_t>(32 - hash_bits);
  heads_.assign(size_t{1} << hash_bits, 0);
  children_ = std::make_unique_for_overwrite<uint32_t[]>(2 * data.size());
}

void MatchTrees::Find(MatchCell &cell, uint32_t tree_class) {
  const std::vector<MatchCell::Query> &queries = cell.queries[tree_class];
  std::vector<Match> &matches = cell.farther[tree_class];
  for (size_t i = 0; i < queries.size(); ++i) {
    if (i + kHeadAhead < queries.size())
      Fetch(&HeadOf(queries[i + kHeadAhead].hash));
    if (i + kNodeAhead < queries.size())
      if (const uint32_t head = HeadOf(queries[i + kNodeAhead].hash); head != 0) {
        Fetch(&children_[size_t{2} * (head - 1)]);
        Fetch(&data_[head - 1]);
      }
    const uint32_t position = queries[i].position;
    uint32_t shorter = kMinMatch - 1;
    for (const Match &match : cell.NearestAt(position))
      shorter = std::max(shorter, std::min(match.length, match.distance));
    const size_t first = matches.size();
    Descend(queries[i], shorter, matches);
    cell.farther_of[position - cell.begin] = {
        static_cast<uint32_t>(first), static_cast<uint16_t>(matches.size() - first), static_cast<uint16_t>(tree_class)};
  }
}

// Appends what is longer than `shorter`.
void MatchTrees::Descend(MatchCell::Query query, uint32_t shorter, std::vector<Match> &matches) {
  const uint8_t *data = data_.data();
  const uint32_t position = query.position;
  const uint8_t *here = data + position;
  const uint32_t limit = std::min(static_cast<uint32_t>(data_.size()) - position, search_.nice_length);
  uint32_t &head = HeadOf(query.hash);
  uint32_t candidate = head;
  head = position + 1;

  const size_t first = matches.size();
  uint32_t *less = &children_[size_t{2} * position];
  uint32_t *greater = less + 1;
  uint32_t less_length = 0, greater_length = 0;
  for (int depth = search_.depth; candidate != 0 && depth > 0; --depth) {
    const uint32_t earlier = candidate - 1;
    const uint32_t distance = position - earlier;
    uint32_t *pair = &children_[size_t{2} * earlier];
    for (uint32_t next : {pair[0], pair[1]}) // one of them is the next candidate
      if (next != 0) {
        Fetch(data + next);
        Fetch(&children_[size_t{2} * (next - 1)]);
      }
    const uint32_t length = CommonLength(data + earlier, here, std::min(less_length, greater_length), limit);
    // What counts is what can be copied, so an overlapping match doesn't hide a shorter one from farther away.
    if (length > shorter) {
      shorter = std::max(shorter, std::min(length, distance));
      AddMatch(matches, first, {length, distance});
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

} // namespace korb::packer
