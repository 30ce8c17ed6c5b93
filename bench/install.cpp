// How long an installer and its uninstaller take, and how much memory, as a ratio to a floor program that puts the same
// files in place, or takes them away, by plain calls of the system. Both are processes, timed from their start to their
// end, in turn, round after round. Prints rows of the table that scripts/bench gathers.
//
//     install [--quick] [--rounds N] [--require] [DIRECTORY]
//
// Files go below DIRECTORY, or to E: where that is a memory disk, or to C:. --require fails the run above a goal.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "bench/FloorFiles.h"
#include "bench/Row.h"
#include "tests/support/PackedProduct.h"

#include <psapi.h>

namespace fs = std::filesystem;
using namespace korb::test;
using namespace korb::bench;

namespace {

constexpr char kDate[] = "2001-05-17T10:30:02";
constexpr uint64_t kModified = 126345690020000000; ///< the same as a FILETIME

struct FileSet {
  size_t files, files_in_directory;
  size_t smallest, largest;
  bool packed;
  const char *layout = "section";
};

/// What is timed: into an empty place, the same with all windows but no question, over files that are there, or away.
enum class Act { kInstall, kInstallShown, kReinstall, kUninstall };

std::string Corpus(size_t size) {
  std::vector<fs::path> paths;
  for (const auto &entry : fs::directory_iterator("C:\\windows\\system32"))
    if (entry.path().extension() == ".dll")
      paths.push_back(entry.path());
  std::sort(paths.begin(), paths.end());
  std::string corpus;
  for (size_t i = 0; i < paths.size() && corpus.size() < size; ++i)
    corpus += FileBytes(paths[i].string());
  while (corpus.size() < size)
    corpus += corpus;
  return corpus.substr(0, size);
}

std::string Manifest(const FileSet &set) {
  return std::string("[product]\nname = \"Bench\"\n[install]\nmin_phase_ms = 0\n[options]\nask_directory = false\n"
                     "no_done_message = true\nno_reinstall_question = true\npacked_payload = ") +
         (set.packed ? "true" : "false") + "\n[payload]\nlayout = \"" + set.layout +
         "\"\n[file_defaults]\ndate = " + kDate + "\n[[tree]]\nsource = \"tree\"\n";
}

/// One set of files, as a packed product and as the floor program's list.
class Subject {
public:
  Subject(const FileSet &set, const std::string &target);

  /// Both times of a round, in milliseconds.
  void Round(Act act, Rounds &floor, Rounds &ours) const;
  /// The most memory that an installation takes, and the bytes of the archive and of the files.
  double PeakOfInstall() const;
  double PackedSize() const { return static_cast<double>(fs::file_size(installer_)); }
  double Size() const { return static_cast<double>(contents_.size()); }

private:
  std::string FloorCommand(const char *act) const;
  std::string InstallCommand(bool silent) const;
  double Timed(const std::string &command) const;
  void CheckFiles() const;
  void CheckGone() const;
  void Clear() const { fs::remove_all(target_); }

