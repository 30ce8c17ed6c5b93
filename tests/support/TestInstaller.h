// A small installer from the real packer, with hooks to spoil it in one place and leave the rest sound.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "packer/write/Installer.h"

namespace korb::test {

using packer::Bytes;

/// Bytes of `value`, little-endian.
template <class T>
std::string Raw(T value) {
  return std::string(reinterpret_cast<const char *>(&value), sizeof value);
}
/// A text as the configuration holds it.
inline std::string Z(const std::string &text) {
  return text + '\0';
}

/// Writes `bytes` at `at`.
void Put(Bytes &file, size_t at, const std::string &bytes);
/// Puts `after` in the place of the one `before`; a missing one is a mistake of the test and throws.
void Swap(Bytes &bytes, const std::string &before, const std::string &after);

constexpr size_t kPeOffset = 0x80;
constexpr size_t kSectionEntry =
    kPeOffset + pe::kOptionalHeaderAt + 0xE0 + 4 * pe::kSectionEntrySize; ///< the archive's
constexpr size_t kArchivePos = 0x1000;                                    ///< of the archive in the file

/// A program of four sections that does nothing, kArchivePos bytes long.
Bytes TestStub();

/// One whose last section holds `resources`, 0x200 bytes of them at most.
Bytes TestStub(const packer::ResourceContents &resources);

struct TestInstaller {
  TestInstaller();

  packer::Product product;                 ///< has something in every field
  Bytes stub = TestStub();                 ///< the program that carries it
  std::function<void(Bytes &)> config;     ///< spoils the plain configuration
  std::function<void(Bytes &)> payload;    ///< spoils the payload before its checksum is taken
  std::function<void(Bytes &)> executable; ///< spoils the finished file
  Bytes tail;                              ///< stands behind the finished file

  packer::Installer Build() const;
};

/// Does to a finished file what signing it does. The signature is nobody's.
void Sign(Bytes &file);

/// The executable as the loader would map it.
Bytes Mapped(const Bytes &executable);

} // namespace korb::test
