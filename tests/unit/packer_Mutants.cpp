// mutants COUNT [FIRST [PROGRAM]]: holds `inspect`, `verify` and `extract` against each other on COUNT spoiled
// installers around PROGRAM, from number FIRST on. Each has to come to the same verdict in the same words. Ends with 1
// when they don't, and leaves what they didn't agree on in a folder that it names, as it does with one alone.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <sstream>

#include "packer/FileIo.h"
#include "packer/read/ExtractInstaller.h"
#include "packer/read/InstallerReport.h"
#include "tests/support/Mutants.h"
#include "tests/support/TestInstaller.h"

using namespace korb;
using namespace korb::test;
namespace fs = std::filesystem;

namespace {

/// What is wrong, as a command tells it; empty when nothing is.
std::string WordsAfter(const std::string &text, const std::string &mark) {
  const size_t at = text.find(mark);
  if (at == text.npos)
    return {};
  const size_t from = at + mark.size();
  return text.substr(from, text.find('\n', from) - from);
}

std::string Inspected(const fs::path &setup, bool json) {
  std::ostringstream out, problems;
  const bool good = packer::InspectInstaller(setup, packer::kDefaultCodePage, json, out, problems);
  const std::string words = WordsAfter(problems.str(), ": error: ");
  return good == words.empty() ? words : "inspect contradicts itself";
}

std::string Verified(const fs::path &setup) {
  std::ostringstream out;
  const bool good = packer::VerifyInstaller(setup, false, out);
  std::string line = WordsAfter(out.str(), "DAMAGED  ");
  if (good != line.empty())
    return "verify contradicts itself";
  return line.empty() ? line : line.substr(line.find(": ") + 2);
}

/// Names that can't be written are no damage.
std::string Extracted(const fs::path &setup, const fs::path &folder) {
  std::ostringstream out, problems;
  const bool good = packer::ExtractInstaller(setup, folder, packer::kDefaultCodePage, out, problems);
  const std::string words = WordsAfter(problems.str(), ": error: ");
  const bool unwritten = problems.str().find("error: can't write") != std::string::npos;
  return good == (words.empty() && !unwritten) ? words : "extract contradicts itself";
}

/// A wrong date of an old file's condition is the installation's business, and no file's.
bool IsOfNoFile(const std::string &words) {
  return words.ends_with("(damage code 65)");
}

bool Agree(const fs::path &folder, std::string &verdict) {
  const fs::path setup = folder / "setup.exe";
  verdict = Verified(setup);
  const std::string extracted = Extracted(setup, folder / "files"), inspected = Inspected(setup, false);
  if (inspected == verdict && Inspected(setup, true) == verdict &&
      (extracted == verdict || (extracted.empty() && IsOfNoFile(verdict))))
    return true;
  std::printf("verify:  %s\ninspect: %s\nextract: %s\n", verdict.c_str(), inspected.c_str(), extracted.c_str());
  return false;
}

} // namespace

int main(int argc, char **argv) {
  if (argc < 2)
    return 2;
  const uint32_t count = static_cast<uint32_t>(std::atoi(argv[1]));
  const uint32_t first = argc > 2 ? static_cast<uint32_t>(std::atoi(argv[2])) : 0;
  Mutants mutants(argc > 3 ? packer::ReadFileBytes(argv[3]).value() : TestStub(), false);
  std::string name = (fs::temp_directory_path() / "mutantsXXXXXX").string();
  const fs::path folder = mkdtemp(name.data());
  std::map<std::string, int> spoiled, verdicts;
  for (uint32_t number = first; number < first + count; ++number) {
    const Mutant mutant = mutants.Make(number);
    fs::remove_all(folder);
    fs::create_directory(folder);
    std::vector<packer::OutputFile> files{{folder / "setup.exe", &mutant.executable}};
    for (size_t i = 0; i < mutant.volumes.size(); ++i)
      files.push_back({folder / (Mutants::kVolumeName + std::to_string(i + 2) + ".KRB"), &mutant.volumes[i]});
    packer::WriteOutputFiles(files);
    std::string verdict;
    if (!Agree(folder, verdict)) {
      std::printf("mutant %u (%s) in %s\n", number, mutant.what.c_str(), name.c_str());
      return 1;
    }
    ++spoiled[mutant.what];
    ++verdicts[verdict.empty() ? "sound" : verdict];
  }
  for (const auto *figures : {&spoiled, &verdicts})
    for (const auto &[what, figure] : *figures)
      std::printf("%6d %s\n", figure, what.c_str());
  if (count == 1)
    std::printf("in %s\n", name.c_str());
  else
    fs::remove_all(folder);
  return 0;
}
