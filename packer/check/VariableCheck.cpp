#include "packer/check/VariableCheck.h"

#include <algorithm>
#include <iterator>

#include "packer/Words.h"
#include "packer/check/TextRules.h"

namespace korb::packer {

namespace {

// What the system's own variables are called here.
std::string MeantVariable(const std::string &name) {
  const std::string lower = LowerCase(name);
  return lower == "%programfiles%" ? "%ProgramsDir%" : lower == "%systemroot%" ? "%WinDir%" : name;
}

} // namespace

void CheckVariables(const std::string &text, const Place &place, const std::string &what, Findings &findings) {
  for (size_t begin = text.find('%'), end; begin != text.npos; begin = end) {
    end = text.find('%', begin + 1);
    if (end == text.npos)
      return;
    const std::string name = text.substr(begin, end - begin + 1);
    const bool is_word = name.size() > 3 && std::all_of(name.begin() + 1, name.end() - 1,
                                                        [](char c) { return (c | 0x20) >= 'a' && (c | 0x20) <= 'z'; });
    if (!is_word)
      continue; // the next one may begin a name
    end = text.find('%', end + 1);
    if (std::none_of(std::begin(kPathVariables), std::end(kPathVariables),
                     [&](std::string_view known) { return LowerCase(known) == LowerCase(name); }))
      findings.Warn(place, Warning::kUnknownVariable,
                    what + "'" + name + "' is no path variable and stays as it is" +
                        Suggestion(MeantVariable(name), kPathVariables));
  }
}

void CheckPathText(const std::string &text, const Place &place, const std::string &what, Findings &findings) {
  CheckVariables(text, place, what, findings);
  // The variable, and what makes the root of its drive.
  constexpr std::pair<std::string_view, std::string_view> kDrives[] = {
      {"%InstallDrive%", "\\"}, {"%BootDrive%", "\\"}, {"%InstallerDrive%", ":\\"}};
  for (const auto &[variable, rest] : kDrives)
    if (LowerCase(text).starts_with(LowerCase(variable)) && !text.substr(variable.size()).starts_with(rest))
      findings.Warn(place, Warning::kRelativeDrive,
                    what + "'" + text + "' is a relative path: the drive itself is '" + std::string(variable) +
                        std::string(rest) + "'");
}

} // namespace korb::packer
