#include "packer/read/InstallerReport.h"

#include <cstdio>

#include "core/RunValues.h"
#include "format/Texts.h"
#include "packer/FileIo.h"
#include "packer/IconFile.h"
#include "packer/VersionResource.h"
#include "packer/Words.h"
#include "packer/read/InstallerReader.h"
#include "packer/read/ReportText.h"

namespace korb::packer {

namespace {

constexpr size_t kLongestText = 100; // bytes of a text that the outline shows

// The beginning of a long text, cut between characters.
std::string CutText(const std::string &text) {
  if (text.size() <= kLongestText)
    return Written(text);
  size_t end = kLongestText;
  while ((text[end] & 0xC0) == 0x80)
    --end;
  return Written(text.substr(0, end)) + "... (" + std::to_string(text.size()) + " bytes)";
}

std::string OnOneLine(const Json &value) {
  if (value.is_string())
    return CutText(value.get_ref<const std::string &>());
  if (!value.is_structured())
    return Written(value);
  std::string line;
  for (const auto &[name, entry] : value.items())
    line += (line.empty() ? "" : ", ") + (value.is_object() ? name + " = " : "") + OnOneLine(entry);
  return value.is_array() ? "[" + line + "]" : line;
}

// One line for each value of a table; a table in a list takes one line in all. Long texts are cut.
void WriteOutline(const Json &table, const std::string &indent, std::ostream &out) {
  for (const auto &[name, value] : table.items()) {
    if (value.is_object()) {
      out << indent << name << "\n";
      WriteOutline(value, indent + "  ", out);
    } else if (value.is_array() && !value.empty() && value.front().is_object()) {
      out << indent << name << " (" << value.size() << ")\n";
      for (const Json &one : value)
        out << indent << "  " << OnOneLine(one) << "\n";
    } else {
      out << indent << name << " = " << OnOneLine(value) << "\n";
    }
  }
}

std::string VersionText(uint32_t hundredths) {
  const int32_t version = static_cast<int32_t>(hundredths);
  char text[24];
  std::snprintf(text, sizeof text, "%d.%02d", version / 100, version % 100);
  return text;
}

std::string ColorText(uint32_t color) {
  char text[24];
  std::snprintf(text, sizeof text, "#%02X%02X%02X", color & 0xFF, color >> 8 & 0xFF, color >> 16 & 0xFF);
  return text;
}

class Description {
public:
  explicit Description(const InstallerReader &installer) : installer_(installer), config_(installer.config) {}

  // As far as it was read: a part that was not read whole has no meaning.
  Json Tell() const {
    Json all = Json::object();
    if (installer_.reached >= Part::kSection)
      all["section"] = TellSection();
    if (installer_.reached >= Part::kHeader)
      all["header"] = TellHeader();
    if (installer_.reached >= Part::kSection)
      all["program"] = TellProgram();
    if (installer_.reached >= Part::kConfiguration)
      TellConfiguration(all);
    if (installer_.reached >= Part::kPayload)
      all["file"] = TellFiles();
    return all;
  }

private:
  std::string Text(const String &text) const { return Text(text.c_str()); }
  std::string Text(const char *text) const { return FromCodePage(text, installer_.code_page); }

  Json TellSection() const {
    const ArchiveLocation &location = installer_.location;
    return {{"position", location.section_file_pos},
            {"size", location.section_raw_size},
            {"address", HexText(location.section_address)},
            {"file_size", installer_.file.size()},
            {"signature_size", location.is_signed() ? location.signature.size : 0}};
  }

  // What Windows shows of the file.
  Json TellProgram() const {
    Json images = Json::array(), texts = Json::object();
    for (const std::string &image : IconImagesOf(installer_.file))
      images.push_back(image);
    const VersionInfo info = ReadVersionInfo(installer_.file).value_or(VersionInfo{});
    for (const auto &[name, text] : info.texts)
      texts[name] = text;
    return {{"icon", images}, {"version", DottedNumbers(info.numbers)}, {"texts", texts}};
  }

  Json TellHeader() const {
    const ArchiveHeader &header = installer_.header;
    const uint64_t at = static_cast<uint64_t>(installer_.location.section_file_pos) + header::kVersionAt;
    return {{"version", VersionText(GetU32(installer_.file, at))},
            {"config_size", header.config_size},
            {"config_key", HexText(header.config_key)},
            {"stub_checksum", HexText(header.stub_checksum)},
            {"archive_length", header.archive_length},
            {"file_count", header.sizes.count},
            {"payload_size", header.payload_size},
            {"payload_checksum", HexText(header.payload_checksum)}};
  }

