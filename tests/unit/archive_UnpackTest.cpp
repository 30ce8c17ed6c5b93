// The block decoder: every kind of token, every way to be wrong, and always the same answer as the obvious decoder.
#include <algorithm>
#include <cstring>
#include <random>

#include "archive/BitReader.h"
#include "archive/Scramble.h"
#include "archive/UnpackBlock.h"
#include "tests/support/ReferenceUnpack.h"
#include "tests/support/Testing.h"
#include "tests/support/TokenText.h"

namespace {

/// A random block: mostly tokens that can be carried out, in all widths, some that can't.
std::string RandomBlock(std::mt19937 &random, int tokens) {
  auto below = [&random](uint32_t n) { return static_cast<uint32_t>(random() % n); };
  auto number = [&](uint32_t value, uint32_t base, uint32_t step) {
    uint32_t width = base;
    std::string ones;
    while (width < 32 && (value >> width != 0 || below(16) == 0)) {
      width += step;
      ones += '1';
    }
    return ones + "0<" + std::to_string(value) + ":" + std::to_string(width < 32 ? width : 32) + ">";
  };
  std::string text;
  uint32_t size = 0;
  for (int i = 0; i < tokens; ++i) {
    const uint32_t kind = below(8);
    if (kind < 3 || size < 4) {
      const uint32_t count = 1 + below(below(8) == 0 ? 200 : 6);
      text += "0" + number(count - 1, 2, 2);
      for (uint32_t k = 0; k < count; ++k)
        text += "<" + std::to_string(below(256)) + ":8>";
      size += count;
    } else if (kind < 7) {
      const uint32_t distance = 4 + below(below(3) == 0 ? size - 3 : std::min(size - 3, 40u)) + (below(400) == 0);
      const uint32_t length = 4 + below(std::min(distance - 3, below(8) == 0 ? 500u : 12u)) + (below(400) == 0);
      text += "10" + number(length - 4, 2, 1) + number(distance - 4, 12, 2);
      size += length;
    } else {
      const uint32_t count = 3 + below(below(8) == 0 ? 1000 : 20);
      text += "11<" + std::to_string(below(256)) + ":8>" + number(count - 3, 1, 1);
      size += count;
    }
  }
  return BlockOf(text, size + (below(20) == 0 ? below(3) - 1 : 0), below(2) ? '1' : '0');
}

} // namespace

TEST_CASE("well-formed streams give their bytes") {
  struct Row {
    const char *what;
    std::string bits;
    std::string bytes;
  };
  const std::string eight = "0 10 <7:4> [ABCDEFGH] ";
  const std::vector<Row> rows = {
      {"one literal", "0 0 00 [A]", "A"},
      {"bits behind the last token", "0 0 00 [A] 1111111111 0000", "A"},
      {"a copy from the middle", eight + "10 0 <1:2> 0 <2:12>", "ABCDEFGHCDEFG"},
      {"the least fill", "11 [z] 0 0", "zzz"},
      {"a number of 32 bits", "0 1111 1111 1111 111 0 <1:32> [AB]", "AB"},
      {"a wider number takes 32 bits", "0 1111 1111 1111 1111 1111 1111 1111 1111 11 0 <1:32> [AB]", "AB"},
      {"the farthest distance code", "0 0 <3:2> [ABCD] 10 0 00 1111 1111 110 <0:32>", "ABCDABCD"},
      {"a break in the last run: zeros", "0 0 <1:2> [A]", std::string(2, '\0')},
      {"a missing prefix is a literal, and its code the padding", "0 0 <2:2> [ABC] 0 0", std::string("ABC\0", 4)},
      {"a fill without the bits of its value: zeros", "11", std::string(3, '\0')},
      {"nothing at all", "", ""},
  };
  for (const Row &row : rows) {
    CAPTURE(row.what);
    const std::string block = BlockOf(row.bits, static_cast<uint32_t>(row.bytes.size()));
    CHECK(RealUnpack(block) == Unpacked{true, row.bytes});
    CHECK(ReferenceUnpack(block) == Unpacked{true, row.bytes});
  }
}

