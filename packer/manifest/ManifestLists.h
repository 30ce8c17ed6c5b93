// What a manifest lists beside its files: old files, file types, uninstall values, languages.
#pragma once

#include "packer/manifest/ManifestContext.h"

namespace korb::packer {

/// [[delete]], [[association]], [[uninstall_value]].
void ReadLists(ManifestContext &context, ManifestTable &root);

/// [texts] and [[language]].
void ReadLanguages(ManifestContext &context, ManifestTable &root);

} // namespace korb::packer
