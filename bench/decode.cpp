// How fast a packed block unpacks, as a ratio to zlib's inflate of the same data at its best level and to a plain copy.
// All three run in turn, round after round, so that what else the machine does strikes them alike; medians are given.
//
//     decode [--quick] [--rounds N] [--require RATIO] [--save FILE] [CORPUS]
//
// Without CORPUS the data is gathered from this machine's programs, headers, documents, fonts and icons. --save keeps it
// for a run elsewhere: Wine sees other files, so the 32-bit build is compared with the native one on a saved corpus.
// --require fails the run below that ratio to inflate.
#include <zlib.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

#include "archive/Format.h"
#include "archive/UnpackBlock.h"
#include "packer/BlockEncoder.h"

namespace fs = std::filesystem;

namespace {

using Bytes = std::vector<uint8_t>;

struct Source {
  const char *folder;
  const char *extensions; // ".a.b": these only; empty: all
  size_t megabytes;
};

#ifdef _WIN32
constexpr char kRoot[] = "Z:"; // the machine's own files, as Wine shows them
#else
constexpr char kRoot[] = "";
#endif

constexpr Source kSources[] = {
    {"/usr/bin", "", 9},        {"/usr/include", ".h.hpp", 6}, {"/usr/share/doc", "", 4},
    {"/usr/share/perl", "", 3}, {"/usr/lib", ".dll.exe", 6},   {"/usr/share/fonts", "", 2},
    {"/usr/lib", ".a", 3},      {"/usr/share/icons", "", 1},   {"/usr/share/locale", "", 2},
};

Bytes ReadFile(const fs::path &path) {
  std::ifstream in(path, std::ios::binary);
  return Bytes(std::istreambuf_iterator<char>(in), {});
}

/// The same bytes on every run on one machine.
Bytes GatherCorpus(size_t divisor) {
  Bytes corpus;
  for (const Source &source : kSources) {
    std::vector<fs::path> paths;
    std::error_code error;
    for (fs::recursive_directory_iterator it(std::string(kRoot) + source.folder, error), end; !error && it != end;
         it.increment(error))
      if (it->is_regular_file(error) && !it->is_symlink(error) &&
          (*source.extensions == '\0' ||
           (it->path().has_extension() &&
            strstr(source.extensions, it->path().extension().string().c_str()) != nullptr)))
        paths.push_back(it->path());
    std::sort(paths.begin(), paths.end());
    const size_t limit = corpus.size() + (source.megabytes << 20) / divisor;
    for (const fs::path &path : paths) {
      if (corpus.size() >= limit)
        break;
      const Bytes bytes = ReadFile(path);
      const size_t n = std::min({bytes.size(), limit - corpus.size(), size_t{3} << 20});
      corpus.insert(corpus.end(), bytes.begin(), bytes.begin() + static_cast<ptrdiff_t>(n));
    }
  }
  return corpus;
}

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

  const Bytes plain = from.empty() ? GatherCorpus(divisor) : ReadFile(from);
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
