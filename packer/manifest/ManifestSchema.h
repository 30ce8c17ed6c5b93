// The manifest's keys for other programs: editors complete and check a manifest by its JSON Schema.
#pragma once

#include <string>
#include <string_view>

namespace korb::packer {

/// The page about the manifest, docs/manifest.md, as the build has put it in.
std::string_view ManifestPage();

/// JSON Schema, draft 7, which editors of TOML read: every key with the form that the reader accepts (KnownKeys) and
/// what the page says of its effect.
std::string ManifestSchema();

} // namespace korb::packer
