// A library that registers itself: its mark is a key of the registry.
#include "core/Windows.h"

namespace {

constexpr char kMark[] = "Software\\Korb Examples\\Atlas registered";

} // namespace

extern "C" HRESULT __stdcall DllRegisterServer() {
  HKEY key;
  if (RegCreateKeyA(HKEY_LOCAL_MACHINE, kMark, &key) != ERROR_SUCCESS)
    return E_FAIL;
  RegCloseKey(key);
  return S_OK;
}

extern "C" HRESULT __stdcall DllUnregisterServer() {
  return RegDeleteKeyA(HKEY_LOCAL_MACHINE, kMark) == ERROR_SUCCESS ? S_OK : E_FAIL;
}
