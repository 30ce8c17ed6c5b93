#include "packer/manifest/Variables.h"

#include <algorithm>
#include <cstdlib>

#include "packer/FileIo.h"

namespace korb::packer {

namespace {

// Definitions that use each other would let a text grow without end, and the stack with it.
constexpr size_t kMostBytes = 65536, kMostNested = 100;
constexpr std::string_view kProductPrefix = "product.";

// What the environment has under `name`, in UTF-8. Build machines set variables to nothing that they don't know.
std::optional<std::string> FromEnvironment(const std::string &name) {
  std::string value;
#ifdef _WIN32
  if (const wchar_t *wide = _wgetenv(PathFromUtf8(name).c_str())) {
    const std::u8string utf8 = std::filesystem::path(wide).u8string();
    value.assign(utf8.begin(), utf8.end());
  }
#else
  if (const char *text = std::getenv(name.c_str()))
    value = text;
#endif
  return value.empty() ? std::nullopt : std::optional(value);
}

} // namespace

bool IsVariableName(std::string_view name) {
  const auto is_letter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; };
  return !name.empty() && is_letter(name[0]) && std::all_of(name.begin(), name.end(), [&](char c) {
    return is_letter(c) || (c >= '0' && c <= '9') || c == '-';
  });
}

void Variables::Define(ManifestTable table) {
  if (!table.Exists())
    return;
  for (const auto &[key, node] : *table.Raw()) {
    const std::string name(key.str());
    if (!IsVariableName(name))
      findings_.Error(PlaceOf(key.source()), "'" + name +
                                                 "' can't be a variable: its name is letters, digits, '_' and "
                                                 "'-', and begins with a letter");
    else if (const auto *text = node.as_string())
      definitions_.try_emplace(name, Definition{Origin::Text, text->get(), PlaceOf(node)});
    else if (const auto *number = node.as_integer())
      definitions_.try_emplace(name, Definition{Origin::Text, std::to_string(number->get()), PlaceOf(node)});
    else
      DefineTable(name, node);
  }
}

void Variables::DefineTable(const std::string &name, const toml::node &node) {
  ManifestTable table(node.as_table(), "define." + name, findings_);
  const auto variable = table.Text("env"), fallback = table.Text("default");
  table.RefuseUnknown();
  if (!variable && !table.Has("env"))
    findings_.Error(PlaceOf(node), "'define." + name + "' has to be a text, a number or { env = \"...\" }");
  definitions_.try_emplace(name, Definition{Origin::Environment, variable.value_or(""), PlaceOf(node), fallback});
}

void Variables::DefineProduct(const toml::table &product) {
  for (const auto &[key, node] : product) {
    const auto *table = node.as_table();
    const toml::node *program = table && key.str() == "version" ? table->get("file") : nullptr;
    const toml::node &value = program ? *program : node;
    if (const auto *text = value.as_string())
      definitions_.try_emplace(std::string(kProductPrefix) + std::string(key.str()),
                               Definition{program ? Origin::Program : Origin::Text, text->get(), PlaceOf(value)});
  }
}

std::string Variables::Expand(const std::string &text, const Place &place) {
  std::string out;
  for (size_t at = 0; at < text.size();) {
    const size_t dollar = std::min(text.find('$', at), text.size());
    out.append(text, at, dollar - at);
    at = dollar;
    if (text.compare(at, 3, "$${") == 0) {
      out += "${";
      at += 3;
    } else if (text.compare(at, 2, "${") == 0) {
      const size_t end = std::min(text.find('}', at), text.size() - 1);
      const auto value = ValueOf(text.substr(at + 2, end - at - 2), place);
      out += value ? *value : text.substr(at, end + 1 - at);
      at = end + 1;
    } else if (at < text.size()) {
      out += text[at++];
    }
  }
  return out;
}

std::optional<std::string> Variables::ValueOf(const std::string &name, const Place &place) {
  if (const auto known = values_.find(name); known != values_.end())
    return known->second;
  if (const auto given = given_.find(name); given != given_.end())
    return values_[name] = given->second;
  const auto found = definitions_.find(name);
  if (found == definitions_.end()) {
    TellUndefined(name, place);
    return std::nullopt;
  }
  const Definition &definition = found->second;
  if (std::find(open_.begin(), open_.end(), name) != open_.end() || open_.size() == kMostNested) {
    findings_.Error(definition.place, "the variable '" + name + "' needs " +
                                          (open_.size() == kMostNested ? "too many others" : "its own value"));
    return values_[name] = std::nullopt;
  }
  open_.push_back(name);
  auto value = Evaluate(name, definition);
  open_.pop_back();
  if (value && value->size() > kMostBytes) {
    findings_.Error(definition.place,
                    "the variable '" + name + "' has more than " + std::to_string(kMostBytes) + " bytes");
    value.reset();
  }
  return values_[name] = value;
}

std::optional<std::string> Variables::Evaluate(const std::string &name, const Definition &definition) {
  if (definition.origin != Origin::Environment) {
    const std::string text = Expand(definition.text, definition.place);
    return definition.origin == Origin::Text ? text : version_of_(text, definition.place);
  }
  if (auto value = FromEnvironment(definition.text))
    return value;
  if (definition.fallback)
    return Expand(*definition.fallback, definition.place);
  findings_.Error(definition.place, "the environment has no '" + definition.text + "', and '" + name +
                                        "' has no default: define one here, or give -D " + name + "=...");
  return std::nullopt;
}

void Variables::TellUndefined(const std::string &name, const Place &place) {
  if (!IsVariableName(name) && !name.starts_with(kProductPrefix)) {
    findings_.Error(place, "'${' begins the name of a variable, as in ${name}; where it is the text itself, write "
                           "'$${'");
    return;
  }
  const std::string suggestion = SuggestionFor(name);
  std::string way = "; define it in [define], or give -D " + name + "=...";
  if (!IsVariableName(name))
    way = "; it is no text of [product]";
  else if (FromEnvironment(name))
    way = "; the environment has one: [define] " + name + " = { env = \"" + name + "\" } takes it from there";
  findings_.Error(place, "unknown variable '" + name + "'" + (suggestion.empty() ? way : suggestion));
}

std::string Variables::SuggestionFor(std::string_view name) const {
  std::vector<std::string_view> words;
  for (const auto &[known, definition] : definitions_)
    words.push_back(known);
  for (const auto &[known, value] : given_)
    if (known != name)
      words.push_back(known);
  return Suggestion(name, words);
}

void Variables::TellUnused() {
  for (const auto &[name, value] : given_)
    if (!values_.contains(name) && !definitions_.contains(name))
      findings_.Warn({}, Warning::kUnusedVariable,
                     "nothing uses the variable '" + name + "' of -D" + SuggestionFor(name));
}

} // namespace korb::packer