  void TellConfiguration(Json &all) const {
    all["product"] = TellProduct();
    all["install"] = TellInstall();
    all["uninstall"] = TellUninstall();
    all["appearance"] = TellAppearance();
    all["pages"] = {{"license", TellPages(config_.license_pages)}, {"readme", TellPages(config_.readme_pages)}};
    all["batch"] = {{"pre_install", Text(config_.pre_install_batch)},
                    {"post_install", Text(config_.post_install_batch)},
                    {"final", Text(config_.final_batch)},
                    {"uninstall_first", Text(config_.uninstall_batch1)},
                    {"uninstall_last", Text(config_.uninstall_batch2)}};
    all["payload"] = TellPayload();
    all["options"] = TellOptions();
    all["delete"] = TellDeletions();
    all["association"] = TellAssociations();
    all["uninstall_value"] = TellUninstallValues();
    all["language"] = TellLanguages();
  }

  Json TellProduct() const {
    return {{"codepage", installer_.code_page == kUtf8 ? "utf-8" : "system"},
            {"name", Text(ProductName)},
            {"version", Text(config_.version)},
            {"publisher", Text(config_.publisher)},
            {"registry_key", Text(config_.product_registry)},
            {"master_product", Text(config_.master_product)},
            {"expires", config_.expiry_date.is_invalid() ? "none" : config_.expiry_date.format("yy-mm-dd").c_str()},
            {"excluded_platforms", WordsOf(kPlatforms, config_.excluded_platforms)}};
  }

  Json TellInstall() const {
    return {{"directory", Text(config_.default_install_dir)},
            {"common_directory", Text(CommonDir)},
            {"start_menu", Text(config_.product_start_menu)},
            {"desktop_group", Text(config_.desktop_group)},
            {"shortcuts", WordFor(kShortcutModes, config_.shortcut_mode)},
            {"min_phase_ms", config_.min_phase_ms}};
  }

  Json TellUninstall() const {
    return {{"directory", Text(config_.uninstall_subdir)}, {"program", Text(config_.uninstaller_name)},
            {"name", Text(config_.uninstall_name)},        {"date", DateText(config_.uninstaller_date)},
            {"patch_offset", config_.stub_patch_offset},   {"patch_size", config_.stub_patch.length()}};
  }

  Json TellAppearance() const {
    Json appearance = Json::object();
    if (HasInstallFlag(IF_CUSTOM_COLORS) || !installer_.background.is_empty())
      appearance["title_color"] = ColorText(config_.looks.title_color);
    if (HasInstallFlag(IF_CUSTOM_COLORS)) {
      appearance["top_color"] = ColorText(config_.looks.top_color);
      appearance["bottom_color"] = ColorText(config_.looks.bottom_color);
    }
    appearance["title_shadow"] = config_.looks.title_shadow;
    appearance["background_size"] = installer_.background.length();
    return appearance;
  }

  Json TellPages(const Array<String> &pages) const {
    Json list = Json::array();
    for (int32_t i = 0; i < pages.count; ++i)
      list.push_back(Text(pages.at(i)));
    return list;
  }

  Json TellPayload() const {
    Json payload = {{"layout", WordFor(kLayouts, config_.payload_in_file != 0)},
                    {"volume_name", Text(config_.volume_base_name)},
                    {"volume_serial", config_.volume_serial},
                    {"stored_size", installer_.header.payload_size}};
    if (installer_.reached < Part::kPayload)
      return payload;
    payload["unpacked_size"] = installer_.unpacked_size;
    Json &volumes = payload["volume"] = Json::array();
    for (const FoundVolume &volume : installer_.volumes)
      volumes.push_back({{"name", volume.name}, {"size", volume.size}});
    return payload;
  }

  Json TellOptions() const {
    Json set = Json::array();
    for (const FlagName &flag : kFlagNames)
      if (HasInstallFlag(flag.bit))
        set.push_back(flag.name);
    return {{"raw", HexText(InstallFlags, 16)}, {"set", set}};
  }

  Json TellDeletions() const {
    Json list = Json::array();
    for (int32_t i = 0; i < config_.deletions.count; ++i) {
      const FileDeletion &deletion = config_.deletions.at(i);
      list.push_back({{"name", Text(deletion.name)},
                      {"when", WordFor(kDeletionKinds, deletion.kind)},
                      {"value", Text(deletion.value)},
                      {"options", deletion.options}});
    }
    return list;
  }

