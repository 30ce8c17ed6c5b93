#include "archive/ConfigStream.h"

#include "archive/NameDefaults.h"
#include "core/Failure.h"
#include "core/RunValues.h"
#include "core/Text.h"
#include "format/Damage.h"

namespace korb {

namespace {

/// Reads fields one after the other. Failed reads give zeros and empty texts; the limits are what notices.
class ConfigReader {
public:
  ConfigReader(MemoryStream &stream, int32_t own_file_size, ConfigHost &host, InstallConfig &config)
      : stream_(stream), own_file_size_(own_file_size), host_(host), config_(config) {}

  void Read();

private:
  uint8_t Byte();
  int32_t Int();
  int32_t Count(int32_t least, int32_t most, DamageCode code);
  void Text(String &text) { stream_.ReadText(text); }
  void Pages(Array<String> &pages, DamageCode code);

  void ReadProduct();
  void SettleCommonDir();
  void SettleInstallDir();
  void ReadUninstallNames();
  void ReadBackground();
  void ReadBatches();
  void ReadStubPatch();
  void ReadDeletions();
  void ReadAssociations();
  void ReadUninstallData();
  void ReadTexts();

  MemoryStream &stream_;
  int32_t own_file_size_;
  ConfigHost &host_;
  InstallConfig &config_;
};

uint8_t ConfigReader::Byte() {
  uint8_t value = 0;
  stream_.ReadByte(value);
  return value;
}

int32_t ConfigReader::Int() {
  int32_t value = 0;
  stream_.ReadU32(value);
  return value;
}

/// A count within its limits, both inclusive; outside is damage.
int32_t ConfigReader::Count(int32_t least, int32_t most, DamageCode code) {
  const int32_t count = Int();
  if (count < least || count > most)
    CorruptInstaller(code);
  return count;
}

void ConfigReader::Pages(Array<String> &pages, DamageCode code) {
  pages.set_count(Count(0, kMaxPages, code));
  for (int32_t i = 0; i < pages.count; ++i)
    Text(pages.at(i));
}

/// The product's name wherever nothing else is given.
void ConfigReader::ReadProduct() {
  stream_.ReadU64(InstallFlags);
  stream_.ReadU16(config_.min_phase_ms);
  if (config_.min_phase_ms > kMaxPhaseMs)
    CorruptInstaller(DamageCode::PhaseTime);
  config_.shortcut_mode = Byte();
  stream_.ReadRecord(config_.uninstaller_date);
  Text(config_.publisher);
  String name;
  Text(name);
  if (ProductName.is_empty()) // a name given by /n: stays, and feeds everything below
    ProductName = name;

  Text(CommonDir);
  SettleCommonDir();

  String &group = config_.product_start_menu;
  Text(group);
  if (group.is_empty())
    AppendDefaultGroup(group, config_.publisher, ProductName);

  Text(config_.default_install_dir);
  SettleInstallDir();
  Text(config_.version);
  Text(config_.product_registry);
}

/// Created at once: files of the setup's own may go there before the installation itself begins. An abandoned run
/// leaves it behind.
void ConfigReader::SettleCommonDir() {
  if (!HasInstallFlag(IF_UNINSTALL)) {
    CommonDir.clear();
    return;
  }
  if (CommonDir.is_empty())
    CommonDir = DefaultCommonDir(config_.publisher, ProductName);
  host_.NormalisePath(CommonDir, host_.CommonFilesFolder());
  host_.CreateDirectoryTree(CommonDir);
}

void ConfigReader::SettleInstallDir() {
  String &directory = config_.default_install_dir;
  if (directory.is_empty()) {
    directory = ProductName;
  } else {
    // The directory of the system here; in texts the same mark stands for its name.
    directory.replace("<os>", host_.WindowsDirectory(), FIND_IGNORE_CASE);
    host_.ExpandPathVariables(directory);
  }
  // "<master>" waits until the master product has been looked up.
  if (!directory.equals_no_case("<master>"))
    host_.NormalisePath(directory, host_.ProgramFilesFolder());
}

void ConfigReader::ReadUninstallNames() {
  Text(config_.uninstall_subdir);
  Text(config_.volume_base_name);
  if (IsBlank(config_.volume_base_name))
    CorruptInstaller(DamageCode::VolumeName);
  Text(config_.uninstaller_name);
  Text(config_.uninstall_name);
  if (IsBlank(config_.uninstall_name))
    config_.uninstall_name = ProductName;
}

void ConfigReader::ReadBackground() {
  Looks &looks = config_.looks;
  const uint32_t title_color = static_cast<uint32_t>(Int());
  if (HasInstallFlag(IF_CUSTOM_COLORS)) {
    looks.title_color = title_color;
    looks.top_color = static_cast<uint32_t>(Int());
    looks.bottom_color = static_cast<uint32_t>(Int());
    if (looks.top_color != looks.bottom_color)
      looks.mono_color = false;
  } else {
    stream_.Skip(8);
  }
  looks.title_shadow = Byte();
  const int32_t size = Int();
  if (size > 0) {
    looks.title_color = title_color; // chosen for the picture, so it holds without colours too
    String bitmap;
    stream_.ReadBytes(bitmap, size);
    host_.LoadBackground(bitmap);
  }
}

void ConfigReader::ReadBatches() {
  if (HasInstallFlag(IF_MASTER_PRODUCT))
    Text(config_.master_product);
  Text(config_.desktop_group);
  Text(config_.pre_install_batch);
  Text(config_.post_install_batch);
  Text(config_.final_batch);
  Text(config_.uninstall_batch1);
  Text(config_.uninstall_batch2);
  stream_.ReadRecord(config_.expiry_date);
  config_.excluded_platforms = static_cast<uint32_t>(Int());
  config_.payload_in_file = Byte();
  config_.volume_serial = static_cast<uint32_t>(Int());
}

void ConfigReader::ReadStubPatch() {
  if (!HasInstallFlag(IF_UNINSTALL))
    return;
  config_.stub_patch_offset = Count(0, own_file_size_, DamageCode::StubPatchPlace);
  if (config_.stub_patch_offset > 0)
    stream_.ReadBytes(config_.stub_patch, kStubPatchSize);
}

void ConfigReader::ReadDeletions() {
  String name;
  for (;;) {
    Text(name);
    if (name == kDeletionsEnd)
      return;
    // Past the end of the data names are empty and the end mark never comes: this limit is what stops.
    if (config_.deletions.count >= kMaxDeletions)
      CorruptInstaller(DamageCode::DeletionsEndless);
    FileDeletion &deletion = config_.deletions.append_slot();
    deletion.name = name;
    deletion.kind = static_cast<int8_t>(Byte());
    Text(deletion.value);
    stream_.ReadU32(deletion.options);
  }
}

void ConfigReader::ReadAssociations() {
  for (int32_t left = Count(0, kMaxAssociations, DamageCode::AssociationCount); left > 0; --left) {
    FileAssociation &association = config_.associations.append_slot();
    stream_.ReadU32(association.flags);
    Text(association.extension);
    Text(association.file_class);
    Text(association.description);
    Text(association.verb);
    Text(association.verb_label);
    Text(association.command);
    Text(association.language);
    Text(association.icon);
  }
}

void ConfigReader::ReadUninstallData() {
  for (int32_t left = Count(0, kMaxUninstallData, DamageCode::UninstallDataCount); left > 0; --left) {
    UninstallData &data = config_.uninstall_data.append_slot();
    Text(data.name);
    data.kind = Byte();
    Text(data.value);
  }
}

void ConfigReader::ReadTexts() {
  const int32_t languages = Byte();
  if (languages == 0 || languages > kMaxLanguages)
    CorruptInstaller(DamageCode::LanguageCount);
  const int32_t texts = Count(1, kMaxTexts, DamageCode::TextCount);

  LanguageIndex = 0;
  LanguageNames.set_count(languages);
  for (int32_t i = 0; i < languages; ++i) {
    Text(LanguageNames.at(i));
    if (LanguageNames.at(i) == kDefaultLanguage)
      LanguageIndex = i;
  }
  TextTable.set_count(texts);
  for (int32_t number = 0; number < texts; ++number) {
    Array<String> &row = TextTable.at(number);
    row.set_count(languages);
    for (int32_t i = 0; i < languages; ++i) {
      Text(row.at(i));
      row.at(i).normalize_line_ends();
    }
  }
  if (static_cast<uint32_t>(Int()) != kConfigEndMagic)
    CorruptInstaller(DamageCode::ConfigEnd);
}

void ConfigReader::Read() {
  ReadProduct();
  Pages(config_.license_pages, DamageCode::LicensePageCount);
  Pages(config_.readme_pages, DamageCode::ReadmePageCount);
  ReadUninstallNames();
  ReadBackground();
  ReadBatches();
  ReadStubPatch();
  ReadDeletions();
  ReadAssociations();
  ReadUninstallData();
  ReadTexts();
}

} // namespace

void ReadConfigStream(MemoryStream &stream, int32_t own_file_size, ConfigHost &host, InstallConfig &config) {
  stream.Rewind();
  ConfigReader(stream, own_file_size, host, config).Read();
}

} // namespace korb
