// The program that an installer starts from: a PE file that gets one more section.
#pragma once

#include <optional>
#include <span>

#include "packer/Product.h"
#include "packer/write/ResourceSection.h"

namespace korb::packer {

/// The stub's bytes and the places in it that a new section changes.
class StubImage {
public:
  /// Reads the headers of `stub`. Throws PackError when it is no 32-bit PE file that can carry an archive and be the
  /// uninstaller without it: fewer sections than the program insists on, no room for another section, a signature,
  /// an archive already.
  explicit StubImage(Bytes stub);

  /// Where the archive's section will begin in the file: after everything, at a page, since a loader then maps the
  /// file itself in place of reading it.
  uint32_t SectionFilePos() const;

  /// What the section's raw size is a multiple of. The uninstaller subtracts that size from the image's size, so the
  /// section has to take as much of the file as of the image.
  uint32_t SectionAlignment() const { return section_alignment_; }

  /// The stub with its headers telling of a section of `used` bytes, `raw` of them in the file, padded to where the
  /// section begins. The section itself is the caller's to append.
  Bytes WithSection(uint32_t used, uint32_t raw) const;

  /// Lets the program take its texts in the code page of its archive: UTF-8 has to be asked for. Throws PackError when
  /// the stub can't ask, or asks already where it must not.
  void UseCodePage(int page);

  /// The program's resources. Throws PackError when they can't be read.
  ResourceContents Resources() const;

  /// Gives the program other resources. Throws PackError when its own are not all that is in its last section, which
  /// alone can grow.
  void ReplaceResources(const ResourceContents &resources);

  /// Where in the file the first icon image lies, no PNG, that has exactly `size` bytes, by the program's resources.
  std::optional<uint32_t> FindIconImage(uint32_t size) const;

private:
  uint32_t OptionalField(uint32_t offset) const { return GetU32(bytes_, pe_ + pe::kOptionalHeaderAt + offset); }

  Bytes bytes_;
  uint32_t pe_ = 0;    // place of the PE header
  uint32_t table_ = 0; // place of the section table
  uint32_t sections_ = 0;
  uint32_t section_alignment_ = 0;
  uint32_t file_alignment_ = 0;
};

} // namespace korb::packer
