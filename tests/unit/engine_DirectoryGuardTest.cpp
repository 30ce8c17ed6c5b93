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
