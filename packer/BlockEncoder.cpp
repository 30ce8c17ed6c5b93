// Every token has a fixed price in bits, so the cheapest row of tokens is a shortest path: positions are the nodes,
// tokens the edges. The path is worked out for one stretch of the input after the other, forwards: by the time that a
// position is reached, the price of getting there is final. A literal run's price isn't a sum over its bytes, since its
// head grows with the count; of all runs that could end at a position, the cheapest one is carried on.
#include "packer/BlockEncoder.h"

#include <algorithm>
#include <array>

#include "archive/Format.h"
#include "packer/BitWriter.h"
#include "packer/MatchFinder.h"
#include "packer/TokenCode.h"

namespace korb::packer {

namespace {

constexpr uint32_t kStretch =
    1u << 18; // positions whose path is worked out at once; no token but a literal run crosses
constexpr uint32_t kUnreached = UINT32_MAX;
constexpr uint32_t kLongFill = 512; // so long a fill is taken without looking for anything better

// Prices are bits. A token costs one more than it takes: the block grows by 0.03 % for it, but has 3 % fewer tokens and
// is unpacked faster.
constexpr uint32_t Price(uint32_t bits) {
  return bits + 1;
}

// The cheapest known way to a position.
struct Step {
  uint32_t price;
  uint32_t length;   // bytes that its last token produces
  uint32_t distance; // of a back reference; kLiteral, kFill for the others
};

constexpr uint32_t kLiteral = 0;
constexpr uint32_t kFill = 1;

class TokenWriter {
public:
  TokenWriter(std::span<const uint8_t> plain, Bytes &out) : plain_(plain), bits_(out) {}

  void Literals(uint32_t count) { literals_ += count; }

  void Copy(uint32_t length, uint32_t distance) {
    EndLiterals();
    bits_.Put(0b01, 2);
    Number(kLengthCode, length - kMinMatch);
    Number(kDistanceCode, distance - kMinDistance);
    position_ += length;
  }

  void Fill(uint32_t count) {
    EndLiterals();
    bits_.Put(0b11, 2);
    bits_.Put(plain_[position_], 8);
    Number(kFillCode, count - kMinFill);
    position_ += count;
  }

  void Finish() {
    EndLiterals();
    bits_.Flush();
  }

private:
  void EndLiterals() {
    if (literals_ == 0)
      return;
    bits_.Put(0, 1);
    Number(kLiteralCode, literals_ - 1);
    bits_.PutBytes(plain_.subspan(position_, literals_));
    position_ += literals_;
    literals_ = 0;
  }

  void Number(NumberCode code, uint32_t value) {
    const uint32_t ones = LeadingOnes(code, value);
    bits_.Put((1u << ones) - 1, ones + 1);
    bits_.Put(value, code.base + ones * code.step);
  }

  std::span<const uint8_t> plain_;
  BitWriter bits_;
  uint32_t position_ = 0; // of the first byte that no written token produces
  uint32_t literals_ = 0;
};

class Parser {
public:
  explicit Parser(std::span<const uint8_t> plain)
      : plain_(plain), finder_(plain), steps_(std::min<size_t>(plain.size(), kStretch) + 1) {
    for (uint32_t length = kMinMatch; length < length_bits_.size(); ++length)
      length_bits_[length] = LengthBits(length);
  }

  // Writes the cheapest tokens for [begin, end).
  void Parse(uint32_t begin, uint32_t end, TokenWriter &writer) {
    begin_ = begin;
    end_ = end;
    std::fill_n(steps_.begin(), end - begin + 1, Step{kUnreached, 0, kLiteral});
    steps_[0].price = 0;
    literal_begin_ = begin;
    literal_base_ = 0;
    for (uint32_t position = begin; position < end;)
      position = Visit(position);
    Emit(writer);
  }

private:
  Step &At(uint32_t position) { return steps_[position - begin_]; }

  void Reach(uint32_t position, uint32_t price, uint32_t length, uint32_t distance) {
    Step &step = At(position);
    if (price < step.price)
      step = {price, length, distance};
  }

  uint32_t LengthBitsOf(uint32_t length) const {
    return length < length_bits_.size() ? length_bits_[length] : LengthBits(length);
  }

