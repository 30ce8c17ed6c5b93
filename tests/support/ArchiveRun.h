// Reads an installer as the program does, with the machine and the user played by doubles.
#pragma once

#include <string>
#include <vector>

#include "archive/ArchiveHeader.h"
#include "archive/ConfigStream.h"
#include "archive/Payload.h"
#include "archive/PayloadRecord.h"
#include "archive/UninstallerImage.h"
#include "core/MemoryStream.h"
#include "tests/support/ArchiveDoubles.h"
#include "tests/support/FailureTrap.h"
#include "tests/support/TestInstaller.h"

namespace korb::test {

/// Everything from the file to the payload's records. A damage report unwinds out of Run, and what was read until then
/// can be looked at.
struct ArchiveRun {
  explicit ArchiveRun(const Bytes &executable);
  ~ArchiveRun();            ///< frees an unpacked payload, which the program keeps to its end
  void ReadConfiguration(); ///< up to the configuration
  void Run();               ///< all, every record included

  Bytes image;
  MemoryFile file;
  RecordingConfigHost host;
  VolumeUser user;
  ArchiveLocation location;
  ArchiveHeader header;
  MemoryStream stream;
  InstallConfig config;
  ArchiveCursor cursor;
  String uninstaller;
  String payload_buffer;
  std::vector<PayloadRecord> records;
};

} // namespace korb::test
