// Every token has a fixed price in bits, so the cheapest row of tokens is a shortest path: positions are the nodes,
// tokens the edges. The path is worked out for one stretch of the input after the other, forwards: by the time that a
// position is reached, the price of getting there is final. Within a stretch the path is the best there is for the
// matches that the finder gave. Two things keep that cheap:
//
// Of all lengths of equal price, only the four greatest are followed. A token that stops earlier could take over the
// first byte of its successor (a literal, or a copy or fill above its least length), or a whole copy or fill of the
// least length, which is 4 bytes at most; neither raises the price.
//
// A literal run's price isn't a sum over its bytes, since its head grows with the count. So the places where a run may
// begin are kept, each with what reaching it cost beyond 8 bits a byte. A later one is dearer than all before it, or
// they would be dropped; and none is dearer than the cheapest by more than the head of a run, so there are never more
// than some 40.
//
// A match or fill that is longer than anything else could gain ends the stretch and is taken whole. So a second copy of
// a whole file is one token, and a periodic input is left in doubling steps, in linear time.
//
// Finding the matches takes most of the time. What is found depends on the data alone, never on the path that is
// chosen, so the search runs ahead, cell by cell, on as many threads as there are (see MatchFinder.h).
#include "packer/write/BlockEncoder.h"

#include <algorithm>
#include <array>

#include "format/Block.h"
#include "packer/Parallel.h"
#include "packer/write/MatchFinder.h"
#include "packer/write/TokenCode.h"

namespace korb::packer {

namespace {

constexpr uint32_t kUnreached = UINT32_MAX;
constexpr uint32_t kEqualLengths = 4; // of the same price: how many are followed

struct Effort {
  Search search;
  // What each token costs beyond its bits. With 1, the block grows by 0.03 %, but has 3 % fewer tokens and is unpacked
  // faster.
  uint32_t token_price;
};

constexpr Effort EffortOf(CompressionLevel level) {
  return level == CompressionLevel::kBest ? Effort{{256, 256}, 0} : Effort{{14, 48}, 1};
}

// The cheapest known way to a position.
struct Step {
  uint32_t price;
  uint32_t length;   // bytes that its last token produces
  uint32_t distance; // of a back reference; kLiteral, kFill for the others
};

constexpr uint32_t kLiteral = 0;
constexpr uint32_t kFill = 1;

// Appends bits to a byte block, the least significant first, without alignment. `Flush` must be the last call.
class BitWriter {
public:
  explicit BitWriter(Bytes &out) : out_(out) {}

  // The low `count` bits of `value`, 0 to 32; the bits above them must be 0.
  void Put(uint32_t value, uint32_t count) {
    pending_ |= static_cast<uint64_t>(value) << filled_;
    filled_ += count;
    while (filled_ >= 8) {
      out_.push_back(static_cast<uint8_t>(pending_));
      pending_ >>= 8;
      filled_ -= 8;
    }
  }

  void PutBytes(std::span<const uint8_t> bytes) {
    for (uint8_t byte : bytes)
      Put(byte, 8);
  }

  // Fills the last byte with zeros.
  void Flush() {
    if (filled_ > 0)
      Put(0, 8 - filled_);
  }

private:
  Bytes &out_;
  uint64_t pending_ = 0;
  uint32_t filled_ = 0;
};

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
    Number(kLiteralCode, literals_ - kMinLiteral);
    bits_.PutBytes(plain_.subspan(position_, literals_));
    position_ += literals_;
    literals_ = 0;
  }