  // Follows every token that can start at `position`; gives the next position worth a visit.
  uint32_t Visit(uint32_t position) {
    const uint32_t price = At(position).price;
    ReachByLiteral(position, price);
    if (const uint32_t run = RunAt(position); run >= kMinFill) {
      ReachByFill(position, price, run);
      if (run >= kLongFill)
        return Jump(position, position + run);
    }
    finder_.Find(position, end_, matches_);
    if (matches_.empty())
      return position + 1;
    const Match longest = matches_.back();
    if (longest.length >= MatchFinder::kNiceLength) {
      Reach(position + longest.length, price + Price(2 + DistanceBits(longest.distance)) + LengthBitsOf(longest.length),
            longest.length, longest.distance);
      return Jump(position + 1, position + longest.length);
    }
    uint32_t length = kMinMatch;
    for (const Match &match : matches_) {
      const uint32_t base = price + Price(2 + DistanceBits(match.distance));
      for (; length <= match.length; ++length)
        Reach(position + length, base + LengthBitsOf(length), length, match.distance);
    }
    return position + 1;
  }

  // Leaves out the positions up to `to`. The last of them are entered as places that later matches may start at; the
  // others are as well reached through the bytes that they are equal to.
  uint32_t Jump(uint32_t from, uint32_t to) {
    for (uint32_t position = std::max(from, to - std::min(to, 2 * MatchFinder::kNiceLength)); position < to; ++position)
      finder_.Enter(position);
    literal_base_ = kUnreached;
    return to;
  }

  void ReachByLiteral(uint32_t position, uint32_t price) {
    const bool open = literal_base_ != kUnreached;
    const uint32_t open_count = position + 1 - literal_begin_;
    const uint32_t open_price = open ? literal_base_ + Price(LiteralHeadBits(open_count)) + open_count * 8 : kUnreached;
    const uint32_t new_price = price + Price(LiteralHeadBits(1)) + 8;
    if (open_price > new_price) {
      literal_begin_ = position;
      literal_base_ = price;
    }
    Reach(position + 1, std::min(open_price, new_price), position + 1 - literal_begin_, kLiteral);
  }

  // Length of the run of equal bytes that starts at `position`.
  uint32_t RunAt(uint32_t position) {
    if (position < run_end_ && position + 1 < run_end_ && position >= run_begin_)
      return std::min(run_end_, end_) - position;
    run_begin_ = position;
    run_end_ = position + 1;
    while (run_end_ < end_ && plain_[run_end_] == plain_[position])
      ++run_end_;
    return run_end_ - position;
  }

  // The price rises only where the count needs one more bit, so the longest fill of each width stands for its width.
  void ReachByFill(uint32_t position, uint32_t price, uint32_t run) {
    for (uint32_t count = kMinFill + 1; count < run; count = (count - kMinFill) * 2 + 1 + kMinFill)
      Reach(position + count, price + Price(FillBits(count)), count, kFill);
    Reach(position + run, price + Price(FillBits(run)), run, kFill);
  }

  void Emit(TokenWriter &writer) {
    path_.clear();
    for (uint32_t position = end_; position > begin_; position -= path_.back().length)
      path_.push_back(At(position));
    for (auto step = path_.rbegin(); step != path_.rend(); ++step) {
      if (step->distance == kLiteral)
        writer.Literals(step->length);
      else if (step->distance == kFill)
        writer.Fill(step->length);
      else
        writer.Copy(step->length, step->distance);
    }
  }

  std::span<const uint8_t> plain_;
  MatchFinder finder_;
  std::vector<Step> steps_;
  std::vector<Step> path_;
  std::vector<Match> matches_;
  std::array<uint32_t, 4096> length_bits_{};
  uint32_t begin_ = 0, end_ = 0;
  uint32_t literal_begin_ = 0; // of the literal run that is carried on
  uint32_t literal_base_ = 0;  // price of reaching its begin; kUnreached when there is none
  uint32_t run_begin_ = 0, run_end_ = 0;
};

} // namespace

Bytes PackBlock(std::span<const uint8_t> plain, const Progress &progress) {
  Bytes out;
  PutU32(out, kPackedMagic);
  PutU32(out, static_cast<uint32_t>(plain.size()));
  const uint32_t size = static_cast<uint32_t>(plain.size());
  Parser parser(plain);
  TokenWriter writer(plain, out);
  for (uint32_t begin = 0; begin < size;) {
    const uint32_t end = begin + std::min(kStretch, size - begin);
    if (progress)
      progress("packing", static_cast<int>(uint64_t{begin} * 100 / size));
    parser.Parse(begin, end, writer);
    begin = end;
  }
  writer.Finish();
  return out;
}

} // namespace korb::packer
