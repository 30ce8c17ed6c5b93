// What an installation leaves behind, and that its uninstaller leaves nothing.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <regex>
#include <set>

#include <nlohmann/json.hpp>

#include "packer/check/TextRules.h"
#include "tests/support/Doctest.h"
#include "tests/support/PackedProduct.h"
#include "tests/support/Snapshot.h"
#include "tests/support/Uninstallation.h"
#include "tests/support/Windows64.h"

using namespace korb;
using namespace korb::test;
namespace fs = std::filesystem;

namespace {

/// Compares `text` with the file of this name, which has no carriage returns; with KORB_REGENERATE set, writes it.
void CheckWhole(const char *name, const std::string &text) {
  const fs::path path = GivenFolder("KORB_E2E") / "expected" / name;
  const std::string shown = std::regex_replace(text, std::regex("\r"), "");
  CHECK(std::count(text.begin(), text.end(), '\n') == std::count(text.begin(), text.end(), '\r'));
  if (std::getenv("KORB_REGENERATE") && !kWindows64)
    WriteFileBytes(path.string(), shown);
  CHECK(shown == std::regex_replace(FileBytes(path.string()), std::regex(R"(C:\\Program Files)"), kProgramFiles));
}

const std::regex kDate("[0-9]+(/|-)[0-9A-Za-z]+(/|-)[0-9]+ [0-9]+:[0-9]+:[0-9]+[ap]");

/// The Uninstall key of `name`, a line for each value.
std::string KeyText(const std::string &name) {
  Snapshot key;
  const std::string path = kUninstallKey + name;
  AddKey(key, HKEY_LOCAL_MACHINE, path);
  std::string text;
  for (auto [value, what] : key) {
    if (what[0] == '4') { // a number
      uint32_t number;
      memcpy(&number, &what[2], sizeof number);
      what = "4 " + std::to_string(number);
    }
    if (value.ends_with("|EstimatedSize")) // which depends on the compiler of the examples
      what = "<KB>";
    text += value.substr(path.size()) + " = " + std::regex_replace(what.c_str(), kDate, "<date>") + "\n";
  }
  return std::regex_replace(text, std::regex("\r\n"), "\\r\\n\n");
}

void CheckRecord(const std::string &product, const std::string &directory, const std::string &name) {
  CheckWhole((product + "-record.txt").c_str(), FileBytes(directory + "\\Uninstall.DAT"));
  if (fs::exists(directory + "\\Install.LOG"))
    CheckWhole((product + "-log.txt").c_str(),
               std::regex_replace(FileBytes(directory + "\\Install.LOG"), kDate, "<date>"));
  const std::string text = KeyText(name);
  CheckWhole((product + "-key.txt").c_str(), std::regex_replace(text, std::regex("\n"), "\r\n"));
}

/// What a round trip may leave, and why.
const std::pair<std::string, const char *> kMayDiffer[] = {
    {"gone C:\\users\\Public\\Desktop",
     "it was empty before: a removed folder takes along parents that it leaves empty"},
    {"new " + kProgramFiles + "\\Korb Atlas", "the directory of"},
    {"new " + kProgramFiles + "\\Korb Atlas\\settings", "the directory of"},
    {"new " + kProgramFiles + "\\Korb Atlas\\settings\\atlas.cfg", "a file that is to stay"},
    {"new C:\\autoexec.bat", "made for the search path; its line is gone"},
    {"new " + kSystem32 + "\\atlas_core.dll", "system files stay when nobody counts them any more"},
    {"new Software\\Classes\\Had.Owner\\shell\\open|", "a verb's label has no backup"},
    {"new S-1-5-21-0-0-0-1000\\Console", "the system's, for the first console of a batch"},
};

void CheckAsBefore(const Snapshot &before) {
  for (const std::string &difference : Differences(before, TakeSnapshot())) {
    CAPTURE(difference);
    CHECK(std::any_of(std::begin(kMayDiffer), std::end(kMayDiffer), [&](const auto &one) {
      return difference == one.first || difference.starts_with(one.first + "|");
    }));
  }
}

/// What `korbpack plan` says of that installer.
std::string PlanOf(const std::string &setup, const std::string &options) {
  const std::string output = "C:\\test\\plan.txt";
  const char *system = kWindows64 ? " --windows 10" : " --windows 7 --bits 32";
  CHECK(Run("cmd /c korbpack plan " + setup + system + " --silent " + options + " > " + output) == 0);
  return FileBytes(output);
}

/// The place of a step of a plan as a snapshot names it, in small letters.
std::string PlaceOf(const nlohmann::json &step) {
  std::string name = step.value("place", step.value("path", step.value("key", "")));
  for (const auto &[root, place] :
       {std::pair{"HKEY_CLASSES_ROOT\\", "Software\\Classes\\"},
        std::pair{"HKEY_CURRENT_USER\\", "S-1-5-21-0-0-0-1000\\"}, std::pair{"HKEY_LOCAL_MACHINE\\", ""}})
    if (name.starts_with(root))
      name = place + name.substr(strlen(root));
  return packer::LowerCase(name + (step["action"] == "value" ? "|" + step.value("name", "") : ""));
}

/// What is not the plan's to know.
bool IsLeftToOthers(const std::string &name) {
  const std::string names[] = {"c:\\atlas-batches.txt", kSoftware + "korb examples\\atlas registered",
                               "s-1-5-21-0-0-0-1000\\console"};
  return std::any_of(std::begin(names), std::end(names),
                     [&](const std::string &one) { return name.starts_with(packer::LowerCase(one)); });
}

/// Compares a plan with what an installation has made: all that is new was planned, as it is, and nothing else.
void CheckPlan(const std::string &text, const Snapshot &before, const Snapshot &after) {
  const nlohmann::json plan = nlohmann::json::parse(text);
  Snapshot now;
  for (const auto &[name, what] : after)
    now[packer::LowerCase(name)] = what;
  std::set<std::string> planned;
  for (const auto &step : plan["steps"]) {
    const std::string place = PlaceOf(step), action = step["action"];
    CAPTURE(place);
    if (action == "remove directory")
      planned.erase(place);
    if (action == "file" || action == "directory" || action == "shortcut" || action == "edit" || action == "key" ||
        action == "value")
      planned.insert(place);
    if (step.contains("size") && action == "file")
      CHECK(std::regex_search(now[place], std::regex(" " + std::to_string(step.value("size", 0)) + " [0-9]+$")));
    if (action != "value" || place.ends_with("|installsource") || place.ends_with("|installdate"))
      continue;
    const nlohmann::json &data = step["data"];
    std::string wanted = step["type"] == "REG_DWORD" ? "4 " : step["type"] == "REG_SZ" ? "1 " : "2 ";
    if (data.is_number()) {
      const int32_t number = data;
      wanted.append(reinterpret_cast<const char *>(&number), sizeof number);
    } else {
      wanted += data.get<std::string>() + '\0'; // the system ends a text that lacks its end
    }
    CHECK(packer::LowerCase(now[place]) == packer::LowerCase(wanted));
  }
  CHECK(planned.size() > 60);
  for (const std::string &line : Differences(before, after)) {
    const std::string name = packer::LowerCase(line.substr(line.find(' ') + 1));
    CAPTURE(line);
    CHECK((IsLeftToOthers(name) || (line.starts_with("new ") && planned.contains(name))));
    planned.erase(name);
  }
  for (const std::string &name : planned)
    FAIL_CHECK("planned, but not made: " << name);
}

const std::string kShared = kProgramFiles + "\\Common Files\\Pair\\pair.dll";
const std::string kMine = kProgramFiles + "\\Common Files\\Pair\\mine.dll";

void InstallProduct(const std::string &name) {
  PackedProduct product(ProductManifest(name));
  product.Pack("C:\\pair.exe");
  product.Install();
}

std::string Count(const std::string &path) {
  return MachineValue("Software\\Microsoft\\Windows\\CurrentVersion\\SharedDLLs", path);
}

} // namespace

