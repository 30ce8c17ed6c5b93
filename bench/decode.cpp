// How fast a packed block unpacks, as a ratio to zlib's inflate of the same data at its best level and to a plain copy.
// All three run in turn, round after round, so that what else the machine does strikes them alike; medians are given.
//
//     decode [--quick] [--rounds N] [--require RATIO] [--save FILE] [CORPUS]
//
// Without CORPUS the data is gathered from this machine's programs, headers, documents, fonts and icons. --save keeps
// it for a run elsewhere: Wine sees other files, so the 32-bit build is compared with the native one on a saved corpus.
// --require fails the run below that ratio to inflate.
#include <zlib.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "archive/UnpackBlock.h"
#include "bench/Corpus.h"
#include "format/Archive.h"
#include "packer/write/BlockEncoder.h"

using korb::bench::Bytes;
using korb::bench::ReadFile;
using korb::bench::Source;

namespace {

constexpr Source kSources[] = {
    {"/usr/bin", "", 9},        {"/usr/include", ".h.hpp", 6}, {"/usr/share/doc", "", 4},
    {"/usr/share/perl", "", 3}, {"/usr/lib", ".dll.exe", 6},   {"/usr/share/fonts", "", 2},
    {"/usr/lib", ".a", 3},      {"/usr/share/icons", "", 1},   {"/usr/share/locale", "", 2},
};

double Seconds(const std::function<bool()> &run) {
  const auto begin = std::chrono::steady_clock::now();
  if (!run()) {
    fprintf(stderr, "decode: a result is wrong\n");
    exit(1);
  }
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

} // namespace

int main(int argc, char **argv) {
  size_t rounds = 15, divisor = 1;
  double required = 0;
  std::string save, from;
  for (int i = 1; i < argc; ++i) {
    const std::string word = argv[i];
    const auto next = [&] { return i + 1 < argc ? argv[++i] : ""; };
    if (word == "--quick")
      rounds = 3, divisor = 12;
    else if (word == "--rounds")
      rounds = std::max(1ul, strtoul(next(), nullptr, 10));
    else if (word == "--require")
      required = strtod(next(), nullptr);
    else if (word == "--save")
      save = next();
    else
      from = word;
  }

  const Bytes plain = from.empty() ? korb::bench::GatherCorpus(kSources, divisor) : ReadFile(from);
  if (plain.empty()) {
    fprintf(stderr, "decode: no data\n");
    return 1;
  }
  if (!save.empty())
    std::ofstream(save, std::ios::binary).write(reinterpret_cast<const char *>(plain.data()), std::ssize(plain));

  const Bytes packed = korb::packer::PackBlock(plain);
  uLongf deflated_size = compressBound(static_cast<uLong>(plain.size()));
  Bytes deflated(deflated_size), out(plain.size());
  compress2(deflated.data(), &deflated_size, plain.data(), static_cast<uLong>(plain.size()), 9);

  const auto ours = [&] {
    return korb::UnpackTokens(packed.data(), static_cast<int32_t>(packed.size()), out.data(),
                              static_cast<int32_t>(out.size()));
  };
  const auto inflate = [&] {
    uLongf n = static_cast<uLongf>(out.size());
    return uncompress(out.data(), &n, deflated.data(), deflated_size) == Z_OK && n == out.size();
  };
  const auto copy = [&] { return memcpy(out.data(), plain.data(), out.size()) != nullptr; };

  if (!ours() || out != plain) {
    fprintf(stderr, "decode: the unpacked bytes differ\n");
    return 1;
  }
  std::vector<double> times[3];
  for (size_t round = 0; round < rounds; ++round) {
    times[0].push_back(Seconds(ours));
    times[1].push_back(Seconds(inflate));
    times[2].push_back(Seconds(copy));
  }
  const double megabytes = static_cast<double>(plain.size()) / 1e6;
  const double speed[] = {megabytes / Median(times[0]), megabytes / Median(times[1]), megabytes / Median(times[2])};
  const double percent = 100.0 / static_cast<double>(plain.size());
  printf("%d-bit code, %.1f MB, median of %d rounds\n", static_cast<int>(sizeof(void *) * 8), megabytes,
         static_cast<int>(rounds));
  printf("  unpack  %7.0f MB/s   packed to %.1f %%\n", speed[0], static_cast<double>(packed.size()) * percent);
  printf("  inflate %7.0f MB/s   packed to %.1f %%\n", speed[1], static_cast<double>(deflated_size) * percent);
  printf("  memcpy  %7.0f MB/s\n", speed[2]);
  printf("  %.2f times inflate, %.3f of memcpy\n", speed[0] / speed[1], speed[0] / speed[2]);
  if (speed[0] < required * speed[1]) {
    fprintf(stderr, "decode: below the required %.2f times inflate\n", required);
    return 1;
  }
  return 0;
}
