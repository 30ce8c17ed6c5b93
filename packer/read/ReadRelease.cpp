#include "packer/read/ReadRelease.h"

#include "packer/FileIo.h"
#include "packer/VersionResource.h"
#include "packer/read/InstallerReader.h"

namespace korb::packer {

Release ReadRelease(const std::filesystem::path &path, int page) {
  InstallerReader installer(path, page);
  installer.Read();
  if (installer.damage)
    throw PackError("'" + ShowPath(path) + "' can't be read as an installer: " + installer.damage->what());
  Release release = ReleaseOf(installer.config, installer.records, installer.background.length(),
                              installer.uninstaller_size, installer.code_page);
  release.label = ShowPath(path);
  release.installer_size = static_cast<int64_t>(installer.file.size());
  for (const FoundVolume &volume : installer.volumes)
    release.installer_size += volume.size;
  for (size_t i = 0; i < release.files.size(); ++i) {
    const PayloadRecord &record = installer.records[i];
    const std::span contents(record.contents, static_cast<size_t>(record.size));
    release.files[i].checksum = ChecksumOf(contents);
    if (contents.size() > 2 && contents[0] == 'M' && contents[1] == 'Z') // a program or library
      release.files[i].version = FileVersionOf(Bytes(contents.begin(), contents.end())).value_or("");
  }
  return release;
}

} // namespace korb::packer
