// How small the packer makes things, how fast, and in how much memory, as a ratio to zlib's level 9 on the same data in
// the same run, and how time grows from half of the data to the whole. Prints rows of the table that scripts/bench
// gathers.
//
//     pack [--quick] [--require] [CORPUS]
//
// Done with CORPUS, or what is gathered from this machine, and with media, which nothing makes smaller. --require fails
// the run when a level misses its mark: size, processor time beside zlib's, 2.3 times the time for twice the data,
// memory. Each level's block is unpacked by the program's own reader and compared.
#include <zlib.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <string>

#include "archive/UnpackBlock.h"
#include "bench/Corpus.h"
#include "bench/Row.h"
#include "format/Archive.h"
#include "packer/write/BlockEncoder.h"

#ifndef _WIN32
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

using korb::bench::Bytes;
using korb::bench::PrintRow;
using korb::packer::CompressionLevel;

namespace {

constexpr korb::bench::Source kSources[] = {
    {"/usr/bin", "", 14},        {"/usr/lib", ".dll.exe", 6},
    {"/usr/lib", ".so", 8},      {"/usr/include", ".h.hpp", 6},
    {"/usr/share/doc", "", 4}, // also many that are packed already
    {"/usr/share/perl", "", 4},  {"/usr/share", ".png.jpg.gif.svg", 4},
    {"/usr/share/fonts", "", 4}, {"/usr/share", ".gz.xz.zip.jar", 5},
};

struct Level {
  const char *name;
  CompressionLevel level;
  double most_of_deflate, most_deflate_times; // size and processor time as multiples of zlib's; the size not for media
};

constexpr Level kLevels[] = {{"default", CompressionLevel::kDefault, 0.985, 4},
                             {"best", CompressionLevel::kBest, 0.96, 8}};
constexpr double kMostGrowth = 2.3; // of the time from the half to the whole
constexpr double kMostMemory = 12;  // bytes for each byte of input, which is one of them
constexpr size_t kMediaSize = 160'000'000;

struct Result {
  double seconds, processor_seconds; // what else the machine does counts in the first alone
  size_t size;
  double peak; // bytes that packing took at most; 0 where that can't be told
  bool unpacks;
};

double Now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

// Of all threads.
double ProcessorSeconds(clock_t since) {
  return static_cast<double>(clock() - since) / CLOCKS_PER_SEC;
}

Result Measure(std::span<const uint8_t> plain, CompressionLevel level) {
  Result result{};
  const double begin = Now();
  const clock_t clock_begin = clock();
  const Bytes packed = korb::packer::PackBlock(plain, level);
  result.seconds = Now() - begin;
  result.processor_seconds = ProcessorSeconds(clock_begin);
  result.size = packed.size();
#ifndef _WIN32
  rusage usage;
  getrusage(RUSAGE_SELF, &usage);
  result.peak = static_cast<double>(usage.ru_maxrss) * 1024;
#endif
  Bytes out(plain.size());
  result.unpacks = korb::UnpackTokens(packed.data(), static_cast<int32_t>(packed.size()), out.data(),
                                      static_cast<int32_t>(out.size())) &&
                   std::equal(out.begin(), out.end(), plain.begin());
  return result;
}

// In a process of its own, whose peak is then that of this run alone.
Result MeasureApart(std::span<const uint8_t> plain, CompressionLevel level) {
#ifdef _WIN32
  return Measure(plain, level);
#else
  Result result{};
  int ends[2];
  if (pipe(ends) != 0)
    return result;
  const pid_t child = fork();
  if (child == 0) {
    result = Measure(plain, level);
    _exit(write(ends[1], &result, sizeof result) == sizeof result ? 0 : 1);
  }
  close(ends[1]);
  if (child < 0 || read(ends[0], &result, sizeof result) != sizeof result)
    result = {};
  close(ends[0]);
  if (child > 0)
    waitpid(child, nullptr, 0);
  return result;
#endif
}

struct Data {
  const char *name;
  Bytes bytes;
  bool is_compressible;
};

// Prints what each level does with `data`. False when a level misses its mark.
bool Compare(const Data &data) {
  const std::span<const uint8_t> plain = data.bytes;
  uLongf deflated = compressBound(static_cast<uLong>(plain.size()));
  Bytes buffer(deflated);
  const double begin = Now();
  const clock_t clock_begin = clock();
  compress2(buffer.data(), &deflated, plain.data(), static_cast<uLong>(plain.size()), 9);
  const double seconds = Now() - begin, deflate_seconds = ProcessorSeconds(clock_begin);
  buffer = Bytes();

  bool good = true;
  for (const Level &level : kLevels) {
    Result half{}, whole{};
    for (size_t part : {2, 1}) {
      const std::span<const uint8_t> piece = plain.first(plain.size() / part);
      (part == 2 ? half : whole) = MeasureApart(piece, level.level);
    }
    if (!half.unpacks || !whole.unpacks) {
      fprintf(stderr, "pack: the unpacked bytes differ\n");
      return false;
    }
    const auto row = [&](const char *what, const char *unit, double yardstick, double ours, double goal) {
      const std::string title = std::string(data.name) + ", " + level.name + ": " + what;
      good = PrintRow(title.c_str(), unit, {yardstick}, {ours}, goal) && good;
    };
    row("size, against zlib's level 9", "MB", static_cast<double>(deflated) / 1e6,
        static_cast<double>(whole.size) / 1e6, data.is_compressible ? level.most_of_deflate : 0);
    row("processor time, against the same", "s", deflate_seconds, whole.processor_seconds, level.most_deflate_times);
    row("wait, against the same", "s", seconds, whole.seconds, 0);
    row("processor time, against half of the data", "s", half.processor_seconds, whole.processor_seconds, kMostGrowth);
    row("memory, against the data", "MB", static_cast<double>(plain.size()) / 1e6, whole.peak / 1e6, kMostMemory);
  }
  return good;
}

} // namespace

int main(int argc, char **argv) {
  size_t divisor = 1;
  bool required = false;
  std::string from;
  for (int i = 1; i < argc; ++i)
    if (strcmp(argv[i], "--quick") == 0)
      divisor = 40;
    else if (strcmp(argv[i], "--require") == 0)
      required = true;
    else
      from = argv[i];
  bool good = true;
  for (const bool is_compressible : {true, false}) { // one after the other, since both count as memory
    Data data{is_compressible ? "programs, texts and pictures" : "media", {}, is_compressible};
    if (!is_compressible)
      data.bytes = korb::bench::MakeMedia(kMediaSize / divisor);
    else
      data.bytes = from.empty() ? korb::bench::GatherCorpus(kSources, divisor) : korb::bench::ReadFile(from);
    if (data.bytes.empty()) {
      fprintf(stderr, "pack: no data\n");
      return 1;
    }
    good = Compare(data) && good;
  }
  if (required && !good) {
    fprintf(stderr, "pack: a level misses its mark\n");
    return 1;
  }
  return 0;
}