TEST_CASE("malformed blocks are refused") {
  struct Row {
    const char *what;
    std::string block;
  };
  const std::string four = "0 0 <3:2> [ABCD] ";
  const std::string good = BlockOf("0 0 00 [A]", 1);
  const std::vector<Row> rows = {
      {"no bytes", ""},
      {"the magic alone", good.substr(0, 4)},
      {"a cut size, though it would be 0", BlockOf("", 0).substr(0, 7)},
      {"another magic", "X" + good.substr(1)},
      {"a negative size", BlockOf("0 0 00 [A]", 0x80000000u)},
      {"no tokens", BlockOf("", 1)},
      {"tokens for fewer bytes", BlockOf(four, 300)},
      {"a run past the size", BlockOf(four, 3)},
      {"a fill past the size", BlockOf("11 [z] 0 0", 2)},
      {"a copy past the size", BlockOf(four + "10 0 00 0 <0:12>", 7)},
      {"a copy before the first byte", BlockOf("0 0 <2:2> [ABC] 10 0 00 0 <0:12>", 7)},
      {"a copy that sees its own output", BlockOf(four + "0 0 00 [E] 10 0 <1:2> 0 <0:12>", 10)},
      {"a copy one byte too far back", BlockOf(four + "10 0 00 0 <1:12>", 8)},
      {"a length past 32 bits", BlockOf(four + "10" + std::string(30, '1') + "0 <4294967295:32> 0 <0:12>", 7)},
      {"a distance past 32 bits", BlockOf(four + "10 0 00" + std::string(10, '1') + "0 <4294967295:32>", 8)},
      {"a run past 32 bits", BlockOf("0" + std::string(15, '1') + "0 <4294967295:32>", 1)},
      {"a fill past 32 bits", BlockOf("11 [z]" + std::string(31, '1') + "0 <4294967295:32>", 3)},
      {"only ones", BlockOf(std::string(4000, '1'), 50, '1')},
      {"a break in a run before the end", BlockOf("0 10 <5:4> [A]", 9)},
      {"a break in a fill's value", BlockOf("0 10 <12:4> [ABCDEFGHIJKLM] 11 000", 16).substr(0, 22)},
  };
  for (const Row &row : rows) {
    CAPTURE(row.what);
    CHECK_FALSE(RealUnpack(row.block).good);
    CHECK_FALSE(ReferenceUnpack(row.block).good);
  }
}

TEST_CASE("a block that is not there, or too large to count its bits, is refused") {
  const std::string good = BlockOf("0 0 00 [A]", 1);
  int32_t size = 9;
  uint8_t *none = nullptr;
  CHECK_FALSE(UnpackBlock(nullptr, &size));
  CHECK_FALSE(UnpackBlock(&none, &size));
  uint8_t *block = reinterpret_cast<uint8_t *>(const_cast<char *>(good.data()));
  CHECK_FALSE(UnpackBlock(&block, nullptr));
  size = 0x10000000; // bits are counted in 32 signed bits; nothing behind the head is looked at
  CHECK_FALSE(UnpackBlock(&block, &size));
}

TEST_CASE("both decoders agree on any stream, cut off anywhere, damaged anywhere") {
  std::mt19937 random(20);
  int good = 0;
  for (int round = 0; round < 100; ++round) {
    CAPTURE(round);
    const std::string block = RandomBlock(random, round < 20 ? 3 : round < 95 ? 120 : 2000);
    const Unpacked expected = ReferenceUnpack(block);
    good += expected.good;
    REQUIRE(RealUnpack(block) == expected);
    for (int change = 0; change < 40; ++change) {
      std::string bad = block;
      if (bad.size() > 8 && change < 25)
        bad[8 + random() % (bad.size() - 8)] ^= static_cast<char>(1 << random() % 8);
      if (change >= 20)
        bad.resize(round < 20 ? bad.size() * static_cast<size_t>(change - 20) / 20 : random() % (bad.size() + 1));
      CAPTURE(change);
      REQUIRE(RealUnpack(bad) == ReferenceUnpack(bad));
    }
  }
  CHECK(good > 60); // or the rows above compare nothing but refusals
}

