// A manifest before its tables are read: with the files that it includes, and with the values of its variables.
#pragma once

#include "packer/manifest/ManifestContext.h"
#include "packer/manifest/Variables.h"

namespace korb::packer {

/// The manifest `text` as one table. Its own keys win over those of the files that it includes, and those of a later
/// file over those of an earlier one; arrays of tables are appended, the including file's last. Nothing when one of the
/// files is no TOML or can't be read, which is reported.
std::optional<toml::table> LoadManifest(ManifestContext &context, const Bytes &text, const GivenVariables &given);

/// Makes the keys known that LoadManifest takes out of the table.
void KnowSourceKeys(ManifestTable &root);

} // namespace korb::packer
