// The road from a manifest to an installer on the disk.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "packer/check/Report.h"
#include "packer/manifest/ManifestReader.h"
#include "packer/release/Release.h"
#include "packer/write/BlockEncoder.h"

namespace korb::packer {

struct BuildRequest {
  std::filesystem::path manifest; ///< kStandardInput: it is read from there
  std::filesystem::path output;   ///< of the installer, volumes beside it; empty: what the manifest says
  std::filesystem::path stub;     ///< the program without an archive
  std::optional<int64_t> newest;  ///< see ReadManifest
  ProgressCallback progress = {};
  bool strict = false;     ///< a warning counts as an error
  bool only_check = false; ///< nothing is packed, and nothing written
  ReportForm report_form = ReportForm::kShort;
  std::vector<std::string> allowed = {}; ///< names of warnings that are left out
  GivenVariables variables = {};
  /// Earlier installers beside those that the manifest names, or patterns of their names.
  std::vector<std::filesystem::path> after = {};
  /// Reads an earlier installer whose texts are in code page `page`, unless it tells another; throws PackError. Needed
  /// only where there are any: see ReadRelease.
  std::function<Release(const std::filesystem::path &, int page)> read_release = {};
};

/// Reads, checks, packs and writes. Warnings and errors go to `problems`, a summary to `summary`. False when there was
/// an error: then nothing was written. All of it is UTF-8. Whatever can be known before the packing is told before it.
bool BuildFromManifest(const BuildRequest &request, std::ostream &summary, std::ostream &problems);

} // namespace korb::packer
