// The files of a manifest, named one by one or as trees.
#pragma once

#include "packer/manifest/ManifestContext.h"

namespace korb::packer {

/// Adds the files of [[file]] and [[tree]], in the order of the manifest, with what [file_defaults] says of all.
void ReadFiles(ManifestContext &context, ManifestTable &root);

} // namespace korb::packer
