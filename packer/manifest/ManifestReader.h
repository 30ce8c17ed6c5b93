// Reads a manifest, the TOML file in which an author describes a product. docs/manifest.md tells its keys.
#pragma once

#include <filesystem>
#include <optional>

#include "packer/Product.h"
#include "packer/check/Findings.h"
#include "packer/manifest/KeyForm.h"

namespace korb::packer {

struct Manifest {
  Product product;
  std::vector<std::filesystem::path> inputs;  ///< every file that was read, the manifest first
  std::vector<std::filesystem::path> earlier; ///< installers that `upgrade.from` names
  bool was_parsed = false;                    ///< false: it is no TOML, and nothing else is known of it
};

/// Reads the manifest at `path` and the files that it names, which are relative to its folder. `newest` is the newest
/// date that a file may keep from the disk, in seconds since 1970; a later one becomes it. What is wrong is told in
/// `findings`, all in one run as far as possible; the product is of use only when there is no error among them. No tree
/// brings `output`, the installer that is to be made of it, or its volumes, from an earlier time.
Manifest ReadManifest(const std::filesystem::path &path, std::optional<int64_t> newest, Findings &findings,
                      const std::filesystem::path &output = {});

/// Every key that a manifest may hold, tables among them. What stands in [texts] is not among them.
const KeyForms &KnownKeys();

} // namespace korb::packer