TEST_CASE("a product that uses everything leaves the machine as it was") {
  Run(BuildExample("hello").string() + " /a"); // its master product
  const std::string setup = BuildExample("full").string();
  DestroyWindow(CreateWindowA("STATIC", "", 0, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr)); // starts the desktop
  const std::string plan = PlanOf(setup, "");
  if (!kWindows64) {
    const std::string sized = std::regex_replace(plan, std::regex("[0-9]+( bytes| on the disk)"), "N$1");
    CheckWhole("full-plan.txt", std::regex_replace(sized, std::regex("(EstimatedSize = )[0-9]+"), "$1<KB>"));
  }
  const std::string planned = PlanOf(setup, "--json");
  const Snapshot before = TakeSnapshot(); // a plan that made anything itself would find nothing new made below
  Run(setup + " /a");
  const Snapshot after = TakeSnapshot();
  CheckPlan(planned, before, after);
  CheckRecord("full", kProgramFiles + "\\Korb Atlas\\Undo", "KorbAtlas");
  CHECK(fs::file_size(kProgramFiles + "\\Korb Atlas\\Undo\\Remove Atlas.exe") < fs::file_size("korb.exe") + 0x1000);
  const std::vector<std::string> made = Differences(before, after);
  CHECK(made.size() > 60);
  for (const std::string &one : {kSystem32 + "\\atlas_com.dll", kSoftware + "Korb Examples\\Atlas registered"})
    CHECK(std::count(made.begin(), made.end(), "new " + one) == 1);
  UninstallQuietly("KorbAtlas");
  CheckAsBefore(before);
  CHECK(FileBytes("C:\\autoexec.bat").find("Atlas") == std::string::npos);
}

