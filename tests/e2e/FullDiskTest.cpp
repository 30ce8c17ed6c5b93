// A disk that fills up in the middle of a run.
#include <cstdlib>
#include <filesystem>

#include "tests/e2e/Trouble.h"
#include "tests/support/Doctest.h"

using namespace korb::test;
using Kind = TroubledProduct::Kind;

namespace {

constexpr int64_t kLargest = 600 * 1024; ///< bytes, more than the product takes

int64_t FreeBytes() {
  ULARGE_INTEGER free;
  REQUIRE(GetDiskFreeSpaceExA("E:\\", nullptr, nullptr, &free));
  return static_cast<int64_t>(free.QuadPart);
}

/// Leaves only so much room on the small drive.
std::shared_ptr<void> Fill(int64_t room) {
  WriteFileBytes("E:\\ballast", std::string(static_cast<size_t>(FreeBytes() - room), 'b'));
  return {nullptr, [](void *) { std::filesystem::remove("E:\\ballast"); }};
}

} // namespace

TEST_CASE("a disk may fill up at any moment of a run") {
  TroubledProduct product;
  const std::pair<Kind, int64_t> moments[] = {
      {Kind::Install, 0}, {Kind::Install, 100000}, {Kind::Upgrade, 0}, {Kind::Uninstall, 0}};
  for (const auto &[kind, room] : moments) {
    CAPTURE(kind);
    CAPTURE(room);
    CHECK(product.Try(kind, [&] { return Fill(room); }) == std::vector<std::string>());
    CHECK(product.was_complete() == (kind == Kind::Uninstall));
  }
}

// KORB_SWEEP=16 tries every 16 KB.
TEST_CASE("a disk may fill up at every moment of a run" * doctest::skip(!std::getenv("KORB_SWEEP"))) {
  TroubledProduct product;
  for (const Kind kind : {Kind::Install, Kind::Upgrade, Kind::Uninstall}) {
    CAPTURE(kind);
    int incomplete = 0;
    for (int64_t room = 0; room < kLargest; room += std::atoi(std::getenv("KORB_SWEEP")) * 1024) {
      CAPTURE(room);
      CHECK(product.Try(kind, [&] { return Fill(room); }) == std::vector<std::string>());
      if (product.was_complete())
        break;
      ++incomplete;
    }
    MESSAGE(incomplete << " runs were incomplete, and one was complete");
  }
}
