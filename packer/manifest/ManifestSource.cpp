#include "packer/manifest/ManifestSource.h"

#include <algorithm>
#include <set>

#include "packer/FileIo.h"

namespace korb::packer {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kDefine = "define", kInclude = "include";

void Append(toml::array &all, toml::node &&node) {
  if (toml::array *array = node.as_array())
    for (toml::node &element : *array)
      all.push_back(std::move(element));
  else
    all.push_back(std::move(node));
}

// Adds to `own` what only `base` has; arrays go in front of its own.
void AddBase(toml::table &own, toml::table &&base) {
  for (auto &&[key, node] : base) {
    toml::node *mine = own.get(key.str());
    if (!mine) {
      own.insert(key, std::move(node));
    } else if (mine->is_array() || node.is_array()) {
      toml::array all;
      Append(all, std::move(node));
      Append(all, std::move(*mine));
      own.insert_or_assign(key, std::move(all));
    } else if (mine->is_table() && node.is_table()) {
      for (auto &&[inner, value] : *node.as_table())
        if (!mine->as_table()->contains(inner.str()))
          mine->as_table()->insert(inner, std::move(value));
    }
  }
}

class SourceLoader {
public:
  SourceLoader(ManifestContext &context, const GivenVariables &given)
      : context_(context),
        variables_(
            given, [&](const std::string &file, const Place &place) { return context.ProgramVersion(file, place); },
            context.findings) {}

  std::optional<toml::table> Load(const Bytes &text) {
    std::error_code error;
    for (const fs::path &manifest : context_.manifest.inputs)
      open_.push_back(fs::weakly_canonical(manifest, error));
    auto table = LoadFile(text, {});
    if (!table || has_failed_)
      return std::nullopt;
    if (const toml::table *product = table->get_as<toml::table>("product"))
      variables_.DefineProduct(*product);
    Expand(*table);
    variables_.TellUnused();
    return table;
  }

private:
  // What comes first wins, of definitions as of keys: a file's own, then those of the files that it includes, the last
  // one first. So the name of a file that is included can use whatever wins over the file's own.
  std::optional<toml::table> LoadFile(const Bytes &text, const std::string &name) {
    auto table = ParseToml(text, name, context_.findings);
    if (!table)
      return std::nullopt;
    ManifestTable root(&*table, "", context_.findings);
    variables_.Define(root.Table(kDefine));
    std::vector<const toml::node *> files = root.Elements(kInclude, {KeyForm::kTexts});
    std::reverse(files.begin(), files.end());
    for (const toml::node *file : files)
      Include(*file, *table);
    table->erase(kDefine);
    table->erase(kInclude);
    return table;
  }

  void Include(const toml::node &file, toml::table &table) {
    const Place place = PlaceOf(file);
    if (!file.is_string()) {
      context_.findings.Error(place, "'include' has to be a text or an array of texts");
      return;
    }
    const std::string name = variables_.Expand(file.as_string()->get(), place);
    const fs::path path = context_.InputPath(name, place);
    std::error_code error;
    const fs::path true_path = fs::weakly_canonical(path, error);
    if (std::find(open_.begin(), open_.end(), true_path) != open_.end()) {
      context_.findings.Error(place, "'" + name + "' would include itself");
      has_failed_ = true;
    } else if (taken_.insert(true_path).second) { // what two files include is there once
      const auto bytes = context_.ReadInput(name, place);
      std::optional<toml::table> base;
      if (bytes) {
        context_.included.push_back({ShowPath(path), path.parent_path()});
        open_.push_back(true_path);
        base = LoadFile(*bytes, ShowPath(path));
        open_.pop_back();
      }
      if (base)
        AddBase(table, std::move(*base));
      else
        has_failed_ = true;
    }
  }

  void Expand(toml::node &node) {
    if (toml::table *table = node.as_table()) {
      for (auto &&[key, value] : *table)
        Expand(value);
    } else if (toml::array *array = node.as_array()) {
      for (toml::node &element : *array)
        Expand(element);
    } else if (auto *text = node.as_string()) {
      text->get() = variables_.Expand(text->get(), PlaceOf(node));
    }
  }

  ManifestContext &context_;
  Variables variables_;
  std::vector<fs::path> open_; // the files that the present one is included by, and itself
  std::set<fs::path> taken_;
  bool has_failed_ = false;
};

} // namespace

std::optional<toml::table> LoadManifest(ManifestContext &context, const Bytes &text, const GivenVariables &given) {
  return SourceLoader(context, given).Load(text);
}

void KnowSourceKeys(ManifestTable &root) {
  root.Find(kDefine, {KeyForm::kDefinitions});
  root.Find(kInclude, {KeyForm::kTexts});
}

} // namespace korb::packer
