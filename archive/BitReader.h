// Reads a block bit by bit: the plain way, which the reference decoder of the tests goes. The program's own decoder,
// UnpackBlock.cpp, peeks at whole words instead and leaves this to whoever reads bits without haste.
#pragma once

#include "core/String.h"

namespace korb {

/// A place in a row of bits: bit `p` of the block is bit `p & 7` of byte `p >> 3`, counted from the least significant,
/// and the first bit that is read is the lowest bit of a value. Reads never leave the block.
///
/// The block is the String's data while it is attached, but belongs to the caller: it must be detached before the
/// reader ends, on every road, or it would be freed. AttachedBlock below sees to that. No String operation may touch
/// the reader meanwhile, since the block has neither a terminator nor room for one.
class BitReader : public String {
public:
  BitReader() = default;
  BitReader(const BitReader &) = delete;
  BitReader &operator=(const BitReader &) = delete;

  /// Stands at bit 0 of `size` bytes at `block`, 0 to 0x0FFFFFFF of them: bits are counted in 32 signed bits.
  void AttachBlock(const uint8_t *block, int32_t size);
  /// Gives the block up.
  void DetachBlock();

  /// False when fewer than `n` bits are left, or the place is negative.
  bool EnoughBits(int32_t n) const { return bit_pos_ >= 0 && bit_pos_ <= int64_t{bit_count_} - n; }
  /// Unchecked: a place outside the block only makes every read fail.
  void SetBitPos(int32_t position) { bit_pos_ = position; }
  int32_t bit_pos() const { return bit_pos_; }

  /// The next bit; after the last one 0, and the place stays.
  bool ReadBit();
  /// Reads `n` bits to the lowest bits at `destination`, byte by byte; its other bits keep their value. False, and
  /// nothing moves, for a null destination, an `n` below 1 or too few bits.
  bool ReadBits(void *destination, int32_t n);
  /// Reads a number of which the width comes first: `base` bits, and `step` more for each 1 before a 0, at most
  /// 32. The end of the data stands for that 0. False when the number isn't there, and for a `base` outside 0 to 64 or
  /// a `step` outside 1 to 16; the place may have moved then.
  bool ReadVarBits(uint32_t &value, int32_t base, int32_t step);

private:
  int32_t bit_count_ = 0;
  int32_t bit_pos_ = 0;
};

/// Lends a block to a reader for the length of a scope.
class AttachedBlock {
public:
  AttachedBlock(BitReader &reader, const uint8_t *block, int32_t size) : reader_(reader) {
    reader.AttachBlock(block, size);
  }
  ~AttachedBlock() { reader_.DetachBlock(); }
  AttachedBlock(const AttachedBlock &) = delete;
  AttachedBlock &operator=(const AttachedBlock &) = delete;

private:
  BitReader &reader_;
};

} // namespace korb
