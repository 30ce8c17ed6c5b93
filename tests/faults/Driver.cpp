// driver count       makes each kind of run once and prints a line "RUN CLASS CALLS" for each class of calls
// driver sites       prints a line "RUN CLASS N" for the first call from each place of the program
// driver JOBS DONE SECONDS [SEED]
//                    takes lines "RUN CLASS N" from the file JOBS, leaves out those that DONE has already, and adds a
//                    line to DONE for each, until all are done or the time is over; with a seed, goes on by chance
//
// A line of DONE: RUN CLASS N, a verdict, the call, where it was made from, and what is wrong, with tabs between them.
// The verdicts:
//   told      the run said so, in a box or in its log
//   same      nobody can tell the difference: what the run was to do is done
//   accepted  something is left that Accepted.h gives a reason for
//   killed    the program was ended there, and all was well later
//   none      the run has no such call
//   FOUND     something is wrong
// Ends with 0 when all is done, with 75 when the machine can't be put back and a fresh one has to go on.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <random>
#include <set>
#include <sstream>
#include <stdexcept>

#include "format/Record.h"
#include "tests/faults/Accepted.h"
#include "tests/faults/Calls.h"
#include "tests/faults/Machine.h"
#include "tests/faults/Runs.h"
#include "tests/support/PackedProduct.h"
#include "tests/support/Snapshot.h"

using namespace korb::faults;
using korb::test::FileBytes;
using korb::test::SetRegistryText;
using korb::test::WriteFileBytes;

namespace {

constexpr int kFreshMachine = 75;
constexpr int kWaits = 5; ///< how often a run looks whether a batch has ended depends on the machine
const std::string kHome = "C:\\Program Files\\Korb Atlas\\", kDisksHome = "C:\\Program Files\\Several disks\\";

const std::string kSilent = "silent "; ///< before a difference that nobody told of

bool Fits(const char *pattern, const char *text) {
  for (; *pattern != '*'; ++pattern, ++text)
    if (tolower(*pattern) != tolower(*text) || !*pattern)
      return !*pattern && !*text;
  for (;; ++text) {
    if (Fits(pattern + 1, text))
      return true;
    if (!*text)
      return false;
  }
}

const RunKind &KindOf(const std::string &name) {
  for (const RunKind &kind : kRuns)
    if (name == kind.name)
      return kind;
  throw std::runtime_error("no such run: " + name);
}

void Leave(const std::string &path, const std::string &contents) {
  WriteFileBytes(path, contents);
  const HANDLE file = CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  const FILETIME year_2025{0, 0x01DB7000};
  SetFileTime(file, nullptr, nullptr, &year_2025);
  CloseHandle(file);
}

/// What was there before any product: a person's files, settings of the system, another product's types and counts.
void FurnishMachine() {
  for (const char *folder :
       {"C:\\Program Files\\Korb Atlas", "C:\\Program Files\\Korb Atlas\\maps", "C:\\Program Files\\Korb Atlas\\Undo"})
    CreateDirectoryA(folder, nullptr);
  Leave(kHome + "mine.txt", "a person's own");
  Leave(kHome + "maps\\home.kmap", "a map of one's own");
  Leave(kHome + "old-atlas.exe", "of a version long ago");
  Leave("C:\\autoexec.bat", "@ECHO OFF\r\nSET TOOLS=C:\\TOOLS\r\nPATH=%PATH%;C:\\TOOLS\r\n");
  Leave("C:\\users\\Public\\Desktop\\other.lnk", "of somebody else");
  SetRegistryText(HKEY_CLASSES_ROOT, ".kmap", "", "Other.Map");
  SetRegistryText(HKEY_CLASSES_ROOT, "Other.Map", "", "Map of another program");
  SetRegistryText(HKEY_CLASSES_ROOT, "Other.Map\\shell\\open\\command", "", "other.exe %1");
  SetRegistryText(HKEY_LOCAL_MACHINE, "Software\\Korb Examples\\Other", "Path", "C:\\Other");
}

/// What a run without a fault comes to.
struct Reference {
  State before, after, removed;
  Backup backup;                                   ///< of `before`
  std::map<State, std::vector<std::string>> known; ///< what is wrong in the end, after a run that ended in that state
  Outcome outcome;
  std::string log;
};

std::string LogText() {
  std::string text;
  for (const std::string &path : {kHome + "Undo\\Install.LOG", kDisksHome + "Install.LOG"})
    if (GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES)
      text += FileBytes(path);
  return text;
}

std::set<std::string> LinesOf(const std::string &text) {
  std::set<std::string> lines;
  std::istringstream all(text);
  for (std::string line; std::getline(all, line);)
    if (line.find("date") == std::string::npos) // of the installation
      lines.insert(line);
  return lines;
}

/// What the other one does not have.
std::string NewLines(const std::string &before, const std::string &after) {
  const std::set<std::string> known = LinesOf(before);
  std::string text;
  for (const std::string &line : LinesOf(after))
    if (!known.count(line))
      text += line + "\n";
  return text;
}

bool Has(const std::string &text, const std::string &words) {
  return text.find(words) != std::string::npos;
}

std::string LineWith(const std::string &report, const std::string &start) {
  std::istringstream all(report);
  for (std::string line; std::getline(all, line);)
    if (line.starts_with(start))
      return line;
  return {};
}

/// "GROUP NAME" of a line of the report, and the addresses behind it.
std::string CallOf(const std::string &line) {
  std::istringstream words(line);
  std::string verb, name;
  words >> verb >> name;
  if (verb == "refused")
    words >> name;
  return name;
}

std::string TraceOf(const std::string &line) {
  std::istringstream words(line);
  std::string trace;
  for (std::string word; words >> word;)
    if (word.size() == 8 && word.starts_with("004"))
      trace += (trace.empty() ? "" : " ") + word;
  return trace;
}

struct Job {
  std::string run, group;
  int number;
  std::string Name() const { return run + "\t" + group + "\t" + std::to_string(number); }
};

class Driver {
public:
  Driver();

