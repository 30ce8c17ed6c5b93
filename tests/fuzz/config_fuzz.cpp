// Any bytes are a configuration or a damage report: never a wild read, and nothing beyond the limits comes out.
#include <cstdlib>

#include "archive/ConfigStream.h"
#include "core/RunValues.h"
#include "tests/support/ArchiveDoubles.h"
#include "tests/support/FailureTrap.h"
#include "ui/TextLookup.h"

using namespace korb;
using namespace korb::test;

static void Require(bool holds) {
  if (!holds)
    abort();
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  ResetRun();
  MemoryStream stream;
  stream.assign(reinterpret_cast<const char *>(data), static_cast<int32_t>(size));
  RecordingConfigHost host;
  InstallConfig config;
  try {
    ReadConfigStream(stream, 1 << 20, host, config);
  } catch (const TrappedFailure &) {
    return 0;
  }
  Require(config.min_phase_ms <= kMaxPhaseMs);
  Require(config.license_pages.count <= kMaxPages && config.readme_pages.count <= kMaxPages);
  Require(config.deletions.count <= kMaxDeletions);
  Require(config.associations.count <= kMaxAssociations && config.uninstall_data.count <= kMaxUninstallData);
  Require(config.stub_patch_offset >= 0 && config.stub_patch_offset <= 1 << 20);
  Require(LanguageNames.count >= 1 && LanguageNames.count <= kMaxLanguages);
  Require(LanguageIndex >= 0 && LanguageIndex < LanguageNames.count);
  Require(TextTable.count >= 1 && TextTable.count <= kMaxTexts);
  for (int32_t number = -1; number <= TextTable.count; ++number)
    Require(TextLookup(number) != nullptr);
  return 0;
}
