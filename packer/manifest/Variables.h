// The variables of a manifest: `${name}` in its texts.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "packer/manifest/ManifestTable.h"

namespace korb::packer {

/// Values by name, as the command line gives them.
struct GivenVariables : std::map<std::string, std::string, std::less<>> {};

/// Whether a variable can be called so: letters, digits, '_' and '-', no digit first.
bool IsVariableName(std::string_view name);

class Variables {
public:
  /// The version of the program `file`, which is named at `place`; empty, and reported, when it has none.
  using VersionOf = std::function<std::string(const std::string &file, const Place &place)>;

  Variables(const GivenVariables &given, VersionOf version_of, Findings &findings)
      : given_(given), version_of_(std::move(version_of)), findings_(findings) {}

  /// Takes [define]. What was defined before stays.
  void Define(ManifestTable table);
  /// Takes the texts of [product], as `${product.name}`; `version` may be that of a program.
  void DefineProduct(const toml::table &product);

  /// `text` with the values of its variables. One that has none is reported at `place`, and stays.
  std::string Expand(const std::string &text, const Place &place);

  /// Warns of each given variable that nothing has asked for or defined: it is most likely misspelt.
  void TellUnused();

private:
  enum class Origin { Text, Environment, Program };
  struct Definition {
    Origin origin;
    std::string text; // the value, or the name of the environment's variable, or of the program's file
    Place place;
    std::optional<std::string> fallback = {}; // of the environment's
  };

  void DefineTable(const std::string &name, const toml::node &node);
  std::optional<std::string> ValueOf(const std::string &name, const Place &place);
  std::optional<std::string> Evaluate(const std::string &name, const Definition &definition);
  void TellUndefined(const std::string &name, const Place &place);
  std::string SuggestionFor(std::string_view name) const;

  const GivenVariables &given_;
  VersionOf version_of_;
  Findings &findings_;
  std::map<std::string, Definition, std::less<>> definitions_;
  std::map<std::string, std::optional<std::string>, std::less<>>
      values_;                    // that were asked for; of a faulty one nothing
  std::vector<std::string> open_; // those that the present one needs
};

} // namespace korb::packer