TEST_CASE("two products leave what was there before, and the last takes what they share") {
  SetRegistryText(HKEY_CLASSES_ROOT, ".had", "", "Had.Owner");
  SetRegistryText(HKEY_CLASSES_ROOT, "Had.Owner", "", "Had");
  SetRegistryText(HKEY_CLASSES_ROOT, "Had.Owner\\shell\\open\\command", "", "before %1");
  const Snapshot before = TakeSnapshot();
  InstallProduct("left-1");
  CheckRecord("left-1", kProgramFiles + "\\Left", "Left");
  InstallProduct("right");
  CheckRecord("right", kProgramFiles + "\\Right", "Right");
  CHECK(Count(kShared) == "2");
  CHECK(Count(kMine) == "1");
  UninstallQuietly("Left");
  CHECK(Count(kShared) == "1");
  CHECK(FileBytes(kShared) == "shared");
  CHECK(DescribeFile(kMine) == "missing");
  UninstallQuietly("Right");
  fs::remove("C:\\pair.exe");
  CheckAsBefore(before);
}

TEST_CASE("installing over an installation replaces the record, and counts what is still shared once") {
  const std::string home = kProgramFiles + "\\Left";
  InstallProduct("left-1");
  CheckRecord("left-1", home, "Left");
  const std::string record = FileBytes(home + "\\Uninstall.DAT");
  InstallProduct("left-1");
  CHECK(FileBytes(home + "\\Uninstall.DAT") == record);
  CHECK(Count(kMine) == "1");
  InstallProduct("left-2");
  CheckRecord("left-2", home, "Left");
  CHECK(Count(kShared) == "1");
  CHECK(Count(kMine) == "missing");
  CHECK(FileBytes(kMine) == "mine"); // nobody counts it any more, and it stays
  UninstallQuietly("Left");
  CHECK(DescribeFile(kShared) == "missing");
  // The new record knows nothing of the old version's files.
  CHECK(FileBytes(home + "\\old\\one.txt") == "one");
}
