#include "packer/read/InstallerDiff.h"

#include <algorithm>
#include <map>

#include "core/Text.h"
#include "packer/Words.h"
#include "packer/check/Report.h"
#include "packer/check/TextRules.h"
#include "packer/read/ReportText.h"

namespace korb::packer {

namespace {

// A thing of a release: its name, and its fields in an order of their own.
struct Thing {
  std::string name;
  Json fields = Json::object();
};

// Things of a kind, by what tells them apart.
struct Section {
  const char *title;
  std::map<std::string, Thing> things;
};

class Inventory {
public:
  explicit Inventory(const Release &release) : release_(release) {}

  std::vector<Section> Sections() const {
    return {{"product", Product()},        {"file", Files()},
            {"shortcut", Shortcuts()},     {"association", Associations()},
            {"uninstall_value", Values()}, {"option", Options()},
            {"language", Languages()},     {"size", Sizes()}};
  }

private:
  using Things = std::map<std::string, Thing>;

  Things Product() const {
    Things things;
    const std::pair<const char *, const std::string &> texts[] = {{"name", release_.name},
                                                                  {"version", release_.version},
                                                                  {"publisher", release_.publisher},
                                                                  {"uninstall_name", release_.uninstall_name},
                                                                  {"directory", release_.directory},
                                                                  {"start_menu", release_.start_menu},
                                                                  {"registry_key", release_.registry_key}};
    for (const auto &[name, text] : texts)
      things[name] = {name, {{"value", text}}};
    return things;
  }

  Things Files() const {
    Things things;
    for (const ReleaseFile &file : release_.files)
      if (file.Condition() != FF_PLACE_NEVER)
        things[file.path.Key()] = {file.path.text,
                                   {{"size", file.size},
                                    {"date", DateText(file.date)},
                                    {"version", file.version},
                                    {"contents", HexText(file.checksum)},
                                    {"kind", WordFor(kKinds, file.kind)},
                                    {"condition", WordFor(kConditions, file.Condition())},
                                    {"keep", (file.flags & FF_KEEP) != 0},
                                    {"attributes", WordsOf(kAttributes, file.attributes)}}};
    return things;
  }

  Things Shortcuts() const {
    Things things;
    for (const ReleaseShortcut &shortcut : release_.shortcuts)
      things[shortcut.path.Key()] = {shortcut.path.text};
    return things;
  }

  Things Associations() const {
    Things things;
    for (const Association &one : release_.associations) {
      const std::string name = one.extension + " " + one.verb + (one.language.empty() ? "" : ", " + one.language);
      things[LowerCase(name)] = {name,
                                 {{"class", one.file_class},
                                  {"description", one.description},
                                  {"verb_label", one.verb_label},
                                  {"command", one.command},
                                  {"icon", one.icon},
                                  {"options", one.options}}};
    }
    return things;
  }

  Things Values() const {
    Things things;
    for (const UninstallValue &value : release_.uninstall_values) {
      if (IsBlank(value.value.c_str()) || (value.kind == kUninstallNumber && value.value == "0"))
        continue; // it is none
      things[LowerCase(value.name)] = {value.name,
                                       {{"kind", WordFor(kValueKinds, value.kind)}, {"value", value.value}}};
    }
    return things;
  }

  Things Options() const {
    Things things;
    for (const FlagName &flag : kFlagNames)
      if (release_.Has(flag.bit))
        things[flag.name] = {flag.name};
    return things;
  }

  Things Languages() const {
    Things things;
    for (const std::string &language : release_.languages)
      things[language] = {language};
    return things;
  }

  Things Sizes() const {
    return {{"installed", {"installed", {{"value", release_.InstalledSize()}}}},
            {"installer", {"installer", {{"value", release_.installer_size}}}},
            {"texts", {"texts", {{"value", release_.text_count}}}}};
  }

  const Release &release_;
};

Json Added(const Thing &thing) {
  Json all = {{"name", thing.name}};
  all.update(thing.fields);
  return all;
}

// The fields that differ, each as [before, after]. The checksum is told only of what nothing else tells of.
Json Changed(const Thing &before, const Thing &after) {
  Json changed = Json::object();
  for (const auto &[field, value] : after.fields.items())
    if (before.fields[field] != value)
      changed[field] = {before.fields[field], value};
  if (changed.size() > 1)
    changed.erase("contents");
  if (changed.empty())
    return changed;
  Json all = {{"name", after.name}};
  all.update(changed);
  return all;
}

Json Compared(const Section &before, const Section &after) {
  Json added = Json::array(), removed = Json::array(), changed = Json::array();
  for (const auto &[key, thing] : before.things)
    if (!after.things.contains(key))
      removed.push_back(Added(thing));
  for (const auto &[key, thing] : after.things) {
    const auto old = before.things.find(key);
    if (old == before.things.end())
      added.push_back(Added(thing));
    else if (Json fields = Changed(old->second, thing); !fields.empty())
      changed.push_back(std::move(fields));
  }
  return {{"added", added}, {"removed", removed}, {"changed", changed}};
}

std::string Shown(const Json &value) {
  const std::string text = value.is_string() ? EscapeControls(value.get<std::string>()) : Written(value);
  return text.empty() ? "none" : text;
}

void WriteThing(const char *mark, const Json &thing, std::ostream &out) {
  out << "  " << mark << " " << Shown(thing["name"]);
  const char *before = ": ";
  for (const auto &[field, value] : thing.items()) {
    const bool is_change = value.is_array() && value.size() == 2 && *mark == '~';
    if (field == "name" || (!is_change && field != "size" && field != "version" && field != "value") || value == "")
      continue;
    out << before << (field == "value" ? "" : field + " ");
    if (is_change)
      out << Shown(value[0]) << " -> " << Shown(value[1]);
    else
      out << Shown(value);
    before = ", ";
  }
  out << "\n";
}

} // namespace

void WriteDiff(const Release &before, const Release &after, bool json, std::ostream &out) {
  const std::vector<Section> old = Inventory(before).Sections(), now = Inventory(after).Sections();
  Json all = {{"from", before.label}, {"to", after.label}};
  for (size_t i = 0; i < now.size(); ++i)
    all[now[i].title] = Compared(old[i], now[i]);
  if (json) {
    out << Written(all, 2) << "\n";
    return;
  }
  out << before.label << " -> " << after.label << "\n";
  bool is_same = true;
  constexpr std::pair<const char *, const char *> kMarks[] = {{"removed", "-"}, {"added", "+"}, {"changed", "~"}};
  for (const Section &section : now) {
    const Json &changes = all[section.title];
    if (std::all_of(changes.begin(), changes.end(), [](const Json &list) { return list.empty(); }))
      continue;
    is_same = false;
    out << section.title << "\n";
    for (const auto &[list, mark] : kMarks)
      for (const Json &thing : changes[list])
        WriteThing(mark, thing, out);
  }
  if (is_same)
    out << "nothing that a user would notice\n";
}

} // namespace korb::packer
