// The packer's side of core/Failure.h: every report unwinds to whoever reads an installer. Nothing else stands here: a
// program that brings reports of its own must be able to do without this file.
#include "packer/ReportedDamage.h"

#include <algorithm>
#include <iterator>

#include "core/Failure.h"
#include "core/MessagePump.h"
#include "core/String.h"

namespace korb {

namespace {

struct Meaning {
  int32_t code;
  const char *text;
};

constexpr Meaning kMeanings[] = {
    {9, "the archive's section has no place in the file"},
    {10, "the archive's section can't be reached"},
    {19, "the shortest time of a step is above 9,999 milliseconds"},
    {20, "the archive's header has another magic number"},
    {21, "the volumes have no name"},
    {22, "the size of the configuration is out of range"},
    {23, "the place of the uninstaller's patch is out of range"},
    {24, "the number of licence pages is out of range"},
    {25, "the configuration fails its checksum"},
    {26, "the number of readme pages is out of range"},
    {27, "the number of files is negative"},
    {28, "the table of file sizes is out of range"},
    {29, "the size of the payload is negative"},
    {30, "the number of languages is out of range"},
    {31, "the number of texts is out of range"},
    {32, "the configuration has no proper end"},
    {35, "the program part can't be read"},
    {36, "the number of associations is out of range"},
    {37, "the number of uninstall values is out of range"},
    {38, "the list of old files has no end"},
    {40, "the program part fails its checksum"},
    {42, "what stands behind the archive can't be read"},
    {43, "the PE header is out of place"},
    {44, "the number of sections is out of range"},
    {45, "the length of the archive is negative"},
    {47, "the configuration can't be unpacked"},
    {50, "a volume can't be read"},
    {55, "the payload fails its checksum"},
    {60, "the payload can't be unpacked"},
    {65, "the condition of an old file has no valid date"},
    {70, "a file has no name"},
    {71, "the size of a file is negative"},
    {72, "the size of a file is above 1 GiB"},
    {100, "a file fails its checksum"},
    {110, "a file's kind has no folder"},
};

std::string Formatted(const char *format, const FormatArgs &args) {
  String text;
  AppendFormat(text, format, args);
  return text.c_str();
}

} // namespace

void ExitInstaller() {
  throw packer::ReportedDamage{"the reader gave up", 0};
}

void CancelInstall() {
  ExitInstaller();
}

void FatalMessage(const char *text) {
  throw packer::ReportedDamage{text, 0};
}

void FatalFormatArgs(const char *format, const FormatArgs &args) {
  throw packer::ReportedDamage{Formatted(format, args), 0};
}

void InternalError(const char *module, int32_t line) {
  throw packer::ReportedDamage{std::string("internal error ") + module + " " + std::to_string(line), 0};
}

void CorruptInstaller(int32_t code) {
  const auto found = std::find_if(std::begin(kMeanings), std::end(kMeanings),
                                  [&](const Meaning &meaning) { return meaning.code == code; });
  throw packer::ReportedDamage{found == std::end(kMeanings) ? "damage" : found->text, code};
}

void UsageError(const char *text) {
  FatalMessage(text);
}

void ReportErrorArgs(const char *format, const FormatArgs &args) {
  FatalFormatArgs(format, args);
}

bool PumpMessages() {
  return false;
}

} // namespace korb
