// Any bytes as a manifest, in a folder that has nothing else: reading them and checking what they say ends, and what
// can't be read as TOML, or includes such a file, ends in an error with its place.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string_view>

#include "packer/check/ProductCheck.h"
#include "packer/manifest/ManifestReader.h"

using namespace korb;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  static const std::filesystem::path folder = [] {
    std::string name = (std::filesystem::temp_directory_path() / "korbXXXXXX").string();
    if (!mkdtemp(name.data()))
      abort();
    return name;
  }();
  const std::string_view text(reinterpret_cast<const char *>(data), size);
  for (const char *way : {"/", "..", "\\u", "\\U"}) // out of the folder, to whatever this machine has there
    if (text.find(way) != text.npos)
      return -1;
  const std::filesystem::path path = folder / "m.toml";
  std::ofstream(path, std::ios::binary) << text;
  packer::Findings findings;
  const packer::Manifest manifest = packer::ReadManifest(path, std::nullopt, findings);
  if (manifest.was_parsed)
    packer::CheckProduct(manifest.product, findings);
  else if (!findings.HasErrors() || findings.List()[0].place.line == 0)
    abort();
  findings.Report("m.toml");
  return 0;
}
