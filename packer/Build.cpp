#include "packer/Build.h"

#include <algorithm>
#include <cstdio>

#include "packer/FileIo.h"
#include "packer/check/ProductCheck.h"
#include "packer/manifest/FileTree.h"
#include "packer/release/Upgrade.h"
#include "packer/write/Installer.h"

namespace korb::packer {

namespace fs = std::filesystem;

namespace {

constexpr char kTail[] = "with 'payload.layout' \"file\", a part of the payload stays in the uninstaller";

// An icon without a place goes over the one of the program's own that has the same form.
void LocatePatch(Product &product, const StubImage &program, Findings &findings) {
  const bool wanted = product.Has(IF_UNINSTALL) && !product.stub_patch.empty();
  if (wanted && product.stub_patch_offset == 0) {
    const auto place = program.FindIconImage(kStubPatchSize);
    product.stub_patch_offset = static_cast<int32_t>(place.value_or(0));
    if (!place)
      findings.Error(product.PlaceOf("uninstall.icon"),
                     product.icon.empty()
                         ? "the stub has no icon of that form to replace: give 'uninstall.patch_offset'"
                         : "'product.icon' has no image of that form to replace: 32 by 32 pixels in "
                           "256 colours, 2,216 bytes");
  }
  if (wanted && static_cast<uint32_t>(product.stub_patch_offset) + kStubPatchSize > program.SectionFilePos())
    findings.Error(product.PlaceOf("uninstall.patch_offset"), "the patch would pass the end of the uninstaller");
}

fs::path VolumePath(const fs::path &output, const Product &product, size_t number) {
  return output.parent_path() / PathFromUtf8(FromCodePage(VolumeFileName(product, number), product.code_page));
}

std::vector<OutputFile> OutputsOf(const Installer &installer, const Product &product, const fs::path &output) {
  std::vector<OutputFile> files;
  for (size_t i = 0; i < installer.volumes.size(); ++i)
    files.push_back({VolumePath(output, product, kFirstVolumeNumber + i), &installer.volumes[i]});
  files.push_back({output, &installer.executable});
  return files;
}

void RefuseToOverwrite(const fs::path &output, const std::vector<fs::path> &inputs) {
  for (const fs::path &input : inputs)
    if (IsSameFile(output, input))
      throw PackError("'" + ShowPath(output) + "' would overwrite a file that it is made from");
}

void RefuseToOverwrite(const std::vector<OutputFile> &outputs, const std::vector<fs::path> &inputs) {
  for (size_t i = 0; i < outputs.size(); ++i) {
    RefuseToOverwrite(outputs[i].path, inputs);
    for (size_t j = 0; j < i; ++j)
      if (IsSameFile(outputs[i].path, outputs[j].path))
        throw PackError("'" + ShowPath(outputs[i].path) + "' would be the installer and a volume at once");
  }
}

// All that is known before the packing of what will be written. Warnings are added to `findings`.
void TryToBuild(const Product &product, const Bytes &stub, const fs::path &output, const std::vector<fs::path> &inputs,
                Findings &findings) {
  RefuseToOverwrite(output, inputs);
  TryOutput(output);
  if (product.payload.volume_size > 0) {
    const fs::path volume = VolumePath(output, product, kFirstVolumeNumber);
    if (IsSameFile(output, volume))
      throw PackError("'" + ShowPath(output) + "' would be the installer and a volume at once");
    RefuseToOverwrite(volume, inputs);
    TryOutput(volume);
  }
  if (TryInstaller(product, stub) && product.Has(IF_UNINSTALL))
    findings.Warn(product.PlaceOf("payload.layout"), Warning::kPayloadInUninstaller, kTail);
}

// Volumes of an earlier installer that had more of them: whoever copies the folder would copy them too.
void TellOldVolumes(const Installer &installer, const Product &product, const fs::path &output, Findings &findings) {
  const fs::path next = VolumePath(output, product, kFirstVolumeNumber + installer.volumes.size());
  if (std::error_code error; product.payload.volume_size > 0 && fs::exists(next, error))
    findings.Warn({0, 0, ShowPath(next)}, Warning::kOldVolume,
                  "it is left of an earlier installer, and no part of this one");
}

// The files that the path of an earlier installer means: itself, or those of its folder that fit it as a pattern. The
// one that is about to be written is none of them.
std::vector<fs::path> InstallersOf(const fs::path &path, const fs::path &output) {
  const std::string pattern = ShowPath(path.filename());
  if (pattern.find_first_of("*?") == pattern.npos)
    return {path};
  std::vector<fs::path> found;
  std::error_code error;
  for (const auto &entry : fs::directory_iterator(path.has_parent_path() ? path.parent_path() : ".", error))
    if (entry.is_regular_file(error) && MatchesPattern(ShowPath(entry.path().filename()), pattern) &&
        !IsSameFile(entry.path(), output))
      found.push_back(entry.path());
  std::sort(found.begin(), found.end());
  return found;
}

UpgradeResult ReadAndPlanUpgrade(const BuildRequest &request, Manifest &manifest, Findings &findings) {
  for (const fs::path &path : request.after)
    manifest.earlier.push_back({ShowPath(path), path, {}});
  if (manifest.earlier.empty())
    return {};
  // An installer doesn't tell the page of its texts, unless that is UTF-8.
  const int page = manifest.product.code_page == kUtf8 ? kDefaultCodePage : manifest.product.code_page;
  std::vector<Release> earlier;
  for (const EarlierInstallers &named : manifest.earlier) {
    const std::vector<fs::path> paths = InstallersOf(named.path, manifest.output);
    for (const fs::path &path : paths)
      earlier.push_back(request.read_release(path, page));
    manifest.inputs.insert(manifest.inputs.end(), paths.begin(), paths.end());
    if (paths.empty())
      findings.Warn(named.place, Warning::kNoEarlierInstaller, "no earlier installer is called '" + named.name + "'");
  }
  return PlanUpgrade(earlier, manifest.product.PlaceOf("upgrade.from"), manifest.product, findings);
}

void SummariseProduct(const Product &product, std::ostream &summary) {
  summary << EscapeControls(
                 FromCodePage(product.name + (product.version.empty() ? "" : " ") + product.version, product.code_page))
          << ", " << product.files.size() << (product.files.size() == 1 ? " file\n" : " files\n");
}

void Summarise(const Installer &installer, const Product &product, const std::vector<OutputFile> &outputs,
               std::ostream &summary) {
  char line[160];
  SummariseProduct(product, summary);
  const double ratio = installer.plain_size == 0 ? 100.0
                                                 : 100.0 * static_cast<double>(installer.payload_size) /
                                                       static_cast<double>(installer.plain_size);
  std::snprintf(line, sizeof line, "payload %zu bytes, stored as %zu (%.1f %%); configuration %zu bytes\n",
                installer.plain_size, installer.payload_size, ratio, installer.config_size);
  summary << line;
  if (installer.storing == Storing::kNotSmaller)
    summary << "stored unpacked: packing would not make it half a percent smaller\n";
  else if (installer.storing == Storing::kNotUnpackable)
    summary << "stored unpacked: packed, it would have more than the 268,435,455 bytes that can be unpacked\n";
  for (const OutputFile &file : outputs)
    summary << EscapeControls(ShowPath(file.path)) << ": " << file.bytes->size() << " bytes\n";
  if (product.Has(IF_VERIFY_STUB))
    summary << "not to be signed: with 'options.verify_stub', it would refuse to run\n";
}

void SummariseUpgrade(const Manifest &manifest, const UpgradeResult &upgrade, std::ostream &summary) {
  if (!manifest.earlier.empty())
    summary << "an upgrade takes away " << upgrade.deletions << " old files and shortcuts, and " << upgrade.folders
            << " folders\n";
}

// Whether `request` lets what was found so far pass.
bool MayGoOn(const BuildRequest &request, const Findings &findings) {
  return !findings.HasErrors() && !(request.strict && findings.Count(Severity::kWarning) > 0);
}

// BuildFromManifest, but what is found is not told yet. Throws PackError.
bool Build(const BuildRequest &request, std::ostream &summary, Findings &findings) {
  const auto tell = [&](const char *step) {
    if (request.progress)
      request.progress(step, 0);
  };
  tell("reading");
  Manifest manifest = ReadManifest(request.manifest, request.newest, findings, {request.output, request.variables});
  const fs::path output = manifest.output;
  Product &product = manifest.product;
  product.file_name = ShowPath(output.filename());
  if (manifest.was_parsed)
    CheckProduct(product, findings);
  auto stub = ReadFileBytes(request.stub);
  if (!stub)
    findings.Error({}, "can't read the stub '" + ShowPath(request.stub) + "': " + WhyUnreadable(request.stub));
  else if (!findings.HasErrors())
    LocatePatch(product, ProgramOf(product, *stub), findings);
  manifest.inputs.push_back(request.stub);
  UpgradeResult upgrade;
  if (!findings.HasErrors())
    upgrade = ReadAndPlanUpgrade(request, manifest, findings);
  if (!findings.HasErrors())
    TryToBuild(product, *stub, output, manifest.inputs, findings);
  if (!MayGoOn(request, findings))
    return false;
  if (request.only_check) {
    SummariseProduct(product, summary);
    SummariseUpgrade(manifest, upgrade, summary);
    return true;
  }
  const Installer installer = BuildInstaller(product, *stub, request.progress);
  if (product.Has(IF_UNINSTALL) && installer.tail_size > 0 && !TryInstaller(product, *stub))
    findings.Warn(product.PlaceOf("payload.layout"), Warning::kPayloadInUninstaller, kTail);
  const std::vector<OutputFile> outputs = OutputsOf(installer, product, output);
  RefuseToOverwrite(outputs, manifest.inputs);
  if (!MayGoOn(request, findings))
    return false;
  tell("writing");
  WriteOutputFiles(outputs);
  TellOldVolumes(installer, product, output, findings);
  Summarise(installer, product, outputs, summary);
  SummariseUpgrade(manifest, upgrade, summary);
  return true;
}

} // namespace

bool BuildFromManifest(const BuildRequest &request, std::ostream &summary, std::ostream &problems) {
  Findings findings;
  for (const std::string &name : request.allowed)
    findings.Allow(name, {});
  bool is_done = false;
  try {
    is_done = Build(request, summary, findings);
  } catch (const PackError &error) {
    findings.Error({}, error.what());
  }
  if (is_done && !request.only_check) // some warnings come last
    findings.TellIdleAllowances();
  const std::string name = request.manifest == kStandardInput ? "<stdin>" : ShowPath(request.manifest);
  problems << findings.Report(name, request.report_form);
  if (!is_done && !findings.HasErrors() && request.report_form != ReportForm::kJson)
    problems << name << (request.only_check ? ": error: " : ": error: nothing is written: ")
             << "with --strict, warnings are errors\n";
  return is_done;
}

} // namespace korb::packer
