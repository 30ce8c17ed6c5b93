#include "packer/FileIo.h"

#include <cerrno>
#include <cstdio>
#include <fstream>
#include <random>
#include <system_error>

#include "packer/Product.h"
#include "packer/UnfinishedFiles.h"

namespace korb::packer {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kUnfinished = ".unfinished", kHexDigits = "0123456789abcdef";
constexpr size_t kRandomDigits = 8;

// `path` with random digits and the mark of what isn't complete behind it.
fs::path UnfinishedName(fs::path path) {
  std::random_device random;
  std::string digits = ".";
  for (size_t i = 0; i < kRandomDigits; ++i)
    digits += kHexDigits[random() % kHexDigits.size()];
  path += digits;
  path += kUnfinished;
  return path;
}

PackError CantWrite(const fs::path &path, const std::string &reason) {
  return PackError("can't write '" + ShowPath(path) + "': " + reason);
}

// Files that were written but have not taken their names; whatever is left at the end is removed.
class PendingFiles {
public:
  ~PendingFiles() {
    std::error_code error;
    for (const fs::path &path : paths_) {
      fs::remove(path, error);
      ForgetUnfinished(path);
    }
  }

  // Creates the file beside `path`; throws when that can't be. Nothing that is there is ever written to.
  std::FILE *Create(const fs::path &path) {
    constexpr int kAttempts = 100;
    for (int attempt = 1;; ++attempt) {
      const fs::path name = UnfinishedName(path);
      RemoveAtInterrupt(name);
      errno = 0;
      if (std::FILE *file = CreateNewFile(name)) {
        paths_.push_back(name);
        return file;
      }
      ForgetUnfinished(name);
      if (errno != EEXIST || attempt == kAttempts)
        throw CantWrite(path, std::generic_category().message(errno));
    }
  }

  void Write(const OutputFile &file) {
    std::FILE *stream = Create(file.path);
    const size_t written = std::fwrite(file.bytes->data(), 1, file.bytes->size(), stream);
    const bool is_closed = std::fclose(stream) == 0;
    if (written != file.bytes->size() || !is_closed)
      throw CantWrite(file.path, std::generic_category().message(errno));
  }

  // Gives the file that was written as number `index` its name.
  void Finish(size_t index, const fs::path &name) {
    std::error_code error;
    fs::rename(paths_[index], name, error);
    if (error)
      throw CantWrite(name, error.message());
  }

private:
  std::vector<fs::path> paths_;
};

void RefuseFolder(const fs::path &path) {
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  if (fs::exists(status) && !fs::is_regular_file(status))
    throw PackError("'" + ShowPath(path) + "' is no file that could be replaced");
}

} // namespace

bool IsUnfinishedName(std::string_view name) {
  const size_t tail = kUnfinished.size() + kRandomDigits + 1;
  return name.size() > tail && name.ends_with(kUnfinished) && name[name.size() - tail] == '.' &&
         name.find_first_not_of(kHexDigits, name.size() - tail + 1) == name.size() - kUnfinished.size();
}

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

std::string WhyUnreadable(const fs::path &path) {
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  if (!fs::exists(status))
    return fs::is_symlink(fs::symlink_status(path, error)) ? "it is a link to nothing"
                                                           : std::generic_category().message(ENOENT);
  if (fs::is_directory(status))
    return "it is a folder";
  if (!fs::is_regular_file(status))
    return "it is no ordinary file";
  errno = 0;
  std::ifstream file(path, std::ios::binary);
  file.get();
  return errno == 0 ? "it is too large, or ends early" : std::generic_category().message(errno);
}

void WriteOutputFiles(const std::vector<OutputFile> &files) {
  PendingFiles pending;
  for (const OutputFile &file : files) {
    RefuseFolder(file.path);
    pending.Write(file);
  }
  for (size_t i = 0; i < files.size(); ++i)
    pending.Finish(i, files[i].path);
}

void TryOutput(const fs::path &path) {
  RefuseFolder(path);
  std::error_code error;
  if (const fs::path folder = path.parent_path(); !folder.empty() && !fs::exists(folder, error))
    throw CantWrite(path, "there is no folder '" + ShowPath(folder) + "'");
  if (const std::string reason = WhyNotReplaceable(path); !reason.empty())
    throw CantWrite(path, reason);
  PendingFiles pending;
  std::fclose(pending.Create(path));
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
