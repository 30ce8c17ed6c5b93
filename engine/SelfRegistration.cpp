#include "engine/SelfRegistration.h"

#include "core/Windows.h"
#include "engine/ComSession.h"

namespace korb {

namespace {

/// Handles below this are error codes of old systems.
constexpr uintptr_t kFirstModule = 0x20;

ServerCall CallFunction(HMODULE library, const char *function) {
  if (reinterpret_cast<uintptr_t>(library) < kFirstModule)
    return ServerCall::NotLoaded;
  const auto call = reinterpret_cast<HRESULT(STDAPICALLTYPE *)()>(GetProcAddress(library, function));
  if (!call)
    return ServerCall::NoFunction;
  call();
  return ServerCall::Called;
}

/// In the order of ServerCall.
constexpr const char *kOutcomes[] = {"LoadLibrary() Failed\r\n", "GetProcAddress() Failed\r\n", "OK\r\n"};

} // namespace

ServerCall CallServer(const char *path, const char *function) {
  const UINT mode = SetErrorMode(SEM_FAILCRITICALERRORS);
  const HMODULE library = LoadLibraryA(path);
  SetErrorMode(mode);
  const ServerCall outcome = CallFunction(library, function);
  FreeLibrary(library);
  return outcome;
}

void UnregisterServer(const char *path) {
  ComSession session;
  CallServer(path, "DllUnregisterServer");
}

void RegisterComFiles(const Vector<String> &com_files, String &log_text) {
  if (com_files.is_empty())
    return;
  ComSession session;
  for (int32_t i = 0; i < com_files.count; ++i) {
    const String &path = com_files.at(i);
    log_text.append_format("Registering COM File \"%s\"...", path);
    log_text += kOutcomes[static_cast<int32_t>(CallServer(path, "DllRegisterServer"))];
  }
}

} // namespace korb
