#include "packer/manifest/ManifestLists.h"

#include "format/Texts.h"
#include "packer/CodePage.h"
#include "packer/FileIo.h"
#include "packer/manifest/EnglishTexts.h"

namespace korb::packer {

namespace {

constexpr int64_t kMaxU32 = 0xFFFFFFFF;

// The value of a condition or of a number: a text, or an integer or date as TOML has it.
std::string ValueText(ManifestContext &context, ManifestTable &table, std::string_view key) {
  const toml::node *node = table.Find(key);
  char text[32];
  if (!node || node->is_string())
    return context.Text(table, key);
  if (const auto *integer = node->as_integer())
    return std::to_string(integer->get());
  if (node->is_date() || node->is_date_time()) {
    const FileTime time = context.Time(table, key).value_or(FileTime{});
    std::snprintf(text, sizeof text, "%d/%d/%04d", time.month, time.day, time.year);
    std::string date = text;
    std::snprintf(text, sizeof text, " %d:%02d:%02d", time.hour, time.minute, time.second);
    return node->is_date() ? date : date + text;
  }
  context.findings.Error(PlaceOf(*node), "'" + table.FullName(key) + "' has to be a text, an integer or a date");
  return {};
}

void ReadDeletion(ManifestContext &context, ManifestTable table) {
  Deletion deletion;
  deletion.place = table.PlaceOfTable();
  deletion.name = context.Text(table, "name");
  deletion.kind = static_cast<int8_t>(table.Named("when", kDeletionKinds, -128, 127).value_or(kDeleteAlways));
  deletion.value = ValueText(context, table, "value");
  deletion.options = static_cast<uint32_t>(table.Integer("options", 0, kMaxU32).value_or(0));
  if (table.Boolean("at_restart").value_or(false))
    deletion.options |= kDeleteAtRestart;
  table.RefuseUnknown();
  context.product().deletions.push_back(std::move(deletion));
}

void ReadAssociation(ManifestContext &context, ManifestTable table) {
  Association association;
  association.place = table.PlaceOfTable();
  association.options = static_cast<uint32_t>(table.Integer("options", 0, kMaxU32).value_or(0));
  if (table.Boolean("default").value_or(false))
    association.options |= kDefaultVerb;
  const std::pair<const char *, std::string Association::*> texts[] = {
      {"extension", &Association::extension},     {"class", &Association::file_class},
      {"description", &Association::description}, {"verb", &Association::verb},
      {"verb_label", &Association::verb_label},   {"command", &Association::command},
      {"language", &Association::language},       {"icon", &Association::icon}};
  for (const auto &[key, field] : texts)
    association.*field = context.Text(table, key);
  table.RefuseUnknown();
  context.product().associations.push_back(std::move(association));
}

void ReadUninstallValue(ManifestContext &context, ManifestTable table) {
  UninstallValue value;
  value.place = table.PlaceOfTable();
  value.name = context.Text(table, "name");
  const toml::node *number = table.Find("value");
  value.kind = static_cast<uint8_t>(table.Named("kind", kValueKinds, 0, 255)
                                        .value_or(number && number->is_integer() ? kUninstallNumber : kUninstallText));
  value.value = ValueText(context, table, "value");
  table.RefuseUnknown();
  context.product().uninstall_values.push_back(std::move(value));
}

// The number of the text that `key` names; -1, reported, when there is none.
int TextNumber(ManifestContext &context, std::string_view key, const Place &place) {
  std::vector<std::string_view> names;
  for (size_t number = 0; number < std::size(kTextRows); ++number) {
    if (key == kTextRows[number].name)
      return static_cast<int>(number);
    names.push_back(kTextRows[number].name);
  }
  if (!key.empty() && key.size() < 6 && key.find_first_not_of("0123456789") == key.npos) {
    const int number = std::stoi(std::string(key));
    if (number < kMaxTexts)
      return number;
  }
  const std::string_view near = NearMiss(key, names);
  context.findings.Error(place, "unknown text '" + std::string(key) + "'" +
                                    (near.empty() ? "; a text has a name, or a number from 0 to 9999"
                                                  : "; did you mean '" + std::string(near) + "'?"));
  return -1;
}

void ReadTexts(ManifestContext &context, const toml::table *table, int page, Language &language) {
  if (!table)
    return;
  for (const auto &[key, node] : *table) {
    const Place place = PlaceOf(key.source());
    const int number = TextNumber(context, key.str(), place);
    if (number < 0)
      continue;
    if (language.texts.size() <= static_cast<size_t>(number))
      language.texts.resize(static_cast<size_t>(number) + 1);
    language.texts[static_cast<size_t>(number)] =
        context.TextOrFile(node, language.name + " text '" + std::string(key.str()) + "'", page);
    context.product().places["texts." + language.name + "." + std::to_string(number)] = place;
  }
}

// A file of texts, by their names as in [texts]. Its faults are told with its own lines.
std::optional<toml::table> ParseTextFile(ManifestContext &context, const std::string &name, const Place &place) {
  const auto bytes = context.ReadInput(name, place);
  if (!bytes)
    return std::nullopt;
  return ParseToml(*bytes, ShowPath(context.InputPath(name)), context.findings);
}

void ReadLanguage(ManifestContext &context, ManifestTable table) {
  Language language{{}, EnglishTexts(), table.PlaceOfTable()};
  const int page = static_cast<int>(table.Integer("codepage", 0, 65535).value_or(context.code_page));
  if (!IsCodePage(page)) {
    context.findings.Error(table.PlaceOfKey("codepage"), "the code page has to be one from 1250 to 1258");
    return;
  }
  if (const auto name = table.Text("name"))
    language.name = context.Convert(*name, table.PlaceOfKey("name"));
  else
    context.findings.Error(table.PlaceOfTable(), "a [[language]] needs a 'name'");
  ManifestTable texts = table.Table("texts");
  const auto file = table.Text("file");
  table.RefuseUnknown();
  if (file)
    if (const auto parsed = ParseTextFile(context, *file, table.PlaceOfKey("file")))
      ReadTexts(context, &*parsed, page, language);
  ReadTexts(context, texts.Raw(), page, language); // they win over those of the file
  if (language.name != kDefaultLanguage) {
    std::string untranslated;
    const std::vector<std::string> english = EnglishTexts();
    for (size_t number = 0; number < std::size(kTextRows); ++number)
      if (!english[number].empty() &&
          !context.product().places.contains("texts." + language.name + "." + std::to_string(number)))
        untranslated += std::string(untranslated.empty() ? "" : ", ") + kTextRows[number].name;
    if (!untranslated.empty())
      context.findings.Warn(language.place, "these texts of '" + language.name + "' stay English: " + untranslated);
  }
  context.product().languages.push_back(std::move(language));
}

} // namespace

void ReadLists(ManifestContext &context, ManifestTable &root) {
  for (const toml::table *table : root.Tables("delete"))
    ReadDeletion(context, {table, "delete", context.findings});
  for (const toml::table *table : root.Tables("association"))
    ReadAssociation(context, {table, "association", context.findings});
  for (const toml::table *table : root.Tables("uninstall_value"))
    ReadUninstallValue(context, {table, "uninstall_value", context.findings});
}

void ReadLanguages(ManifestContext &context, ManifestTable &root) {
  const auto languages = root.Tables("language");
  ManifestTable texts = root.Table("texts");
  if (!languages.empty() && texts.Exists())
    context.findings.Error(texts.PlaceOfTable(), "with [[language]], its texts stand in [language.texts]");
  if (languages.empty()) {
    Language english{kDefaultLanguage, EnglishTexts(), {}};
    ReadTexts(context, texts.Raw(), context.code_page, english);
    context.product().languages.push_back(std::move(english));
  }
  for (const toml::table *table : languages)
    ReadLanguage(context, {table, "language", context.findings});
}

} // namespace korb::packer
