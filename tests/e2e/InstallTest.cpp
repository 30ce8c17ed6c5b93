// An installation from the user's side.
#include <doctest/doctest.h>

#include <filesystem>

#include "tests/support/Desktop.h"
#include "tests/support/PackedProduct.h"

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
  const std::string home = "C:\\Program Files\\Thing\\";
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

TEST_CASE("every layout of the payload installs the same") {
  const std::string data(70000, 'd');
  for (const char *layout : {"section", "file"})
    for (const char *packed : {"true", "false"})
      for (const char *volumes : {"", "first_part_size = 10\nvolume_size = 30000\n"}) {
        CAPTURE(layout);
        CAPTURE(packed);
        CAPTURE(volumes);
        PackedProduct product(std::string("[product]\nname = \"Layout\"\n[options]\npacked_payload = ") + packed +
                              "\n[payload]\nlayout = \"" + layout + "\"\n" + volumes +
                              "[[file]]\nsource = \"data.bin\"\n[[file]]\nsource = \"data.bin\"\nname = \"two.bin\"\n");
        product.Write("data.bin", data);
        product.Pack();
        product.Install();
        const std::string home = "C:\\Program Files\\Layout";
        CHECK((FileBytes(home + "\\data.bin") == data));
        CHECK((FileBytes(home + "\\two.bin") == data));
        std::filesystem::remove_all(home);
      }
}

TEST_CASE("a clean run tells its end and leaves no log; errors can be read at once") {
  const std::string home = "C:\\Program Files\\Told\\", log = home + "Install.LOG";
  for (const char *option : {"", "no_done_message = true\n"}) {
    PackedProduct product(ProductManifest("told") + option);
    product.Pack();
    Process setup = product.Start();
    if (*option == '\0')
      CHECK(AnswerWindow("Told has been installed.", "OK").title == "Installation complete");
    CHECK(setup.Wait() == DWORD{1});
    CHECK_FALSE(std::filesystem::exists(log));
  }
  std::filesystem::remove(home + "a.txt");
  std::filesystem::create_directories(home + "a.txt\\in the way");
  for (const char *answer : {"No", "Yes"}) {
    PackedProduct product(ProductManifest("told"));
    product.Pack();
    Process setup = product.Start();
    const auto box = WaitForWindow(log);
    REQUIRE(box);
    CHECK(std::filesystem::exists(log) == (*answer == 'Y')); // written after the answer
    Click(*box, answer);
    CHECK(setup.Wait() == DWORD{1});
    CHECK(FileBytes(log).find(home + "a.txt") != std::string::npos);
  }
  const auto notepad = WaitForWindow("Install.LOG");
  REQUIRE(notepad);
  SendMessageA(notepad->handle, WM_CLOSE, 0, 0);
}
