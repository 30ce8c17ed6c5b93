// Any bytes as an installer that an author inspects, and as a file whose version, or whose font, is looked for: no wild
// read, and what was read before the damage stands within the file.
#include <cstdlib>

#include "packer/FontFile.h"
#include "packer/PeResources.h"
#include "packer/VersionResource.h"
#include "packer/read/InstallerReader.h"
#include "tests/support/FailureTrap.h"

using namespace korb;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  packer::Bytes bytes(data, data + size);
  packer::FileVersionOf(bytes);
  packer::FontNames(bytes);
  packer::IsFontFile(bytes);
  packer::CarriesArchive(bytes);
  packer::InstallerReader reader(std::move(bytes), "no such folder");
  try {
    reader.Read();
  } catch (const test::TrappedFailure &) { // the fuzzers' own reports of damage stand in for the packer's
  }
  if (reader.reached >= packer::Part::kSection &&
      (reader.location.section_file_pos < 0 || reader.location.section_file_pos > static_cast<int32_t>(size)))
    abort();
  return 0;
}
