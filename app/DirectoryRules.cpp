#include "app/DirectoryRules.h"

#include "files/PathText.h"
#include "format/Texts.h"

namespace korb {

namespace {

constexpr int32_t kRootLength = 3; // of "c:\"

} // namespace

int32_t RefusalOf(const String &path, const DirectoryFacts &facts) {
  if (!IsFullPath(path) || !IsLegalPath(path))
    return kTextDirectoryIllegal;
  if (facts.refuses_network && path.starts_with("\\\\"))
    return kTextDirectoryNetwork;
  if (DriveLetter(path) != 0 && !facts.drive_exists)
    return kTextDriveMissing;
  if (path.length() <= kRootLength)
    return kTextDirectoryShort;
  if (SamePath(path, facts.program_files))
    return kTextDirectoryProgramFiles;
  return 0;
}

int64_t BytesOnDisk(const Vector<int32_t> &sizes, int32_t cluster) {
  const uint32_t unit = cluster < 1 ? 1 : static_cast<uint32_t>(cluster);
  int64_t sum = 0;
  for (int32_t i = 0; i < sizes.count; ++i) {
    const uint32_t last = static_cast<uint32_t>(sizes.at(i)) + unit - 1; // sizes end far below 2^31
    sum += last - last % unit;
  }
  return sum;
}

} // namespace korb
