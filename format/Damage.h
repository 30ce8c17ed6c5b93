// The numbered reports of damage: what is wrong with an archive, as the number that a user reads and passes on.
//
// A number keeps its meaning for ever, since people look it up. They carry no order.
#pragma once

#include <cstdint>

namespace korb {

enum class DamageCode : int32_t {
  FileDataSize = 5,
  SectionPlace = 9,
  SectionUnreachable = 10,
  PhaseTime = 19,
  HeaderMagic = 20,
  VolumeName = 21,
  ConfigSize = 22,
  StubPatchPlace = 23,
  LicensePageCount = 24,
  ConfigChecksum = 25,
  ReadmePageCount = 26,
  FileCount = 27,
  SizeTable = 28,
  PayloadSize = 29,
  LanguageCount = 30,
  TextCount = 31,
  ConfigEnd = 32,
  StubUnreadable = 35,
  AssociationCount = 36,
  UninstallDataCount = 37,
  DeletionsEndless = 38,
  StubChecksum = 40,
  TailUnreadable = 42,
  PeHeaderPlace = 43,
  SectionCount = 44,
  ArchiveLength = 45,
  ConfigPacked = 47,
  VolumeUnreadable = 50,
  PayloadChecksum = 55,
  PayloadPacked = 60,
  DeletionDate = 65,
  FileName = 70,
  FileSizeNegative = 71,
  FileSizeLimit = 72,
  FileChecksum = 100,
  FileKind = 110,
};

struct DamageWords {
  DamageCode code;
  const char *text;
};

/// What each means, for people. The program shows the number alone; the author's tool adds these words.
inline constexpr DamageWords kDamageWords[] = {
    {DamageCode::FileDataSize, "a file that is to be written has a negative size"},
    {DamageCode::SectionPlace, "the archive's section has no place in the file, or can't be read"},
    {DamageCode::SectionUnreachable, "the archive's section can't be reached"},
    {DamageCode::PhaseTime, "the shortest time of a step is above 9,999 milliseconds"},
    {DamageCode::HeaderMagic, "the archive's header has another magic number"},
    {DamageCode::VolumeName, "the volumes have no name"},
    {DamageCode::ConfigSize, "the size of the configuration is out of range"},
    {DamageCode::StubPatchPlace, "the place of the uninstaller's patch is out of range"},
    {DamageCode::LicensePageCount, "the number of licence pages is out of range"},
    {DamageCode::ConfigChecksum, "the configuration fails its checksum"},
    {DamageCode::ReadmePageCount, "the number of readme pages is out of range"},
    {DamageCode::FileCount, "the number of files is negative"},
    {DamageCode::SizeTable, "the table of file sizes is out of range"},
    {DamageCode::PayloadSize, "the size of the payload is negative"},
    {DamageCode::LanguageCount, "the number of languages is out of range"},
    {DamageCode::TextCount, "the number of texts is out of range"},
    {DamageCode::ConfigEnd, "the configuration has no proper end"},
    {DamageCode::StubUnreadable, "the program part can't be read"},
    {DamageCode::AssociationCount, "the number of associations is out of range"},
    {DamageCode::UninstallDataCount, "the number of uninstall values is out of range"},
    {DamageCode::DeletionsEndless, "the list of old files has no end"},
    {DamageCode::StubChecksum, "the program part fails its checksum"},
    {DamageCode::TailUnreadable, "what follows the archive can't be read"},
    {DamageCode::PeHeaderPlace, "the PE header is out of place"},
    {DamageCode::SectionCount, "the number of sections is out of range"},
    {DamageCode::ArchiveLength, "the length of the archive is negative"},
    {DamageCode::ConfigPacked, "the configuration can't be unpacked"},
    {DamageCode::VolumeUnreadable, "a volume can't be read"},
    {DamageCode::PayloadChecksum, "the payload fails its checksum"},
    {DamageCode::PayloadPacked, "the payload can't be unpacked"},
    {DamageCode::DeletionDate, "the condition of an old file has no valid date"},
    {DamageCode::FileName, "a file has no name"},
    {DamageCode::FileSizeNegative, "the size of a file is negative"},
    {DamageCode::FileSizeLimit, "the size of a file is above 1 GiB"},
    {DamageCode::FileChecksum, "a file fails its checksum"},
    {DamageCode::FileKind, "a file's kind has no folder"},
};

} // namespace korb