  Json TellAssociations() const {
    Json list = Json::array();
    for (int32_t i = 0; i < config_.associations.count; ++i) {
      const FileAssociation &association = config_.associations.at(i);
      list.push_back({{"extension", Text(association.extension)},
                      {"class", Text(association.file_class)},
                      {"description", Text(association.description)},
                      {"verb", Text(association.verb)},
                      {"verb_label", Text(association.verb_label)},
                      {"command", Text(association.command)},
                      {"language", Text(association.language)},
                      {"icon", Text(association.icon)},
                      {"options", association.flags}});
    }
    return list;
  }

  Json TellUninstallValues() const {
    Json list = Json::array();
    for (int32_t i = 0; i < config_.uninstall_data.count; ++i) {
      const UninstallData &data = config_.uninstall_data.at(i);
      list.push_back(
          {{"name", Text(data.name)}, {"kind", WordFor(kValueKinds, data.kind)}, {"value", Text(data.value)}});
    }
    return list;
  }

  Json TellLanguages() const {
    Json languages = Json::object();
    for (int32_t i = 0; i < LanguageNames.count; ++i) {
      // A key that is looked for among thousands takes its time, and no number comes twice.
      Json::object_t texts;
      for (int32_t number = 0; number < TextTable.count; ++number) {
        const size_t index = static_cast<size_t>(number);
        texts.emplace_back(index < std::size(kTextRows) ? kTextRows[index].name : std::to_string(number),
                           Text(TextTable.at(number).at(i)));
      }
      std::string name = Text(LanguageNames.at(i));
      if (languages.contains(name)) // an author's tool may have let that pass
        name += " (" + std::to_string(i + 1) + ")";
      languages[name] = std::move(texts);
    }
    return languages;
  }

  Json TellFiles() const {
    Json list = Json::array();
    for (const PayloadRecord &record : installer_.records) {
      Json file = {{"name", Text(record.name)},
                   {"size", record.size},
                   {"kind", WordFor(kKinds, record.dest_kind)},
                   {"flags", HexText(record.file_flags, 2)},
                   {"condition", WordFor(kConditions, record.file_flags & FF_CONDITION)},
                   {"attributes", WordsOf(kAttributes, record.attributes)},
                   {"date", DateText(record.date)}};
      for (const auto &[name, text] : {std::pair{"label", record.label}, std::pair{"icon", record.icon},
                                       std::pair{"arguments", record.arguments}, std::pair{"target", record.target}})
        if (*text)
          file[name] = Text(text);
      list.push_back(std::move(file));
    }
    return list;
  }

  const InstallerReader &installer_;
  const InstallConfig &config_;
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
  InstallerReader installer(path, page);
  installer.Read();
  const Json all = Description(installer).Tell();
  if (json)
    out << Written(all, 2) << "\n";
  else
    WriteOutline(all, "", out);
  if (installer.damage)
    problems << ShowPath(path) << ": error: " << installer.damage->what() << "\n";
  return !installer.damage;
}

bool VerifyInstaller(const std::filesystem::path &path, bool strict, std::ostream &out) {
  InstallerReader installer(path);
  installer.Read();
  if (installer.is_other_file) {
    out << ShowPath(path) << ": " << installer.damage->what() << "\n";
    return false;
  }
  const bool changed = installer.program == ProgramState::kChanged;
  for (const PartName &part : kParts) {
    const bool good = installer.reached >= part.part;
    const bool is_program = part.part == Part::kProgram;
    out << (!good ? "DAMAGED  " : is_program && changed ? "CHANGED  " : "good     ") << part.what;
    if (!good) {
      out << ": " << installer.damage.value().what();
      if (is_program && installer.program == ProgramState::kSigned)
        out << ": an installer with 'options.verify_stub' can't be signed";
      out << "\n" << ShowPath(path) << ": damaged\n";
      return false;
    }
    if (is_program && changed)
      out << ": not as it was built, which this installer doesn't look at";
    if (is_program && installer.program == ProgramState::kSigned)
      out << ", signed";
    if (part.part == Part::kPayload && !installer.volumes.empty())
      out << ", from " << installer.volumes.size() << " volume" << (installer.volumes.size() == 1 ? "" : "s");
    if (part.part == Part::kFiles)
      out << ": " << installer.records.size();
    out << "\n";
  }
  out << ShowPath(path) << (changed ? ": sound, but changed since it was built\n" : ": sound\n");
  return !(strict && changed);
}

} // namespace korb::packer
