#include "packer/ReadFile.h"

#include <fstream>

namespace korb::packer {

namespace fs = std::filesystem;

std::optional<Bytes> ReadWholeFile(const fs::path &path) {
  std::error_code error;
  if (!fs::is_regular_file(path, error))
    return std::nullopt;
  std::ifstream file(path, std::ios::binary);
  Bytes bytes;
  if (!file)
    return std::nullopt;
  const uintmax_t size = fs::file_size(path, error);
  if (error || size > bytes.max_size()) // a 32-bit program would take the lower half of a larger size for the whole
    return std::nullopt;
  bytes.resize(static_cast<size_t>(size));
  file.read(reinterpret_cast<char *>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  if (static_cast<size_t>(file.gcount()) != bytes.size())
    return std::nullopt;
  return bytes;
}

fs::path PathFromUtf8(const std::string &utf8) {
  return fs::path(std::u8string(utf8.begin(), utf8.end()));
}

std::string ShowPath(const fs::path &path) {
  const std::u8string text = path.u8string();
  return std::string(text.begin(), text.end());
}

std::string ManifestPath(const fs::path &path) {
  const std::u8string text = path.generic_u8string();
  return std::string(text.begin(), text.end());
}

} // namespace korb::packer
