// The packer's side of core/Failure.h: every report unwinds to whoever reads an installer. Nothing else stands here: a
// program that brings reports of its own must be able to do without this file.
#include "packer/read/ReportedDamage.h"

#include <algorithm>
#include <iterator>

#include "core/Failure.h"
#include "core/MessagePump.h"
#include "core/String.h"
#include "format/Damage.h"

namespace korb {

namespace {

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

void CorruptInstaller(DamageCode code) {
  const auto found = std::find_if(std::begin(kDamageWords), std::end(kDamageWords),
                                  [&](const DamageWords &words) { return words.code == code; });
  throw packer::ReportedDamage{found == std::end(kDamageWords) ? "damage" : found->text, static_cast<int32_t>(code)};
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

void ShowPendingProgress() {}

} // namespace korb
