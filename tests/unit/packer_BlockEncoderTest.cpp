#include <random>
#include <string>

#include "packer/write/BlockEncoder.h"
#include "tests/support/Doctest.h"
#include "tests/support/ReferenceUnpack.h"

using korb::packer::Bytes;
using korb::packer::CompressionLevel;
using korb::packer::PackBlock;

namespace {

Bytes Repeat(const std::string &part, size_t size) {
  Bytes bytes(size);
  for (size_t i = 0; i < size; ++i)
    bytes[i] = static_cast<uint8_t>(part[i % part.size()]);
  return bytes;
}

Bytes Random(size_t size, unsigned values, unsigned seed) {
  std::mt19937 generator(seed);
  Bytes bytes(size);
  for (uint8_t &byte : bytes)
    byte = static_cast<uint8_t>(generator() % values);
  return bytes;
}

Bytes Words(size_t size) {
  const char *words[] = {"install ", "the ",        "product ", "in a ",     "directory, ",
                         "\r\n",     "and remove ", "it 0x",    "\0\0\0\0\0"};
  std::mt19937 generator(7);
  std::string text;
  while (text.size() < size)
    text += words[generator() % 9] + std::to_string(generator() % 50);
  return Bytes(text.begin(), text.begin() + static_cast<ptrdiff_t>(size));
}

bool UnpacksTo(const Bytes &packed, const Bytes &plain) {
  return korb::test::RealUnpack(std::string(packed.begin(), packed.end())) ==
         korb::test::Unpacked{true, std::string(plain.begin(), plain.end())};
}

void RoundTrip(const Bytes &plain) {
  for (const auto level : {CompressionLevel::kDefault, CompressionLevel::kBest}) {
    const Bytes packed = PackBlock(plain, level);
    CHECK(UnpacksTo(packed, plain));
    CHECK(packed.size() <= plain.size() + 8 + 8);
    CHECK(PackBlock(plain, level) == packed);
  }
}

} // namespace

TEST_CASE("whatever is packed unpacks to itself") {
  for (size_t size = 0; size < 40; ++size) {
    CAPTURE(size);
    RoundTrip(Random(size, 256, 1));
    RoundTrip(Random(size, 2, 2));
    RoundTrip(Repeat("a", size));
    RoundTrip(Repeat("abcde", size));
  }
  for (unsigned values : {1u, 2u, 3u, 5u, 20u, 256u})
    RoundTrip(Random(30000, values, values));
  RoundTrip(Words(200000));
}

TEST_CASE("periods of every length are copied in doubling steps") {
  std::string part;
  for (int period = 1; period <= 40; ++period) {
    CAPTURE(period);
    part += static_cast<char>('!' + period);
    const Bytes plain = Repeat(part, 20000);
    const Bytes packed = PackBlock(plain);
    CHECK(UnpacksTo(packed, plain));
    CHECK(packed.size() < 160);
  }
}

TEST_CASE("a repeat is found however far back and across the stretches that are worked at") {
  Bytes plain = Random(300000, 256, 3);
  const Bytes copy = plain;
  plain.insert(plain.end(), 1u << 26, 0);
  plain.insert(plain.end(), copy.begin(), copy.end());
  const Bytes packed = PackBlock(plain);
  CHECK(UnpacksTo(packed, plain));
  CHECK(packed.size() < copy.size() + 40);
}

TEST_CASE("small blocks have exactly these bytes") {
  // magic, size, then bits from the lowest of the first byte on
  CHECK(PackBlock(Bytes{}) == Bytes{0xA1, 0x2B, 0xC7, 0x9E, 0, 0, 0, 0});
  // 0, count 0 in 2 bits behind a 0, 'A'
  CHECK(PackBlock(Bytes{'A'}) == Bytes{0xA1, 0x2B, 0xC7, 0x9E, 1, 0, 0, 0, 0x10, 0x04});
  // 1 1, 8 bits, 0, count 1 in 1 bit
  CHECK(PackBlock(Bytes(4, 0)) == Bytes{0xA1, 0x2B, 0xC7, 0x9E, 4, 0, 0, 0, 0x03, 0x08});
}

TEST_CASE("every machine packs the same bytes") {
  // These change with the encoder's choices; what matters is that the native and the Windows packer agree.
  const Bytes packed = PackBlock(Words(200000));
  CHECK(packed.size() == 51587);
  CHECK(korb::packer::ChecksumOf(packed) == 1055628561);
  // The best level has no cheaper tokens than these.
  CHECK(PackBlock(Words(499), CompressionLevel::kBest).size() == 255);
  CHECK(PackBlock(Random(417, 4, 397), CompressionLevel::kBest).size() == 264);
}
