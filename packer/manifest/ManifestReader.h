// Reads a manifest, the TOML file in which an author describes a product. docs/manifest.md tells its keys.
#pragma once

#include <filesystem>
#include <optional>

#include "packer/Product.h"
#include "packer/check/Findings.h"
#include "packer/manifest/KeyForm.h"
#include "packer/manifest/Variables.h"

namespace korb::packer {

/// What the author calls earlier installers by.
struct EarlierInstallers {
  std::string name; ///< as it was given; a pattern for several of a folder
  std::filesystem::path path;
  Place place; ///< of the name; none on a command line
};

struct Manifest {
  Product product;
  std::vector<std::filesystem::path> inputs; ///< every file that was read, the manifest first
  std::filesystem::path output;              ///< the installer that is to be made
  std::vector<EarlierInstallers> earlier;    ///< what `upgrade.from` names
  bool was_parsed = false;                   ///< false: it is no TOML, and nothing else is known of it
};

/// What a command line says of a manifest.
struct ManifestSettings {
  std::filesystem::path output = {}; ///< the installer that is to be made; empty: what the manifest says
  GivenVariables variables = {};
};

/// The manifest that is read from the standard input; its folder is the current one.
inline constexpr char kStandardInput[] = "-";

/// Reads the manifest at `path` and the files that it names, which are relative to its folder. `newest` is the newest
/// date that a file may keep from the disk, in seconds since 1970; a later one becomes it. What is wrong is told in
/// `findings`, all in one run as far as possible; the product is of use only when there is no error among them. No tree
/// brings the installer that is to be made, or its volumes, from an earlier time.
Manifest ReadManifest(const std::filesystem::path &path, std::optional<int64_t> newest, Findings &findings,
                      const ManifestSettings &settings = {});

/// Every key that a manifest may hold, tables among them. What stands in [texts] is not among them.
const KeyForms &KnownKeys();

} // namespace korb::packer
