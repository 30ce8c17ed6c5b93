#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <sstream>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include "format/Archive.h"
#ifdef _WIN32
#include "core/Windows.h"

#include <io.h>
#include <shellapi.h>
#else
#include <unistd.h>
#endif
#include "packer/Build.h"
#include "packer/CodePage.h"
#include "packer/FileIo.h"
#include "packer/Product.h"
#include "packer/manifest/Starter.h"
#include "packer/read/ExtractInstaller.h"
#include "packer/read/InstallerReport.h"

namespace fs = std::filesystem;
using namespace korb::packer;

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
  const fs::path path = _wpgmptr;
#else
  const fs::path path = fs::read_symlink("/proc/self/exe", error);
#endif
  return path.empty() ? fs::absolute(typed, error) : path;
}

// What was typed behind the program's name, in UTF-8.
std::vector<std::string> Arguments([[maybe_unused]] int argc, [[maybe_unused]] char **argv) {
#ifdef _WIN32
  std::vector<std::string> arguments;
  int count = 0;
  wchar_t **wide = CommandLineToArgvW(GetCommandLineW(), &count);
  for (int i = 1; i < count; ++i)
    arguments.push_back(ShowPath(wide[i]));
  LocalFree(wide);
  SetConsoleOutputCP(CP_UTF8);
  return arguments;
#else
  return std::vector<std::string>(argv + 1, argv + argc);
#endif
}

// The date that reproducible builds are given: no file in an installer is newer.
std::optional<int64_t> ReadSourceDate() {
  const char *text = std::getenv("SOURCE_DATE_EPOCH");
  if (!text || !*text)
    return std::nullopt;
  char *end = nullptr;
  const int64_t newest = std::strtoll(text, &end, 10);
  if (*end != '\0' || newest < 0)
    throw PackError("SOURCE_DATE_EPOCH has to be seconds since 1970");
  return newest;
}

std::string Version() {
  return "korbpack " KORB_VERSION ", archive format " + std::to_string(korb::kFormatVersion / 100) + "." +
         std::to_string(korb::kFormatVersion / 10 % 10);
}

// One line on a terminal that is written over and taken away at the end; elsewhere nothing.
class ProgressLine {
public:
#ifdef _WIN32
  bool IsShown() const {
    return _isatty(_fileno(stderr)) != 0;
  }
#else
  bool IsShown() const {
    return isatty(STDERR_FILENO) != 0;
  }
#endif
  void Show(const char *step, int percent) const {
    if (percent > 0)
      std::fprintf(stderr, "\r%s %d %%   ", step, percent);
    else
      std::fprintf(stderr, "\r%s...   ", step);
    std::fflush(stderr);
  }
  void Clear() const {
    if (IsShown())
      std::fputs("\r                        \r", stderr);
  }
};

constexpr char kExamples[] = R"(Examples:
  korbpack init files                 write setup.toml for the files below a folder
  korbpack build                      make setup.exe of setup.toml
  korbpack verify setup.exe           is it sound?
  korbpack COMMAND --help             more on one command
Ends with 0 only when all went well.)";

// One command: its options, its examples, and what it does once they are read. True is success.
class Command {
public:
  Command(CLI::App &app, const char *name, const char *what, const char *examples)
      : options(*app.add_subcommand(name, what)) {
    options.footer(std::string("Examples:\n") + examples);
  }
  virtual ~Command() = default;
  virtual bool Run(const fs::path &program) = 0;

  CLI::App &options;

protected:
  void AddInstaller() { options.add_option("installer", installer_, "The installer")->required(); }
  void AddCodePage() {
    options.add_option("--codepage", page_, "Code page of the installer's texts (1252)")
        ->check([](const std::string &text) {
          return IsCodePage(std::atoi(text.c_str())) ? std::string() : std::string("it is one from 1250 to 1258");
        });
  }

  std::string installer_;
  int page_ = kDefaultCodePage;
};

class Init : public Command {
public:
  explicit Init(CLI::App &app)
      : Command(app, "init", "Write a commented manifest to begin with",
                "  korbpack init                       for the files of this folder\n"
                "  korbpack init files -o thing.toml   for those below 'files'") {
    options.add_option("folder", folder_, "The files to install (this folder)");
    options.add_option("-o,--output", output_, "The manifest to write (setup.toml); never overwrites one");
  }
  bool Run(const fs::path &) override {
    const fs::path output = PathFromUtf8(output_);
    if (fs::exists(output))
      throw PackError("'" + output_ + "' exists already");
    const std::string text = StarterManifest(PathFromUtf8(folder_), output);
    const Bytes bytes(text.begin(), text.end());
    WriteOutputFiles({{output, &bytes}});
    std::cout << output_ << " written. Look through it, then: korbpack build " << output_ << "\n";
    return true;
  }

private:
  std::string folder_ = ".", output_ = "setup.toml";
};

