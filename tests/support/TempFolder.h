// A folder that goes with its object, for tests that need files.
#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>

namespace korb::test {

class TempFolder {
public:
  TempFolder() : path_(std::filesystem::temp_directory_path() / ("korb" + std::to_string(std::random_device()()))) {
    std::filesystem::create_directories(path_);
  }
  ~TempFolder() {
    std::error_code error;
    std::filesystem::remove_all(path_, error);
  }
  TempFolder(const TempFolder &) = delete;

  /// Writes a file, its folders included; `name` is relative, with '/'. Gives its path.
  std::filesystem::path Write(const std::string &name, const std::string &contents) const {
    const std::filesystem::path path = path_ / name;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << contents;
    return path;
  }

  std::string Read(const std::string &name) const {
    std::ostringstream contents;
    contents << std::ifstream(path_ / name, std::ios::binary).rdbuf();
    return contents.str();
  }

  size_t Count() const {
    const std::filesystem::directory_iterator all(path_);
    return static_cast<size_t>(std::distance(begin(all), end(all)));
  }

  const std::filesystem::path &Path() const { return path_; }

private:
  std::filesystem::path path_;
};

} // namespace korb::test
