#include "packer/read/InstallerReport.h"
#include "format/Texts.h"

#include <cstdio>

#include "archive/RunValues.h"
#include "packer/CodePage.h"
#include "packer/FlagNames.h"
#include "packer/ReadFile.h"
#include "packer/Words.h"
#include "packer/manifest/Texts.h"
#include "packer/read/InstallerReader.h"
#include "packer/read/ValueTree.h"

namespace korb::packer {

namespace {

std::string Hex(uint64_t value, int digits = 8) {
  char text[24];
  std::snprintf(text, sizeof text, "0x%0*llX", digits, static_cast<unsigned long long>(value));
  return text;
}

std::string Version(int32_t hundredths) {
  char text[24];
  std::snprintf(text, sizeof text, "%d.%02d", hundredths / 100, hundredths % 100);
  return text;
}

std::string Date(const FileDate &date) {
  char text[80];
  if (!date.has_date())
    return "none";
  std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", date.year, date.month, date.day, date.hour,
                date.minute, date.second);
  return text;
}

std::string Color(uint32_t color) {
  char text[24];
  std::snprintf(text, sizeof text, "#%02X%02X%02X", color & 0xFF, color >> 8 & 0xFF, color >> 16 & 0xFF);
  return text;
}

Value::List Words(std::span<const NamedValue> names, uint32_t bits) {
  Value::List words;
  for (const NamedValue &named : names)
    if (bits & static_cast<uint32_t>(named.value)) {
      words.emplace_back(std::string(named.name));
      bits &= ~static_cast<uint32_t>(named.value);
    }
  if (bits)
    words.emplace_back(Hex(bits));
  return words;
}

class Description {
public:
  Description(const InstallerReader &installer, int page)
      : installer_(installer), config_(installer.config), page_(page) {}

  // As far as it was read: a part that was not read whole has no meaning.
  Value Tell() const {
    Value all;
    if (installer_.reached >= Part::kSection)
      all.Add("section", Section());
    if (installer_.reached >= Part::kHeader)
      all.Add("header", Header());
    if (installer_.reached >= Part::kConfiguration)
      AddConfiguration(all);
    if (installer_.reached >= Part::kPayload)
      all.Add("file", Files());
    return all;
  }

private:
  Value Text(const String &text) const { return Text(text.c_str()); }
  Value Text(const char *text) const { return FromCodePage(text, page_); }

  Value Section() const {
    const ArchiveLocation &location = installer_.location;
    Value section;
    section.Add("position", location.section_file_pos)
        .Add("size", location.section_raw_size)
        .Add("address", Hex(location.section_address))
        .Add("file_size", location.file_size);
    return section;
  }

  Value Header() const {
    const ArchiveHeader &header = installer_.header;
    Value value;
    value
        .Add("version", Version(static_cast<int32_t>(
                            GetU32(installer_.file, static_cast<uint64_t>(installer_.location.section_file_pos) + 4))))
        .Add("config_size", header.config_size)
        .Add("config_key", Hex(header.config_key))
        .Add("stub_checksum", Hex(header.stub_checksum))
        .Add("archive_length", header.archive_length)
        .Add("file_count", header.sizes.count)
        .Add("payload_size", header.payload_size)
        .Add("payload_checksum", Hex(header.payload_checksum));
    return value;
  }

  void AddConfiguration(Value &all) const {
    all.Add("product", Product()).Add("install", Install()).Add("uninstall", Uninstall());
    all.Add("appearance", Appearance());
    Value pages, batch;
    pages.Add("license", Pages(config_.license_pages)).Add("readme", Pages(config_.readme_pages));
    batch.Add("pre_install", Text(config_.pre_install_batch))
        .Add("post_install", Text(config_.post_install_batch))
        .Add("final", Text(config_.final_batch))
        .Add("uninstall_first", Text(config_.uninstall_batch1))
        .Add("uninstall_last", Text(config_.uninstall_batch2));
    all.Add("pages", pages).Add("batch", batch).Add("payload", Payload()).Add("options", Options());
    all.Add("delete", Deletions()).Add("association", Associations()).Add("uninstall_value", UninstallValues());
    all.Add("language", Languages());
  }

