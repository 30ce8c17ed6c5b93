#include "files/LastError.h"

#include "core/Windows.h"

namespace korb {

namespace {

constexpr DWORD kUserLanguage = 0x400;

char *SystemText = nullptr; ///< made by the system, freed here

} // namespace

const char *LastErrorText() {
  const DWORD code = GetLastError();
  if (code == 0)
    return "";
  if (SystemText) {
    LocalFree(SystemText);
    SystemText = nullptr;
  }
  FormatMessageA(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM, nullptr, code, kUserLanguage,
                 reinterpret_cast<char *>(&SystemText), 0, nullptr);
  return SystemText ? SystemText : "";
}

uint32_t LastErrorCode() {
  return GetLastError();
}

void SetLastErrorCode(uint32_t code) {
  SetLastError(code);
}

void ClearLastError() {
  SetLastError(0);
}

} // namespace korb
