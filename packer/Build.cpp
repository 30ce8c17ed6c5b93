#include "packer/Build.h"

#include <algorithm>
#include <cstdio>

#include "packer/FileIo.h"
#include "packer/check/ProductCheck.h"
#include "packer/manifest/FileTree.h"
#include "packer/manifest/ManifestReader.h"
#include "packer/release/Upgrade.h"
#include "packer/write/Installer.h"
#include "packer/write/StubImage.h"

namespace korb::packer {

namespace fs = std::filesystem;

namespace {

constexpr char kStrict[] = "nothing is written: with --strict, warnings are errors";

// An icon without a place goes over the one of the stub's own that has the same form.
void LocatePatch(Product &product, const StubImage &stub, Findings &findings) {
  const bool wanted = product.Has(IF_UNINSTALL) && !product.stub_patch.empty();
  if (wanted && product.stub_patch_offset == 0) {
    const auto place = stub.FindIconImage(kStubPatchSize);
    product.stub_patch_offset = static_cast<int32_t>(place.value_or(0));
    if (!place)
      findings.Error(product.PlaceOf("uninstall.icon"),
                     "the stub has no icon of that form to replace: give 'uninstall.patch_offset'");
  }
  if (wanted && static_cast<uint32_t>(product.stub_patch_offset) + kStubPatchSize > stub.SectionFilePos())
    findings.Error(product.PlaceOf("uninstall.patch_offset"), "the patch would pass the end of the uninstaller");
}

std::vector<OutputFile> OutputsOf(const Installer &installer, const Product &product, const fs::path &output) {
  std::vector<OutputFile> files;
  for (size_t i = 0; i < installer.volumes.size(); ++i)
    files.push_back({output.parent_path() / VolumeFileName(product, kFirstVolumeNumber + i), &installer.volumes[i]});
  files.push_back({output, &installer.executable});
  return files;
}

void RefuseToOverwrite(const std::vector<OutputFile> &outputs, const std::vector<fs::path> &inputs) {
  for (size_t i = 0; i < outputs.size(); ++i) {
    for (const fs::path &input : inputs)
      if (IsSameFile(outputs[i].path, input))
        throw PackError("'" + ShowPath(outputs[i].path) + "' would overwrite a file that it is made from");
    for (size_t j = 0; j < i; ++j)
      if (IsSameFile(outputs[i].path, outputs[j].path))
        throw PackError("'" + ShowPath(outputs[i].path) + "' would be the installer and a volume at once");
  }
}

// The files that an earlier installer's name means: itself, or those of its folder that fit it as a pattern. The one
// that is about to be written is none of them.
std::vector<fs::path> InstallersOf(const fs::path &name, const fs::path &output) {
  const std::string pattern = ShowPath(name.filename());
  if (pattern.find_first_of("*?") == pattern.npos)
    return {name};
  std::vector<fs::path> found;
  std::error_code error;
  for (const auto &entry : fs::directory_iterator(name.has_parent_path() ? name.parent_path() : ".", error))
    if (entry.is_regular_file(error) && MatchesPattern(ShowPath(entry.path().filename()), pattern) &&
        !IsSameFile(entry.path(), output))
      found.push_back(entry.path());
  std::sort(found.begin(), found.end());
  return found;
}

UpgradeResult ReadAndPlanUpgrade(const BuildRequest &request, Manifest &manifest, Findings &findings) {
  manifest.earlier.insert(manifest.earlier.end(), request.after.begin(), request.after.end());
  if (manifest.earlier.empty() || findings.HasErrors())
    return {};
  const Place place = manifest.product.PlaceOf("upgrade.from");
  std::vector<Release> earlier;
  for (const fs::path &name : manifest.earlier) {
    const std::vector<fs::path> paths = InstallersOf(name, request.output);
    for (const fs::path &path : paths)
      earlier.push_back(request.read_release(path));
    manifest.inputs.insert(manifest.inputs.end(), paths.begin(), paths.end());
    if (paths.empty())
      findings.Warn(place, "no earlier installer is called '" + ShowPath(name) + "'");
  }
  return PlanUpgrade(earlier, place, manifest.product, findings);
}

void Summarise(const Installer &installer, const Product &product, const std::vector<OutputFile> &outputs,
               std::ostream &summary) {
  char line[160];
  summary << product.name << (product.version.empty() ? "" : " ") << product.version << ", " << product.files.size()
          << (product.files.size() == 1 ? " file\n" : " files\n");
  const double ratio = installer.plain_size == 0 ? 100.0
                                                 : 100.0 * static_cast<double>(installer.payload_size) /
                                                       static_cast<double>(installer.plain_size);
  std::snprintf(line, sizeof line, "payload %zu bytes, stored as %zu (%.1f %%); configuration %zu bytes\n",
                installer.plain_size, installer.payload_size, ratio, installer.config_size);
  summary << line;
  for (const OutputFile &file : outputs)
    summary << ShowPath(file.path) << ": " << file.bytes->size() << " bytes\n";
}

} // namespace

bool BuildFromManifest(const BuildRequest &request, std::ostream &summary, std::ostream &problems) {
  const auto tell = [&](const char *step) {
    if (request.progress)
      request.progress(step, 0);
  };
  Findings findings;
  tell("reading");
  Manifest manifest = ReadManifest(request.manifest, request.newest, findings);
  Product &product = manifest.product;
  if (manifest.was_parsed) {
    Findings faults;
    CheckProduct(product, faults);
    findings.Merge(faults);
  }
  try {
    auto stub = ReadFileBytes(request.stub);
    if (!stub)
      findings.Error({}, "can't read the stub '" + ShowPath(request.stub) + "'");
    else if (!findings.HasErrors())
      LocatePatch(product, StubImage(*stub), findings);
    const UpgradeResult upgrade = ReadAndPlanUpgrade(request, manifest, findings);
    problems << findings.Report(ShowPath(request.manifest));
    for (const std::string &note : upgrade.notes)
      problems << ShowPath(request.manifest) << ": note: " << note << "\n";
    if (findings.HasErrors())
      return false;
    if (request.strict && !findings.IsEmpty())
      throw PackError(kStrict);
    const Installer installer = BuildInstaller(product, *stub, request.progress);
    if (product.Has(IF_UNINSTALL) && installer.tail_size > 0) {
      problems << ShowPath(request.manifest) << ": warning: with 'payload.layout' \"file\", " << installer.tail_size
               << " bytes of the payload stay in the uninstaller\n";
      if (request.strict)
        throw PackError(kStrict);
    }
    const std::vector<OutputFile> outputs = OutputsOf(installer, product, request.output);
    manifest.inputs.push_back(request.stub);
    RefuseToOverwrite(outputs, manifest.inputs);
    tell("writing");
    WriteOutputFiles(outputs);
    Summarise(installer, product, outputs, summary);
    if (!manifest.earlier.empty())
      summary << "an upgrade takes away " << upgrade.deletions << " old files and shortcuts, and " << upgrade.folders
              << " folders\n";
    return true;
  } catch (const PackError &error) {
    problems << ShowPath(request.manifest) << ": error: " << error.what() << "\n";
    return false;
  }
}

} // namespace korb::packer
