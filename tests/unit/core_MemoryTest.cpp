// The small routines that everyone shares: the checksum, bits, ramps, random numbers, and the report of used-up memory.
#include <cstring>
#include <random>
#include <set>

#include "core/Arithmetic.h"
#include "core/Checksum.h"
#include "core/Heap.h"
#include "core/Random.h"
#include "tests/support/Testing.h"

TEST_CASE("the checksum adds words, the rest as signed bytes, and the size") {
  struct Row {
    std::string bytes;
    uint32_t sum;
  };
  for (const Row &row : {Row{"", 0x79E2BC9D}, Row{"\xFF", 0x79E2BC9D}, // -1 and the size cancel
                         Row{"\x01", 0x79E2BC9F}, Row{std::string("\0\0\0\x80", 4), 0xF9E2BCA1},
                         Row{"\xFF\xFF\xFF\xFF", 0x79E2BCA0}, Row{"\x01\x02\x03\x04\x80", 0x7DE5BE9D + 1 + 5 - 0x80},
                         Row{"\x01\x02\x03\x04\x05\x06\x07", 0x7DE5BE9D + 1 + 5 + 6 + 7 + 7},
                         Row{std::string("\1\0\0\0\2\0\0\0\3\0\0\0\xFF\1\1", 15), 0x79E2BC9D + 6 + 1 + 15}}) {
    const int32_t size = static_cast<int32_t>(row.bytes.size());
    CHECK_MESSAGE(Checksum32(row.bytes.data(), size) == row.sum, size);
    const std::string shifted = "x" + row.bytes; // at any address
    CHECK_MESSAGE(Checksum32(shifted.data() + 1, size) == row.sum, size);
  }
  CHECK(Checksum32(nullptr, 5) == 0x79E2BC9D);
  CHECK(Checksum32("abcd", -1) == 0x79E2BC9D);
}

TEST_CASE("a stepper gives steps that add up") {
  RationalStepper down(-7, 3);
  for (const int32_t step : {-2, -2, -3})
    CHECK(down.next() == step);
  const int32_t numbers[] = {0, 1, 5, 255, -1, -255, 1000003, INT32_MAX, -INT32_MAX};
  for (const int32_t numerator : numbers) {
    for (const int32_t denominator : {1, 2, 3, 64, 255, -3, -64}) {
      RationalStepper stepper(numerator, denominator);
      int64_t sum = 0;
      for (int32_t i = 0; i < (denominator < 0 ? -denominator : denominator); ++i)
        sum += stepper.next();
      CHECK_MESSAGE(sum == (denominator < 0 ? -int64_t{numerator} : numerator), numerator, "/", denominator);
    }
  }
  CHECK(RationalStepper(INT32_MIN, INT32_MIN).next() == 1);
  CHECK(RationalStepper(5, INT32_MIN).next() == 0);
  CHECK(Trapped([] { RationalStepper(1, 0); }) == "internal error Core 12090");
}

TEST_CASE("a number is rounded up to a multiple, where there is one") {
  CHECK(RoundUp(5, 4) == 8);
  CHECK(RoundUp(8, 4) == 8);
  CHECK(RoundUp(-5, 4) == -4);
  CHECK(RoundUp(5, -1) == 5);
  CHECK(RoundUp(0xFFFFFFFFll, 4096) == 0x100000000ll);
}

TEST_CASE("arrays of numbers compare at their first difference") {
  const int32_t a[] = {1, INT32_MIN, 3}, b[] = {1, INT32_MAX, 2};
  CHECK(CompareIntArrays(a, b, 3) == -1);
  CHECK(CompareIntArrays(a, b, 1) == 0);
  CHECK(CompareIntArrays(a, nullptr, 3) == 0);
}

TEST_CASE("bits are copied to any place and touch no other") {
  std::mt19937 random(5);
  for (int round = 0; round < 2000; ++round) {
    uint8_t from[16], to[16];
    for (int i = 0; i < 16; ++i)
      from[i] = static_cast<uint8_t>(random()), to[i] = static_cast<uint8_t>(random());
    uint8_t before[16];
    memcpy(before, to, 16);
    const int32_t dest = static_cast<int32_t>(random() % 64), src = static_cast<int32_t>(random() % 64);
    const int32_t count = static_cast<int32_t>(1 + random() % 64);
    REQUIRE(CopyBits(to, dest, from, src, count));
    for (int32_t i = 0; i < 128; ++i) {
      const uint8_t *want = i >= dest && i < dest + count ? from : before;
      const int32_t place = want == from ? i - dest + src : i;
      REQUIRE((to[i / 8] >> i % 8 & 1) == (want[place / 8] >> place % 8 & 1));
    }
  }
  uint8_t byte = 0;
  CHECK_FALSE(CopyBits(&byte, 0, &byte, 0, 0));
  CHECK_FALSE(CopyBits(nullptr, 0, &byte, 0, 1));
  CHECK_FALSE(CopyBits(&byte, 0, nullptr, 0, 1));
}

TEST_CASE("random numbers stay in their range and reach all of it") {
  for (const int32_t none : {1, 0, -5})
    CHECK(RandomNumber(none) == 0);
  std::set<int32_t> seen;
  bool high = false;
  for (int i = 0; i < 1000; ++i) {
    const int32_t small = RandomNumber(7);
    CHECK((small >= 0 && small < 7));
    seen.insert(small);
    const int32_t word = RandomNumber(0x7FFFFFFF);
    CHECK(word >= 0);
    high = high || word > 0x40000000;
  }
  CHECK(seen.size() == 7);
  CHECK(high);
}

TEST_CASE("used-up memory is reported with its size, and in the program with the top of the stack") {
  const std::string report = Trapped([] { OutOfMemory(0xABCDE); });
  const std::string head = "Out Of Memory.  Make sure your hard drive is not full.\n"
                           "Requested size = 703710 (0x000ABCDE)\n\nStack contents:";
  CHECK(report.substr(0, head.size()) == head);
  const std::string dump = report.substr(head.size());
#ifdef _WIN32
  CHECK(dump.substr(0, 18) == "\r11223344 55667788");
  REQUIRE(dump.size() == 80 * 9);
  for (size_t i = 0; i < 80; ++i) {
    CHECK(dump[i * 9] == (i % 8 == 0 ? '\r' : ' '));
    CHECK(dump.substr(i * 9 + 1, 8).find_first_not_of("0123456789ABCDEF") == std::string::npos);
  }
#else
  CHECK(dump.empty());
#endif
}
