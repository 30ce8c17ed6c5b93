#include "tests/support/ReferenceUnpack.h"

#include <cstdlib>
#include <cstring>
#include <memory>
#include <stdexcept>

#include "archive/BitReader.h"
#include "archive/UnpackBlock.h"
#include "core/MemoryStream.h"

namespace korb::test {

namespace {

/// One token. False leaves the loop, whatever has been written.
bool Token(BitReader &bits, MemoryStream &out, int64_t size) {
  const int64_t room = size - out.Tell();
  uint32_t n = 0;
  if (!bits.ReadBit()) {
    if (!bits.ReadVarBits(n, 2, 2) || int64_t{n} + 1 > room)
      return false;
    const int64_t count = int64_t{n} + 1;
    uint8_t *to = out.Reserve(static_cast<int32_t>(count));
    return count < INT32_MAX / 8 && bits.ReadBits(to, static_cast<int32_t>(count * 8));
  }
  if (!bits.ReadBit()) {
    uint32_t back = 0;
    if (!bits.ReadVarBits(n, 2, 1) || !bits.ReadVarBits(back, 12, 2))
      return false;
    const int64_t length = int64_t{n} + 4, from = out.Tell() - (int64_t{back} + 4);
    return length <= room && from >= 0 && out.CopyWithin(static_cast<int32_t>(from), static_cast<int32_t>(length));
  }
  uint8_t value = 0;
  bits.ReadBits(&value, 8);
  if (!bits.ReadVarBits(n, 1, 1) || int64_t{n} + 3 > room)
    return false;
  return out.WriteFill(value, static_cast<int32_t>(n + 3));
}

} // namespace

Unpacked ReferenceUnpack(const std::string &block) {
  uint32_t head[2];
  if (block.size() < sizeof head)
    return {};
  memcpy(head, block.data(), sizeof head);
  const int32_t size = static_cast<int32_t>(head[1]);
  if (head[0] != 0x9EC72BA1 || size < 0)
    return {};
  BitReader bits;
  AttachedBlock attached(bits, reinterpret_cast<const uint8_t *>(block.data()), static_cast<int32_t>(block.size()));
  bits.SetBitPos(64);
  MemoryStream out;
  out.set_length(size);
  if (size > 0)
    memset(out.data(), 0, static_cast<size_t>(size));
  while (out.Tell() < size && Token(bits, out, size)) {
  }
  if (out.Tell() != size)
    return {};
  return {true, std::string(out.c_str(), static_cast<size_t>(out.length()))};
}

Unpacked RealUnpack(const std::string &block) {
  // In a block of its own, so that a sanitizer sees a read one byte behind it.
  const std::unique_ptr<uint8_t[]> packed(new uint8_t[block.size()]);
  memcpy(packed.get(), block.data(), block.size());
  uint8_t *bytes = packed.get();
  int32_t size = static_cast<int32_t>(block.size());
  const bool good = UnpackBlock(&bytes, &size);
  if (memcmp(packed.get(), block.data(), block.size()) != 0)
    throw std::logic_error("the packed block was written to");
  if (!good) {
    if (bytes != packed.get() || size != static_cast<int32_t>(block.size()))
      throw std::logic_error("a failure changed its arguments");
    return {};
  }
  Unpacked result{true, std::string(reinterpret_cast<const char *>(bytes), static_cast<size_t>(size))};
  free(bytes);
  return result;
}

} // namespace korb::test
