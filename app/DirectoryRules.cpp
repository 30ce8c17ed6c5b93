#include "app/DirectoryRules.h"

#include "archive/TextNumber.h"
#include "files/PathText.h"

namespace korb {

namespace {

constexpr int32_t kRootLength = 3; // of "c:\"

} // namespace

int32_t RefusalOf(const String &path, const DirectoryFacts &facts) {
  if (!IsFullPath(path) || !IsLegalPath(path, 0))
    return kTextIllegalDirectory;
  if (facts.refuses_network && path.starts_with("\\\\"))
    return kTextNoNetworkPath;
  if (DriveLetter(path) != 0 && !facts.drive_exists)
    return kTextNoDrive;
  if (path.length() <= kRootLength)
    return kTextDirectoryTooShort;
  if (SamePath(path, facts.program_files))
    return kTextDirectoryIsProgramFiles;
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
