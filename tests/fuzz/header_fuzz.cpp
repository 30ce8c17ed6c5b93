// Any bytes as an executable: its headers are walked, its archive's header and records are read and its uninstaller is
// cut out, without leaving the file and without more memory than a few times its size.
#include <cstdlib>

#include "archive/ArchiveHeader.h"
#include "archive/ArchiveLocation.h"
#include "archive/PayloadRecord.h"
#include "archive/UninstallerImage.h"
#include "core/RunValues.h"
#include "tests/support/ArchiveDoubles.h"
#include "tests/support/FailureTrap.h"

using namespace korb;
using namespace korb::test;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  ResetRun();
  MemoryFile file(Bytes(data, data + size));
  ArchiveHeader header;
  InstallConfig config;
  config.stub_patch_offset = 1;
  config.stub_patch.set_length(kStubPatchSize);
  String image;
  try {
    const ArchiveLocation location = LocateArchive(file);
    ArchiveCursor cursor = SectionCursor(location, {data, static_cast<int32_t>(size)});
    if (cursor.length() > static_cast<int64_t>(size))
      abort();
    BuildUninstallerImage(file, location, header, config, image);
    if (image.length() > 2 * static_cast<int64_t>(size))
      abort();
    ReadArchiveHeader(cursor, header);
    cursor.CursorSkip(header.config_size);
    for (int32_t i = 0; i < header.sizes.count; ++i) {
      PayloadRecord record;
      ReadPayloadRecord(cursor, header.sizes.at(i), record);
    }
  } catch (const TrappedFailure &) {
  }
  return 0;
}
