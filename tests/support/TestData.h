// The files of tests/unit/data.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace korb::test {

/// The path of a file there.
inline std::filesystem::path TestData(const std::string &name) {
  const char *folder = std::getenv("KORB_TEST_DATA");
  if (folder == nullptr)
    throw std::runtime_error("KORB_TEST_DATA does not name the folder of the tests' data");
  return std::filesystem::path((std::filesystem::exists("Z:\\") ? "Z:" : "") + std::string(folder)) / name;
}

struct ManifestRow {
  std::string manifest, report;
};

/// The rows of a file there, an empty line between them: a manifest, then the lines of its report, each behind "> ".
inline std::vector<ManifestRow> ManifestRows(const std::string &name) {
  std::ifstream file(TestData(name), std::ios::binary);
  std::vector<ManifestRow> rows(1);
  for (std::string line; std::getline(file, line);)
    if (line.empty())
      rows.emplace_back();
    else if (line.starts_with("> "))
      rows.back().report += line.substr(2) + "\n";
    else
      rows.back().manifest += line + "\n";
  if (rows[0].manifest.empty())
    throw std::runtime_error("no rows in " + name);
  return rows;
}

} // namespace korb::test