  PackedProduct product_;
  std::string installer_, list_, target_;
  std::vector<FloorFile> entries_;
  std::string contents_;
};

Subject::Subject(const FileSet &set, const std::string &target) : product_(Manifest(set)), target_(target) {
  std::vector<size_t> sizes(set.files);
  uint32_t random = 1;
  size_t total = 0;
  for (size_t &size : sizes) {
    random = random * 1664525 + 1013904223;
    total += size = set.smallest + (random >> 8) % (set.largest - set.smallest + 1);
  }
  contents_ = Corpus(total);
  size_t at = 0;
  for (size_t i = 0; i < sizes.size(); ++i) {
    FloorFile entry{kFloorDirectory, 0, 0, {}};
    if (i % set.files_in_directory == 0) {
      snprintf(entry.name, sizeof entry.name, "d%04d", static_cast<int>(i / set.files_in_directory));
      entries_.push_back(entry);
    }
    entry = {static_cast<uint32_t>(sizes[i]), FILE_ATTRIBUTE_ARCHIVE, kModified, {}};
    snprintf(entry.name, sizeof entry.name, "d%04d\\file%05d.bin", static_cast<int>(i / set.files_in_directory),
             static_cast<int>(i));
    entries_.push_back(entry);
    std::string name = std::string("tree/") + entry.name;
    std::replace(name.begin(), name.end(), '\\', '/');
    product_.Write(name, contents_.substr(at, sizes[i]));
    at += sizes[i];
  }
  installer_ = product_.Pack();
  list_ = product_.Folder() + "\\floor.lst";
  std::string list(reinterpret_cast<const char *>(entries_.data()), entries_.size() * sizeof(FloorFile));
  list.resize(ContentsAt(static_cast<uint32_t>(entries_.size())));
  WriteFileBytes(list_, list + contents_);
}

std::string Subject::FloorCommand(const char *act) const {
  return std::string("floor.exe ") + act + " \"" + list_ + "\" " + std::to_string(entries_.size()) + " \"" + target_ +
         "\"";
}

std::string Subject::InstallCommand(bool silent) const {
  return "\"" + installer_ + "\" " + (silent ? "/a " : "") + "/d:\"" + target_ + "\"";
}

double Subject::Timed(const std::string &command) const {
  const auto begin = std::chrono::steady_clock::now();
  Process process(command);
  const bool ended = process.Wait(600000).has_value();
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
  if (!ended) {
    fprintf(stderr, "install: %s doesn't come to an end\n", command.c_str());
    exit(1);
  }
  return seconds * 1e3;
}

void Subject::Round(Act act, Rounds &floor, Rounds &ours) const {
  if (act == Act::kReinstall)
    Timed(FloorCommand("place"));
  for (const bool is_ours : {false, true}) {
    const std::string place = is_ours ? InstallCommand(act != Act::kInstallShown) : FloorCommand("place");
    double time = Timed(place);
    CheckFiles();
    if (act == Act::kUninstall) {
      time = Timed(is_ours ? "\"" + target_ + "\\Uninstall.exe\" /a /u:Bench" : FloorCommand("delete"));
      CheckGone();
    } else if (act != Act::kReinstall) {
      Clear();
    }
    (is_ours ? ours : floor).push_back(time);
  }
  Clear();
}

double Subject::PeakOfInstall() const {
  Process process(InstallCommand(true));
  const HANDLE handle = OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, process.Id());
  PROCESS_MEMORY_COUNTERS memory{};
  SIZE_T peak = 0;
  do
    if (GetProcessMemoryInfo(handle, &memory, sizeof memory))
      peak = std::max(peak, memory.PeakWorkingSetSize);
  while (!process.Wait(1));
  CloseHandle(handle);
  CheckFiles();
  Clear();
  return static_cast<double>(peak);
}

/// The uninstaller and the directory go last, by a batch of its own.
void Subject::CheckGone() const {
  for (int tries = 0; fs::exists(target_); ++tries) {
    if (tries == 3000) {
      fprintf(stderr, "install: %s is not gone\n", target_.c_str());
      exit(1);
    }
    Sleep(10);
  }
}

void Subject::CheckFiles() const {
  size_t at = 0;
  for (size_t i = 0; i < entries_.size(); ++i) {
    const FloorFile &entry = entries_[i];
    if (entry.size == kFloorDirectory)
      continue;
    // Every file's bytes would take longer than the run itself.
    const std::string path = target_ + "\\" + entry.name;
    if (i % 50 == 1 &&
        (DescribeFile(path) != "archive 2001-05-17 10:30:02" || FileBytes(path) != contents_.substr(at, entry.size))) {
      fprintf(stderr, "install: %s is wrong: %s\n", path.c_str(), DescribeFile(path).c_str());
      exit(1);
    }
    at += entry.size;
  }
}

struct Options {
  size_t rounds = 5, divisor = 1;
  bool require = false;
  std::string target;
};

FileSet Fewer(FileSet set, const Options &options) {
  set.files = std::max<size_t>(1, set.files / options.divisor);
  return set;
}

bool Compare(const Subject &subject, const char *what, Act act, size_t rounds, double goal) {
  Rounds floor, ours;
  for (size_t round = 0; round < rounds; ++round)
    subject.Round(act, floor, ours);
  return PrintRow(what, "ms", floor, ours, goal);
}

