// Two decoders take turns. Step reads any token, wherever it stands and whatever is wrong with it; it tests every
// bound, and it alone decides that a block is bad. FastTokens reads only the common tokens, those whose code fits into
// the index of a table and longer back references, and only while both blocks are so far from their ends that no bound
// needs a test; it stops before any other token. Nearly all tokens go its way, nearly all verdicts the other.
//
// Neither keeps a buffer of bits: a peek loads the word at the byte of the next bit and shifts it, which costs less
// than keeping a buffer filled where registers are few, and finds literals as easily as codes.
#include "archive/UnpackBlock.h"

#include <cstdlib>
#include <cstring>
#include <type_traits>

#include "core/Heap.h"
#include "core/String.h"
#include "format/Block.h"

namespace korb {

namespace {

// Another width makes other code of half of this file, which is why it is fuzzed as code of 32 bits too.
using Word = std::conditional_t<(sizeof(void *) > 4), uint64_t, uint32_t>;
constexpr int32_t kWordBytes = sizeof(Word);
constexpr uint32_t kPeekBytes = kWordBytes - 1; // whole bytes that a peek gives, whatever its bit
constexpr uint32_t kPeekBits = 25;              // bits that it gives at least, with words of either size

constexpr uint32_t kLiteralBase = kLiteralCode.base, kLiteralStep = kLiteralCode.step;
constexpr uint32_t kLengthBase = kLengthCode.base, kLengthStep = kLengthCode.step;
constexpr uint32_t kDistanceBase = kDistanceCode.base, kDistanceStep = kDistanceCode.step;
constexpr uint32_t kFillBase = kFillCode.base, kFillStep = kFillCode.step;
constexpr uint32_t kReferenceBits = 2, kReferenceMask = 3, kReferenceKind = 1; // the bits that begin a back reference

// A table entry: in bits 0 to 3 the bits of the token's kind and count, kReference for a back reference, above it the
// bytes that it makes. 0 stands for a token that the table doesn't hold.
constexpr uint32_t kTableBits = 11;
constexpr uint32_t kTableSize = 1u << kTableBits;
constexpr uint32_t kCodeMask = 0xF;
constexpr uint32_t kReference = 0x10;
constexpr uint32_t kCountShift = 5;
uint16_t TokenTable[kTableSize];

// Of the tokens in the table, the longest in the packed block is a literal run of 64 with its code, and makes the most.
constexpr ptrdiff_t kMaxTokenBytes = 66;

// Distances up to 16 MiB: their ones, and their value, fit into a peek.
constexpr uint32_t kMaxFastOnes = 6;
// Lengths up to 4 KB: a token with both takes 53 bits.
constexpr uint32_t kMaxFastLengthOnes = 10;
constexpr uint32_t DistanceMask[kMaxFastOnes + 1] = {(1u << 12) - 1, (1u << 14) - 1, (1u << 16) - 1, (1u << 18) - 1,
                                                     (1u << 20) - 1, (1u << 22) - 1, (1u << 24) - 1};

Word Load(const uint8_t *at) {
  Word word;
  memcpy(&word, at, sizeof word);
  return word;
}

void Store(uint8_t *at, Word word) {
  memcpy(at, &word, sizeof word);
}

/// Number of ones below the lowest 0, of which there must be one.
uint32_t LeadingOnes(Word bits) {
  return static_cast<uint32_t>(sizeof(Word) > 4 ? __builtin_ctzll(~bits) : __builtin_ctz(static_cast<uint32_t>(~bits)));
}

[[gnu::cold]] void BuildTokenTable() {
  for (uint32_t bits = 0; bits < kTableSize; ++bits) {
    const bool literal = (bits & 1) == 0;
    const bool fill = (bits & 3) == 3;
    const uint32_t prefix = literal ? 1 : 2;
    const uint32_t ones = LeadingOnes(bits >> prefix);
    const uint32_t width = literal ? kLiteralBase + kLiteralStep * ones : kLengthBase + kLengthStep * ones;
    const uint32_t code = prefix + ones + 1 + width;
    uint32_t entry = 0;
    if (!fill && code <= kTableBits) {
      const uint32_t value = bits >> (prefix + ones + 1) & ((1u << width) - 1);
      entry = literal ? code | (value + kMinLiteral) << kCountShift
                      : code | kReference | (value + kMinMatch) << kCountShift;
    }
    TokenTable[bits] = static_cast<uint16_t>(entry);
  }
}

/// Copies `n` bytes upwards in pieces of 16, so up to 15 more than told.
void CopyForward(uint8_t *to, const uint8_t *from, uint32_t n) {
  const uint8_t *end = to + n;
  do {
#pragma GCC unroll 4
    for (int32_t i = 0; i < 16; i += kWordBytes)
      Store(to + i, Load(from + i));
    to += 16;
    from += 16;
  } while (to < end);
}

/// A read point in the bits of a packed block, and a write point in the block it unpacks to.
class Unpacker {
public:
  Unpacker(const uint8_t *block, int32_t size, uint8_t *out, int32_t out_size)
      : source_(block), source_end_(block + size), bit_(kPackedHeaderSize * 8),
        bit_count_(static_cast<uint32_t>(size) * 8), begin_(out), out_(out), end_(out + out_size) {}