  void Count();
  void PrintSites();
  Job Choose(std::mt19937 &random);
  /// Gives the line, and false when the machine has to be a fresh one.
  bool Do(const Job &job, std::string &line);
  bool IsAsBefore();

private:
  Reference &ReferenceOf(const RunKind &kind);
  std::map<std::string, int> CallsOf(const RunKind &kind);
  bool GoTo(const State &wanted, const Backup &backup);
  void Finish(const RunKind &kind, Reference &reference);
  void CheckEnd(const Outcome &outcome, bool killed);
  void CheckMoment(const Reference &reference, const State &now, bool killed);
  void CheckTold(const Reference &reference, const State &now);
  void CheckSame(const char *when, const State &wanted, const State &now);
  void Find(const char *when, const std::string &what);

  State base_, now_;
  Backup backup_;
  korb::test::Snapshot whole_;
  std::map<std::string, Reference> references_;
  std::vector<std::string> sampled_;
  // Of the job at hand:
  const RunKind *kind_ = nullptr;
  std::string call_, told_;
  std::vector<std::string> found_, accepted_;
  bool same_ = false;
};

Driver::Driver() {
  // The first window of all starts the desktop.
  DestroyWindow(CreateWindowA("STATIC", "", 0, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr));
  MakeInstallers();
  FurnishMachine();
  StartSetup("atlas-1.exe /a"); // the system makes things of its own the first time
  StartUninstaller(KindOf("uninstall"), true);
  FurnishMachine();
  base_ = now_ = TakeState();
  backup_ = TakeBackup(base_);
  whole_ = korb::test::TakeSnapshot();
}

bool Driver::IsAsBefore() {
  bool as_before = GoTo(base_, backup_);
  for (const std::string &one : korb::test::Differences(whole_, korb::test::TakeSnapshot()))
    if (!Has(one, "Software\\Wine") && !Has(one, "Explorer")) {
      std::printf("the whole machine: %s\n", one.c_str());
      as_before = false;
    }
  return as_before;
}

bool Driver::GoTo(const State &wanted, const Backup &backup) {
  const bool done = Restore(wanted, backup, now_);
  now_ = wanted;
  return done;
}

Reference &Driver::ReferenceOf(const RunKind &kind) {
  Reference &reference = references_[kind.name];
  if (!reference.after.empty())
    return reference;
  if (!GoTo(base_, backup_))
    throw std::runtime_error("the machine can't be put back");
  if (*kind.before)
    StartSetup(kind.before);
  const std::string log = LogText();
  reference.before = TakeState();
  reference.backup = TakeBackup(reference.before);
  reference.outcome = Start(kind, "");
  if (LineWith(reference.outcome.report, "calls").empty())
    throw std::runtime_error("the program does not count its calls");
  reference.log = NewLines(log, LogText());
  if (IsMovePending())
    Restart();
  reference.after = TakeState();
  if (IsListed(kind))
    StartUninstaller(kind, true);
  reference.removed = now_ = TakeState();
  reference.known[reference.after] = {};
  if (!kind.uninstalls())
    reference.known[reference.before] = {}; // it has just been installed over
  return reference;
}

/// How many calls of each class the run makes. Those before which it can be ended are a class of their own.
std::map<std::string, int> Driver::CallsOf(const RunKind &kind) {
  std::map<std::string, int> calls;
  std::istringstream lines(ReferenceOf(kind).outcome.report);
  for (std::string line, verb, group, name; std::getline(lines, line);) {
    std::istringstream words(line);
    int count;
    if (!(words >> verb >> group >> name >> count) || verb != "calls")
      continue;
    calls[group] += count;
    for (const Call &call : kCalls)
      if (call.changes && name == call.name)
        calls["kill"] += count;
  }
  if (calls.count("wait"))
    calls["wait"] = std::min(calls["wait"], kWaits);
  return calls;
}

void Driver::Count() {
  for (const RunKind &kind : kRuns)
    for (const auto &[group, count] : CallsOf(kind))
      std::printf("%s %s %d\n", kind.name, group.c_str(), count);
}

/// The first call from each place of the program.
void Driver::PrintSites() {
  SetEnvironmentVariableA("KORB_FAULT_SITES", "1");
  for (const RunKind &kind : kRuns) {
    std::map<std::string, int> calls;
    std::set<std::string> seen;
    const auto note = [&](const std::string &group, const std::string &site) {
      ++calls[group];
      if (seen.insert(group + site).second && (group != "wait" || calls[group] <= kWaits))
        std::printf("%s %s %d\n", kind.name, group.c_str(), calls[group]);
    };
    std::istringstream lines(ReferenceOf(kind).outcome.report);
    for (std::string line; std::getline(lines, line);)
      for (const Call &call : kCalls)
        if (line.starts_with(std::string(call.name) + " 0")) {
          note(call.group, line);
          if (call.changes)
            note("kill", line);
        }
  }
}

/// One of a few kinds of run, which differ by the seed, and any of its calls, each class as often as every other.
Job Driver::Choose(std::mt19937 &random) {
  if (sampled_.empty())
    for (const std::vector<const char *> &some :
         {std::vector{"install", "wizard", "reinstall"}, {"upgrade", "in-use", "volumes"}, {"uninstall"}})
      sampled_.push_back(some[random() % some.size()]);
  const std::string run = sampled_[random() % sampled_.size()];
  const std::map<std::string, int> calls = CallsOf(KindOf(run));
  auto group = calls.begin();
  std::advance(group, random() % calls.size());
  return {run, group->first, 1 + static_cast<int>(random() % static_cast<unsigned>(std::max(group->second, 1)))};
}

void Driver::Find(const char *when, const std::string &what) {
  for (const Accepted &one : kAccepted)
    if (Fits(one.when, when) && Fits(one.run, kind_->name) && Fits(one.call, call_.c_str()) &&
        Fits(one.difference, what.c_str() + (what.starts_with(kSilent) ? kSilent.size() : 0))) {
      accepted_.push_back(std::string(when) + ": " + what);
      return;
    }
  found_.push_back(std::string(when) + ": " + what);
}

void Driver::CheckEnd(const Outcome &outcome, bool killed) {
  const std::string exception = LineWith(outcome.report, "exception");
  if (!exception.empty())
    Find("after", exception);
  else if (!outcome.ended)
    Find("after", "it does not end");
  else if (outcome.code != 1)
    Find("after", "it ends with " + std::to_string(outcome.code));
  else if (!killed && LineWith(outcome.report, "ended").empty())
    Find("after", "it ends on a way of its own");
}

/// A record without one of its files is another one, but not a part of one.
bool IsWholeRecord(const std::string &path) {
  return path.ends_with(korb::kUninstallDataName) && GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES &&
         Has(FileBytes(path), korb::kStringsHeading);
}

/// Whatever there is, is as it was or as it is to be. A file with other bytes is a part of one.
void Driver::CheckMoment(const Reference &reference, const State &now, bool killed) {
  const auto is = [](const State &state, const std::string &name, const std::string *what) {
    const auto at = state.find(name);
    return what ? at != state.end() && at->second == *what : at == state.end();
  };
  std::set<std::string> names;
  for (const std::string &difference : Compare(reference.before, now))
    names.insert(difference.substr(difference.find(' ') + 1));
  for (const std::string &name : names) {
    if (IsWholeRecord(name.substr(5)))
      continue;
    const auto at = now.find(name);
    const std::string *what = at == now.end() ? nullptr : &at->second;
    if (is(reference.after, name, what) || is(reference.removed, name, what) || is(base_, name, what))
      continue;
    const auto wanted = reference.after.find(name), had = reference.before.find(name);
    const bool was = had != reference.before.end(), comes = wanted != reference.after.end();
    if (!what)
      Find("after", "lost " + name);
    else if (!was && !comes)
      continue; // on its way: whether it goes is seen in the end
    else if (name.starts_with("file ") &&
             ((comes && BytesOf(wanted->second) == BytesOf(*what)) || (was && BytesOf(had->second) == BytesOf(*what))))
      continue; // the date or the attributes are missing, which is no loss
    else if (name.starts_with("file ") && (!was || killed) && comes) {
      // A part of a new file: named in the report, or nobody was left to name it.
      if (!killed && !Has(told_, name.substr(5)))
        Find("after", "part of " + name);
    } else
      Find("after", "spoilt " + name);
  }
}

/// A run that did all the same what it was to do has nothing to tell.
void Driver::CheckTold(const Reference &reference, const State &now) {
  same_ = Compare(reference.after, now).empty();
  if (same_ || !told_.empty())
    return;
  for (const std::string &difference : Compare(reference.after, now))
    Find("after", kSilent + difference);
}

void Driver::CheckSame(const char *when, const State &wanted, const State &now) {
  for (const std::string &difference : Compare(wanted, now))
    Find(when, difference);
}

/// The same run again, or a second uninstallation; then the machine is as it was.
void Driver::Finish(const RunKind &kind, Reference &reference) {
  if (kind.uninstalls()) {
    if (IsListed(kind))
      StartUninstaller(kind, true);
    CheckSame("end", reference.removed, now_ = TakeState());
    return;
  }
  const Outcome again = StartSetup(kind.setup);
  for (const std::string &box : again.boxes)
    if (!Has(box, "(dialog)"))
      Find("again", "it says " + box);
  if (!again.ended || again.code != 1)
    Find("again", "it does not end as it should");
  if (IsMovePending())
    Restart();
  CheckSame("again", reference.after, TakeState());
  if (!IsListed(kind))
    Find("end", "it is not listed");
  else
    StartUninstaller(kind, true);
  CheckSame("end", reference.removed, now_ = TakeState());
}

bool Driver::Do(const Job &job, std::string &line) {
  kind_ = &KindOf(job.run);
  found_.clear();
  accepted_.clear();
  call_.clear();
  told_.clear();
  same_ = false;
  Reference &reference = ReferenceOf(*kind_);
  if (!GoTo(reference.before, reference.backup))
    return false;
  const bool kill = job.group == "kill";
  const std::string log = LogText();
  const DWORD start = GetTickCount();
  const Outcome outcome = Start(*kind_, job.group + ":" + std::to_string(job.number));
  const DWORD started = GetTickCount();
  const std::string event = LineWith(outcome.report, kill ? "killed" : "refused");
  call_ = CallOf(event);
  if (!event.empty()) {
    told_ = NewLines(reference.log, NewLines(log, LogText()));
    for (const std::string &box : outcome.boxes)
      if (!Has(box, "(dialog)") && std::find(reference.outcome.boxes.begin(), reference.outcome.boxes.end(), box) ==
                                       reference.outcome.boxes.end())
        told_ += box + "\n";
    CheckEnd(outcome, kill);
    if (IsMovePending() || (kill && job.number % 4 == 0))
      Restart();
    now_ = TakeState();
    CheckMoment(reference, now_, kill);
    if (!kill)
      CheckTold(reference, now_);
    // From a state that was seen before, all goes on as it did then.
    const State moment = now_;
    const auto known = reference.known.find(moment);
    if (known != reference.known.end()) {
      found_.insert(found_.end(), known->second.begin(), known->second.end());
    } else {
      const size_t before = found_.size();
      Finish(*kind_, reference);
      reference.known[moment].assign(found_.begin() + static_cast<std::ptrdiff_t>(before), found_.end());
    }
  } else {
    now_ = TakeState();
  }
  const char *verdict = event.empty()            ? "none"
                        : !found_.empty()        ? "FOUND"
                        : !accepted_.empty()     ? "accepted"
                        : kill                   ? "killed"
                        : same_ && told_.empty() ? "same"
                                                 : "told";
  line = job.Name() + "\t" + verdict + "\t" + call_ + "\t" + TraceOf(event) + "\t";
  for (const std::string &one : found_)
    line += one + "; ";
  std::replace_if(
      line.begin(), line.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
  if (std::getenv("KORB_FAULT_TALK")) {
    std::printf("%s\n%s\ntold: %s\n%lu and %lu ms\n", line.c_str(), outcome.report.c_str(), told_.c_str(),
                started - start, GetTickCount() - started);
    for (const std::string &one : accepted_)
      std::printf("accepted: %s\n", one.c_str());
    for (const std::string &box : outcome.boxes)
      std::printf("box: %s\n", box.c_str());
  }
  return true;
}

std::vector<Job> ReadJobs(const char *path, const char *done) {
  std::set<std::string> finished;
  std::ifstream all(done);
  for (std::string line; std::getline(all, line);) {
    std::istringstream words(line);
    Job job;
    words >> job.run >> job.group >> job.number;
    finished.insert(job.Name());
  }
  std::vector<Job> jobs;
  std::ifstream wanted(path);
  for (Job job; wanted >> job.run >> job.group >> job.number;)
    if (!finished.count(job.Name()))
      jobs.push_back(job);
  return jobs;
}

int DoJobs(const char *path, const char *done, int seconds, const char *seed) {
  const DWORD start = GetTickCount();
  const std::vector<Job> jobs = ReadJobs(path, done);
  std::mt19937 random(seed ? static_cast<unsigned>(std::strtoul(seed, nullptr, 16)) : 0);
  Driver driver;
  for (size_t i = 0; i < jobs.size() || seed; ++i) {
    const bool is_told = seed && i < jobs.size(); // those are all tried, and then others as long as there is time
    if (!is_told && GetTickCount() - start > static_cast<DWORD>(seconds) * 1000)
      break;
    std::string line;
    const bool usable = driver.Do(i < jobs.size() ? jobs[i] : driver.Choose(random), line);
    std::ofstream(done, std::ios::app | std::ios::binary) << line << "\n";
    if (!usable)
      return kFreshMachine;
  }
  return driver.IsAsBefore() ? 0 : 1;
}

} // namespace

int main(int argc, char **argv) {
  try {
    if (argc == 2 && std::strcmp(argv[1], "count") == 0) {
      Driver().Count();
      return 0;
    }
    if (argc == 2 && std::strcmp(argv[1], "sites") == 0) {
      Driver().PrintSites();
      return 0;
    }
    if (argc == 4 || argc == 5)
      return DoJobs(argv[1], argv[2], std::atoi(argv[3]), argv[4]);
    std::fputs("driver count | driver JOBS DONE SECONDS [SEED]\n", stderr);
  } catch (const std::exception &problem) {
    std::printf("driver: %s\n", problem.what());
  }
  return 1;
}
