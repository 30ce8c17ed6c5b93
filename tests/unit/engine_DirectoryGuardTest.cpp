#include "engine/DirectoryGuard.h"
#include "tests/support/Testing.h"

TEST_CASE("a directory is deleted whole only by a full path to what may be a product's") {
  const auto may = [](const char *directory) {
    const bool says = MayDeleteWhole(directory, "C:\\Windows", "C:\\Program Files");
    CHECK(MayDeleteWhole(directory, "C:\\Windows", "C:\\Program Files (x86)") == says);
    return says;
  };
  for (const char *product :
       {"C:\\Program Files\\Thing", "c:\\program files\\thing\\\\", "C:\\Program Files2", "C:\\Program",
        "C:\\Program Files (x86)2", "D:\\x", "C:\\Window", "C:\\.hidden", "\\\\server\\share\\Thing"}) {
    CAPTURE(product);
    CHECK(may(product));
  }
  for (const char *other : {"",
                            "\\",
                            "C:",
                            "C:\\",
                            "C:\\\\",
                            "C:\\.",
                            "C:x",
                            "x",
                            ".",
                            "..",
                            "Program Files\\Thing",
                            "\\Thing",
                            "C:/Thing",
                            "C:\\Windows",
                            "c:\\WINDOWS\\",
                            "C:\\Windows\\Thing",
                            "C:\\Windows\\..\\Thing",
                            "C:\\Windows2",
                            "C:\\Program Files",
                            "c:\\program FILES\\\\",
                            "C:\\Program Files\\.",
                            "C:\\Program Files. ",
                            "\\\\?\\C:\\Thing",
                            "\\\\.\\C:\\Thing",
                            "\\??\\C:\\Thing",
                            " C:\\Windows",
                            "\t\\\\server\\share\\Thing",
                            "\\\\server",
                            "\\\\server\\share",
                            "\\\\server\\share\\"}) {
    CAPTURE(other);
    CHECK_FALSE(may(other));
  }
  CHECK_FALSE(MayDeleteWhole("C:\\Program Files (x86)", "C:\\Windows", "C:\\Program Files (x86)"));
}

TEST_CASE("what holds a folder of the system's is deleted no more than the folder") {
  for (const char *above : {"D:\\Sys", "d:\\sys\\", "D:\\Sys\\Win", "D:\\Sys\\Apps", "D:\\Sys\\Apps\\Programs"}) {
    CAPTURE(above);
    CHECK_FALSE(MayDeleteWhole(above, "D:\\Sys\\Win\\Dows", "D:\\Sys\\Apps\\Programs"));
  }
  for (const char *beside : {"D:\\Sy", "D:\\Sys\\App", "D:\\Sys\\Apps\\Programs\\Mine", "D:\\Sys\\Wi"}) {
    CAPTURE(beside);
    CHECK(MayDeleteWhole(beside, "D:\\Sys\\Win\\Dows", "D:\\Sys\\Apps\\Programs"));
  }
}

TEST_CASE("keys hold what is below them") {
  for (const char *key : {"Microsoft", "MICROSOFT\\windows", "Microsoft\\Windows\\CurrentVersion\\Uninstall"})
    CHECK(Holds(key, "Microsoft\\Windows\\CurrentVersion\\Uninstall"));
  for (const char *key : {"Micro", "Microsoft\\Win", "Microsoft\\Windows\\CurrentVersion\\Uninstall\\Thing", "Maker"})
    CHECK_FALSE(Holds(key, "Microsoft\\Windows\\CurrentVersion\\Uninstall"));
}
