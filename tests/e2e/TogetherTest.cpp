// A product that is in use, and two runs at once.
#include "tests/e2e/Trouble.h"
#include "tests/support/Doctest.h"

using namespace korb::test;
using Kind = TroubledProduct::Kind;

TEST_CASE("a program of the product may run while that is upgraded or removed") {
  TroubledProduct product;
  const auto running = [] { return std::make_shared<Process>("E:\\Trouble\\Program\\program.exe"); };
  for (const Kind kind : {Kind::Upgrade, Kind::Uninstall}) {
    CAPTURE(kind);
    CHECK(product.Try(kind, running) == std::vector<std::string>());
    CHECK_FALSE(product.was_complete());
    CHECK(product.told().find("program.exe") != std::string::npos);
  }
}
