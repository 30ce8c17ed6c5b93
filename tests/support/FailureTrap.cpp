#include "tests/support/FailureTrap.h"

#include "core/Failure.h"
#include "core/MessagePump.h"
#include "core/String.h"

namespace korb {

namespace test {

int PumpCount = 0;

void ClearTrap() {
  PumpCount = 0;
}

namespace {

std::string Text(const char *format, const FormatArgs &args) {
  String text;
  AppendFormat(text, format, args);
  return text.c_str();
}

} // namespace
} // namespace test

void ExitInstaller() {
  throw test::TrappedFailure{};
}

void CancelInstall() {
  throw test::TrappedFailure{};
}

void FatalMessage(const char *text) {
  throw test::TrappedFailure{text};
}

void FatalFormatArgs(const char *format, const FormatArgs &args) {
  throw test::TrappedFailure{test::Text(format, args)};
}

void InternalError(const char *module, int32_t line) {
  throw test::TrappedFailure{std::string("internal error ") + module + " " + std::to_string(line)};
}

void CorruptInstaller(DamageCode damage) {
  const auto code = static_cast<int32_t>(damage);
  throw test::TrappedFailure{"corrupt " + std::to_string(code), code};
}

void UsageError(const char *text) {
  throw test::TrappedFailure{text};
}

void ReportErrorArgs(const char *, const FormatArgs &) {}

bool PumpMessages() {
  ++test::PumpCount;
  return false;
}

void ShowPendingProgress() {}

} // namespace korb