  Value Product() const {
    Value product;
    product.Add("name", Text(ProductName))
        .Add("version", Text(config_.version))
        .Add("publisher", Text(config_.publisher))
        .Add("registry_key", Text(config_.product_registry))
        .Add("master_product", Text(config_.master_product))
        .Add("expires", config_.expiry_date.is_invalid() ? "none" : config_.expiry_date.format("yy-mm-dd").c_str())
        .Add("excluded_platforms", Words(kPlatforms, config_.excluded_platforms));
    return product;
  }

  Value Install() const {
    Value install;
    install.Add("directory", Text(config_.default_install_dir))
        .Add("common_directory", Text(CommonDir))
        .Add("start_menu", Text(config_.product_start_menu))
        .Add("desktop_group", Text(config_.desktop_group))
        .Add("shortcuts", WordFor(kShortcutModes, config_.shortcut_mode))
        .Add("min_phase_ms", int32_t{config_.min_phase_ms});
    return install;
  }

  Value Uninstall() const {
    Value uninstall;
    uninstall.Add("directory", Text(config_.uninstall_subdir))
        .Add("program", Text(config_.uninstaller_name))
        .Add("name", Text(config_.uninstall_name))
        .Add("date", Date(config_.uninstaller_date))
        .Add("patch_offset", config_.stub_patch_offset)
        .Add("patch_size", config_.stub_patch.length());
    return uninstall;
  }

  Value Appearance() const {
    Value appearance;
    if (HasInstallFlag(IF_CUSTOM_COLORS) || !installer_.background.is_empty())
      appearance.Add("title_color", Color(config_.looks.title_color));
    if (HasInstallFlag(IF_CUSTOM_COLORS))
      appearance.Add("top_color", Color(config_.looks.top_color))
          .Add("bottom_color", Color(config_.looks.bottom_color));
    appearance.Add("title_shadow", int32_t{config_.looks.title_shadow})
        .Add("background_size", installer_.background.length());
    return appearance;
  }

  Value Pages(const Array<String> &pages) const {
    Value::List list;
    for (int32_t i = 0; i < pages.count; ++i)
      list.push_back(Text(pages.at(i)));
    return list;
  }

  Value Payload() const {
    Value payload;
    payload.Add("layout", WordFor(kLayouts, config_.payload_in_file != 0))
        .Add("volume_name", Text(config_.volume_base_name))
        .Add("volume_serial", int64_t{config_.volume_serial})
        .Add("stored_size", installer_.header.payload_size);
    if (installer_.reached < Part::kPayload)
      return payload;
    Value::List volumes;
    for (const FoundVolume &volume : installer_.volumes)
      volumes.push_back(Value().Add("name", volume.name).Add("size", volume.size));
    return payload.Add("unpacked_size", installer_.unpacked_size).Add("volume", volumes);
  }

  Value Options() const {
    Value options;
    Value::List set;
    for (const FlagName &flag : kFlagNames)
      if (HasInstallFlag(flag.bit))
        set.emplace_back(flag.name);
    options.Add("raw", Hex(InstallFlags, 16)).Add("set", set);
    return options;
  }

  Value Deletions() const {
    Value::List list;
    for (int32_t i = 0; i < config_.deletions.count; ++i) {
      const FileDeletion &deletion = config_.deletions.at(i);
      list.push_back(Value()
                         .Add("name", Text(deletion.name))
                         .Add("when", WordFor(kDeletionKinds, deletion.kind))
                         .Add("value", Text(deletion.value))
                         .Add("options", int64_t{deletion.options}));
    }
    return list;
  }

  Value Associations() const {
    Value::List list;
    for (int32_t i = 0; i < config_.associations.count; ++i) {
      const FileAssociation &association = config_.associations.at(i);
      list.push_back(Value()
                         .Add("extension", Text(association.extension))
                         .Add("class", Text(association.file_class))
                         .Add("description", Text(association.description))
                         .Add("verb", Text(association.verb))
                         .Add("verb_label", Text(association.verb_label))
                         .Add("command", Text(association.command))
                         .Add("language", Text(association.language))
                         .Add("icon", Text(association.icon))
                         .Add("options", int64_t{association.flags}));
    }
    return list;
  }

