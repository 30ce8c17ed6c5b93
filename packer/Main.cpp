#include <cstdlib>
#include <filesystem>
#include <iostream>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include "archive/Format.h"
#include "packer/Build.h"

namespace fs = std::filesystem;

namespace {

// The stub that comes with this program: beside it, or beside it in a source tree's build folder.
fs::path FindStub(const fs::path &program) {
  const fs::path folder = program.parent_path();
  for (const fs::path &candidate : {folder / "korb.exe", folder.parent_path() / "win32" / "korb.exe"})
    if (std::error_code error; fs::is_regular_file(candidate, error))
      return candidate;
  return folder / "korb.exe";
}

fs::path OwnPath(const char *typed) {
  std::error_code error;
#ifdef _WIN32
  const fs::path path = _pgmptr;
#else
  const fs::path path = fs::read_symlink("/proc/self/exe", error);
#endif
  return path.empty() ? fs::absolute(typed, error) : path;
}

// The date that reproducible builds are given: no file in an installer is newer.
bool ReadSourceDate(std::optional<int64_t> &newest) {
  const char *text = std::getenv("SOURCE_DATE_EPOCH");
  if (!text || !*text)
    return true;
  char *end = nullptr;
  newest = std::strtoll(text, &end, 10);
  return *end == '\0' && *newest >= 0;
}

} // namespace

int main(int argc, char **argv) {
  CLI::App app("Packs a product into one installer.", "korbpack");
  const std::string version = "korbpack 11.0, archive format " + std::to_string(korb::kFormatVersion / 100) + "." +
                              std::to_string(korb::kFormatVersion / 10 % 10);
  app.set_version_flag("--version", version);
  app.require_subcommand(1);
  korb::packer::BuildRequest request;
  CLI::App *build = app.add_subcommand("build", "Build the installer that a manifest describes");
  std::string manifest, output, stub;
  build->add_option("manifest", manifest, "The manifest, a TOML file")->required();
  build->add_option("-o,--output", output, "The installer to write; volumes go beside it")->required();
  build->add_option("--stub", stub, "The program without an archive (korb.exe beside this program)");
  CLI11_PARSE(app, argc, argv);

  request.manifest = manifest;
  request.output = output;
  request.stub = stub.empty() ? FindStub(OwnPath(argv[0])) : fs::path(stub);
  if (!ReadSourceDate(request.newest)) {
    std::cerr << "korbpack: error: SOURCE_DATE_EPOCH has to be seconds since 1970\n";
    return 1;
  }
  try {
    return korb::packer::BuildFromManifest(request, std::cout, std::cerr) ? 0 : 1;
  } catch (const std::exception &error) {
    std::cerr << "korbpack: error: " << error.what() << "\n";
    return 1;
  }
}
