#include "packer/check/TextRules.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <set>

#include "files/PathText.h"
#include "format/Record.h"
#include "packer/Words.h"

namespace korb::packer {

std::string ControlCharacterIn(std::string_view text) {
  constexpr std::string_view kNamed = "\b\t\n\f\r", kLetters = "btnfr";
  for (const char c : text) {
    char number[8];
    if (const size_t at = kNamed.find(c); at != kNamed.npos)
      return std::string("\\") + kLetters[at];
    std::snprintf(number, sizeof number, "\\u%04X", static_cast<unsigned char>(c));
    if (static_cast<unsigned char>(c) < ' ')
      return number;
  }
  return {};
}

std::string LowerCase(std::string_view text) {
  std::string lower(text);
  for (char &c : lower)
    if (c >= 'A' && c <= 'Z')
      c = static_cast<char>(c - 'A' + 'a');
  return lower;
}

bool ContainsNoCase(std::string_view text, std::string_view part) {
  return LowerCase(text).find(LowerCase(part)) != std::string::npos;
}

bool HoldsRecordMarker(std::string_view text) {
  return ContainsNoCase(text, kStringsHeading) || ContainsNoCase(text, kAssociationsHeading);
}

bool HoldsIllegalCharacter(std::string_view name) {
  return std::any_of(name.begin(), name.end(), [](char c) {
    return static_cast<unsigned char>(c) < 0x20 || std::string_view("<>:\"|?*/").find(c) != std::string_view::npos;
  });
}

bool HoldsIllegalCharacterInPath(std::string path) {
  std::erase(path, ';'); // a fault of its own kind
  return !ControlCharacterIn(path).empty() || (!path.empty() && !IsLegalPath(path.c_str()));
}

bool IsDeviceName(std::string_view part) {
  const std::string stem = LowerCase(part.substr(0, part.find('.')));
  static const std::set<std::string> kDevices = {"con", "prn", "aux", "nul", "clock$", "conin$", "conout$"};
  return kDevices.contains(stem) ||
         (stem.size() == 4 && (stem.starts_with("com") || stem.starts_with("lpt")) && stem[3] >= '0' && stem[3] <= '9');
}

bool HasLongPart(std::string_view path) {
  constexpr size_t kLongestName = 255;
  size_t length = 0;
  return std::any_of(path.begin(), path.end(),
                     [&](char c) { return (length = c == '\\' ? 0 : length + 1) > kLongestName; });
}

bool HasUnusablePart(std::string_view path) {
  for (size_t begin = 0; begin <= path.size();) {
    const size_t end = std::min(path.find('\\', begin), path.size());
    const std::string_view part = path.substr(begin, end - begin);
    if (IsDeviceName(part) || part.ends_with(' ') || (part.ends_with('.') && part != ".."))
      return true;
    begin = end + 1;
  }
  return false;
}

std::string WithSampleFolders(std::string text) {
  constexpr std::pair<std::string_view, std::string_view> kSamples[] = {
      {"%WinDir%", kSampleWindows},       {"%SystemDir%", "C:\\Windows\\System32"},
      {"%ProgramsDir%", kSamplePrograms}, {"%BootDrive%", "C:"},
      {"%InstallDrive%", "C:"},           {"%InstallerDrive%", "C"},
      {"%InstallerFilename%", "s.exe"}};
  const auto replace = [&](std::string_view name, std::string_view value) {
    for (size_t at = 0; (at = LowerCase(text).find(LowerCase(name), at)) != text.npos; at += value.size())
      text.replace(at, name.size(), value);
  };
  for (const auto &[name, value] : kSamples)
    replace(name, value);
  for (const std::string_view name : kPathVariables)
    replace(name, "C:\\Sample\\Folder");
  return text;
}

std::string PathBelow(std::string_view path, const std::string &folder) {
  const bool is_full = path.starts_with('%') || path.starts_with('\\') || path.find(':') == 1;
  return (is_full ? std::string() : folder) + std::string(path);
}

std::string WithProductName(std::string text, const std::string &name) {
  constexpr std::string_view kPlaceholder = "<product>";
  for (size_t at = 0; (at = LowerCase(text).find(kPlaceholder, at)) != std::string::npos; at += name.size())
    text.replace(at, kPlaceholder.size(), name);
  return text;
}

bool HoldsHugeNumber(std::string_view text, int64_t most) {
  int64_t number = 0;
  for (char c : text) {
    number = c >= '0' && c <= '9' ? number * 10 + (c - '0') : 0;
    if (number > most)
      return true;
  }
  return false;
}

bool IsCalendarDay(int32_t year, int32_t month, int32_t day) {
  using namespace std::chrono;
  return year > 0 && year < 10000 && month > 0 && day > 0 &&
         year_month_day(std::chrono::year(year), std::chrono::month(static_cast<unsigned>(month)),
                        std::chrono::day(static_cast<unsigned>(day)))
             .ok();
}

} // namespace korb::packer
