// How long an installer takes, as a ratio to a floor program that puts the same files in place by plain calls of the
// system. Both are processes, timed from their start to their end, in turn, round after round; medians are given. An
// installer opens two windows first, which no number of files changes: the first row is a run for one file, and what
// the other rows take beyond it is compared as "net".
//
//     install [--quick] [--rounds N] [--require] [DIRECTORY]
//
// Files go below DIRECTORY, or to E: where that is a memory disk, or to C:. --require fails the run above the limits
// of the net ratio.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "bench/FloorFiles.h"
#include "tests/support/PackedProduct.h"

namespace fs = std::filesystem;
using namespace korb::test;
using namespace korb::bench;

namespace {

constexpr char kDate[] = "2001-05-17T10:30:02";
constexpr uint64_t kModified = 126345690020000000; ///< the same as a FILETIME
constexpr size_t kFilesInDirectory = 100;

struct Case {
  const char *name;
  size_t files;
  size_t smallest, largest;
  bool packed;
  double limit; ///< times the floor; 0: only told
};

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

/// One set of files, as a packed product and as the floor program's list.
class Subject {
public:
  Subject(const Case &which, const std::string &target);
  double Install() const { return Seconds("\"" + installer_ + "\" /a /d:\"" + target_ + "\""); }
  double Floor() const {
    return Seconds("floor.exe \"" + list_ + "\" " + std::to_string(entries_.size()) + " \"" + target_ + "\"");
  }

private:
  double Seconds(const std::string &command) const;
  void CheckFiles() const;

  PackedProduct product_;
  std::string installer_, list_, target_;
  std::vector<FloorFile> entries_;
  std::string contents_;
};

std::string Manifest(const Case &which) {
  return std::string("[product]\nname = \"Bench\"\n[options]\npacked_payload = ") + (which.packed ? "true" : "false") +
         "\n[file_defaults]\ndate = " + kDate + "\n[[tree]]\nsource = \"tree\"\n";
}

Subject::Subject(const Case &which, const std::string &target) : product_(Manifest(which)), target_(target) {
  std::vector<size_t> sizes(which.files);
  uint32_t random = 1;
  size_t total = 0;
  for (size_t &size : sizes) {
    random = random * 1664525 + 1013904223;
    total += size = which.smallest + (random >> 8) % (which.largest - which.smallest + 1);
  }
  contents_ = Corpus(total);
  size_t at = 0;
  for (size_t i = 0; i < sizes.size(); ++i) {
    FloorFile entry{kFloorDirectory, 0, 0, {}};
    if (i % kFilesInDirectory == 0) {
      snprintf(entry.name, sizeof entry.name, "d%04d", static_cast<int>(i / kFilesInDirectory));
      entries_.push_back(entry);
    }
    entry = {static_cast<uint32_t>(sizes[i]), FILE_ATTRIBUTE_ARCHIVE, kModified, {}};
    snprintf(entry.name, sizeof entry.name, "d%04d\\file%05d.bin", static_cast<int>(i / kFilesInDirectory),
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

double Subject::Seconds(const std::string &command) const {
  const auto begin = std::chrono::steady_clock::now();
  Process process(command);
  const bool ended = process.Wait(100000).has_value();
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
  if (!ended) {
    fprintf(stderr, "install: %s doesn't come to an end\n", command.c_str());
    exit(1);
  }
  CheckFiles();
  fs::remove_all(target_);
  return seconds;
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

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

} // namespace

int main(int argc, char **argv) {
  // While a program has a window the desktop is there, as it is for a user; else each run would start Wine's anew.
  CreateWindowExA(0, "STATIC", "", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
  size_t rounds = 5, divisor = 1;
  bool require = false;
  std::string directory = fs::exists("E:\\") ? "E:" : "C:";
  for (int i = 1; i < argc; ++i) {
    const std::string word = argv[i];
    if (word == "--quick")
      rounds = 1, divisor = 100;
    else if (word == "--rounds" && i + 1 < argc)
      rounds = std::max(1ul, strtoul(argv[++i], nullptr, 10));
    else if (word == "--require")
      require = true;
    else
      directory = word;
  }
  const Case cases[] = {
      {"1 file of 1 KB", 1, 1024, 1024, false, 0},
      {"2,000 files of 1 to 8 KB, stored", 2000, 1024, 8192, false, 1.3},
      {"2,000 files of 1 to 8 KB, packed", 2000, 1024, 8192, true, 1.3},
      {"20 files of 2 MB, stored", 20, 2 << 20, 2 << 20, false, 1.4},
      {"20 files of 2 MB, packed", 20, 2 << 20, 2 << 20, true, 1.8},
      {"20,000 files of 1 to 8 KB, stored", 20000, 1024, 8192, false, 1.3},
  };
  printf("median of %d rounds, files below %s\n%-36s %9s %9s %6s %6s %6s\n", static_cast<int>(rounds),
         directory.c_str(), "", "floor ms", "ours ms", "ratio", "net", "limit");
  double each[std::size(cases)], floor_start = 0, start = 0;
  bool kept = true;
  for (size_t c = 0; c < std::size(cases); ++c) {
    Case which = cases[c];
    which.files = std::max<size_t>(1, which.files / divisor);
    const Subject subject(which, directory + "\\bench");
    std::vector<double> floor, ours;
    for (size_t round = 0; round < rounds; ++round) {
      floor.push_back(subject.Floor());
      ours.push_back(subject.Install());
    }
    const double floor_time = Median(floor), time = Median(ours);
    if (c == 0)
      floor_start = floor_time, start = time;
    const double net = c == 0 ? 0 : (time - start) / (floor_time - floor_start);
    each[c] = (time - start) / static_cast<double>(which.files);
    kept = kept && (which.limit == 0 || net <= which.limit);
    printf("%-36s %9.1f %9.1f %6.2f %6.2f %6.1f\n", which.name, floor_time * 1e3, time * 1e3, time / floor_time, net,
           which.limit);
    fflush(stdout);
  }
  const double growth = each[std::size(cases) - 1] / each[1];
  printf("for each file, 20,000 against 2,000 %34.2f    1.3\n", growth);
  if (require && (!kept || growth > 1.3)) {
    fprintf(stderr, "install: above a limit\n");
    return 1;
  }
  return 0;
}
