// How long a packed block takes to unpack, as a ratio to zlib's inflate of the same data at its best level and to a
// plain copy. All three run in turn, round after round, so that what else the machine does strikes them alike. Prints
// rows of the table that scripts/bench gathers.
//
//     decode [--quick] [--rounds N] [--require] [--save FILE] [CORPUS]
//
// Without CORPUS the data is gathered from this machine's programs, headers, documents, fonts and icons. --save keeps
// it for a run elsewhere: Wine sees other files, so the 32-bit build is compared with the native one on a saved corpus.
// --require fails the run above the goal.
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
#include "bench/Row.h"
#include "format/Archive.h"
#include "packer/write/BlockEncoder.h"

using korb::bench::Bytes;
using korb::bench::PrintRow;
using korb::bench::ReadFile;
using korb::bench::Rounds;
using korb::bench::Source;

namespace {

constexpr Source kSources[] = {
    {"/usr/bin", "", 9},        {"/usr/include", ".h.hpp", 6}, {"/usr/share/doc", "", 4},
    {"/usr/share/perl", "", 3}, {"/usr/lib", ".dll.exe", 6},   {"/usr/share/fonts", "", 2},
    {"/usr/lib", ".a", 3},      {"/usr/share/icons", "", 1},   {"/usr/share/locale", "", 2},
};

constexpr double kGoal = sizeof(void *) > 4 ? 0.27 : 0.29; // of inflate's time

double Milliseconds(const std::function<bool()> &run) {
  const auto begin = std::chrono::steady_clock::now();
  if (!run()) {
    fprintf(stderr, "decode: a result is wrong\n");
    exit(1);
  }
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count() * 1e3;
}

} // namespace

int main(int argc, char **argv) {
  size_t rounds = 15, divisor = 1;
  bool required = false;
  std::string save, from;
  for (int i = 1; i < argc; ++i) {
    const std::string word = argv[i];
    const auto next = [&] { return i + 1 < argc ? argv[++i] : ""; };
    if (word == "--quick")
      rounds = 3, divisor = 12;
    else if (word == "--rounds")
      rounds = std::max(1ul, strtoul(next(), nullptr, 10));
    else if (word == "--require")
      required = true;
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
  Rounds times[3];
  for (size_t round = 0; round < rounds; ++round) {
    times[0].push_back(Milliseconds(ours));
    times[1].push_back(Milliseconds(inflate));
    times[2].push_back(Milliseconds(copy));
  }
  const std::string title = std::to_string(sizeof(void *) * 8) + "-bit decoder";
  const double percent = 100.0 / static_cast<double>(plain.size());
  const bool kept = PrintRow((title + ", against inflate").c_str(), "ms", times[1], times[0], kGoal);
  PrintRow((title + ", against a copy").c_str(), "ms", times[2], times[0], 0);
  if (sizeof(void *) > 4) // the same for both
    PrintRow("what it unpacks, against zlib's level 9", "%", {static_cast<double>(deflated_size) * percent},
             {static_cast<double>(packed.size()) * percent}, 0);
  if (required && !kept) {
    fprintf(stderr, "decode: above the goal\n");
    return 1;
  }
  return 0;
}
