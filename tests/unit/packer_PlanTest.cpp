// What a plan says that a run of an installer would do.
#include <sstream>

#include "format/Texts.h"
#include "format/Words.h"
#include "packer/manifest/ReadyTexts.h"
#include "packer/plan/InstallationPlan.h"
#include "packer/read/InstallerReport.h"
#include "packer/read/ReportText.h"
#include "tests/support/Doctest.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestInstaller.h"

using namespace korb;
using namespace korb::packer;
using namespace korb::test;

namespace {

struct PlannedProduct : TestInstaller {
  PlannedProduct() {
    product = Product();
    product.name = "Thing";
    product.publisher = "Maker";
    product.languages = {{"English", EnglishTexts(), {}}};
  }

  void Add(const std::string &name, uint32_t kind, uint32_t flags, const std::string &label = "", int32_t year = 2026) {
    FileEntry file;
    file.name = name;
    file.kind = kind;
    file.flags = flags;
    file.label = label;
    file.date = {year, year ? 1 : 0, year ? 2 : 0, 3, 4, 5};
    file.contents = {'1', '2', '3'};
    product.files.push_back(file);
  }

  Json Plan(const char *windows, bool has_64_bits = false, const std::string &directory = "",
            bool silent = false) const {
    const TempFolder folder;
    const Bytes bytes = Build().executable;
    PlanRequest request;
    request.installer = folder.Write("setup.exe", std::string(bytes.begin(), bytes.end()));
    request.system = FindTargetSystem(windows);
    request.has_64_bits = has_64_bits;
    request.directory = directory;
    request.silent = silent;
    request.json = true;
    std::ostringstream out, problems;
    const bool is_made = WritePlan(request, out, problems);
    CHECK(problems.str() == "");
    return is_made ? Json::parse(out.str()) : Json();
  }
};

// The paths of all steps of that action, with where they really are.
std::string Paths(const Json &plan, const char *action) {
  std::string all;
  for (const Json &step : plan["steps"])
    if (step["action"] == action)
      all += step.value("path", step.value("key", "")) +
             (step.contains("place") ? " = " + step.value("place", "") : "") + "\n";
  return all;
}

const Json &StepOf(const Json &plan, const std::string &end_of_path) {
  for (const Json &step : plan["steps"])
    if (step.value("path", "").ends_with(end_of_path))
      return step;
  static const Json none = Json::object();
  return none;
}

} // namespace

