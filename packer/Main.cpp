#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
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
#include "packer/CommandPages.h"
#include "packer/FileIo.h"
#include "packer/Product.h"
#include "packer/check/Findings.h"
#include "packer/manifest/ManifestSchema.h"
#include "packer/manifest/Starter.h"
#include "packer/plan/InstallationPlan.h"
#include "packer/read/ExtractInstaller.h"
#include "packer/read/InstallerDiff.h"
#include "packer/read/InstallerReport.h"
#include "packer/read/ReadRelease.h"

namespace fs = std::filesystem;
using namespace korb::packer;

namespace {

// The stub that comes with this program: beside it, where a package has its data, or in a source tree's build folder.
fs::path FindStub(const fs::path &program) {
  const fs::path folder = program.parent_path();
  for (const fs::path &candidate : {folder / "korb.exe", folder.parent_path() / "share" / "korb" / "korb.exe",
                                    folder.parent_path() / "win32" / "korb.exe"})
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

// What was typed after the program's name, in UTF-8.
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

std::string VersionLine() {
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
  korbpack check                      is there anything wrong with setup.toml?
  korbpack build                      make setup.exe of setup.toml
  korbpack verify setup.exe           is it sound?
  korbpack help COMMAND               more on one command
Ends with 0 only when all went well, and with 2 when a command was typed wrongly.)";

// What was typed, for all commands.
struct Options {
  std::string folder = ".", new_manifest = "setup.toml"; // init
  std::string manifest, output, stub;                    // build
  std::vector<std::string> variables;                    // build: name=value
  std::vector<std::string> after;                        // build: earlier installers
  bool strict = false;                                   // verify, too
  std::string format = "text";
  std::vector<std::string> allowed; // warnings
  std::string installer;            // of inspect, verify and extract
  int page = kDefaultCodePage;
  bool json = false;
  std::string destination;                     // extract
  std::string later;                           // diff
  std::string windows = "11", bits, directory; // plan
  bool silent = false;
  std::string page_of; // page
  std::string help_on; // help
};

// The commands. True is success.

bool Init(const Options &options) {
  const fs::path output = PathFromUtf8(options.new_manifest);
  if (fs::exists(output))
    throw PackError("'" + options.new_manifest + "' exists already");
  const std::string text = StarterManifest(PathFromUtf8(options.folder), output);
  const Bytes bytes(text.begin(), text.end());
  WriteOutputFiles({{output, &bytes}});
  std::cout << options.new_manifest << " written. Look through it, then: korbpack build " << options.new_manifest
            << "\n";
  return true;
}

bool Build(const Options &options, const fs::path &program, bool only_check) {
  constexpr char kUsualManifest[] = "setup.toml";
  if (options.manifest.empty() && !fs::exists(kUsualManifest))
    throw PackError("there is no '" + std::string(kUsualManifest) + "' here: 'korbpack init' writes one");
  BuildRequest request;
  request.manifest = options.manifest.empty() ? fs::path(kUsualManifest) : PathFromUtf8(options.manifest);
  request.output = PathFromUtf8(options.output);
  for (const std::string &variable : options.variables) {
    const size_t equals = variable.find('=');
    request.variables[variable.substr(0, equals)] = variable.substr(equals + 1);
  }
  request.stub = options.stub.empty() ? FindStub(program) : PathFromUtf8(options.stub);
  request.newest = ReadSourceDate();
  request.strict = options.strict;
  request.only_check = only_check;
  request.allowed = options.allowed;
  request.report_form = options.format == "json"    ? ReportForm::kJson
                        : options.format == "short" ? ReportForm::kShort
                                                    : ReportForm::kText;
  for (const std::string &name : options.after)
    request.after.push_back(PathFromUtf8(name));
  request.read_release = ReadRelease;
  std::ostringstream summary, problems; // after the line of progress, not within it
  const ProgressLine line;
  if (line.IsShown())
    request.progress = [&](const char *step, int percent) { line.Show(step, percent); };
  const bool built = BuildFromManifest(request, summary, problems);
  line.Clear();
  const bool is_json = request.report_form == ReportForm::kJson; // which is all that stands in the output then
  (is_json ? std::cout : std::cerr) << problems.str();
  (is_json ? std::cerr : std::cout) << summary.str();
  return built;
}

std::vector<std::string_view> CommandNames(const CLI::App &app) {
  std::vector<std::string_view> names;
  for (const CLI::App *command : app.get_subcommands([](const CLI::App *) { return true; }))
    names.push_back(command->get_name());
  return names;
}

std::string Listed(const std::vector<std::string_view> &words) {
  std::string all;
  for (std::string_view word : words)
    all += (all.empty() ? "" : ", ") + std::string(word);
  return all;
}

// What was typed wrongly, told by us and not by the library.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

UsageError NoSuchCommand(const CLI::App &app, const std::string &word) {
  const std::vector<std::string_view> names = CommandNames(app);
  const std::string meant = word == "version" ? "; did you mean '--version'?" : Suggestion(word, names);
  return UsageError("there is no command '" + word + "'" + meant + "\nThe commands are " + Listed(names));
}

// For an option that takes one of `words`.
CLI::Validator OneOf(std::vector<std::string_view> words) {
  return CLI::Validator(
      [words = std::move(words)](const std::string &word) {
        return std::ranges::find(words, word) != words.end()
                   ? std::string()
                   : "'" + word + "' is not one of " + Listed(words) + Suggestion(word, words);
      },
      "");
}

// What to say of a command line on which `rest` is what nobody takes.
UsageError NotExpected(const CLI::App &app, const std::vector<std::string> &rest) {
  const auto commands = app.get_subcommands();
  const std::string &word = rest.front();
  if (commands.empty() && !word.starts_with('-'))
    return NoSuchCommand(app, word);
  const CLI::App &command = commands.empty() ? app : *commands.front();
  std::vector<std::string> names;
  for (const CLI::Option *option : command.get_options())
    for (const std::string &name : option->get_lnames())
      names.push_back("--" + name);
  const std::vector<std::string_view> views(names.begin(), names.end());
  const std::string meant = word.starts_with("--") ? Suggestion(word.substr(0, word.find('=')), views) : std::string();
  const std::string of = commands.empty() ? "korbpack" : "'korbpack " + command.get_name() + "'";
  return UsageError(of + (word.starts_with('-') ? " has no option '" : " doesn't take '") + word + "'" + meant);
}

// The page that `help` shows, of all commands or of one.
bool Help(const CLI::App &app, const std::string &command) {
  const std::vector<std::string_view> names = CommandNames(app);
  if (!command.empty() && std::ranges::find(names, command) == names.end())
    throw NoSuchCommand(app, command);
  const CLI::App &about = command.empty() ? app : *app.get_subcommand(command);
  // Its own help() would be that of the command which is being run.
  std::cout << app.get_formatter()->make_help(&about, command.empty() ? "korbpack" : "korbpack " + command,
                                              CLI::AppFormatMode::Normal);
  return true;
}

bool Plan(const Options &options) {
  PlanRequest request;
  request.installer = PathFromUtf8(options.installer);
  request.system = FindTargetSystem(options.windows);
  request.has_64_bits = options.bits.empty() ? request.system->has_64_bits : options.bits == "64";
  if (!(request.has_64_bits ? request.system->has_64_bits : request.system->has_32_bits))
    throw UsageError("there is no " + options.bits + "-bit " + std::string(request.system->title) +
                     " that a plan can be made for");
  request.directory = options.directory;
  request.silent = options.silent;
  request.page = options.page;
  request.json = options.json;
  return WritePlan(request, std::cout, std::cerr);
}

std::vector<std::string_view> SystemNames() {
  std::vector<std::string_view> names;
  for (const TargetSystem &system : TargetSystems())
    names.push_back(system.name);
  return names;
}

// Adds the command `name`, which sets `good` when it is typed and has succeeded.
CLI::App &AddCommand(CLI::App &app, const char *name, const char *what, const char *examples, bool &good,
                     std::function<bool()> run) {
  CLI::App &command = *app.add_subcommand(name, what);
  command.footer(std::string("Examples:\n") + examples);
  command.callback([&good, run = std::move(run)] { good = run(); });
  return command;
}

void AddCommands(CLI::App &app, const fs::path &program, Options &options, bool &good) {
  CLI::App &init = AddCommand(app, "init", "Write a commented manifest to begin with",
                              "  korbpack init                       for the files of this folder\n"
                              "  korbpack init files -o thing.toml   for those below 'files'",
                              good, [&] { return Init(options); });
  init.add_option("folder", options.folder, "The files to install (this folder)")->type_name("FOLDER");
  init.add_option("-o,--output", options.new_manifest, "The manifest to write (setup.toml); never overwrites one")
      ->type_name("FILE");

  CLI::App &build = AddCommand(app, "build", "Build the installer that a manifest describes",
                               "  korbpack build                      setup.toml becomes setup.exe\n"
                               "  korbpack build thing.toml -o out/thing-2.0.exe\n"
                               "  korbpack build -D version=2.0 -D channel=beta\n"
                               "  korbpack build thing.toml --after releases/*.exe",
                               good, [&] { return Build(options, program, false); });
  CLI::App &check = AddCommand(app, "check", "Make all tests of a build: nothing is packed, and nothing written",
                               "  korbpack check                      setup.toml, as 'korbpack build' would take it\n"
                               "  korbpack check --strict thing.toml",
                               good, [&] { return Build(options, program, true); });
  for (CLI::App *command : {&build, &check}) {
    command
        ->add_option("manifest", options.manifest, "The manifest, a TOML file (setup.toml); - for the standard input")
        ->type_name("FILE");
    command
        ->add_option("-o,--output", options.output,
                     "The installer to write, volumes beside it (what the manifest says, or its name with .exe)")
        ->type_name("FILE");
    command->add_option("-D,--define", options.variables, "The value of a variable of the manifest, ${NAME}")
        ->type_name("NAME=VALUE")
        ->allow_extra_args(false)
        ->check([](const std::string &text) {
          return text.find('=') != text.npos && IsVariableName(text.substr(0, text.find('=')))
                     ? std::string()
                     : "'" + text + "' is no NAME=VALUE";
        });
    command
        ->add_option("--after", options.after,
                     "Installers of earlier releases: what they left and this one doesn't bring goes in an upgrade")
        ->type_name("FILE");
    command->add_flag("--strict", options.strict, "Warnings are errors");
    command->add_option("--allow", options.allowed, "Leave out warnings of this name; may be given again")
        ->type_name("NAME")
        ->allow_extra_args(false)
        ->check(CLI::Validator([](const std::string &name) { return WarningFault(name); }, ""));
    command->add_option("--format", options.format, "How to tell what is found: text, short (one line each) or json")
        ->type_name("FORM")
        ->check(OneOf({"text", "short", "json"}));
    command->add_option("--stub", options.stub, "The program without an archive (korb.exe beside this program)")
        ->type_name("FILE");
  }

  AddCommand(app, "schema", "Write the JSON Schema of manifests, by which editors complete and check them",
             "  korbpack schema > korb.schema.json\n"
             "  and '#:schema ./korb.schema.json' as a manifest's first line",
             good, [] {
               std::cout << ManifestSchema();
               return true;
             });

  CLI::App &page = AddCommand(app, "page", "Write the manual page, or a script by which a shell completes the commands",
                              "  korbpack page man > korbpack.1\n"
                              "  korbpack page bash > /etc/bash_completion.d/korbpack",
                              good, [&] {
                                std::cout << (options.page_of == "man"    ? ManPage(app, VersionLine())
                                              : options.page_of == "bash" ? BashCompletion(app)
                                                                          : ZshCompletion(app));
                                return true;
                              });
  page.add_option("for", options.page_of, "man, bash or zsh")
      ->type_name("KIND")
      ->required()
      ->check(OneOf({"man", "bash", "zsh"}));

  AddCommand(app, "help", "Tell of the commands, or of one", "  korbpack help build", good,
             [&] { return Help(app, options.help_on); })
      .add_option("command", options.help_on, "The command")
      ->type_name("COMMAND");

  const auto installer = [&] { return PathFromUtf8(options.installer); };
  CLI::App &inspect = AddCommand(
      app, "inspect", "Show all that is in an installer",
      "  korbpack inspect setup.exe\n"
      "  korbpack inspect setup.exe --json > setup.json",
      good, [&, installer] { return InspectInstaller(installer(), options.page, options.json, std::cout, std::cerr); });
  CLI::App &verify =
      AddCommand(app, "verify", "Make every test that the installer makes, and name the damage that it would report",
                 "  korbpack verify setup.exe           its volumes are looked for beside it", good,
                 [&, installer] { return VerifyInstaller(installer(), options.strict, std::cout); });
  verify.add_flag("--strict", options.strict, "A program part that was changed, other than by signing, is a failure");
  CLI::App &extract = AddCommand(app, "extract", "Write the files of an installer to a new folder",
                                 "  korbpack extract setup.exe files", good, [&, installer] {
                                   return ExtractInstaller(installer(), PathFromUtf8(options.destination), options.page,
                                                           std::cout, std::cerr);
                                 });
  CLI::App &diff = AddCommand(app, "diff", "Show what changes for a user between two installers",
                              "  korbpack diff thing-1.0.exe thing-1.1.exe", good, [&, installer] {
                                const Release before = ReadRelease(installer(), options.page);
                                const Release after = ReadRelease(PathFromUtf8(options.later), options.page);
                                WriteDiff(before, after, options.json, std::cout);
                                return true;
                              });
  CLI::App &plan = AddCommand(app, "plan", "Show all that a run of an installer would do to a machine, in its order",
                              "  korbpack plan setup.exe             on a 64-bit Windows 11\n"
                              "  korbpack plan setup.exe --windows 98 --dir D:\\Thing",
                              good, [&] { return Plan(options); });
  for (CLI::App *command : {&inspect, &verify, &extract, &diff, &plan})
    command->add_option("installer", options.installer, "The installer")->type_name("FILE")->required();
  diff.add_option("later", options.later, "The installer to compare it with")->type_name("FILE")->required();
  plan.add_option("--windows", options.windows, "The system: " + Listed(SystemNames()) + " (11)")
      ->type_name("NAME")
      ->check(OneOf(SystemNames()));
  plan.add_option("--bits", options.bits, "32 or 64 (64 from Windows Vista on)")
      ->type_name("NUMBER")
      ->check(OneOf({"32", "64"}));
  plan.add_option("--dir", options.directory, "The directory that the user chooses (the installer's own)")
      ->type_name("DIRECTORY");
  plan.add_flag("--silent", options.silent, "As with /a: nothing is asked");
  for (CLI::App *command : {&inspect, &diff, &plan})
    command->add_flag("--json", options.json, "As JSON, with all texts in full");
  extract.add_option("folder", options.destination, "Where to; empty or not there yet")
      ->type_name("FOLDER")
      ->required();
  for (CLI::App *command : {&inspect, &extract, &diff, &plan})
    command
        ->add_option("--codepage", options.page, "Code page of the texts of an installer that is not in UTF-8 (1252)")
        ->type_name("NUMBER")
        ->check([](const std::string &text) {
          return IsCodePage(std::atoi(text.c_str())) ? std::string() : std::string("it is one from 1250 to 1258");
        });
}

} // namespace

int main(int argc, char **argv) {
  CLI::App app("Packs a product into one installer for Windows.", "korbpack");
  app.set_version_flag("-V,--version", VersionLine());
  app.require_subcommand(0, 1); // none is left to the end: a misspelt one is then named
  app.footer(kExamples);
  Options options;
  bool good = false;
  const fs::path program = OwnPath(argv[0]);
  AddCommands(app, program, options, good);
  std::vector<std::string> arguments = Arguments(argc, argv);
  std::reverse(arguments.begin(), arguments.end());
  constexpr int kUsage = 2;
  int status = 1;
  try {
    app.parse(std::move(arguments)); // and runs the command
    status = good ? 0 : 1;
    if (app.get_subcommands().empty()) {
      std::cerr << app.help();
      status = kUsage;
    }
  } catch (const CLI::ExtrasError &) {
    status = kUsage;
    std::cerr << "korbpack: error: " << NotExpected(app, app.remaining(true)).what() << "\n";
  } catch (const CLI::ParseError &end) {
    status = kUsage;
    if (end.get_exit_code() == 0) // help, or the version
      status = app.exit(end);
    else
      std::cerr << "korbpack: error: " << end.what() << "\n";
  } catch (const UsageError &error) {
    status = kUsage;
    std::cerr << "korbpack: error: " << error.what() << "\n";
  } catch (const std::bad_alloc &) {
    std::cerr
        << "korbpack: error: there is not enough memory for a product of this size; with 'packed_payload = false' in "
           "[options] it takes a quarter of that\n";
  } catch (const std::exception &error) {
    std::cerr << "korbpack: error: " << error.what() << "\n";
  }
  // What a full disk has swallowed shows when the last of it is to be written.
  if (!std::cout.flush()) {
    std::cerr << "korbpack: error: can't write the output\n";
    return 1;
  }
  return status;
}
