#include "packer/manifest/ManifestSchema.h"

#include <map>
#include <sstream>

#include <nlohmann/json.hpp>

#include "format/Texts.h"
#include "packer/manifest/ManifestReader.h"

namespace korb::packer {

namespace {

using Json = nlohmann::ordered_json;

// Without these a table says nothing. The product's name can be in another file.
constexpr std::string_view kRequired[] = {"tree.source", "delete.name", "language.name"};

// The words of a cell: without the marks of its page.
std::string PlainText(std::string cell) {
  for (size_t link; (link = cell.find("](")) != cell.npos;)
    cell.erase(link, cell.find(')', link) - link + 1);
  std::erase_if(cell, [](char c) { return c == '`' || c == '[' || c == '*'; });
  const size_t begin = cell.find_first_not_of(' ');
  return begin == cell.npos ? std::string() : cell.substr(begin, cell.find_last_not_of(' ') + 1 - begin);
}

// What the page says of each key, by its full name. A table is headed `[name]` or `[[name]]`; in a row of its keys, the
// first cell names one or several, and the last tells the effect. Texts stand in a table with their numbers in front.
std::map<std::string, std::string> Effects() {
  std::map<std::string, std::string> effects;
  std::istringstream page{std::string(ManifestPage())};
  std::string line, table;
  while (std::getline(page, line)) {
    if (line == "## The texts") {
      table = "texts";
    } else if (line.starts_with("## ")) {
      const size_t begin = line.find_first_of('['), first = line.find_first_not_of('[', begin);
      table = begin == line.npos ? std::string() : line.substr(first, line.find(']') - first);
    }
    const size_t open_first = line.find('`'), end = line.find(" | ", open_first), last = line.rfind(" | ");
    const bool names = line.starts_with("| `") || (table == "texts" && line.starts_with("| ") && open_first < 8);
    if (!names || last == line.npos)
      continue;
    for (size_t open = open_first; open < end; open = line.find('`', line.find('`', open + 1) + 1))
      effects[(table.empty() ? "" : table + ".") + line.substr(open + 1, line.find('`', open + 1) - open - 1)] =
          PlainText(line.substr(last + 3, line.size() - last - 5));
  }
  return effects;
}

Json Number(const KeyForm &form) {
  Json number = {{"type", "integer"}};
  if (form.least != INT64_MIN)
    number["minimum"] = form.least;
  if (form.most != INT64_MAX)
    number["maximum"] = form.most;
  return number;
}

Json ListOf(const Json &element) {
  return {{"anyOf", {element, {{"type", "array"}, {"items", element}}}}};
}

Json SchemaOf(const KeyForm &form) {
  const Json text = {{"type", "string"}}, words = {{"enum", form.words}};
  const Json text_or_file = {{"anyOf",
                              {text,
                               {{"type", "object"},
                                {"properties", {{"file", text}}},
                                {"required", {"file"}},
                                {"additionalProperties", false}}}}};
  switch (form.kind) {
  case KeyForm::kText:
    return text;
  case KeyForm::kTextOrFile:
    return text_or_file;
  case KeyForm::kTexts:
    return ListOf(text);
  case KeyForm::kPages:
    return ListOf(text_or_file);
  case KeyForm::kInteger:
    return Number(form);
  case KeyForm::kBoolean:
    return {{"type", "boolean"}};
  case KeyForm::kWord:
    return {{"anyOf", {words, Number(form)}}};
  case KeyForm::kWords:
    return {{"anyOf", {words, {{"type", "array"}, {"items", words}}, Number(form)}}};
  case KeyForm::kNames:
    return ListOf(words);
  case KeyForm::kDate: // a date of TOML is a text to a schema
  case KeyForm::kFileDate:
    return text;
  case KeyForm::kColor:
    return {{"anyOf", {{{"type", "string"}, {"pattern", "^#[0-9A-Fa-f]{6}$"}}, Number(form)}}};
  case KeyForm::kValue:
    return {{"type", {"string", "integer"}}};
  case KeyForm::kDefinitions: {
    Json variable = SchemaOf({KeyForm::kTable});
    variable["properties"] = {{"env", text}, {"default", text}};
    variable["required"] = {"env"};
    return {
        {"type", "object"},
        {"patternProperties", {{"^[A-Za-z_][A-Za-z0-9_-]*$", {{"anyOf", {text, {{"type", "integer"}}, variable}}}}}},
        {"additionalProperties", false}};
  }
  case KeyForm::kTable:
  case KeyForm::kTables:
    break;
  }
  return {{"type", "object"}, {"properties", Json::object()}, {"additionalProperties", false}};
}

// [texts] and [language.texts]: by name or by number.
Json TextsSchema(std::map<std::string, std::string> &effects) {
  Json text = SchemaOf({KeyForm::kTextOrFile});
  Json texts = SchemaOf({KeyForm::kTable});
  for (const auto &row : kTextRows) {
    texts["properties"][row.name] = text;
    texts["properties"][row.name]["description"] = effects[std::string("texts.") + row.name];
  }
  texts["patternProperties"] = {{"^[0-9]{1,4}$", text}};
  return texts;
}

// The properties of the table `name`, or of each table of the array of that name; those of the whole for an empty one.
Json &PropertiesOf(Json &schema, std::string_view name) {
  if (name.empty())
    return schema["properties"];
  const size_t dot = name.rfind('.');
  Json &table = PropertiesOf(schema, dot == name.npos ? std::string_view()
                                                      : name.substr(0, dot))[std::string(name.substr(dot + 1))];
  return (table.contains("items") ? table["items"] : table)["properties"];
}

} // namespace

std::string ManifestSchema() {
  Json schema = SchemaOf({KeyForm::kTable});
  schema["title"] = "Manifest of a KORB installer";
  auto effects = Effects();
  // Tables stand before their keys.
  for (const auto &[name, form] : KnownKeys()) {
    const size_t dot = name.rfind('.');
    Json key = name == "texts" || name == "language.texts" ? TextsSchema(effects) : SchemaOf(form);
    // What all files share is told once.
    const bool shared = name.starts_with("tree.") || name.starts_with("file_defaults.");
    auto effect = effects.find(name);
    if (effect == effects.end() && shared)
      effect = effects.find("file" + name.substr(dot));
    if (effect == effects.end() && name == "texts.language")
      effect = effects.find("language.texts.language");
    if (effect != effects.end())
      key["description"] = effect->second;
    PropertiesOf(schema, dot == name.npos ? "" : name.substr(0, dot))[name.substr(dot + 1)] =
        form.kind == KeyForm::kTables ? Json{{"type", "array"}, {"items", key}} : key;
  }
  for (std::string_view name : kRequired) {
    Json &table = schema["properties"][std::string(name.substr(0, name.find('.')))];
    (table.contains("items") ? table["items"] : table)["required"] = {name.substr(name.find('.') + 1)};
  }
  return schema.dump(1) + "\n";
}

} // namespace korb::packer
