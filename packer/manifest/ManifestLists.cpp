#include "packer/manifest/ManifestLists.h"

#include <algorithm>
#include <cstdio>

#include "format/Texts.h"
#include "packer/FileIo.h"
#include "packer/manifest/ReadyTexts.h"

namespace korb::packer {

namespace {

constexpr int64_t kMaxU32 = 0xFFFFFFFF;

// The value of a condition or of a number: a text, or an integer or date as TOML has it.
std::string ValueText(ManifestContext &context, ManifestTable &table, std::string_view key) {
  const toml::node *node = table.Find(key, {KeyForm::kValue});
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
  const toml::node *number = table.Find("value", {KeyForm::kValue});
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

constexpr std::string_view kReadyKey = "language"; // among the texts of a manifest: those that it starts from

void PutText(ManifestContext &context, Language &language, int number, std::string text, const Place &place) {
  if (language.texts.size() <= static_cast<size_t>(number))
    language.texts.resize(static_cast<size_t>(number) + 1);
  language.texts[static_cast<size_t>(number)] = std::move(text);
  context.product().places["texts." + language.name + "." + std::to_string(number)] = place;
}

// What an author has to write for an installer to show `texts`: the first code page that has all their characters.
std::string PageFor(const std::vector<std::string> &texts) {
  const auto holds = [&](int page) {
    std::string missing;
    return std::ranges::all_of(texts,
                               [&](const std::string &text) { return ToCodePage(text, page, missing).has_value(); });
  };
  for (int page : {kDefaultCodePage, 1250, 1251, 1253, 1254, 1255, 1256, 1257, 1258})
    if (holds(page))
      return std::to_string(page);
  return "\"utf-8\"";
}

// The texts that are ready in the language `name`, which stands at `place`.
void TakeReadyTexts(ManifestContext &context, const std::string &name, const Place &place, int page,
                    Language &language) {
  const std::vector<std::string> *ready = ReadyTexts(name);
  if (!ready) {
    std::string all;
    for (const TranslationFile &file : TranslationFiles())
      all += (all.empty() ? "" : ", ") + std::string(file.language);
    context.findings.Error(place, "there are no ready texts in '" + name + "', but in " + all);
    return;
  }
  std::string lacking;
  for (size_t number = 0; number < ready->size(); ++number) {
    std::string missing;
    const auto text = ToCodePage((*ready)[number], page, missing);
    if (!text && lacking.empty())
      lacking = missing;
    if (!(*ready)[number].empty())
      PutText(context, language, static_cast<int>(number), text.value_or(std::string()), place);
  }
  if (!lacking.empty())
    context.findings.Error(place, "'" + lacking + "' doesn't exist in code page " + std::to_string(page) +
                                      ": the texts in '" + name + "' need codepage = " + PageFor(*ready));
}

// `other_key` is one in `table` that names no text.
void ReadTexts(ManifestContext &context, const toml::table *table, int page, Language &language,
               std::string_view other_key = {}) {
  if (!table)
    return;
  for (const auto &[key, node] : *table) {
    if (key.str() == other_key)
      continue;
    const Place place = PlaceOf(key.source());
    const int number = TextNumber(context, key.str(), place);
    if (number < 0)
      continue;
    PutText(context, language, number,
            context.TextOrFile(node,
                               FromCodePage(language.name, context.product().code_page) + " text '" +
                                   std::string(key.str()) + "'",
                               page),
            place);
  }
}

// A file of texts, by their names as in [texts]. Its faults are told with its own lines.
std::optional<toml::table> ParseTextFile(ManifestContext &context, const std::string &name, const Place &place) {
  const auto bytes = context.ReadInput(name, place);
  if (!bytes)
    return std::nullopt;
  return ParseToml(*bytes, ShowPath(context.InputPath(name, place)), context.findings);
}

void ReadLanguage(ManifestContext &context, ManifestTable table) {
  Language language{{}, EnglishTexts(), table.PlaceOfTable()};
  const int page = context.CodePage(table, "codepage");
  if (page != context.product().code_page && (page == kUtf8 || context.product().code_page == kUtf8))
    context.findings.Error(table.PlaceOfKey("codepage"),
                           "all languages of an installer are in UTF-8 or none: 'product.codepage' tells which");
  const auto name = table.Text("name");
  if (name)
    language.name = context.Convert(*name, table.PlaceOfKey("name"));
  else
    context.findings.Error(table.PlaceOfTable(), "a [[language]] needs a 'name'");
  ManifestTable texts = table.Table("texts");
  const auto ready = texts.Text(kReadyKey), file = table.Text("file");
  table.RefuseUnknown();
  if (ready)
    TakeReadyTexts(context, *ready, texts.PlaceOfKey(kReadyKey), page, language);
  if (file)
    if (const auto parsed = ParseTextFile(context, *file, table.PlaceOfKey("file")))
      ReadTexts(context, &*parsed, page, language);
  ReadTexts(context, texts.Raw(), page, language, kReadyKey); // they win over those of the file
  if (language.name != kDefaultLanguage) {
    std::string untranslated;
    const std::vector<std::string> &english = EnglishTexts();
    for (size_t number = 0; number < std::size(kTextRows); ++number)
      if (!english[number].empty() &&
          !context.product().places.contains("texts." + language.name + "." + std::to_string(number)))
        untranslated += std::string(untranslated.empty() ? "" : ", ") + kTextRows[number].name;
    if (!untranslated.empty())
      context.findings.Warn(language.place, Warning::kUntranslatedText,
                            "these texts of '" + name.value_or("") + "' stay English: " + untranslated);
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
    Language only{kDefaultLanguage, EnglishTexts(), {}};
    if (const auto ready = texts.Text(kReadyKey)) {
      if (*ready != "en")
        only.name = *ready;
      TakeReadyTexts(context, *ready, texts.PlaceOfKey(kReadyKey), context.product().code_page, only);
    }
    ReadTexts(context, texts.Raw(), context.product().code_page, only, kReadyKey);
    context.product().languages.push_back(std::move(only));
  }
  for (const toml::table *table : languages)
    ReadLanguage(context, {table, "language", context.findings});
}

} // namespace korb::packer