struct TimedCase {
  FileSet set;
  struct {
    const char *what;
    Act act;
    double goal; ///< times the floor; 0: only told
  } rows[4];
};

bool CompareTimes(const Options &options) {
  const TimedCase cases[] = {
      {{1, 1, 1024, 1024, false}, {{"1 file of 1 KB, stored", Act::kInstall, 0}}},
      {{2000, 100, 1024, 8192, false}, {{"2,000 files of 1 to 8 KB, stored", Act::kInstall, 1.1}}},
      {{2000, 100, 1024, 8192, true}, {{"2,000 files of 1 to 8 KB, packed", Act::kInstall, 1.1}}},
      {{20, 100, 2 << 20, 2 << 20, false}, {{"20 files of 2 MB, stored", Act::kInstall, 1.6}}},
      {{20, 100, 2 << 20, 2 << 20, true}, {{"20 files of 2 MB, packed", Act::kInstall, 1.8}}},
      {{20000, 50, 1024, 8192, false},
       {{"20,000 files in 400 folders", Act::kInstall, 1.1},
        {"the same with all windows", Act::kInstallShown, 1.1},
        {"the same over themselves", Act::kReinstall, 1.1},
        {"the same, uninstalled", Act::kUninstall, 1.3}}},
      {{100000, 50, 256, 1024, false},
       {{"100,000 files in 2,000 folders", Act::kInstall, 1.1}, {"the same, uninstalled", Act::kUninstall, 1.3}}},
  };
  bool kept = true;
  for (const TimedCase &which : cases) {
    const Subject subject(Fewer(which.set, options), options.target);
    // What takes longer is less at the mercy of what else the machine does.
    const size_t rounds = which.set.files > 20000  ? 1
                          : which.set.files > 2000 ? std::min<size_t>(3, options.rounds)
                                                   : options.rounds;
    for (const auto &row : which.rows)
      if (row.what)
        kept = Compare(subject, row.what, row.act, rounds, row.goal) && kept;
  }
  return kept;
}

/// Beyond what a run for a file of 1 KB takes, against the payload and, where it is packed, what it is unpacked from.
bool CompareMemory(const Options &options) {
  const struct {
    const char *what;
    bool packed;
    const char *layout;
  } rows[] = {
      {"peak memory for 40 MB stored in the section", false, "section"},
      {"the same in the file, from where the uninstaller has it too", false, "file"},
      {"peak memory for 40 MB packed in the section", true, "section"},
      {"the same in the file, from where the uninstaller has it too", true, "file"},
  };
  const Subject least({1, 1, 1024, 1024, false}, options.target);
  const double start = least.PeakOfInstall();
  bool kept = true;
  for (const auto &row : rows) {
    const Subject subject(Fewer({20, 100, 2 << 20, 2 << 20, row.packed, row.layout}, options), options.target);
    const double archived = subject.PackedSize() - least.PackedSize();
    const bool in_uninstaller = strcmp(row.layout, "file") == 0;
    const double needed = subject.Size() + (row.packed ? archived : 0) + (in_uninstaller ? archived : 0);
    kept = PrintRow(row.what, "MB", {needed / 1e6}, {(subject.PeakOfInstall() - start) / 1e6}, 1.1) && kept;
  }
  return kept;
}

} // namespace

int main(int argc, char **argv) {
  // While a program has a window the desktop is there, as it is for a user; else each run would start Wine's anew.
  CreateWindowExA(0, "STATIC", "", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
  Options options;
  std::string directory = fs::exists("E:\\") ? "E:" : "C:";
  for (int i = 1; i < argc; ++i) {
    const std::string word = argv[i];
    if (word == "--quick")
      options.rounds = 1, options.divisor = 100;
    else if (word == "--rounds" && i + 1 < argc)
      options.rounds = std::max(1ul, strtoul(argv[++i], nullptr, 10));
    else if (word == "--require")
      options.require = true;
    else
      directory = word;
  }
  options.target = directory + "\\bench";
  const bool times_kept = CompareTimes(options), memory_kept = CompareMemory(options);
  if (options.require && !(times_kept && memory_kept)) {
    fprintf(stderr, "install: above a goal\n");
    return 1;
  }
  return 0;
}