TEST_CASE("each system has its own folders, and a 64-bit one its places for 32-bit programs") {
  PlannedProduct thing;
  thing.Add("thing.exe", KindStartup, FF_DESKTOP | FF_START_MENU, "Thing");
  thing.Add("thing.dll", KindSystem, 0, "1.0");
  thing.product.registry_key = "Maker\\Thing";
  const struct {
    const char *windows;
    bool has_64_bits, for_all;
    std::string files, shortcuts, key;
  } rows[] = {
      {"95", false, true, "C:\\Program Files\\Thing\\thing.exe\nC:\\WINDOWS\\SYSTEM\\thing.dll\n",
       "C:\\WINDOWS\\Desktop\\Thing.LNK\nC:\\WINDOWS\\Start Menu\\Programs\\Maker\\Thing\\Thing.LNK\n"
       "C:\\WINDOWS\\Start Menu\\Programs\\StartUp\\Thing.LNK\n",
       "HKEY_LOCAL_MACHINE\\Software\\Maker\n"},
      {"me", false, true, "C:\\Program Files\\Thing\\thing.exe\nC:\\WINDOWS\\SYSTEM\\thing.dll\n",
       "C:\\WINDOWS\\All Users\\Desktop\\Thing.LNK\n"
       "C:\\WINDOWS\\All Users\\Start Menu\\Programs\\Maker\\Thing\\Thing.LNK\n"
       "C:\\WINDOWS\\All Users\\Start Menu\\Programs\\StartUp\\Thing.LNK\n",
       "HKEY_LOCAL_MACHINE\\Software\\Maker\n"},
      {"nt4", false, false, "C:\\Program Files\\Thing\\thing.exe\nC:\\WINNT\\System32\\thing.dll\n",
       "C:\\WINNT\\Profiles\\User\\Desktop\\Thing.LNK\n"
       "C:\\WINNT\\Profiles\\User\\Start Menu\\Programs\\Maker\\Thing\\Thing.LNK\n"
       "C:\\WINNT\\Profiles\\User\\Start Menu\\Programs\\Startup\\Thing.LNK\n",
       "HKEY_LOCAL_MACHINE\\Software\\Maker\n"},
      {"xp", false, true, "C:\\Program Files\\Thing\\thing.exe\nC:\\WINDOWS\\system32\\thing.dll\n",
       "C:\\Documents and Settings\\All Users\\Desktop\\Thing.LNK\n"
       "C:\\Documents and Settings\\All Users\\Start Menu\\Programs\\Maker\\Thing\\Thing.LNK\n"
       "C:\\Documents and Settings\\All Users\\Start Menu\\Programs\\Startup\\Thing.LNK\n",
       "HKEY_LOCAL_MACHINE\\Software\\Maker\n"},
      {"11", true, false,
       "C:\\Program Files (x86)\\Thing\\thing.exe\n"
       "C:\\Windows\\System32\\thing.dll = C:\\Windows\\SysWOW64\\thing.dll\n",
       "C:\\Users\\User\\Desktop\\Thing.LNK\n"
       "C:\\Users\\User\\AppData\\Roaming\\Microsoft\\Windows\\Start Menu\\Programs\\Maker\\Thing\\Thing.LNK\n"
       "C:\\Users\\User\\AppData\\Roaming\\Microsoft\\Windows\\Start Menu\\Programs\\Startup\\Thing.LNK\n",
       "HKEY_LOCAL_MACHINE\\Software\\Maker = HKEY_LOCAL_MACHINE\\Software\\Wow6432Node\\Maker\n"},
  };
  for (const auto &row : rows) {
    CAPTURE(std::string(row.windows));
    thing.product.shortcut_mode = row.for_all ? kShortcutsForAllUsers : 0;
    const Json plan = thing.Plan(row.windows, row.has_64_bits);
    CHECK(Paths(plan, "file").starts_with(row.files));
    CHECK(Paths(plan, "shortcut") == row.shortcuts);
    CHECK(Paths(plan, "key").starts_with(row.key));
  }
}

TEST_CASE("a file's rule is told as the program decides") {
  const struct {
    uint32_t kind, flags;
    const char *label;
    int32_t year;
    bool replace_in_use;
    std::string action, placed, in_use;
  } rows[] = {
      {KindProgram, 0, "", 2026, false, "file", "always", "an error"},
      {KindProgram, 0, "", 2026, true, "file", "always", "waits for a restart"},
      {KindProgram, FF_PLACE_NEW, "", 2026, true, "file", "only where there is none", ""},
      {KindProgram, FF_PLACE_OVER, "", 2026, false, "no file", "only over one that is there", "an error"},
      {KindProgram, FF_PLACE_NEVER, "", 2026, true, "no file", "never", ""},
      {KindShared, 0, "", 2026, false, "file", "where there is none, or an older one by date", "waits for a restart"},
      {KindShared, 0, "", 0, false, "file", "always", "waits for a restart"},
      {KindShared, FF_PLACE_OVER, "", 2026, false, "no file", "only over an older one by date", "waits for a restart"},
      {KindSystem, 0, "1.0", 2026, false, "file", "where there is none, or an older one by version and date",
       "waits for a restart"},
      {KindSystem, 0, "", 2026, false, "file", "where there is none, or an older one by date", "waits for a restart"},
      {KindSystem, 0, "1.0", 0, false, "file", "only where there is none", ""},
  };
  for (const auto &row : rows) {
    CAPTURE(row.kind);
    CAPTURE(row.flags);
    CAPTURE(row.year);
    PlannedProduct thing;
    thing.product.flags |= row.replace_in_use ? IF_REPLACE_IN_USE : 0;
    thing.Add("a.bin", row.kind, row.flags, row.label, row.year);
    const Json plan = thing.Plan("10");
    const Json &step = StepOf(plan, "\\a.bin");
    CHECK(step.value("action", "") == row.action);
    CHECK(step.value("placed", "") == row.placed);
    CHECK(step.value("in_use", "") == row.in_use);
  }
}

