#include "format/Words.h"
#include "system/OsIdentity.h"
#include "tests/support/Testing.h"

TEST_CASE("every system has its bit and its name") {
  struct Row {
    uint32_t platform, major, minor;
    const char *service_pack;
    uint32_t code;
    const char *name;
  };
  for (const Row &row :
       {Row{0, 1, 30, "", OS_WIN32S, "Windows 1.30"}, Row{1, 4, 0, "", OS_WINDOWS_95, "Windows 95"},
        Row{1, 4, 9, " B", OS_WINDOWS_95, "Windows 95 B"}, Row{1, 4, 10, " A ", OS_WINDOWS_98, "Windows 98 A"},
        Row{1, 4, 89, "", OS_WINDOWS_98, "Windows 98"}, Row{1, 4, 90, " ", OS_WINDOWS_ME, "Windows ME"},
        Row{1, 5, 1, "", OS_OTHER, "Windows 9x 5.1"},
        Row{2, 3, 51, "Service Pack 5", OS_NT_3, "Windows NT 3.51 Service Pack 5"},
        Row{2, 4, 0, "Service Pack 6a", OS_NT_4, "Windows NT 4.0 Service Pack 6a"},
        Row{2, 5, 0, "Service Pack 4", OS_WINDOWS_2000, "Windows 2000 Service Pack 4"},
        Row{2, 5, 1, "", OS_WINDOWS_XP, "Windows XP"}, Row{2, 5, 2, "", OS_OTHER, "Windows NT 5.2"},
        Row{2, 6, 0, "", OS_OTHER, "Windows NT 6.0"}, Row{3, 1, 0, "", OS_OTHER, "Windows"}}) {
    OsVersion version;
    version.platform = row.platform;
    version.major = row.major;
    version.minor = row.minor;
    version.service_pack = row.service_pack;
    CAPTURE(row.name);
    CHECK(OsCodeOf(version) == row.code);
    CHECK(std::string(OsDisplayNameOf(version)) == row.name);
  }
}
