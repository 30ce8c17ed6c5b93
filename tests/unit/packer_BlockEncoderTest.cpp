#include <algorithm>
#include <random>
#include <string>

#include "packer/write/BlockEncoder.h"
#include "packer/write/MatchFinder.h"
#include "packer/write/PackEstimate.h"
#include "packer/write/TokenCode.h"
#include "tests/support/Doctest.h"
#include "tests/support/ReferenceUnpack.h"

using korb::packer::Bytes;
using korb::packer::CompressionLevel;
using korb::packer::PackBlock;
using korb::packer::PackBlockWithin;

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

// Bits of the cheapest tokens there are for the matches that are found, by trying every length of every one.
uint32_t FewestBits(const Bytes &plain) {
  using namespace korb;
  using namespace korb::packer;
  MatchFinder finder(plain, {256, 256});
  finder.Scan(0);
  for (uint32_t part = 0; part < kTreeClasses; ++part)
    finder.Search(0, part);
  std::vector<Match> matches;
  std::vector<uint32_t> bits(plain.size() + 1, UINT32_MAX);
  bits[0] = 0;
  for (uint32_t at = 0; at < plain.size(); ++at) {
    const uint32_t left = static_cast<uint32_t>(plain.size()) - at;
    const auto reach = [&](uint32_t count, uint32_t price) {
      bits[at + count] = std::min(bits[at + count], bits[at] + price);
    };
    for (uint32_t count = 1; count <= left; ++count)
      reach(count, LiteralHeadBits(count) + 8 * count);
    for (uint32_t count = 1; count <= left && plain[at + count - 1] == plain[at]; ++count)
      if (count >= kMinFill)
        reach(count, FillBits(count));
    finder.Find(at, matches);
    for (const Match &match : matches)
      for (uint32_t count = kMinMatch; count <= match.length; ++count)
        reach(count, 2 + LengthBits(count) + DistanceBits(match.distance));
  }
  return bits.back();
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

TEST_CASE("the best level finds the cheapest tokens") {
  for (unsigned seed = 1; seed <= 400; ++seed) {
    CAPTURE(seed);
    Bytes plain = seed % 3 == 0 ? Words(100 + seed) : Random(20 + seed, 2 + seed % 5, seed);
    if (seed % 2 == 0)
      plain.insert(plain.begin() + 10, seed % 90, 'A');
    CHECK(PackBlock(plain, CompressionLevel::kBest).size() == 8 + (FewestBits(plain) + 7) / 8);
  }
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

TEST_CASE("text after noise is packed as well as alone") {
  const Bytes text = Words(100000);
  Bytes plain = Random(300000, 256, 9);
  const size_t noise = plain.size();
  plain.insert(plain.end(), text.begin(), text.end());
  const Bytes packed = PackBlock(plain);
  CHECK(UnpacksTo(packed, plain));
  CHECK(packed.size() < noise + PackBlock(text).size() * 102 / 100);
}

TEST_CASE("what packing would come to is told before, and a block that passes its limit is given up") {
  const Bytes noise = Random(1500000, 256, 4), text = Words(1000000);
  Bytes plain = noise;
  plain.insert(plain.end(), text.begin(), text.end());
  plain.insert(plain.end(), noise.begin(), noise.end());
  const size_t size = PackBlock(plain).size();
  const uint64_t told = korb::packer::EstimatePackedSize(plain);
  CHECK(told > size * 9 / 10);
  CHECK(told < size * 12 / 10);
  CHECK(korb::packer::EstimatePackedSize(Bytes{'A'}) == 1);
  CHECK(PackBlockWithin(size, plain, CompressionLevel::kDefault, {}) == PackBlock(plain));
  CHECK(!PackBlockWithin(size - 1, plain, CompressionLevel::kDefault, {}));
  CHECK(!PackBlockWithin(1000, plain, CompressionLevel::kDefault, {}));
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
  CHECK(packed.size() == 51923);
  CHECK(korb::packer::ChecksumOf(packed) == 3962313877);
}
