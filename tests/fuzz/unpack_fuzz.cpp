// Any bytes as a packed block: the decoder stays within both blocks and says what the obvious decoder says.
#include <cstdlib>
#include <cstring>
#include <memory>

#include "archive/UnpackBlock.h"
#include "tests/support/ReferenceUnpack.h"

using namespace korb::test;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  // The head is made here, with a size that is soon reached: the tokens are what is hostile.
  if (size < 2 || size > 1 << 16)
    return 0;
  const int32_t out_size = data[0] | data[1] << 8;
  std::string block = {'\xA1', '\x2B', '\xC7', '\x9E'};
  block.append(reinterpret_cast<const char *>(data), 2).append(2, '\0');
  block.append(reinterpret_cast<const char *>(data) + 2, size - 2);

  const Unpacked expected = ReferenceUnpack(block);
  if (RealUnpack(block) != expected)
    abort();
  // Once more into a block without room to spare, which a sanitizer watches.
  const std::unique_ptr<uint8_t[]> packed(new uint8_t[block.size()]);
  memcpy(packed.get(), block.data(), block.size());
  const std::unique_ptr<uint8_t[]> out(new uint8_t[static_cast<size_t>(out_size)]);
  const bool good = korb::UnpackTokens(packed.get(), static_cast<int32_t>(block.size()), out.get(), out_size);
  if (good != expected.good || (good && memcmp(out.get(), expected.bytes.data(), expected.bytes.size()) != 0))
    abort();
  return 0;
}