  Value UninstallValues() const {
    Value::List list;
    for (int32_t i = 0; i < config_.uninstall_data.count; ++i) {
      const UninstallData &data = config_.uninstall_data.at(i);
      list.push_back(Value()
                         .Add("name", Text(data.name))
                         .Add("kind", WordFor(kValueKinds, data.kind))
                         .Add("value", Text(data.value)));
    }
    return list;
  }

  Value Languages() const {
    Value languages;
    for (int32_t i = 0; i < LanguageNames.count; ++i) {
      Value texts;
      for (int32_t number = 0; number < TextTable.count; ++number) {
        const size_t index = static_cast<size_t>(number);
        texts.Add(index < std::size(kTextRows) ? kTextRows[index].name : std::to_string(number),
                  Text(TextTable.at(number).at(i)));
      }
      languages.Add(FromCodePage(LanguageNames.at(i).c_str(), page_), texts);
    }
    return languages;
  }

  Value Files() const {
    Value::List list;
    for (const PayloadRecord &record : installer_.records) {
      Value file;
      file.Add("name", Text(record.name))
          .Add("size", record.size)
          .Add("kind", WordFor(kKinds, record.dest_kind))
          .Add("flags", Hex(record.file_flags, 2))
          .Add("condition", WordFor(kConditions, record.file_flags & FF_CONDITION))
          .Add("attributes", Words(kAttributes, record.attributes))
          .Add("date", Date(record.date));
      for (const auto &[name, text] : {std::pair{"label", record.label}, std::pair{"icon", record.icon},
                                       std::pair{"arguments", record.arguments}, std::pair{"target", record.target}})
        if (*text)
          file.Add(name, Text(text));
      list.push_back(std::move(file));
    }
    return list;
  }

  const InstallerReader &installer_;
  const InstallConfig &config_;
  int page_;
};

struct PartName {
  Part part;
  const char *what;
};

constexpr PartName kParts[] = {{Part::kSection, "PE headers, archive section"},
                               {Part::kHeader, "archive header, file sizes"},
                               {Part::kConfiguration, "configuration"},
                               {Part::kProgram, "program part"},
                               {Part::kPayload, "payload"},
                               {Part::kFiles, "files"},
                               {Part::kDeletions, "dates of old files"}};

} // namespace

bool InspectInstaller(const std::filesystem::path &path, int page, bool json, std::ostream &out,
                      std::ostream &problems) {
  InstallerReader installer(path);
  installer.Read();
  const Value all = Description(installer, page).Tell();
  if (json) {
    all.WriteJson(out);
    out << "\n";
  } else {
    all.WriteOutline(out);
  }
  if (installer.damage)
    problems << ShowPath(path) << ": error: " << installer.damage->Tell() << "\n";
  return !installer.damage;
}

bool VerifyInstaller(const std::filesystem::path &path, std::ostream &out) {
  InstallerReader installer(path);
  installer.Read();
  for (const PartName &part : kParts) {
    const bool good = installer.reached >= part.part;
    out << (good ? "good     " : "DAMAGED  ") << part.what;
    if (!good) {
      out << ": " << installer.damage.value().Tell() << "\n" << ShowPath(path) << ": damaged\n";
      return false;
    }
    if (part.part == Part::kProgram && !installer.program_as_built)
      out << " (changed since it was packed, which this installer doesn't look at)";
    if (part.part == Part::kPayload && !installer.volumes.empty())
      out << ", from " << installer.volumes.size() << " volume" << (installer.volumes.size() == 1 ? "" : "s");
    if (part.part == Part::kFiles)
      out << ": " << installer.records.size();
    out << "\n";
  }
  out << ShowPath(path) << ": sound\n";
  return true;
}

} // namespace korb::packer
