// An installation from the user's side.
#include <doctest/doctest.h>

#include <filesystem>

#include "tests/support/Desktop.h"
#include "tests/support/PackedProduct.h"

using namespace korb::test;

namespace {

const char kManifest[] = R"(
[product]
name = "Thing"

[[file]]
source = "read me.txt"
date = 2001-05-17T10:30:02
attributes = ["archive", "read-only"]

[[file]]
source = "data.bin"
name = 'deep\er\data.bin'
date = 1999-12-31T23:59:58

[[file]]
contents = ""
name = "empty"
target = 'C:\Elsewhere\'
date = 2020-02-29T00:00:00
)";

} // namespace

TEST_CASE("a silent installation places every file with its bytes, date and attributes") {
  PackedProduct product(kManifest);
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

TEST_CASE("a program without an archive says what it is for, and ends") {
  Process program("korb.exe");
  const auto box = WaitForWindow("FATAL ERROR");
  REQUIRE(box);
  CAPTURE(box->Describe());
  CHECK(box->Message().find("There is no installation archive present.") != std::string::npos);
  CHECK(Click(*box, "OK"));
  CHECK(program.Wait() == DWORD{1});
}

TEST_CASE("a clean run tells its end and leaves no log; errors can be read at once") {
  const auto manifest = [](const char *option) {
    return std::string("[product]\nname = \"Told\"\n[install]\nmin_phase_ms = 0\n[options]\nask_directory = "
                       "false\nuninstall = false\n") +
           option + "[[file]]\ncontents = \"a\"\nname = \"a.txt\"\n";
  };
  const std::string home = "C:\\Program Files\\Told\\", log = home + "Install.LOG";
  for (const char *option : {"", "no_done_message = true\n"}) {
    PackedProduct product(manifest(option));
    product.Pack();
    Process setup = product.Start();
    if (*option == '\0') {
      const auto box = WaitForWindow("Told has been installed.");
      REQUIRE(box);
      CHECK(box->title == "Installation complete");
      Click(*box, "OK");
    }
    CHECK(setup.Wait() == DWORD{1});
    CHECK_FALSE(std::filesystem::exists(log));
  }
  std::filesystem::remove(home + "a.txt");
  std::filesystem::create_directories(home + "a.txt\\in the way");
  for (const char *answer : {"No", "Yes"}) {
    PackedProduct product(manifest(""));
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
