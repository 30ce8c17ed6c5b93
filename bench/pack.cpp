// How small the packer makes things, how fast, and in how much memory, as a ratio to zlib's level 9 on the same data;
// and how time and memory grow from a quarter of the data to the whole.
//
//     pack [--quick] [--require] [CORPUS]
//
// Without CORPUS the data is gathered from this machine. --require fails the run when a level misses its mark: ratio,
// seconds, or 20 times the input's memory. Each level's block is unpacked by the program's own reader and compared.
#include <zlib.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <string>

#include "archive/UnpackBlock.h"
#include "bench/Corpus.h"
#include "format/Archive.h"
#include "packer/write/BlockEncoder.h"

#ifndef _WIN32
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

using korb::bench::Bytes;
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
  double most_of_deflate, most_seconds;
};

constexpr Level kLevels[] = {{"default", CompressionLevel::kDefault, 0.985, 40},
                             {"best", CompressionLevel::kBest, 0.96, 120}};
constexpr double kMostMemory = 20; // for each byte of input

struct Result {
  double seconds, processor_seconds; // what else the machine does counts in the first alone
  size_t size;
  double peak; // bytes that packing took at most; 0 where that can't be told
  bool unpacks;
};

double Now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

Result Measure(const Bytes &plain, CompressionLevel level) {
  Result result{};
  const double begin = Now();
  const clock_t clock_begin = clock();
  const Bytes packed = korb::packer::PackBlock(plain, level);
  result.seconds = Now() - begin;
  result.processor_seconds = static_cast<double>(clock() - clock_begin) / CLOCKS_PER_SEC;
  result.size = packed.size();
#ifndef _WIN32
  rusage usage;
  getrusage(RUSAGE_SELF, &usage);
  result.peak = static_cast<double>(usage.ru_maxrss) * 1024;
#endif
  Bytes out(plain.size());
  result.unpacks = korb::UnpackTokens(packed.data(), static_cast<int32_t>(packed.size()), out.data(),
                                      static_cast<int32_t>(out.size())) &&
                   out == plain;
  return result;
}

// In a process of its own, whose peak is then that of this run alone.
Result MeasureApart(const Bytes &plain, CompressionLevel level) {
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
  const Bytes plain = from.empty() ? korb::bench::GatherCorpus(kSources, divisor) : korb::bench::ReadFile(from);
  if (plain.empty()) {
    fprintf(stderr, "pack: no data\n");
    return 1;
  }
  uLongf deflated = compressBound(static_cast<uLong>(plain.size()));
  Bytes buffer(deflated);
  const double begin = Now();
  compress2(buffer.data(), &deflated, plain.data(), static_cast<uLong>(plain.size()), 9);
  printf("%.1f MB; zlib 9: %lu bytes in %.1f s\n", static_cast<double>(plain.size()) / 1e6,
         static_cast<unsigned long>(deflated), Now() - begin);
  buffer = Bytes();

  bool good = true;
  for (const Level &level : kLevels)
    for (size_t part : {4, 2, 1}) {
      const Bytes piece(plain.begin(), plain.begin() + static_cast<ptrdiff_t>(plain.size() / part));
      const Result result = MeasureApart(piece, level.level);
      if (!result.unpacks) {
        fprintf(stderr, "pack: the unpacked bytes differ\n");
        return 1;
      }
      const double size = static_cast<double>(piece.size()), memory = result.peak / size;
      printf("%-8s %6.1f MB  %6.2f s, %6.2f s of processor, %5.2f MB/s  %5.1f bytes of memory a byte  %9zu bytes",
             level.name, size / 1e6, result.seconds, result.processor_seconds, size / 1e6 / result.processor_seconds,
             memory, result.size);
      if (part == 1) {
        const double ratio = static_cast<double>(result.size) / static_cast<double>(deflated);
        printf("  %.4f of zlib", ratio);
        good = good && ratio <= level.most_of_deflate && result.seconds <= level.most_seconds && memory <= kMostMemory;
      }
      printf("\n");
      fflush(stdout);
    }
  if (required && !good) {
    fprintf(stderr, "pack: a level misses its mark\n");
    return 1;
  }
  return 0;
}
