#include "packer/manifest/ManifestTable.h"

#include <algorithm>

#include "packer/manifest/ManifestReader.h"

namespace korb::packer {

namespace {

const char *TypeName(const toml::node &node) {
  switch (node.type()) {
  case toml::node_type::table:
    return "a table";
  case toml::node_type::array:
    return "an array";
  case toml::node_type::string:
    return "a text";
  case toml::node_type::integer:
    return "an integer";
  case toml::node_type::floating_point:
    return "a fraction";
  case toml::node_type::boolean:
    return "true or false";
  default:
    return "a date or time";
  }
}

std::vector<std::string_view> WordsOf(std::span<const NamedValue> names) {
  std::vector<std::string_view> words;
  for (const NamedValue &named : names)
    words.push_back(named.name);
  return words;
}

// Other words for a key; of several, the one in the same table is meant, or else the first.
struct Synonym {
  std::string_view word;
  std::vector<std::string_view> keys;
};

const Synonym kSynonyms[] = {
    {"destination", {"install.directory", "file.target", "tree.target"}},
    {"dest", {"install.directory", "file.target", "tree.target"}},
    {"path", {"install.directory", "file.target", "tree.source", "delete.name"}},
    {"folder", {"install.directory", "tree.source"}},
    {"dir", {"install.directory", "tree.source", "uninstall.directory"}},
    {"install_dir", {"install.directory"}},
    {"name", {"product.name", "tree.into"}},
    {"title", {"product.name", "file.label"}},
    {"file", {"file.source", "delete.name"}},
    {"src", {"file.source", "tree.source"}},
    {"args", {"file.arguments"}},
    {"shortcut", {"file.start_menu", "tree.start_menu"}},
    {"company", {"product.publisher"}},
    {"vendor", {"product.publisher"}},
    {"manufacturer", {"product.publisher"}},
    {"author", {"product.publisher"}},
    {"licence", {"pages.license"}},
    {"eula", {"pages.license"}},
    {"ext", {"association.extension"}},
    {"run", {"batch.final"}},
    {"service", {"batch.post_install"}},
    {"registry", {"batch.post_install"}},
    {"environment", {"batch.post_install"}},
};

// The tables in which authors look first for a key that several have.
constexpr std::string_view kUsualTables[] = {"product", "install", "uninstall", "appearance", "pages", "file", "tree"};

std::string DidYouMean(std::string_view key) {
  const auto form = KnownKeys().find(key);
  const bool is_list = form != KnownKeys().end() && form->second.kind == KeyForm::kTables;
  const bool is_table =
      form != KnownKeys().end() && (form->second.kind == KeyForm::kTable || form->second.kind == KeyForm::kDefinitions);
  const bool stands_first = form != KnownKeys().end() && !is_list && !is_table && key.find('.') == key.npos;
  const std::string name(key);
  return "; did you mean '" +
         (is_list    ? "[[" + name + "]]"
          : is_table ? "[" + name + "]"
                     : name) +
         (stands_first ? "', in front of all tables?" : "'?");
}

// What to say of a key that `table` doesn't know: `near`, the suggestion of its own keys, goes before those elsewhere.
std::string Elsewhere(std::string_view table, std::string_view key, const std::string &near) {
  const std::string inside = std::string(table) + ".", word(key);
  const auto synonym = std::ranges::find(kSynonyms, key, &Synonym::word);
  if (synonym != std::end(kSynonyms))
    for (std::string_view meant : synonym->keys)
      if (meant.starts_with(inside))
        return DidYouMean(meant.substr(inside.size()));
  if (!near.empty())
    return near;
  if (KnownKeys().contains(key))
    return DidYouMean(key);
  for (std::string_view usual : kUsualTables)
    if (const std::string full = std::string(usual) + "." + word; KnownKeys().contains(full))
      return DidYouMean(full);
  for (const auto &[known, form] : KnownKeys())
    if (known.ends_with("." + word))
      return DidYouMean(known);
  return synonym == std::end(kSynonyms) ? std::string() : DidYouMean(synonym->keys.front());
}

} // namespace

std::string ManifestTable::FullName(std::string_view key) const {
  return name_.empty() ? std::string(key) : name_ + "." + std::string(key);
}

const toml::node *ManifestTable::Find(std::string_view key, const KeyForm &form) {
  known_.emplace(key);
  if (findings_.asked_keys)
    findings_.asked_keys->emplace(FullName(key), form); // the first to ask knows more than whom it calls
  return table_ ? table_->get(key) : nullptr;
}

Place ManifestTable::PlaceOfKey(std::string_view key) const {
  const toml::node *node = table_ ? table_->get(key) : nullptr;
  return node ? PlaceOf(*node) : PlaceOfTable();
}

void ManifestTable::WrongType(std::string_view key, const toml::node &node, const char *wanted) {
  findings_.Error(PlaceOf(node), "'" + FullName(key) + "' has to be " + wanted + ", not " + TypeName(node));
}

std::optional<std::string> ManifestTable::Text(std::string_view key) {
  const toml::node *node = Find(key, {KeyForm::kText});
  if (!node)
    return std::nullopt;
  if (const auto *text = node->as_string())
    return text->get();
  WrongType(key, *node, "a text");
  return std::nullopt;
}

std::optional<int64_t> ManifestTable::Integer(std::string_view key, int64_t least, int64_t most) {
  const toml::node *node = Find(key, {KeyForm::kInteger, {}, least, most});
  if (!node)
    return std::nullopt;
  const auto *integer = node->as_integer();
  if (!integer) {
    WrongType(key, *node, "an integer");
    return std::nullopt;
  }
  if (integer->get() >= least && integer->get() <= most)
    return integer->get();
  findings_.Error(PlaceOf(*node),
                  "'" + FullName(key) + "' is out of range: " + std::to_string(least) + " to " + std::to_string(most));
  return std::nullopt;
}

std::optional<bool> ManifestTable::Boolean(std::string_view key) {
  const toml::node *node = Find(key, {KeyForm::kBoolean});
  if (!node)
    return std::nullopt;
  if (const auto *boolean = node->as_boolean())
    return boolean->get();
  WrongType(key, *node, "true or false");
  return std::nullopt;
}

std::optional<int64_t> ManifestTable::NamedNode(std::string_view key, const toml::node &node,
                                                std::span<const NamedValue> names) {
  const std::string &word = node.as_string()->get();
  for (const NamedValue &named : names)
    if (named.name == word)
      return named.value;
  const std::vector<std::string_view> words = WordsOf(names);
  std::string all;
  for (std::string_view known : words)
    all += (all.empty() ? "" : ", ") + std::string(known);
  findings_.Error(PlaceOf(node),
                  "'" + FullName(key) + "' doesn't know '" + word + "'" + Suggestion(word, words) + " (" + all + ")");
  return std::nullopt;
}

std::optional<int64_t> ManifestTable::Named(std::string_view key, std::span<const NamedValue> names, int64_t least,
                                            int64_t most) {
  const toml::node *node = Find(key, {KeyForm::kWord, WordsOf(names), least, most});
  if (!node)
    return std::nullopt;
  if (node->is_integer())
    return Integer(key, least, most);
  if (node->is_string())
    return NamedNode(key, *node, names);
  WrongType(key, *node, "a word or an integer");
  return std::nullopt;
}

std::optional<int64_t> ManifestTable::NamedBits(std::string_view key, std::span<const NamedValue> names) {
  constexpr int64_t kMost = 0xFFFFFFFF;
  const KeyForm form{KeyForm::kWords, WordsOf(names), 0, kMost};
  const toml::node *node = Find(key, form);
  if (!node)
    return std::nullopt;
  if (node->is_integer())
    return Integer(key, 0, kMost);
  int64_t bits = 0;
  for (const toml::node *element : Elements(key, form)) {
    if (!element->is_string()) {
      WrongType(key, *element, "an array of words, or an integer");
      return std::nullopt;
    }
    if (const auto value = NamedNode(key, *element, names))
      bits |= *value;
  }
  return bits;
}

std::vector<const toml::node *> ManifestTable::Elements(std::string_view key, const KeyForm &form) {
  const toml::node *node = Find(key, form);
  std::vector<const toml::node *> elements;
  if (node && node->is_array()) {
    for (const toml::node &element : *node->as_array())
      elements.push_back(&element);
  } else if (node) {
    elements.push_back(node);
  }
  return elements;
}

std::vector<std::string> ManifestTable::Texts(std::string_view key) {
  std::vector<std::string> texts;
  for (const toml::node *element : Elements(key, {KeyForm::kTexts})) {
    if (const auto *text = element->as_string())
      texts.push_back(text->get());
    else
      WrongType(key, *element, "a text or an array of texts");
  }
  return texts;
}

std::vector<const toml::table *> ManifestTable::Tables(std::string_view key) {
  std::vector<const toml::table *> tables;
  for (const toml::node *element : Elements(key, {KeyForm::kTables})) {
    if (const auto *table = element->as_table())
      tables.push_back(table);
    else
      WrongType(key, *element, "an array of tables");
  }
  return tables;
}

ManifestTable ManifestTable::Table(std::string_view key) {
  const toml::node *node = Find(key, {KeyForm::kTable});
  if (node && !node->is_table())
    WrongType(key, *node, "a table");
  return ManifestTable(node ? node->as_table() : nullptr, FullName(key), findings_);
}

void ManifestTable::RefuseUnknown() {
  if (!table_)
    return;
  const std::vector<std::string_view> words(known_.begin(), known_.end());
  for (const auto &[key, node] : *table_)
    if (!known_.contains(key.str()))
      findings_.Error(PlaceOf(key.source()), "unknown key '" + FullName(key.str()) + "'" +
                                                 Elsewhere(name_, key.str(), Suggestion(key.str(), words)));
}

} // namespace korb::packer
