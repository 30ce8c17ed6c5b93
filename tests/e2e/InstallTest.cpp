// An installation from the user's side.
#include <filesystem>

#include "tests/support/CleanPlace.h"
#include "tests/support/Desktop.h"
#include "tests/support/Doctest.h"
#include "tests/support/PackedProduct.h"
#include "tests/support/Windows64.h"

using namespace korb::test;

TEST_CASE("a silent installation places every file with its bytes, date and attributes") {
  PackedProduct product(ProductManifest("dated"));
  product.Write("read me.txt", "Read me.\r\n");
  std::string data;
  for (int i = 0; i < 100000; ++i)
    data += static_cast<char>(i * i >> 7);
  product.Write("data.bin", data);
  product.Pack();
  product.Install();
  const std::string home = kProgramFiles + "\\Thing\\";
  CHECK(FileBytes(home + "read me.txt") == "Read me.\r\n");
  CHECK(DescribeFile(home + "read me.txt") == "archive read-only 2001-05-17 10:30:02");
  CHECK((FileBytes(home + "deep\\er\\data.bin") == data));
  CHECK(DescribeFile(home + "deep\\er\\data.bin") == "archive 1999-12-31 23:59:58");
  CHECK(FileBytes("C:\\Elsewhere\\empty").empty());
  CHECK(DescribeFile("C:\\Elsewhere\\empty") == "archive 2020-02-29 00:00:00");
  REQUIRE(GetDriveTypeA("E:\\") == DRIVE_REMOVABLE); // where files are dated in another way
  CHECK(DescribeFile("E:\\Elsewhere\\another drive") == "archive 2010-03-31 12:34:56");
  CHECK(DescribeFile(home + "the first drive again") == "archive 2010-03-31 12:34:58");
}

namespace {

/// Starts the installer of a product that tells of its end.
struct Told : PackedProduct {
  explicit Told(const std::string &option = "") : PackedProduct(ProductManifest("told") + option) { Pack(); }

  const std::string home = kProgramFiles + "\\Told", log = home + "\\Install.LOG";
  const CleanPlace place{{home}};
};

} // namespace

TEST_CASE("a clean run tells its end, unless it is to be silent, and leaves no log") {
  for (const char *option : {"", "no_done_message = true\n"}) {
    CAPTURE(option);
    const Told told(option);
    Process setup = told.Start();
    if (*option == '\0')
      CHECK(AnswerWindow("Told has been installed.", "OK").title == "Installation complete");
    CHECK(setup.Wait() == DWORD{1});
    CHECK_FALSE(std::filesystem::exists(told.log));
  }
}

TEST_CASE("errors can be read at once, and are in the log after either answer") {
  for (const std::string answer : {"No", "Yes"}) {
    CAPTURE(answer);
    const Told told;
    std::filesystem::create_directories(told.home + "\\a.txt\\in the way");
    Process setup = told.Start();
    const auto box = WaitForWindow(told.log);
    REQUIRE(box);
    CHECK_FALSE(std::filesystem::exists(told.log)); // written after the answer
    Click(*box, answer);
    CHECK(setup.Wait() == DWORD{1});
    CHECK(FileBytes(told.log).find(told.home + "\\a.txt") != std::string::npos);
  }
  const auto notepad = WaitForWindow("Install.LOG");
  REQUIRE(notepad);
  SendMessageA(notepad->handle, WM_CLOSE, 0, 0);
}
