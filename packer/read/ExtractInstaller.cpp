#include "packer/read/ExtractInstaller.h"

#include <algorithm>
#include <chrono>
#include <fstream>
#include <map>

#include "packer/FileIo.h"
#include "packer/Product.h"
#include "packer/check/TextRules.h"
#include "packer/read/InstallerReader.h"

namespace korb::packer {

namespace fs = std::filesystem;

namespace {

// One part of a path as every system takes it: no way up, no drive, no stream, no device.
std::string SafePart(std::string part) {
  for (char &c : part)
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F ||
        std::string_view("<>:\"|?*").find(c) != std::string_view::npos)
      c = '_';
  part.erase(part.find_last_not_of(". ") + 1);
  return IsDeviceName(part) ? "_" + part : part;
}

// The parts of `name` that are left; never none.
std::vector<std::string> SafeParts(const std::string &name) {
  std::vector<std::string> parts;
  for (size_t begin = 0; begin <= name.size();) {
    const size_t end = std::min(name.find_first_of("\\/", begin), name.size());
    std::string part = SafePart(name.substr(begin, end - begin));
    if (!part.empty())
      parts.push_back(std::move(part));
    begin = end + 1;
  }
  if (parts.empty())
    parts.push_back("_");
  return parts;
}

// The number to try next where a path is taken: thousands of files may have one name.
using Wanted = std::map<fs::path, int>;

// A path in `folder` where nothing stands yet, its folders made.
fs::path FreePlace(const fs::path &folder, std::vector<std::string> parts, Wanted &wanted) {
  fs::path place = folder;
  std::error_code error;
  const std::string last = parts.back();
  parts.pop_back();
  for (const std::string &part : parts) {
    const fs::path next = place / PathFromUtf8(part);
    if (fs::exists(next, error) && !fs::is_directory(next, error))
      break; // a file of that name came first: what is below it goes beside it
    place = next;
  }
  fs::create_directories(place);
  fs::path free = place / PathFromUtf8(last);
  for (int &number = wanted.try_emplace(free, 2).first->second; fs::exists(fs::symlink_status(free, error)); ++number)
    free = place / PathFromUtf8(last + " (" + std::to_string(number) + ")");
  return free;
}

// Outside the calendar, or none, a file keeps the time of its writing.
void SetDate(const fs::path &path, const FileDate &date) {
  using namespace std::chrono;
  if (!IsCalendarDay(date.year, date.month, date.day) || date.year < 1980 || date.year > 2107)
    return;
  const sys_days day{year(date.year) / date.month / date.day};
  const auto clamped = [](int32_t value, int32_t most) { return std::clamp(value, 0, most); };
  const auto time =
      day + hours(clamped(date.hour, 23)) + minutes(clamped(date.minute, 59)) + seconds(clamped(date.second, 59));
  std::error_code error;
  fs::last_write_time(path, file_clock::from_sys(time), error);
}

bool WriteRecord(const fs::path &path, const PayloadRecord &record) {
  std::ofstream stream(path, std::ios::binary);
  stream.write(reinterpret_cast<const char *>(record.contents), record.size);
  stream.close();
  if (!stream)
    return false;
  SetDate(path, record.date);
  return true;
}

} // namespace

bool ExtractInstaller(const fs::path &path, const fs::path &folder, int page, std::ostream &out,
                      std::ostream &problems) {
  std::error_code error;
  if (fs::exists(folder, error) && !fs::is_empty(folder, error))
    throw PackError("'" + ShowPath(folder) + "' is not an empty folder");
  InstallerReader installer(path, page);
  installer.Read();
  if (installer.reached < Part::kFiles) {
    problems << ShowPath(path) << ": error: " << installer.damage->what() << "\n";
    return false;
  }
  fs::create_directories(folder);
  size_t written = 0;
  Wanted wanted;
  for (const PayloadRecord &record : installer.records) {
    const std::vector<std::string> parts = SafeParts(FromCodePage(record.name, installer.code_page));
    try {
      if (WriteRecord(FreePlace(folder, parts, wanted), record)) {
        ++written;
        continue;
      }
    } catch (const fs::filesystem_error &) { // a folder that can't be made
    }
    problems << "error: can't write '" << parts.back() << "'\n";
  }
  out << written << " of " << installer.records.size() << " files written to " << ShowPath(folder) << "\n";
  return written == installer.records.size();
}

} // namespace korb::packer