TEST_CASE("the output ends where it is told to, wherever the tokens would go") {
  constexpr size_t kGuard = 64;
  std::mt19937 random(3);
  for (int round = 0; round < 60; ++round) {
    const std::string block = RandomBlock(random, 5 + round * 4);
    const Unpacked whole = ReferenceUnpack(block);
    const int32_t size = static_cast<int32_t>(whole.bytes.size());
    for (int32_t room : {size, size - 1, size + 1, size / 2, 0}) {
      if (room < 0)
        continue;
      CAPTURE(round);
      CAPTURE(room);
      std::vector<uint8_t> out(static_cast<size_t>(room) + 2 * kGuard, 0xA5);
      const bool good = UnpackTokens(reinterpret_cast<const uint8_t *>(block.data()),
                                     static_cast<int32_t>(block.size()), out.data() + kGuard, room);
      if (whole.good && room == size)
        CHECK(good);
      const std::vector<uint8_t> guard(kGuard, 0xA5);
      CHECK(memcmp(out.data(), guard.data(), kGuard) == 0);
      CHECK(memcmp(out.data() + kGuard + room, guard.data(), kGuard) == 0);
    }
  }
}

TEST_CASE("a text is replaced by what it unpacks to, or left alone") {
  const std::string block = BlockOf("0 10 <4:4> [ABCDE]", 5);
  String text(block.data(), static_cast<int32_t>(block.size()));
  CHECK(UnpackString(text));
  CHECK(Std(text) == "ABCDE");
  CHECK_FALSE(UnpackString(text));
  CHECK(Std(text) == "ABCDE");
}

TEST_CASE("scrambling touches whole dwords, then each byte of the rest with the key's byte of its rank") {
  for (const auto &[plain, scrambled] :
       std::vector<std::pair<std::string, std::string>>{{"", ""}, {"abcdefg", "\x65\x51\x4A\x40\x61\x55\x4E"}}) {
    String text(plain.data(), static_cast<int32_t>(plain.size()));
    ScrambleBlock(text.data(), text.length(), 0x24293304);
    CHECK(Std(text) == scrambled);
    ScrambleBlock(text.data(), text.length(), 0);
    ScrambleBlock(text.data(), text.length(), 0x24293304);
    CHECK(Std(text) == plain);
  }
}

namespace {

/// A reader of the 16 bits 00101101 10000000, written from the first to the last.
struct Bits {
  const uint8_t bytes[2] = {0xB4, 0x01};
  BitReader bits;
  AttachedBlock attached{bits, bytes, 2};
};

} // namespace

TEST_CASE_FIXTURE(Bits, "a bit reader reads no bits that are not there, and none into nothing") {
  uint8_t value = 0xFF;
  CHECK(bits.EnoughBits(16));
  CHECK_FALSE(bits.EnoughBits(17));
  CHECK(bits.ReadBits(&value, 4));
  CHECK(value == 0xF4); // the other bits keep their value
  CHECK_FALSE(bits.ReadBits(nullptr, 1));
  CHECK_FALSE(bits.ReadBits(&value, 0));
  CHECK_FALSE(bits.ReadBits(&value, 13));
  CHECK(bits.bit_pos() == 4);
}

TEST_CASE_FIXTURE(Bits, "a bit reader reads a number of as many bits as its prefix says") {
  uint32_t number = 7;
  bits.SetBitPos(4);
  CHECK_FALSE(bits.ReadVarBits(number, 65, 1));
  CHECK_FALSE(bits.ReadVarBits(number, 0, 17));
  CHECK(bits.ReadVarBits(number, 2, 1)); // 110 | 1100
  CHECK(number == 3);
  CHECK_FALSE(bits.ReadVarBits(number, 0, 1)); // no bit of value
}

TEST_CASE_FIXTURE(Bits, "a bit reader is at its end outside its block") {
  bits.SetBitPos(16);
  CHECK_FALSE(bits.ReadBit());
  CHECK(bits.bit_pos() == 16);
  bits.SetBitPos(-1);
  CHECK_FALSE(bits.ReadBit());
  CHECK_FALSE(bits.EnoughBits(1));
}
