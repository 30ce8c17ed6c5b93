#include "packer/manifest/ManifestReader.h"

#include <algorithm>
#include <charconv>
#include <iostream>
#include <iterator>

#include "format/Texts.h"
#include "format/Words.h"
#include "packer/CodePage.h"
#include "packer/FileIo.h"
#include "packer/Words.h"
#include "packer/check/TextRules.h"
#include "packer/manifest/ImageFile.h"
#include "packer/manifest/ManifestFiles.h"
#include "packer/manifest/ManifestLists.h"
#include "packer/manifest/ManifestSource.h"

namespace korb::packer {

namespace fs = std::filesystem;

namespace {

constexpr int64_t kMaxI32 = INT32_MAX, kMaxU32 = UINT32_MAX;

// A text, or { file = "..." }: that of a program.
std::string ReadVersion(ManifestContext &context, ManifestTable &table) {
  constexpr char kKey[] = "version";
  const toml::node *node = table.Find(kKey, {KeyForm::kTextOrFile});
  if (!node || !node->is_table())
    return context.Text(table, kKey);
  const std::string name = table.FullName(kKey);
  context.product().places[name] = PlaceOf(*node);
  ManifestTable program(node->as_table(), name, context.findings);
  const auto file = program.Text("file");
  const Place place = program.PlaceOfKey("file");
  program.RefuseUnknown();
  if (file)
    return context.Convert(context.ProgramVersion(*file, place), place);
  if (!program.Has("file"))
    context.findings.Error(place, "'" + name + "' has to be a text or { file = \"...\" }");
  return {};
}

// An .ico with the images of all sizes.
void ReadIcon(ManifestContext &context, ManifestTable &table) {
  const auto name = table.Text("icon");
  const Place place = table.PlaceOfKey("icon");
  context.product().places[table.FullName("icon")] = place;
  const auto file = name ? context.ReadInput(*name, place) : std::nullopt;
  if (!file)
    return;
  IconFile icon = ReadIconFile(*file);
  if (!icon.fault.empty())
    context.findings.Error(place, "'" + *name + "' " + icon.fault);
  context.product().icon = std::move(icon.images);
}

void ReadProduct(ManifestContext &context, ManifestTable table) {
  Product &product = context.product();
  product.code_page = context.CodePage(table, "codepage");
  product.name = context.Text(table, "name");
  product.version = ReadVersion(context, table);
  product.publisher = context.Text(table, "publisher");
  product.copyright = FromCodePage(table.Text("copyright").value_or(std::string()), kUtf8);
  ReadIcon(context, table);
  product.registry_key = context.Text(table, "registry_key");
  product.master_product = context.Text(table, "master_product");
  if (table.Has("master_product"))
    product.flags |= IF_MASTER_PRODUCT;
  const FileTime expiry = context.Time(table, "expires").value_or(FileTime{});
  product.expiry = {expiry.year, expiry.month, expiry.day};
  product.places["product.expires"] = table.PlaceOfKey("expires");
  product.places["product.excluded_platforms"] = table.PlaceOfKey("excluded_platforms");
  product.excluded_platforms = static_cast<uint32_t>(table.NamedBits("excluded_platforms", kPlatforms).value_or(0));
  product.payload.will_be_signed = table.Boolean("signed").value_or(false);
  table.RefuseUnknown();
}

void ReadInstall(ManifestContext &context, ManifestTable table) {
  Product &product = context.product();
  product.install_dir = context.Text(table, "directory");
  product.common_dir = context.Text(table, "common_directory");
  product.start_menu = context.Text(table, "start_menu");
  product.desktop_group = context.Text(table, "desktop_group");
  product.shortcut_mode = static_cast<uint8_t>(table.Named("shortcuts", kShortcutModes, 0, 255).value_or(0));
  product.min_phase_ms = static_cast<uint16_t>(table.Integer("min_phase_ms", 0, kMaxPhaseMs).value_or(500));
  table.RefuseUnknown();
}

void ReadUninstall(ManifestContext &context, ManifestTable table) {
  Product &product = context.product();
  product.uninstall_subdir = context.Text(table, "directory");
  product.uninstaller_name = context.Text(table, "program", product.uninstaller_name);
  product.uninstall_name = context.Text(table, "name");
  product.uninstaller_date = context.Time(table, "date").value_or(FileTime{});
  const auto icon = table.Text("icon"), patch = table.Text("patch");
  product.stub_patch_offset = static_cast<int32_t>(table.Integer("patch_offset", 0, kMaxI32).value_or(0));
  for (const char *key : {"icon", "patch", "patch_offset"})
    product.places[std::string("uninstall.") + key] = table.PlaceOfKey(key);
  table.RefuseUnknown();
  if (icon && patch)
    context.findings.Error(table.PlaceOfKey("patch"), "either 'uninstall.icon' or 'uninstall.patch', not both");
  if (icon) {
    if (const auto file = context.ReadInput(*icon, table.PlaceOfKey("icon"))) {
      for (const IconImage &image : ReadIconFile(*file).images)
        if (image.data.size() == kStubPatchSize && !image.is_png && product.stub_patch.empty())
          product.stub_patch = image.data;
      if (product.stub_patch.empty())
        context.findings.Error(table.PlaceOfKey("icon"),
                               "'" + *icon + "' holds no icon of 32 by 32 pixels in 256 colours (2,216 bytes)");
    }
  } else if (patch) {
    if (auto file = context.ReadInput(*patch, table.PlaceOfKey("patch")))
      product.stub_patch = std::move(*file);
    if (product.stub_patch.size() != kStubPatchSize)
      context.findings.Error(table.PlaceOfKey("patch"), "a patch has to have 2,216 bytes");
  }
  if (product.stub_patch_offset > 0 && !icon && !patch)
    context.findings.Error(table.PlaceOfKey("patch_offset"), "there is neither an icon nor a patch to put there");
}

// `given` comes from the command line and wins. Before the files, none of which is the output.
void ReadOutput(ManifestContext &context, ManifestTable table, const fs::path &given) {
  fs::path &output = context.manifest.output;
  const auto file = table.Text("file");
  table.RefuseUnknown();
  if (!given.empty())
    output = given;
  else if (file)
    output = context.InputPath(*file, table.PlaceOfKey("file"));
  else if (!context.manifest.inputs.empty())
    output = fs::path(context.manifest.inputs.front()).replace_extension(".exe");
  else
    context.findings.Error({}, "the installer needs a name: 'output.file', or -o");
  if (const auto bad = file ? file->find_first_of("\\\r\n\t") : std::string::npos; bad != std::string::npos)
    context.findings.Error(table.PlaceOfKey("file"),
                           "'output.file' is a file of this machine: folders are divided by '/'");
}

// "#RRGGBB", or the number that the archive holds, 0x00BBGGRR.
std::optional<uint32_t> ReadColor(ManifestTable &table, std::string_view key) {
  const toml::node *node = table.Find(key, {KeyForm::kColor, {}, 0, kMaxU32});
  if (!node || !node->is_string()) {
    const auto number = table.Integer(key, 0, kMaxU32);
    return number ? std::optional(static_cast<uint32_t>(*number)) : std::nullopt;
  }
  const std::string &text = node->as_string()->get();
  uint32_t rgb = 0;
  const char *end = text.data() + text.size();
  if (text.size() != 7 || text[0] != '#' || std::from_chars(text.data() + 1, end, rgb, 16).ptr != end) {
    table.Report().Error(PlaceOf(*node), "'" + table.FullName(key) + "' has to be a colour like \"#1E90FF\"");
    return std::nullopt;
  }
  return (rgb & 0xFF) << 16 | (rgb & 0xFF00) | rgb >> 16;
}

/// Whether black is easier to read on a colour than white.
bool IsLight(uint32_t color) {
  // What the eye takes for bright: mostly green, hardly blue.
  return 299 * (color & 0xFF) + 587 * (color >> 8 & 0xFF) + 114 * (color >> 16) > 150 * 1000;
}

/// After the options, which tell whether the colours are the system's.
void ReadAppearance(ManifestContext &context, ManifestTable table) {
  Product &product = context.product();
  const auto title = ReadColor(table, "title_color"), top = ReadColor(table, "top_color"),
             bottom = ReadColor(table, "bottom_color");
  product.places["appearance.title_color"] = table.PlaceOfKey("title_color");
  if (top || bottom) {
    product.top_color = top ? *top : *bottom;
    product.bottom_color = bottom.value_or(product.top_color);
  }
  if (const auto name = table.Text("background")) {
    if (const auto file = context.ReadInput(*name, table.PlaceOfKey("background"))) {
      if (auto bitmap = BitmapOf(*file))
        product.background = std::move(*bitmap);
      else
        context.findings.Error(table.PlaceOfKey("background"), "'" + *name + "' " + BitmapFault(*file));
    }
  }
  const bool is_picture = !product.background.empty();
  product.title_color = title.value_or(IsLight(product.top_color) && !is_picture ? 0 : product.title_color);
  // A shadow is black: under a dark title, as the system's mostly is, it would only look smeared.
  const bool is_system = !product.Has(IF_CUSTOM_COLORS) && !is_picture;
  const uint8_t shadow = is_system || !IsLight(product.title_color) ? 0 : product.title_shadow;
  product.title_shadow = static_cast<uint8_t>(table.Integer("title_shadow", 0, 255).value_or(shadow));
  table.RefuseUnknown();
}

// A page is many words, none of them for a machine.
void CheckPage(ManifestContext &context, const toml::node &page, const std::string &text) {
  const std::string word = page.value_or(std::string());
  std::error_code error;
  if (!word.empty() && word.find_first_of(" \t\r\n") == word.npos &&
      !fs::is_regular_file(context.InputPath(word, PlaceOf(page)), error)) // of which TextOrFile warns
    context.findings.Warn(PlaceOf(page), Warning::kTextIsFileName,
                          "'" + word + "' is the whole text of the page, and there is no file of that " +
                              "name: a file is { file = \"...\" }");
  if (text.starts_with("{\\rtf"))
    context.findings.Warn(PlaceOf(page), Warning::kRtfPage,
                          "the page shows its text as it is, with all codes of RTF: save it as plain text");
}

void ReadPages(ManifestContext &context, ManifestTable table) {
  for (const auto &[key, pages] :
       {std::pair{"license", &context.product().license_pages}, std::pair{"readme", &context.product().readme_pages}}) {
    context.product().places[table.FullName(key)] = table.PlaceOfKey(key);
    for (const toml::node *page : table.Elements(key, {KeyForm::kPages})) {
      pages->push_back(context.TextOrFile(*page, table.FullName(key)));
      CheckPage(context, *page, pages->back());
    }
  }
  table.RefuseUnknown();
}

// What a batch holds that was a path in double quotes: a control character that is no line end and doesn't indent.
std::string SpoiltPathIn(const std::string &batch) {
  std::string rest;
  for (size_t i = 0; i < batch.size(); ++i) {
    const char c = batch[i], before = i == 0 ? '\n' : batch[i - 1];
    const bool ends_line = c == '\n' || (c == '\r' && i + 1 < batch.size() && batch[i + 1] == '\n');
    const bool indents = c == '\t' && (before == '\t' || before == ' ' || before == '\n');
    if (!ends_line && !indents)
      rest += c;
  }
  return ControlCharacterIn(rest);
}

void ReadBatches(ManifestContext &context, ManifestTable table) {
  const std::pair<const char *, std::string Product::*> batches[] = {{"pre_install", &Product::pre_install_batch},
                                                                     {"post_install", &Product::post_install_batch},
                                                                     {"final", &Product::final_batch},
                                                                     {"uninstall_first", &Product::uninstall_batch1},
                                                                     {"uninstall_last", &Product::uninstall_batch2}};
  for (const auto &[key, field] : batches)
    if (const toml::node *node = table.Find(key, {KeyForm::kTextOrFile})) {
      context.product().places[table.FullName(key)] = PlaceOf(*node);
      if (const auto control = SpoiltPathIn(node->value_or(std::string())); !control.empty())
        context.TellControlCharacter(table.FullName(key), control, PlaceOf(*node));
      context.product().*field = context.TextOrFile(*node, table.FullName(key));
    }
  table.RefuseUnknown();
}

void ReadPayload(ManifestContext &context, ManifestTable table) {
  Product &product = context.product();
  product.places["payload.layout"] = table.PlaceOfKey("layout");
  product.payload.layout = static_cast<PayloadLayout>(table.Named("layout", kLayouts, 0, 1).value_or(0));
  product.payload.volume_size =
      static_cast<int32_t>(table.Named("volume_size", kDiskSizes, kVolumeHeaderSize + 1, kMaxI32).value_or(0));
  if (const auto size = table.Integer("first_part_size", 0, kMaxI32))
    product.payload.first_part_size = static_cast<int32_t>(*size);
  if (product.payload.first_part_size && product.payload.volume_size == 0)
    context.findings.Error(table.PlaceOfKey("first_part_size"),
                           "'payload.first_part_size' needs 'payload.volume_size'");
  product.compression = static_cast<CompressionLevel>(table.Named("compression", kCompressionLevels, 0, 1).value_or(0));
  product.volume_base_name = context.Text(table, "volume_name", product.volume_base_name);
  product.volume_serial = static_cast<uint32_t>(table.Integer("volume_serial", INT32_MIN, kMaxU32).value_or(1));
  table.RefuseUnknown();
}

void ReadUpgrade(ManifestContext &context, ManifestTable table) {
  const Place place = table.PlaceOfKey("from");
  context.product().places["upgrade.from"] = place;
  for (const std::string &name : table.Texts("from"))
    context.manifest.earlier.push_back({name, context.InputPath(name, place), place});
  table.RefuseUnknown();
}

// The option word, after what brings bits along: a bit that a value has brought along can still be told otherwise.
void ReadOptions(ManifestContext &context, ManifestTable table) {
  Product &product = context.product();
  product.flags |= static_cast<uint64_t>(table.Integer("raw", INT64_MIN, INT64_MAX).value_or(0));
  for (const FlagName &flag : kFlagNames) {
    const auto value = table.Boolean(flag.name);
    product.places[table.FullName(flag.name)] = table.PlaceOfKey(flag.name);
    if (value)
      product.flags = *value ? product.flags | flag.bit : product.flags & ~flag.bit;
  }
  table.RefuseUnknown();
}

// The program puts the name into a text before it takes that for a format, in which a percent sign has to be doubled.
void WriteOutPercent(Product &product) {
  std::string name;
  for (const char c : product.name)
    name += c == '%' ? std::string("%%") : std::string(1, c);
  if (name == product.name)
    return;
  for (Language &language : product.languages)
    for (size_t number = 0; number < std::min(language.texts.size(), std::size(kTextRows)); ++number)
      if (*kTextRows[number].form)
        language.texts[number] = WithProductName(language.texts[number], name);
}

// What the list of programs shows besides, unless the author says it otherwise.
void AddUninstallFacts(Product &product) {
  const auto add = [&](const char *name, UninstallDataKind kind, std::string value) {
    if (std::none_of(product.uninstall_values.begin(), product.uninstall_values.end(),
                     [&](const UninstallValue &given) { return LowerCase(given.name) == LowerCase(name); }))
      product.uninstall_values.push_back({name, kind, std::move(value), {}});
  };
  if (!product.Has(IF_UNINSTALL))
    return;
  const std::string &folder = product.uninstall_subdir;
  add("DisplayIcon", kUninstallText,
      path_variable::kInstallDir + std::string("\\") + folder + (folder.empty() || folder.ends_with('\\') ? "" : "\\") +
          product.uninstaller_name + ",0"); // else a comma in the path would end it
  uint64_t size = 0;
  for (const FileEntry &file : product.files)
    size += (file.flags & FF_CONDITION) == FF_PLACE_NEVER ? 0 : file.contents.size();
  add("EstimatedSize", kUninstallNumber, std::to_string((size + 1023) / 1024)); // KB
}

// First of all, since warnings of these names are left out from here on.
void ReadAllowed(ManifestContext &context, ManifestTable &root) {
  for (const toml::node *name : root.Elements("allow", {KeyForm::kNames, WarningWords()}))
    if (name->is_string())
      context.findings.Allow(name->as_string()->get(), PlaceOf(*name));
    else
      context.findings.Error(PlaceOf(*name), "'allow' has to be an array of names of warnings");
}

void ReadTables(ManifestContext &context, ManifestTable root, const fs::path &output) {
  KnowSourceKeys(root);
  ReadAllowed(context, root);
  ReadOutput(context, root.Table("output"), output);
  ReadProduct(context, root.Table("product"));
  ReadInstall(context, root.Table("install"));
  ReadUninstall(context, root.Table("uninstall"));
  ReadPages(context, root.Table("pages"));
  ReadBatches(context, root.Table("batch"));
  ReadPayload(context, root.Table("payload"));
  ReadUpgrade(context, root.Table("upgrade"));
  ReadOptions(context, root.Table("options"));
  ReadAppearance(context, root.Table("appearance"));
  ReadLists(context, root);
  ReadLanguages(context, root);
  WriteOutPercent(context.product());
  ReadFiles(context, root);
  AddUninstallFacts(context.product());
  root.RefuseUnknown();
}

std::optional<Bytes> ReadStandardInput() {
  const std::string text(std::istreambuf_iterator<char>(std::cin), {});
  return Bytes(text.begin(), text.end());
}

} // namespace

Manifest ReadManifest(const fs::path &path, std::optional<int64_t> newest, Findings &findings,
                      const ManifestSettings &settings) {
  const bool is_input = path == kStandardInput;
  Findings faults;
  ManifestContext context(is_input ? fs::path() : path, newest, faults);
  const auto text = is_input ? ReadStandardInput() : ReadFileBytes(path);
  if (!text) {
    findings.Error({}, "can't read the manifest: " + WhyUnreadable(path));
    return context.manifest;
  }
  const auto table = LoadManifest(context, *text, settings.variables);
  findings.Merge(faults);
  if (!table)
    return context.manifest;
  faults = {}; // a text whose variables are unknown has other faults too
  context.manifest.was_parsed = true;
  ReadTables(context, ManifestTable(&*table, "", faults), settings.output);
  findings.Merge(faults);
  return std::move(context.manifest);
}

const KeyForms &KnownKeys() {
  static const auto keys = [] {
    KeyForms asked;
    Findings findings;
    findings.asked_keys = &asked;
    ManifestContext context({}, std::nullopt, findings);
    const toml::table least =
        toml::parse("[output]\n[product]\n[install]\n[uninstall]\n[appearance]\n[pages]\n[batch]\n"
                    "[payload]\n[upgrade]\n[options]\n[file_defaults]\n[[delete]]\n[[association]]\n"
                    "[[uninstall_value]]\n[[language]]\n[[file]]\n[[tree]]\n");
    ReadTables(context, ManifestTable(&least, "", findings), {});
    return asked;
  }();
  return keys;
}

} // namespace korb::packer
