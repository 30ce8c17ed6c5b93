#include "tests/e2e/Trouble.h"

#include <cstdlib>
#include <filesystem>

#include "tests/support/Desktop.h"
#include "tests/support/Uninstallation.h"

namespace korb::test {

namespace fs = std::filesystem;

namespace {

constexpr int kLimit = 60000; ///< milliseconds; a run takes one or two seconds
const std::string kLog = "E:\\Trouble\\Program\\Undo\\Install.LOG";
const std::string kMenu = "C:\\ProgramData\\Microsoft\\Windows\\Start Menu\\Programs";

std::string Describe(const std::string &path) {
  const DWORD attributes = GetFileAttributesA(path.c_str());
  if (attributes & FILE_ATTRIBUTE_DIRECTORY)
    return "directory";
  const std::string bytes = FileBytes(path);
  return std::to_string(attributes) + " " + std::to_string(bytes.size()) + " " +
         std::to_string(std::hash<std::string>()(bytes));
}

bool EndsWith(const std::string &text, const std::string &end) {
  return text.size() >= end.size() && _stricmp(text.c_str() + text.size() - end.size(), end.c_str()) == 0;
}

/// What is called as `pattern` says, with all that is below it.
void AddFiles(Snapshot &all, const std::string &folder, const char *pattern = "*") {
  WIN32_FIND_DATAA found;
  const HANDLE find = FindFirstFileA((folder + "\\" + pattern).c_str(), &found);
  if (find == INVALID_HANDLE_VALUE)
    return;
  do {
    const std::string name = found.cFileName, path = folder + "\\" + name;
    if (name == "." || name == ".." || name == "Install.LOG" || name == "ballast")
      continue;
    // A shortcut holds dates of what it leads to.
    all["file " + path] = EndsWith(name, ".lnk") ? "shortcut" : Describe(path);
    if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)
      AddFiles(all, path);
  } while (FindNextFileA(find, &found));
  FindClose(find);
}

std::string LogText() {
  return fs::exists(kLog) ? FileBytes(kLog) : "";
}

bool IsMovePending() {
  return RegGetValueA(HKEY_LOCAL_MACHINE, "System\\CurrentControlSet\\Control\\Session Manager",
                      "PendingFileRenameOperations", RRF_RT_ANY, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
}

/// A machine that asks is told to do it, but for what it would do now.
bool Answer(const Window &window) {
  const bool later = window.Message().find("now?") != std::string::npos;
  for (const char *button : {later ? "No" : "Yes", "OK", "Cancel"})
    if (Click(window, button))
      return true;
  return false;
}

} // namespace

Outcome RunAnswered(const std::string &command) {
  Outcome outcome;
  Process process(command, "C:\\");
  const DWORD start = GetTickCount();
  std::optional<DWORD> code;
  while (!(code = process.Wait(50)) && GetTickCount() - start < kLimit)
    for (const Window &window : OpenWindows())
      if (window.process == process.Id() && !window.Message().empty() && Answer(window))
        outcome.words += window.title + ": " + window.Message() + "\n";
  outcome.ended = code.has_value() && WaitForSelfRemoval();
  outcome.code = code.value_or(0);
  return outcome;
}

Snapshot LookAtPlaces() {
  Snapshot all;
  AddFiles(all, "E:");
  AddFiles(all, "C:", "*.bat");
  AddFiles(all, "C:\\windows\\system32", "trouble*");
  AddFiles(all, "C:\\windows\\Fonts", "korb*");
  AddFiles(all, kMenu);
  AddFiles(all, "C:\\users\\Public\\Desktop");
  for (const char *key :
       {"Microsoft\\Windows\\CurrentVersion\\Uninstall", "Microsoft\\Windows\\CurrentVersion\\SharedDLLs", "Trouble",
        "Classes\\.trouble", "Classes\\Trouble.Document"})
    AddKey(all, HKEY_LOCAL_MACHINE, "Software\\" + std::string(key));
  std::erase_if(all, [](const auto &one) { return EndsWith(one.first, "|InstallDate"); });
  return all;
}

TroubledProduct::TroubledProduct()
    : temporary_(fs::temp_directory_path().string()), products_{PackedProduct(ProductManifest("trouble")),
                                                                PackedProduct(ProductManifest("trouble"))} {
  // Other people's, where the product comes to.
  WriteFileBytes("E:\\theirs.txt", "theirs");
  fs::create_directories("E:\\Trouble\\Program\\inner");
  WriteFileBytes("E:\\Trouble\\Program\\inner\\mine.txt", "a user's own");
  fs::create_directories("E:\\Common");
  WriteFileBytes("E:\\Common\\theirs.dll", "another product's");
  SetRegistryText(HKEY_LOCAL_MACHINE, "Software\\Classes\\.trouble", "", "Their.Document");
  SetRegistryText(HKEY_LOCAL_MACHINE, "Software\\Microsoft\\Windows\\CurrentVersion\\SharedDLLs", "theirs", "1");
  WriteFileBytes("C:\\autoexec.bat", "rem theirs\r\n");
  WriteFileBytes("C:\\users\\Public\\Desktop\\theirs.txt", "theirs"); // a folder that is left empty would go
  for (int i = 0; i < 2; ++i) {
    const std::string version = std::to_string(i + 1);
    // It shows a box, and runs until that is answered.
    products_[i].Write("program.exe", FileBytes("korb.exe") + std::string(i == 0 ? 1 : 50000, version[0]));
    products_[i].Write("small", std::string(9000, version[0]));
    products_[i].Write("korb-blocks.ttf", FileBytes("korb-blocks.ttf"));
  }
  for (int i = 0; i < 2; ++i) {
    products_[i].PackSpoiled([&](packer::Product &product) {
      product.version = std::to_string(i + 1);
      for (packer::FileEntry &file : product.files)
        if (i == 1 && file.date.month != 0)
          file.date.day = 3; // newer
    });
    setups_[i] = products_[i].Folder() + "\\setup.exe";
  }
  // Where what waits for a restart is written, which the system then moves, on one and the same drive.
  fs::create_directories("E:\\Temp");
  for (const char *name : {"TMP", "TEMP"})
    SetEnvironmentVariableA(name, "E:\\Temp");
  base_ = LookAtPlaces();
}

/// For the next product's packing, and what else the test does.
TroubledProduct::~TroubledProduct() {
  for (const char *name : {"TMP", "TEMP"})
    SetEnvironmentVariableA(name, temporary_.c_str());
}

Outcome TroubledProduct::Start(Kind kind) const {
  if (kind != Kind::Uninstall)
    return RunAnswered(Setup(2));
  const std::string command = UninstallValue("Trouble", "UninstallString");
  const Outcome outcome = command.empty() ? Outcome{true, 1, ""} : RunAnswered(command);
  DeleteFileA("C:\\windows\\system32\\trouble-system.dll"); // files of the system stay
  return outcome;
}

/// How the run goes without trouble, seen once.
TroubledProduct::Course &TroubledProduct::CourseOf(Kind kind) {
  Course &course = courses_[static_cast<int>(kind)];
  if (!course.after.empty())
    return course;
  if (kind != Kind::Install)
    RunAnswered(Setup(1));
  course.before = LookAtPlaces();
  course.told = Start(kind).words;
  course.after = LookAtPlaces();
  if (kind != Kind::Uninstall)
    Start(Kind::Uninstall);
  for (const std::string &one : Differences(base_, LookAtPlaces()))
    throw std::runtime_error("without trouble it doesn't leave the machine as it was: " + one);
  return course;
}

void TroubledProduct::Judge(const Course &course, const Snapshot &now, std::vector<std::string> &complaints) const {
  const auto at = [](const Snapshot &all, const std::string &name) {
    const auto found = all.find(name);
    return found == all.end() ? std::string() : found->second;
  };
  for (const std::string &difference : Differences(course.after, now)) {
    const std::string name = difference.substr(difference.find(' ') + 1);
    const std::string is = at(now, name), was = at(course.before, name), wanted = at(course.after, name);
    if (is == was)
      continue; // not done
    const bool is_file = name.starts_with("file ");
    if (wanted.empty() && was.empty())
      complaints.push_back("left over: " + name);
    else if (is_file && EndsWith(name, "\\Uninstall.DAT"))
      continue; // it has another list, or is cut off, and is read as far as it goes
    else if (is_file && told_.find(name.substr(5)) == std::string::npos)
      complaints.push_back((is.empty() ? "lost, and not named: " : "a part, and not named: ") + name);
    else if (!is_file && is.empty())
      complaints.push_back("lost: " + name);
  }
}

std::vector<std::string> TroubledProduct::Try(Kind kind, const std::function<std::shared_ptr<void>()> &trouble) {
  const Course &course = CourseOf(kind);
  std::vector<std::string> complaints;
  const auto same = [&](const char *when, const Snapshot &wanted) {
    for (const std::string &one : Differences(wanted, LookAtPlaces()))
      complaints.push_back(std::string(when) + ": " + one);
  };
  if (kind != Kind::Install)
    RunAnswered(Setup(1));
  std::shared_ptr<void> held = trouble();
  const std::string log = LogText();
  const Outcome outcome = Start(kind);
  if (!outcome.ended || outcome.code != 1)
    complaints.push_back("it ends with " + (outcome.ended ? std::to_string(outcome.code) : "nothing"));
  told_ = outcome.words == course.told ? "" : outcome.words;
  const std::string new_log = LogText();
  if (!told_.empty() && new_log.size() > log.size())
    told_ += new_log.substr(log.size());
  if (IsMovePending())
    Run("C:\\windows\\system32\\wineboot.exe -r");
  const Snapshot now = LookAtPlaces();
  was_complete_ = Differences(course.after, now).empty();
  Judge(course, now, complaints);
  if (!was_complete_ && told_.empty())
    complaints.push_back("nothing is told");
  held.reset();
  if (kind != Kind::Uninstall) {
    if (Start(kind).words != course.told)
      complaints.push_back("again: it has something to tell");
    same("again", course.after);
  }
  Start(Kind::Uninstall);
  same("end", base_);
  return complaints;
}

} // namespace korb::test
