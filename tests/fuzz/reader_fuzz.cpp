// Any bytes as an installer that an author inspects, as a file whose version, or whose font, is looked for, as an icon,
// and as a program that gets one: no wild read, what was read before the damage stands within the file, and a program
// that takes a face has all its resources, and shows that face.
#include <cstdlib>

#include "packer/FontFile.h"
#include "packer/PeResources.h"
#include "packer/VersionResource.h"
#include "packer/read/InstallerReader.h"
#include "packer/write/InstallerFace.h"
#include "tests/support/FailureTrap.h"

using namespace korb;

namespace {

void PutAFace(const packer::Bytes &program) {
  packer::Product product;
  product.name = "Thing";
  product.icon = {{16, 16, 4, false, packer::Bytes(300, 'i')}};
  try {
    packer::StubImage image(program);
    packer::PutFace(product, image);
    const packer::Bytes file = image.WithSection(5, 0x1000);
    if (packer::IconImagesOf(file).size() != 1 || !packer::AllResources(file))
      abort();
  } catch (const packer::PackError &) { // it was unfit
  }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  packer::Bytes bytes(data, data + size);
  packer::FileVersionOf(bytes);
  packer::ReadVersionInfo(bytes);
  packer::ReadIconFile(bytes);
  packer::IconImagesOf(bytes);
  packer::FontNames(bytes);
  packer::IsFontFile(bytes);
  packer::CarriesArchive(bytes);
  PutAFace(bytes);
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
