#include "bench/Corpus.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

namespace fs = std::filesystem;

namespace korb::bench {

namespace {

#ifdef _WIN32
constexpr char kRoot[] = "Z:"; // the machine's own files, as Wine shows them
#else
constexpr char kRoot[] = "";
#endif

} // namespace

Bytes ReadFile(const fs::path &path) {
  std::ifstream in(path, std::ios::binary);
  return Bytes(std::istreambuf_iterator<char>(in), {});
}

Bytes GatherCorpus(std::span<const Source> sources, size_t divisor) {
  Bytes corpus;
  for (const Source &source : sources) {
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

Bytes MakeMedia(size_t size) {
  std::mt19937 generator(1);
  const auto any = [&] { return static_cast<uint8_t>(generator() >> 24); };
  Bytes head(600), media;
  std::generate(head.begin(), head.end(), any);
  while (media.size() < size) {
    const bool is_photograph = generator() % 2 != 0;
    const size_t end = media.size() + 30000 + generator() % 570000;
    if (is_photograph)
      media.insert(media.end(), head.begin(), head.end());
    while (media.size() < end) {
      media.push_back(any());
      if (is_photograph && media.back() == 0xFF)
        media.push_back(0);
    }
  }
  media.resize(size);
  return media;
}

} // namespace korb::bench
