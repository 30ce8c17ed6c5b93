#include "packer/write/ConfigWriter.h"

#include <algorithm>

#include "archive/Scramble.h"
#include "core/Date.h"
#include "packer/write/BlockEncoder.h"
#include "packer/write/RecordWriter.h"

namespace korb::packer {

namespace {

void PutPages(Bytes &out, const std::vector<std::string> &pages, const char *what) {
  PutI32(out, static_cast<int32_t>(pages.size()));
  for (const std::string &page : pages)
    PutText(out, page, what);
}

void PutDeletions(Bytes &out, const std::vector<Deletion> &deletions) {
  for (const Deletion &deletion : deletions) {
    PutText(out, deletion.name, "the name of an old file");
    PutU8(out, static_cast<uint8_t>(deletion.kind));
    PutText(out, deletion.value, "the condition of an old file");
    PutU32(out, deletion.options);
  }
  PutText(out, kDeletionsEnd, "");
}

void PutAssociations(Bytes &out, const std::vector<Association> &associations) {
  PutI32(out, static_cast<int32_t>(associations.size()));
  for (const Association &association : associations) {
    PutU32(out, association.options);
    for (const std::string Association::*field :
         {&Association::extension, &Association::file_class, &Association::description, &Association::verb,
          &Association::verb_label, &Association::command, &Association::language, &Association::icon})
      PutText(out, association.*field, "an association");
  }
}

void PutUninstallValues(Bytes &out, const std::vector<UninstallValue> &values) {
  PutI32(out, static_cast<int32_t>(values.size()));
  for (const UninstallValue &value : values) {
    PutText(out, value.name, "the name of an uninstall value");
    PutU8(out, value.kind);
    PutText(out, value.value, "an uninstall value");
  }
}

// By number first: all languages of one text stand together.
void PutTexts(Bytes &out, const std::vector<Language> &languages) {
  size_t count = 0;
  for (const Language &language : languages)
    count = std::max(count, language.texts.size());
  PutU8(out, static_cast<uint8_t>(languages.size()));
  PutI32(out, static_cast<int32_t>(count));
  for (const Language &language : languages)
    PutText(out, language.name, "the name of a language");
  for (size_t number = 0; number < count; ++number)
    for (const Language &language : languages)
      PutText(out, number < language.texts.size() ? language.texts[number] : std::string(), "a text");
}

void PutStubPatch(Bytes &out, const Product &product) {
  if (!product.Has(IF_UNINSTALL))
    return;
  PutI32(out, product.stub_patch_offset);
  if (product.stub_patch_offset <= 0)
    return;
  if (product.stub_patch.size() != kStubPatchSize)
    throw PackError("the patch of the uninstaller has to have 2,216 bytes");
  PutBytes(out, product.stub_patch);
}

} // namespace

void PutDayRecord(Bytes &out, const Day &day) {
  static_assert(sizeof(Date) == kDateRecordSize, "a reader copies it into one");
  Date date;
  if (day.month != 0)
    date.set(day.month, day.day, day.year);
  for (int32_t value : {date.julian, date.month, date.day, date.year, date.weekday})
    PutI32(out, value);
}

Bytes WriteConfig(const Product &product, uint64_t without) {
  Bytes out;
  PutU64(out, product.flags & ~without);
  PutU16(out, product.min_phase_ms);
  PutU8(out, product.shortcut_mode);
  PutFileTime(out, product.uninstaller_date);
  PutText(out, product.publisher, "the publisher");
  PutText(out, product.name, "the product's name");
  PutText(out, product.common_dir, "the common directory");
  PutText(out, product.start_menu, "the start menu group");
  PutText(out, product.install_dir, "the installation directory");
  PutText(out, product.version, "the version");
  PutText(out, product.registry_key, "the registry key");
  PutPages(out, product.license_pages, "a licence page");
  PutPages(out, product.readme_pages, "a readme page");
  PutText(out, product.uninstall_subdir, "the uninstaller's directory");
  PutText(out, product.volume_base_name, "the volumes' name");
  PutText(out, product.uninstaller_name, "the uninstaller's name");
  PutText(out, product.uninstall_name, "the uninstall name");
  PutU32(out, product.title_color);
  PutU32(out, product.top_color);
  PutU32(out, product.bottom_color);
  PutU8(out, product.title_shadow);
  PutI32(out, static_cast<int32_t>(product.background.size()));
  PutBytes(out, product.background);
  if (product.Has(IF_MASTER_PRODUCT))
    PutText(out, product.master_product, "the master product");
  PutText(out, product.desktop_group, "the desktop group");
  for (const std::string Product::*batch :
       {&Product::pre_install_batch, &Product::post_install_batch, &Product::final_batch, &Product::uninstall_batch1,
        &Product::uninstall_batch2})
    PutText(out, product.*batch, "a batch");
  PutDayRecord(out, product.expiry);
  PutU32(out, product.excluded_platforms);
  PutU8(out, product.payload.layout == PayloadLayout::kInFile);
  PutU32(out, product.volume_serial);
  PutStubPatch(out, product);
  PutDeletions(out, product.deletions);
  PutAssociations(out, product.associations);
  PutUninstallValues(out, product.uninstall_values);
  PutTexts(out, product.languages);
  PutU32(out, kConfigEndMagic);
  return out;
}

StoredConfig StoreConfig(const Bytes &plain, size_t size) {
  StoredConfig stored{PackBlock(plain, CompressionLevel::kBest), ChecksumOf(plain)};
  stored.block.resize(std::max(stored.block.size(), size));
  if (stored.block.size() >= kConfigSizeLimit)
    throw PackError("the configuration is too large: " + std::to_string(stored.block.size()) +
                    " bytes packed, 10,485,759 at most; the pages, the texts and the bitmap are part of it");
  ScrambleBlock(stored.block.data(), static_cast<int32_t>(stored.block.size()), stored.key);
  return stored;
}

} // namespace korb::packer