  void Number(NumberCode code, uint32_t value) {
    const uint32_t ones = PrefixOnes(code, value);
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
  Parser(std::span<const uint8_t> plain, uint32_t token_price, MatchFinder &finder, TokenWriter &writer)
      : plain_(plain), size_(static_cast<uint32_t>(plain.size())), token_price_(token_price), finder_(finder),
        runs_(plain), steps_(std::min(size_, kCell) + 1), writer_(writer) {}

  // Writes the cheapest tokens up to `end`, the end of a cell whose matches have been found, from where the last call
  // has come to. Only literal runs cross the end, and what is taken whole.
  void ParseTo(uint32_t end) {
    while (position_ < end)
      position_ = ParseStretch(position_, end);
  }

private:
  // Where a literal run may begin, and what getting there costs beyond 8 bits a byte of the stretch.
  struct Opening {
    uint32_t position;
    int32_t surplus;
  };

  // Gives the position after the stretch: `end`, or where a token that is taken whole leads to.
  uint32_t ParseStretch(uint32_t begin, uint32_t end) {
    begin_ = begin;
    end_ = end;
    unreached_ = begin;
    openings_.clear();
    PrepareSteps(begin);
    At(begin).price = 0;
    for (uint32_t position = begin; position < end; ++position) {
      PrepareSteps(position + kTakenWhole);
      if (const uint32_t behind = Visit(position); behind != 0)
        return behind;
    }
    Emit(end);
    return end;
  }

  // Makes sure that `farthest`, or else the end, can be reached. The whole stretch at once would be too much work for
  // one that is soon left.
  void PrepareSteps(uint32_t farthest) {
    if (farthest < unreached_ || unreached_ > end_)
      return;
    const uint32_t until = std::min(end_, farthest + 8 * kTakenWhole) + 1;
    std::fill(steps_.data() + (unreached_ - begin_), steps_.data() + (until - begin_), Step{kUnreached, 0, kLiteral});
    unreached_ = until;
  }

  Step &At(uint32_t position) { return steps_[position - begin_]; }

  void Reach(uint32_t position, uint32_t price, uint32_t length, uint32_t distance) {
    Step &step = At(position);
    if (price < step.price)
      step = {price, length, distance};
  }

  uint32_t Price(uint32_t bits) const { return bits + token_price_; }

  // Follows every token that can start at `position`. One that is to be taken whole is written, with all that leads
  // there; then the result is the position after it, else 0.
  uint32_t Visit(uint32_t position) {
    const uint32_t price = At(position).price;
    ReachByLiterals(position, price);
    if (const uint32_t run = runs_.LengthAt(position); run >= kMinFill) {
      if (run >= kTakenWhole) {
        Emit(position);
        writer_.Fill(run);
        return position + run;
      }
      ReachByFill(position, price, run);
    }
    finder_.Find(position, matches_);
    if (matches_.empty())
      return 0;
    if (const Match longest = matches_.back(); longest.length >= kTakenWhole) {
      Emit(position);
      writer_.Copy(longest.length, longest.distance);
      return position + longest.length;
    }
    uint32_t shorter = kMinMatch - 1;
    for (const Match &match : matches_) {
      const uint32_t length = std::min(match.length, end_ - position);
      if (length > shorter)
        ReachByCopy(position, price + Price(2 + DistanceBits(match.distance)), shorter, {length, match.distance});
      shorter = std::max(shorter, length);
    }
    return 0;
  }

  void ReachByLiterals(uint32_t position, uint32_t price) {
    const int32_t plain_bits = static_cast<int32_t>((position - begin_) * 8);
    const int32_t surplus = static_cast<int32_t>(price) - plain_bits;
    while (!openings_.empty() && openings_.back().surplus >= surplus)
      openings_.pop_back();
    openings_.push_back({position, surplus});
    const uint32_t next = position + 1;
    int32_t best = INT32_MAX;
    uint32_t length = 0;
    for (auto opening = openings_.rbegin(); opening != openings_.rend(); ++opening) {
      const int32_t head = static_cast<int32_t>(Price(LiteralHeadBits(next - opening->position)));
      if (openings_.front().surplus + head >= best)
        break;
      if (opening->surplus + head < best) {
        best = opening->surplus + head;
        length = next - opening->position;
      }
    }
    Reach(next, static_cast<uint32_t>(best + plain_bits + 8), length, kLiteral);
  }

  // Lengths above `shorter`; what is no longer has a cheaper copy.
  void ReachByCopy(uint32_t position, uint32_t price, uint32_t shorter, Match match) {
    for (uint32_t length = match.length; length > shorter;) {
      const uint32_t bits = LengthBits(length);
      const uint32_t narrower = NarrowerNumbers(kLengthCode, length - kMinMatch);
      const uint32_t least = std::max(shorter, narrower == 0 ? 0 : narrower + kMinMatch - 1);
      for (uint32_t followed = 0; followed < kEqualLengths && length > least; ++followed, --length)
        Reach(position + length, price + bits, length, match.distance);
      length = least;
    }
  }

  void ReachByFill(uint32_t position, uint32_t price, uint32_t run) {
    for (uint32_t count = std::min(run, end_ - position); count >= kMinFill;) {
      const uint32_t bits = FillBits(count);
      const uint32_t least = NarrowerNumbers(kFillCode, count - kMinFill) + kMinFill - 1;
      for (uint32_t followed = 0; followed < kEqualLengths && count > least; ++followed, --count)
        Reach(position + count, price + Price(bits), count, kFill);
      count = least;
    }
  }

  // Writes the cheapest way from the begin of the stretch to `end`.
  void Emit(uint32_t end) {
    path_.clear();
    for (uint32_t position = end; position > begin_; position -= path_.back().length)
      path_.push_back(At(position));
    for (auto step = path_.rbegin(); step != path_.rend(); ++step) {
      if (step->distance == kLiteral)
        writer_.Literals(step->length);
      else if (step->distance == kFill)
        writer_.Fill(step->length);
      else
        writer_.Copy(step->length, step->distance);
    }
  }

  std::span<const uint8_t> plain_;
  uint32_t size_;
  uint32_t token_price_;
  MatchFinder &finder_;
  ByteRuns runs_;
  std::vector<Step> steps_;
  std::vector<Step> path_;
  std::vector<Match> matches_;
  std::vector<Opening> openings_; // positions and surplus rise
  TokenWriter &writer_;
  uint32_t position_ = 0;        // of the first byte that no token has been chosen for
  uint32_t begin_ = 0, end_ = 0; // of the stretch
  uint32_t unreached_ = 0;       // the first position whose step is still another stretch's
};

} // namespace

