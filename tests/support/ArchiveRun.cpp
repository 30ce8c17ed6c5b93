#include "tests/support/ArchiveRun.h"

#include <cstdlib>

namespace korb::test {

ArchiveRun::ArchiveRun(const Bytes &executable) : image(Mapped(executable)), file(executable) {
  ResetRun();
  config.looks.title_color = 1; // the system's
  config.looks.top_color = 2;
}

ArchiveRun::~ArchiveRun() {
  const auto *base = cursor.base();
  const bool in_image = base >= image.data() && base <= image.data() + image.size();
  if (!in_image && base != reinterpret_cast<const uint8_t *>(payload_buffer.data()))
    free(const_cast<uint8_t *>(base));
}

void ArchiveRun::ReadConfiguration() {
  location = LocateArchive(file);
  cursor = SectionCursor(location, {image.data(), static_cast<int32_t>(image.size())});
  ReadArchiveHeader(cursor, header);
  DecodeConfig(cursor, header, stream, host);
  ReadConfigStream(stream, location.file_size, host, config);
}

void ArchiveRun::Run() {
  ReadConfiguration();
  BuildUninstallerImage(file, location, header, config, uninstaller);
  AssemblePayload(file, location, header, config, "A:\\dir", user, payload_buffer, cursor);
  for (int32_t i = 0; i < header.sizes.count; ++i) {
    records.emplace_back();
    ReadPayloadRecord(cursor, header.sizes.at(i), records.back());
  }
}

} // namespace korb::test
