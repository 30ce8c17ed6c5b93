#include <algorithm>
#include <sstream>

#include <nlohmann/json.hpp>
#include <toml++/toml.h>

#include "packer/manifest/ManifestSchema.h"
#include "tests/support/Doctest.h"

using nlohmann::json;

namespace {

bool HasType(const json &value, const std::string &type) {
  return type == "object"    ? value.is_object()
         : type == "array"   ? value.is_array()
         : type == "string"  ? value.is_string()
         : type == "integer" ? value.is_number_integer()
                             : value.is_boolean();
}

// Where `value` isn't what `schema` says; empty when it is. As much of the standard as our schema uses.
std::string Misfit(const json &schema, const json &value, const std::string &at) {
  if (schema.contains("anyOf"))
    return std::any_of(schema["anyOf"].begin(), schema["anyOf"].end(),
                       [&](const json &form) { return Misfit(form, value, at).empty(); })
               ? std::string()
               : at + " fits no form";
  if (schema.contains("enum"))
    return std::count(schema["enum"].begin(), schema["enum"].end(), value) ? std::string() : at + " is no word";
  const json types = schema["type"].is_array() ? schema["type"] : json::array({schema["type"]});
  if (std::none_of(types.begin(), types.end(), [&](const json &type) { return HasType(value, type); }))
    return at + " has another type";
  if (value.is_number() && (value < schema.value("minimum", value) || value > schema.value("maximum", value)))
    return at + " is out of range";
  if (value.is_string() && schema.contains("pattern") && value.get<std::string>().front() != '#') // of a colour
    return at + " has another form";
  std::string misfit;
  for (const auto &name : schema.value("required", json::array()))
    if (!value.contains(name))
      misfit = at + " lacks " + name.get<std::string>();
  if (value.is_array())
    for (const json &element : value)
      misfit += Misfit(schema["items"], element, at);
  if (value.is_object())
    for (const auto &[name, element] : value.items())
      misfit += schema["properties"].contains(name) ? Misfit(schema["properties"][name], element, at + "." + name)
                : schema.contains("patternProperties") && std::isdigit(static_cast<unsigned char>(name.front()))
                    ? std::string() // a text by its number
                    : at + "." + name + " is unknown";
  return misfit;
}

std::string Check(const toml::table &manifest) {
  std::ostringstream out;
  out << toml::json_formatter{manifest};
  return Misfit(json::parse(korb::packer::ManifestSchema()), json::parse(out.str()), "");
}

// The names of the keys below `schema` without a word on what they are for.
std::string Unexplained(const json &schema, const std::string &at) {
  std::string names;
  for (const auto &[name, key] : schema["properties"].items()) {
    const json &table = key.contains("items") ? key["items"] : key;
    if (table.contains("properties"))
      names += Unexplained(table, at + name + ".");
    else if (key.value("description", "").empty())
      names += at + name + " ";
  }
  return names;
}

} // namespace

TEST_CASE("the schema fits manifests that build") {
  for (const char *example : {"hello", "volumes", "full"})
    CHECK(Check(toml::parse_file(std::string(KORB_EXAMPLES) + "/" + example + "/setup.toml")) == "");
}

TEST_CASE("the schema tells what the reader would refuse") {
  CHECK(Check(toml::parse("[[delete]]\nnmae = 'x'")) == ".delete lacks name.delete.nmae is unknown");
  CHECK(Check(toml::parse("product = { name = 'x' }\nfile = [{ kind = 'sistem' }]")) == ".file.kind fits no form");
  CHECK(Check(toml::parse("product = { name = 'x' }\n[appearance]\ntitle_shadow = 256")) ==
        ".appearance.title_shadow is out of range");
  CHECK(Check(toml::parse("product = { name = 'x' }\n[texts]\nok_botton = 'Go'")) == ".texts.ok_botton is unknown");
}

TEST_CASE("the schema tells of every key what it is for") {
  CHECK(Unexplained(json::parse(korb::packer::ManifestSchema()), "") == "");
}
