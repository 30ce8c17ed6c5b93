#include "packer/FileIo.h"

#include <cerrno>
#include <fstream>
#include <system_error>

#include "packer/Product.h"

namespace korb::packer {

namespace fs = std::filesystem;

namespace {

// Files that were written but have not taken their names; whatever is left at the end is removed.
class PendingFiles {
public:
  ~PendingFiles() {
    std::error_code error;
    for (const fs::path &path : paths_)
      fs::remove(path, error);
  }

  void Write(const OutputFile &file) {
    paths_.push_back(PendingName(file.path));
    errno = 0;
    std::ofstream stream(paths_.back(), std::ios::binary | std::ios::trunc);
    stream.write(reinterpret_cast<const char *>(file.bytes->data()), static_cast<std::streamsize>(file.bytes->size()));
    stream.close();
    if (!stream)
      throw PackError("can't write '" + ShowPath(file.path) + "': " + std::generic_category().message(errno));
  }

  static fs::path PendingName(fs::path path) {
    path += ".unfinished";
    return path;
  }

private:
  std::vector<fs::path> paths_;
};

} // namespace

std::optional<Bytes> ReadFileBytes(const fs::path &path) {
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

void WriteOutputFiles(const std::vector<OutputFile> &files) {
  PendingFiles pending;
  for (const OutputFile &file : files) {
    if (fs::exists(file.path) && !fs::is_regular_file(file.path))
      throw PackError("'" + ShowPath(file.path) + "' is no file that could be replaced");
    pending.Write(file);
  }
  for (const OutputFile &file : files) {
    std::error_code error;
    fs::rename(PendingFiles::PendingName(file.path), file.path, error);
    if (error)
      throw PackError("can't write '" + ShowPath(file.path) + "': " + error.message());
  }
}

bool IsSameFile(const fs::path &a, const fs::path &b) {
  std::error_code error;
  return fs::equivalent(a, b, error) || fs::weakly_canonical(a, error) == fs::weakly_canonical(b, error);
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