  bool Run() {
    while (out_ < end_) {
      FastTokens(); // which never reaches the end
      if (!Step())
        break;
    }
    return out_ == end_;
  }

private:
  void FastTokens();
  // Cold: to be small, not fast, among all that is fast here.
  [[gnu::cold]] bool Step();
  [[gnu::cold]] bool Literals();
  [[gnu::cold]] bool Reference();
  [[gnu::cold]] bool Fill();

  /// The bits from `bit_` on, zeros after the last one.
  [[gnu::cold]] Word Peek() const;
  [[gnu::cold]] bool Number(uint32_t base, uint32_t step, uint32_t &value);
  [[gnu::cold]] uint32_t Take(uint32_t width);
  bool Enough(uint32_t n) const { return bit_count_ - bit_ >= n; }
  void Skip(uint32_t n) { bit_ = Enough(n) ? bit_ + n : bit_count_; }
  uint32_t Room() const { return static_cast<uint32_t>(end_ - out_); }

  const uint8_t *source_;
  const uint8_t *source_end_;
  uint32_t bit_;
  uint32_t bit_count_;
  uint8_t *begin_;
  uint8_t *out_;
  uint8_t *end_;
};

// On entry bit_ and out_ stand at a token, and on return at the first one that was not read.
//
// No bound is tested within the inner loop but that of a back reference too long for the table, which must leave one
// portion of the output. A token of the table takes at most kMaxTokenBytes of the source, from the
// byte of its first bit to that of the next token's, and makes no more; so with n such portions left on either side,
// n - 1 tokens leave one untouched. What a token touches beyond its own bytes lies within that one: the literal copy
// reads and writes up to 14 bytes too many, a peek reads up to 8, a back reference writes up to 15, and reads as many
// after its own source, which lies below `out`. What is written too far is written again by the tokens that follow,
// since only with them can the block end well.
void Unpacker::FastTokens() {
  const uint8_t *const source = source_;
  uint32_t bit = bit_;
  uint8_t *out = out_;
  const auto peek = [source](uint32_t at) { return Load(source + (at >> 3)) >> (at & 7); };

  for (bool known = true; known;) {
    const ptrdiff_t source_left = source_end_ - source - static_cast<ptrdiff_t>(bit >> 3);
    const ptrdiff_t out_left = end_ - out;
    ptrdiff_t tokens = (source_left < out_left ? source_left : out_left) / kMaxTokenBytes - 1;
    if (tokens <= 0)
      break;
    for (; tokens > 0; --tokens) {
      const Word bits = peek(bit);
      const uint32_t entry = TokenTable[bits & (kTableSize - 1)];
      uint32_t rest_bit = bit + (entry & kCodeMask);
      uint32_t count = entry >> kCountShift;
      Word rest;
      if ((entry & kReference) != 0) {
        rest = bits >> (entry & kCodeMask);
      } else if (entry != 0) {
        const uint8_t *from = source + (rest_bit >> 3);
        const uint32_t shift = rest_bit & 7;
        uint8_t *to = out;
        bit = rest_bit + count * 8;
        out += count;
        do { // twice at a time, since most runs end within that
          Store(to, Load(from) >> shift);
          Store(to + kPeekBytes, Load(from + kPeekBytes) >> shift);
          to += 2 * kPeekBytes;
          from += 2 * kPeekBytes;
        } while (to < out);
        continue;
      } else {
        // A back reference too long for the table. It makes more than a portion, so the portions are counted again.
        const uint32_t ones = LeadingOnes(bits >> kReferenceBits);
        known = (bits & kReferenceMask) == kReferenceKind && ones <= kMaxFastLengthOnes;
        if (!known)
          break;
        const uint32_t width = kLengthBase + kLengthStep * ones;
        const uint32_t value_bit = bit + kReferenceBits + ones + 1;
        count = static_cast<uint32_t>(peek(value_bit) & ((1u << width) - 1)) + kMinMatch;
        known = static_cast<ptrdiff_t>(count) <= end_ - out - kMaxTokenBytes;
        if (!known)
          break;
        rest_bit = value_bit + width;
        rest = peek(rest_bit) & (~Word{0} >> 1); // which ends its ones, however many come
        tokens = 1;
      }
      const uint32_t ones = LeadingOnes(rest);
      known = ones <= kMaxFastOnes;
      if (!known)
        break;
      const uint32_t value_bit = rest_bit + ones + 1;
      const Word value = sizeof(Word) > 4 ? rest >> (ones + 1) : peek(value_bit);
      const uint32_t distance = static_cast<uint32_t>(value & DistanceMask[ones]) + kMinDistance;
      known = distance <= static_cast<size_t>(out - begin_) && count <= distance;
      if (!known)
        break;
      bit = value_bit + kDistanceBase + kDistanceStep * ones;
      CopyForward(out, out - distance, count);
      out += count;
    }
  }
  bit_ = bit;
  out_ = out;
}

Word Unpacker::Peek() const {
  const uint8_t *at = source_ + (bit_ >> 3);
  Word word = 0;
  if (source_end_ - at >= kWordBytes)
    word = Load(at);
  else if (at < source_end_)
    memcpy(&word, at, static_cast<size_t>(source_end_ - at));
  return word >> (bit_ & 7);
}

/// The next `width` bits, at most 32, which are there.
uint32_t Unpacker::Take(uint32_t width) {
  const uint32_t low = width < kPeekBits ? width : kPeekBits - 1;
  uint32_t value = static_cast<uint32_t>(Peek()) & ((1u << low) - 1);
  bit_ += low;
  if (width > low) {
    value |= (static_cast<uint32_t>(Peek()) & ((1u << (width - low)) - 1)) << low;
    bit_ += width - low;
  }
  return value;
}

bool Unpacker::Number(uint32_t base, uint32_t step, uint32_t &value) {
  if (!Enough(2))
    return false;
  uint32_t width = base;
  uint32_t ones;
  do {
    ones = LeadingOnes(Peek() & ((1u << kPeekBits) - 1));
    if (width < kMaxValueBits)
      width += ones * step;
    bit_ += ones;
  } while (ones == kPeekBits);
  Skip(1); // the end of the data stands for the 0
  if (width > kMaxValueBits)
    width = kMaxValueBits;
  if (!Enough(width))
    return false;
  value = Take(width);
  return true;
}

/// One token. False at one that can't be carried out, and so for the whole block.
bool Unpacker::Step() {
  const Word bits = Peek();
  if ((bits & 1) == 0) {
    Skip(1);
    return Literals();
  }
  Skip(2);
  return (bits & 2) == 0 ? Reference() : Fill();
}

bool Unpacker::Literals() {
  uint32_t count;
  if (!Number(kLiteralBase, kLiteralStep, count) || count > Room() - kMinLiteral)
    return false;
  count += kMinLiteral;
  if ((bit_count_ - bit_) / 8 < count) {
    // The run counts though its bytes are missing, and where it would have ended the block the block is good.
    memset(out_, 0, count);
    out_ += count;
    return false;
  }
  const uint8_t *from = source_ + (bit_ >> 3);
  const uint32_t shift = bit_ & 7;
  uint8_t *const run_end = out_ + count;
  bit_ += count * 8;
  if (shift == 0) {
    memcpy(out_, from, count);
    out_ = run_end;
  }
  for (; out_ < run_end && source_end_ - from >= kWordBytes && end_ - out_ >= kWordBytes; from += kPeekBytes) {
    Store(out_, Load(from) >> shift);
    out_ += kPeekBytes;
  }
  if (out_ > run_end)
    out_ = run_end;
  for (; out_ < run_end; ++from)
    *out_++ = static_cast<uint8_t>((from[0] | from[1] << 8) >> shift);
  return true;
}

bool Unpacker::Reference() {
  uint32_t length, distance;
  if (!Number(kLengthBase, kLengthStep, length) || !Number(kDistanceBase, kDistanceStep, distance))
    return false;
  const uint64_t n = uint64_t{length} + kMinMatch;
  const uint64_t back = uint64_t{distance} + kMinDistance;
  // A copy never sees its own output: repeats of one byte are the fill's affair.
  if (back > static_cast<uint64_t>(out_ - begin_) || n > back || n > Room())
    return false;
  memcpy(out_, out_ - back, static_cast<size_t>(n));
  out_ += n;
  return true;
}

bool Unpacker::Fill() {
  const uint32_t value = Enough(8) ? Take(8) : 0;
  uint32_t count;
  if (!Number(kFillBase, kFillStep, count))
    return false;
  const uint64_t n = uint64_t{count} + kMinFill;
  if (n > Room())
    return false;
  memset(out_, static_cast<int>(value), static_cast<size_t>(n));
  out_ += n;
  return true;
}

} // namespace

bool UnpackTokens(const uint8_t *block, int32_t size, uint8_t *out, int32_t out_size) {
  if (TokenTable[0] == 0)
    BuildTokenTable();
  return Unpacker(block, size, out, out_size).Run();
}

bool UnpackBlock(uint8_t **block, int32_t *size) {
  if (!block || !*block || !size || *size < kPackedHeaderSize || *size > kMaxPackedBlock)
    return false;
  uint32_t head[2];
  memcpy(head, *block, sizeof head);
  const int32_t out_size = static_cast<int32_t>(head[1]);
  if (head[0] != kPackedMagic || out_size < 0)
    return false;
  uint8_t *out = nullptr;
  if (out_size > 0) {
    out = static_cast<uint8_t *>(heap_take(static_cast<size_t>(out_size) + STRING_SLACK));
    if (!UnpackTokens(*block, *size, out, out_size)) {
      free(out);
      return false;
    }
  }
  *block = out;
  *size = out_size;
  return true;
}

bool UnpackString(String &text) {
  uint8_t *block = reinterpret_cast<uint8_t *>(text.data());
  int32_t size = text.length();
  if (!UnpackBlock(&block, &size))
    return false;
  text.attach(reinterpret_cast<char *>(block), size);
  return true;
}

} // namespace korb
