#include "tests/faults/Runs.h"

#include <filesystem>
#include <sstream>
#include <stdexcept>

#include "packer/Build.h"
#include "packer/manifest/ManifestReader.h"
#include "tests/faults/Machine.h"
#include "tests/support/Desktop.h"
#include "tests/support/PackedProduct.h"
#include "tests/support/Process.h"
#include "tests/support/Uninstallation.h"

namespace korb::faults {

using namespace korb::test;
namespace fs = std::filesystem;

namespace {

constexpr int kLimit = 60000; ///< milliseconds, on a loaded machine: a run takes a fraction of a second
constexpr char kSetups[] = "C:\\setups";
constexpr char kReport[] = "C:\\test\\report.txt";
constexpr int kNext = 1001, kCancel = 1003, kStepText = 1011;

/// The next version: one file less, one more, one changed.
void ChangeProduct(packer::Product &product) {
  product.version = "2.2";
  std::erase_if(product.files, [](const packer::FileEntry &file) { return file.name == "empty"; });
  packer::FileEntry added;
  added.name = "new.txt";
  added.contents.assign(3000, 'n');
  product.files.push_back(added);
  for (packer::FileEntry &file : product.files) {
    if (!file.name.ends_with(".kmap"))
      continue;
    file.contents.push_back('2');
    file.date = {2026, 3, 4, 5, 6, 8};
  }
}

void Build(const fs::path &manifest, const std::string &setup) {
  std::ostringstream summary, problems;
  packer::BuildFromManifest({manifest, setup, "korb.exe", {}}, summary, problems);
  if (!problems.str().empty())
    throw std::runtime_error(problems.str());
}

std::string TakeReport() {
  std::string text;
  if (GetFileAttributesA(kReport) != INVALID_FILE_ATTRIBUTES)
    text = FileBytes(kReport);
  DeleteFileA(kReport);
  return text;
}

/// Answers windows as somebody does who wants the run to come to an end, and keeps what they said.
class Person {
public:
  explicit Person(std::vector<std::string> &boxes) : boxes_(boxes) {}

  void Look(DWORD process) {
    for (const Window &window : OpenWindows())
      if (window.process == process && !IsProgress(window))
        Answer(window);
  }

private:
  static bool IsProgress(const Window &window) {
    for (const Control &control : window.controls)
      if (control.kind == "msctls_progress32" || control.id == kStepText)
        return true;
    return false;
  }

  void Answer(const Window &window) {
    if (window.handle == last_ && ++looks_ % 100 != 0)
      return; // it is on its way
    last_ = window.handle;
    const std::string said = window.Message();
    boxes_.push_back(window.title + ": " + (said.empty() ? "(dialog)" : said));
    for (const std::string &button : Buttons(said))
      if (Click(window, button))
        return;
  }

  /// The first of these that a window has is clicked.
  std::vector<std::string> Buttons(const std::string &said) {
    if (said.find("read it now?") != std::string::npos)
      return {"No"};
    if (said.find("disk") != std::string::npos && ++disks_ > 2)
      return {"Cancel", "OK"};
    return {"Yes", std::to_string(kNext), "OK", "2", "1", std::to_string(kCancel)};
  }

  std::vector<std::string> &boxes_;
  HWND last_ = nullptr;
  int looks_ = 0, disks_ = 0;
};

Outcome StartCommand(const std::string &command, const std::string &directory, const std::string &fault) {
  Outcome outcome;
  TakeReport();
  SetEnvironmentVariableA("KORB_FAULT_REPORT", kReport);
  SetEnvironmentVariableA("KORB_FAULT", fault.empty() ? nullptr : fault.c_str());
  {
    Process process(command, directory);
    SetEnvironmentVariableA("KORB_FAULT", nullptr);
    Person person(outcome.boxes);
    const bool silent = command.find("/a") != std::string::npos; // windows are rare
    const DWORD start = GetTickCount();
    std::optional<DWORD> code;
    while (!(code = process.Wait(silent ? 150 : 30)) && GetTickCount() - start < kLimit)
      person.Look(process.Id());
    outcome.ended = code.has_value();
    outcome.code = code.value_or(0);
  }
  if (!WaitForPrograms(10000))
    outcome.boxes.push_back("(a program goes on)");
  outcome.report = TakeReport();
  return outcome;
}

} // namespace

void MakeInstallers() {
  fs::create_directories(kSetups);
  Run(BuildExample("hello").string() + " /a"); // the atlas needs it
  const fs::path manifest = GivenFolder("KORB_EXAMPLES") / "full" / "setup.toml";
  Build(manifest, std::string(kSetups) + "\\atlas-1.exe");
  packer::Findings findings;
  packer::Product product = packer::ReadManifest(manifest, {}, findings).product;
  ChangeProduct(product);
  WriteInstaller(product, std::string(kSetups) + "\\atlas-2.exe");
  WriteFileBytes(std::string(kSetups) + "\\disks.toml",
                 "[product]\nname = 'Several disks'\n[install]\ndirectory = 'Several disks'\nmin_phase_ms = 0\n"
                 "[options]\npacked_payload = false\nask_directory = false\n[payload]\nfirst_part_size = 500\n"
                 "volume_size = 1000\nvolume_name = 'disks'\nvolume_serial = 5\n"
                 "[[file]]\nname = 'one.txt'\ncontents = '" +
                     std::string(900, '1') +
                     "'\n"
                     "[[file]]\nname = 'two.txt'\ncontents = '" +
                     std::string(1200, '2') + "'\n");
  Build(std::string(kSetups) + "\\disks.toml", std::string(kSetups) + "\\disks.exe");
}

Outcome StartSetup(const std::string &setup, const std::string &fault) {
  return StartCommand(std::string(kSetups) + "\\" + setup, kSetups, fault);
}

Outcome StartUninstaller(const RunKind &kind, bool silent, const std::string &fault) {
  const std::string command = UninstallValue(kind.product, silent ? "QuietUninstallString" : "UninstallString");
  try {
    return command.empty() ? Outcome{} : StartCommand(command, "C:\\", fault);
  } catch (const std::runtime_error &missing) { // the key may name one that is not there
    Outcome outcome;
    outcome.boxes.push_back(missing.what());
    return outcome;
  }
}

Outcome Start(const RunKind &kind, const std::string &fault) {
  const HANDLE held =
      *kind.held ? CreateFileA(kind.held, GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr) : INVALID_HANDLE_VALUE;
  Outcome outcome = kind.uninstalls() ? StartUninstaller(kind, false, fault) : StartSetup(kind.setup, fault);
  CloseHandle(held);
  return outcome;
}

bool IsListed(const RunKind &kind) {
  return !UninstallValue(kind.product, "UninstallString").empty();
}

} // namespace korb::faults
