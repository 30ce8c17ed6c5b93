#include <initializer_list>
#include <string>

#include "app/DirectoryRules.h"
#include "format/Texts.h"
#include "tests/support/Doctest.h"

using namespace korb;

TEST_CASE("a directory is refused by the first rule that it breaks") {
  const String program_files = "C:\\Program Files";
  const struct {
    const char *path;
    int32_t refusal, without_drive, without_network; ///< by the drive, and by what the archive refuses
  } rows[] = {
      {"C:\\x", 0, kTextDriveMissing, 0},
      {"C:x", kTextDirectoryIllegal, kTextDirectoryIllegal, kTextDirectoryIllegal},
      {"C:\\a|b", kTextDirectoryIllegal, kTextDirectoryIllegal, kTextDirectoryIllegal},
      {"C:\\", kTextDirectoryShort, kTextDriveMissing, kTextDirectoryShort},
      {"\\\\srv", 0, 0, kTextDirectoryNetwork},
      {"\\\\", kTextDirectoryShort, kTextDirectoryShort, kTextDirectoryNetwork},
      {"c:\\PROGRAM files\\", kTextDirectoryProgramFiles, kTextDriveMissing, kTextDirectoryProgramFiles},
      {"C:\\Program Files\\x", 0, kTextDriveMissing, 0},
  };
  for (const auto &row : rows) {
    CAPTURE(std::string(row.path));

    CHECK(RefusalOf(row.path, {true, false, program_files}) == row.refusal);
    CHECK(RefusalOf(row.path, {false, false, program_files}) == row.without_drive);
    CHECK(RefusalOf(row.path, {true, true, program_files}) == row.without_network);
  }
}

TEST_CASE("files take whole clusters, also where their sum needs more than 32 bits") {
  Vector<int32_t> sizes;
  for (const int32_t size : {0, 1, 4096, 4097, 0x40000000, 0x40000000})
    sizes.append(size);
  CHECK(BytesOnDisk(sizes, 4096) == int64_t{0x80000000} + 4 * 4096);
  CHECK(BytesOnDisk(sizes, 0x40000000) == int64_t{0x140000000});
  CHECK(BytesOnDisk(sizes, -1) == int64_t{0x80000000} + 1 + 4096 + 4097);
}