Bytes PackBlock(std::span<const uint8_t> plain, CompressionLevel level, const ProgressCallback &progress) {
  return *PackBlockWithin(SIZE_MAX, plain, level, progress);
}

std::optional<Bytes> PackBlockWithin(size_t limit, std::span<const uint8_t> plain, CompressionLevel level,
                                     const ProgressCallback &progress) {
  Bytes out;
  out.reserve(std::min(plain.size(), limit) + 2 * kCell); // what is never filled takes no memory
  PutU32(out, kPackedMagic);
  PutU32(out, static_cast<uint32_t>(plain.size()));
  const Effort effort = EffortOf(level);
  TokenWriter writer(plain, out);
  MatchFinder finder(plain, effort.search);
  Parser parser(plain, effort.token_price, finder, writer);
  const uint32_t size = static_cast<uint32_t>(plain.size()), cells = size / kCell + (size % kCell != 0);
  std::vector<Task> tasks;
  for (uint32_t round = 0; round < cells + 2; ++round) {
    if (progress && round > 1)
      progress("packing", static_cast<int>((round - 2) * 100 / cells));
    tasks.clear();
    if (round >= 1 && round - 1 < cells)
      for (uint32_t part = 0; part < kTreeClasses; ++part)
        tasks.push_back([&, part] { finder.Search(round - 1, part); });
    if (round >= 2)
      tasks.push_back([&] { parser.ParseTo(std::min(size, (round - 2) * kCell + kCell)); });
    if (round < cells)
      tasks.push_back([&] { finder.Scan(round); });
    RunTogether(tasks);
    if (out.size() > limit)
      return std::nullopt;
  }
  writer.Finish();
  if (out.size() > limit)
    return std::nullopt;
  return out;
}

} // namespace korb::packer
