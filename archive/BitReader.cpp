#include "archive/BitReader.h"

#include "core/Arithmetic.h"

namespace korb {

void BitReader::AttachBlock(const uint8_t *block, int32_t size) {
  DetachBlock(); // never freed here: a block that was attached before isn't ours
  data_ = reinterpret_cast<char *>(const_cast<uint8_t *>(block)); // only read
  length_ = size;
  capacity_ = size;
  bit_pos_ = 0;
  bit_count_ = size * 8;
}

void BitReader::DetachBlock() {
  detach();
  bit_count_ = 0;
}

bool BitReader::ReadBit() {
  if (!EnoughBits(1))
    return false;
  const int byte = static_cast<uint8_t>(data_[bit_pos_ >> 3]);
  return (byte >> (bit_pos_++ & 7) & 1) != 0;
}

bool BitReader::ReadBits(void *destination, int32_t n) {
  if (!destination || n <= 0 || !EnoughBits(n))
    return false;
  CopyBits(destination, 0, data_, bit_pos_, n);
  bit_pos_ += n;
  return true;
}

bool BitReader::ReadVarBits(uint32_t &value, int32_t base, int32_t step) {
  if (!EnoughBits(2) || base < 0 || base > 64 || step < 1 || step > 16)
    return false;
  int32_t width = base;
  while (ReadBit())
    if (width < 32)
      width += step;
  value = 0;
  return ReadBits(&value, width < 32 ? width : 32);
}

} // namespace korb
