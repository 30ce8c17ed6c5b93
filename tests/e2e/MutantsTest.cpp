// Spoiled installers, run: each ends by itself, in the words that `korbpack verify` has for it, at a question for a
// disk, or installed. KORB_MUTANTS="FIRST COUNT" tells which; without it a few are run.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>

#include "packer/read/InstallerReader.h"
#include "tests/support/CleanPlace.h"
#include "tests/support/Desktop.h"
#include "tests/support/Doctest.h"
#include "tests/support/FailureTrap.h"
#include "tests/support/Mutants.h"
#include "tests/support/PackedProduct.h"

using namespace korb;
using namespace korb::test;
namespace fs = std::filesystem;

namespace {

const std::string kFolder = "C:\\mutant", kHome = "C:\\mutated";
const std::string kSetup = kFolder + "\\setup.exe";

struct Verdict {
  std::string text; ///< "code 55", the words of a report without one, "sound"
  bool asks_for_disk = false;
};

/// As the packer reads it. Its reports are the tests' here.
Verdict Read(const Mutant &mutant) {
  packer::InstallerReader reader(mutant.executable, kFolder);
  try {
    reader.Read();
  } catch (const TrappedFailure &failure) {
    return {failure.code != 0 ? "code " + std::to_string(failure.code) : failure.text};
  }
  if (reader.damage)
    return {reader.damage->text};
  return {"sound"};
}

/// Runs it silently and answers what it asks: to cancel. What it said that counts.
Verdict RunSilently() {
  Process process(kSetup + " /a /d:" + kHome, kFolder);
  Verdict verdict{"sound"};
  const DWORD start = GetTickCount();
  std::optional<DWORD> code;
  while (!(code = process.Wait(20))) {
    REQUIRE(GetTickCount() - start < 120000);
    for (const Window &window : OpenWindows()) {
      if (window.process != process.Id())
        continue;
      const std::string said = window.Message();
      const size_t number = said.find("Error code: ");
      if (window.title == "FATAL ERROR")
        verdict.text = number == said.npos ? said : "code " + said.substr(number + 12);
      for (const char *button : {"Yes", "Cancel", "No", "OK"})
        if (window.Find(button)) {
          verdict.asks_for_disk = verdict.asks_for_disk || *button == 'C';
          Click(window, button);
          break;
        }
    }
  }
  CHECK(*code == 1);
  return verdict;
}

/// Whether the program may have ended so where the packer has this to say.
bool Fits(const Verdict &read, const Verdict &ran) {
  if (read.text == ran.text)
    return true;
  // The condition of an old file that isn't there is not looked at.
  if (read.text == "code 65")
    return ran.text == "sound";
  // Windows doesn't start what is cut off; Wine does where it is by less than a page, or the image needs no more.
  if (read.text.starts_with("the file is cut off"))
    return true;
  // The packer, who can't ask for it, reports a disk that is missing or another's.
  return ran.asks_for_disk;
}

} // namespace

TEST_CASE("spoiled installers end as the packer says") {
  uint32_t first = 0, count = 12;
  if (const char *given = std::getenv("KORB_MUTANTS"))
    REQUIRE(std::sscanf(given, "%u %u", &first, &count) == 2);
  const std::string korb = FileBytes("korb.exe");
  Mutants mutants(Bytes(korb.begin(), korb.end()), true);
  std::map<std::string, int> figures;
  for (uint32_t number = first; number < first + count; ++number) {
    // One that has just ended may be held for a moment.
    REQUIRE(WaitUntil(20000, [] {
      std::error_code error;
      return fs::remove(kSetup, error) || !error;
    }));
    const CleanPlace place({kFolder, kHome});
    const Mutant mutant = mutants.Make(number);
    CAPTURE(number);
    CAPTURE(mutant.what);
    fs::create_directories(kFolder);
    for (size_t i = 0; i < mutant.volumes.size(); ++i)
      WriteFileBytes(kFolder + "\\" + Mutants::kVolumeName + std::to_string(i + 2) + ".KRB",
                     std::string(mutant.volumes[i].begin(), mutant.volumes[i].end()));
    WriteFileBytes(kSetup, std::string(mutant.executable.begin(), mutant.executable.end()));
    const Verdict read = Read(mutant);
    CAPTURE(read.text);
    Verdict ran;
    try {
      ran = RunSilently();
    } catch (const std::runtime_error &) { // the loader wants none of it
      ++figures["not started"];
      CHECK((read.text != "sound" || mutant.what == "section entry")); // which is more the loader's than the archive's
      continue;
    }
    CAPTURE(ran.text);
    CHECK(Fits(read, ran));
    ++figures[ran.asks_for_disk ? "asked for a disk, and cancelled" : ran.text];
  }
  for (const auto &[text, figure] : figures)
    std::printf("%6d %s\n", figure, text.c_str());
}