class Build : public Command {
public:
  explicit Build(CLI::App &app)
      : Command(app, "build", "Build the installer that a manifest describes",
                "  korbpack build                      setup.toml becomes setup.exe\n"
                "  korbpack build thing.toml -o out/thing-2.0.exe") {
    options.add_option("manifest", manifest_, "The manifest, a TOML file (setup.toml)");
    options.add_option("-o,--output", output_,
                       "The installer to write, volumes beside it (the manifest's name with .exe)");
    options.add_flag("--strict", strict_, "Warnings are errors");
    options.add_option("--stub", stub_, "The program without an archive (korb.exe beside this program)");
  }
  bool Run(const fs::path &program) override {
    if (options.count("manifest") == 0 && !fs::exists(manifest_))
      throw PackError("there is no '" + manifest_ + "' here: 'korbpack init' writes one");
    BuildRequest request;
    request.manifest = PathFromUtf8(manifest_);
    request.output = output_.empty() ? fs::path(request.manifest).replace_extension(".exe") : PathFromUtf8(output_);
    request.stub = stub_.empty() ? FindStub(program) : PathFromUtf8(stub_);
    request.newest = ReadSourceDate();
    request.strict = strict_;
    std::ostringstream summary, problems; // behind the line of progress, not within it
    const ProgressLine line;
    if (line.IsShown())
      request.progress = [&](const char *step, int percent) { line.Show(step, percent); };
    const bool built = BuildFromManifest(request, summary, problems);
    line.Clear();
    std::cerr << problems.str();
    std::cout << summary.str();
    return built;
  }

private:
  std::string manifest_ = "setup.toml", output_, stub_;
  bool strict_ = false;
};

class Inspect : public Command {
public:
  explicit Inspect(CLI::App &app)
      : Command(app, "inspect", "Show all that is in an installer",
                "  korbpack inspect setup.exe\n"
                "  korbpack inspect setup.exe --json > setup.json") {
    AddInstaller();
    options.add_flag("--json", json_, "As JSON, with all texts in full");
    AddCodePage();
  }
  bool Run(const fs::path &) override {
    return InspectInstaller(PathFromUtf8(installer_), page_, json_, std::cout, std::cerr);
  }

private:
  bool json_ = false;
};

class Verify : public Command {
public:
  explicit Verify(CLI::App &app)
      : Command(app, "verify", "Make every test that the installer makes, and name the damage that it would report",
                "  korbpack verify setup.exe           its volumes are looked for beside it") {
    AddInstaller();
  }
  bool Run(const fs::path &) override { return VerifyInstaller(PathFromUtf8(installer_), std::cout); }
};

class Extract : public Command {
public:
  explicit Extract(CLI::App &app)
      : Command(app, "extract", "Write the files of an installer to a new folder",
                "  korbpack extract setup.exe files") {
    AddInstaller();
    options.add_option("folder", folder_, "Where to; empty or not there yet")->required();
    AddCodePage();
  }
  bool Run(const fs::path &) override {
    return ExtractInstaller(PathFromUtf8(installer_), PathFromUtf8(folder_), page_, std::cout, std::cerr);
  }

private:
  std::string folder_;
};

} // namespace

int main(int argc, char **argv) {
  CLI::App app("Packs a product into one installer for Windows.", "korbpack");
  app.set_version_flag("--version", Version());
  app.require_subcommand(0, 1); // none is left to the end: a misspelt one is then named
  app.footer(kExamples);
  Init init(app);
  Build build(app);
  Inspect inspect(app);
  Verify verify(app);
  Extract extract(app);
  std::vector<std::string> arguments = Arguments(argc, argv);
  std::reverse(arguments.begin(), arguments.end());
  try {
    app.parse(std::move(arguments));
  } catch (const CLI::ParseError &end) {
    return app.exit(end);
  }
  try {
    for (Command *command :
         {static_cast<Command *>(&init), static_cast<Command *>(&build), static_cast<Command *>(&inspect),
          static_cast<Command *>(&verify), static_cast<Command *>(&extract)})
      if (command->options.parsed())
        return command->Run(OwnPath(argv[0])) ? 0 : 1;
    std::cerr << app.help();
  } catch (const std::bad_alloc &) {
    std::cerr << "korbpack: error: there is not enough memory for a product of this size\n";
  } catch (const std::exception &error) {
    std::cerr << "korbpack: error: " << error.what() << "\n";
  }
  return 1;
}