TEST_CASE("a system or a directory that the run refuses ends the plan") {
  PlannedProduct thing;
  thing.Add("a.txt", KindProgram, 0);
  thing.product.excluded_platforms = OS_WINDOWS_XP;
  const struct {
    const char *windows, *directory;
    bool silent;
    std::string refused;
  } rows[] = {
      {"2000", "D:\\x", false, ""},
      {"xp", "D:\\x", false, "'product.excluded_platforms' has this system"},
      {"7", "C:\\", false, "the directory 'C:\\' is not taken (text 'directory_short')"},
      {"7", "C:\\", true, ""}, // which checks nothing
  };
  for (const auto &row : rows) {
    CAPTURE(std::string(row.windows));
    CAPTURE(std::string(row.directory));
    const Json plan = thing.Plan(row.windows, false, row.directory, row.silent);
    CHECK(plan.value("refused", "") == row.refused);
    CHECK(StepOf(plan, "\\a.txt").contains("size") == row.refused.empty());
  }
}

TEST_CASE("a product with something in every field is planned on every system") {
  PlannedProduct every;
  every.product = TestInstaller().product;
  for (const TargetSystem &system : TargetSystems()) {
    CAPTURE(std::string(system.name));
    every.product.excluded_platforms = 0;
    const Json plan = every.Plan(std::string(system.name).c_str(), !system.has_32_bits, "D:\\Every");
    CHECK(plan["run"]["directory"] == "D:\\Every");
    CHECK(StepOf(plan, "\\Uninstall.DAT").value("size", 0) > 0);
  }
}

TEST_CASE("what no file, folder or key can be called fails in the plan, too") {
  PlannedProduct thing;
  thing.Add(std::string(300, 'x'), KindProgram, 0);
  thing.Add("a|b.txt", KindProgram, 0);
  thing.product.registry_key = std::string(256, 'k');
  const Json plan = thing.Plan("11", true);
  std::string why;
  for (const Json &step : plan["steps"])
    if (step["action"] == "failure")
      why += step.value("why", "") + "\n";
  CHECK(why ==
        "the path is too long\nno file can have this name\nno key can have this name\nno key can have this name\n");
  CHECK(Paths(plan, "key").find("kkk") == std::string::npos);
  CHECK(StepOf(plan, "\\Install.LOG")["action"] == "file"); // since there were errors
}

TEST_CASE("of a damaged installer there is no plan, but what inspect says") {
  TestInstaller spoilt;
  spoilt.executable = [](Bytes &file) { file.resize(file.size() - 100); };
  const Bytes bytes = spoilt.Build().executable;
  const TempFolder folder;
  PlanRequest request;
  request.installer = folder.Write("setup.exe", std::string(bytes.begin(), bytes.end()));
  request.system = FindTargetSystem("11");
  std::ostringstream out, planned, inspected;
  CHECK_FALSE(WritePlan(request, out, planned));
  CHECK(out.str() == "");
  CHECK_FALSE(InspectInstaller(request.installer, request.page, true, out, inspected));
  CHECK(planned.str() == inspected.str());
  CHECK(planned.str() != "");

  PlannedProduct huge;
  huge.product.install_dir = std::string(3000, 'd');
  const Bytes sound = huge.Build().executable;
  folder.Write("setup.exe", std::string(sound.begin(), sound.end()));
  CHECK_FALSE(WritePlan(request, out, planned));
  CHECK(planned.str().ends_with("one of its directories is longer than any path\n"));
}
