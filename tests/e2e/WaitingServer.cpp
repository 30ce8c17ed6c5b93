// A library that keeps whoever registers it waiting, until its box is answered.
#include "core/Windows.h"

extern "C" HRESULT __stdcall DllRegisterServer() {
  MessageBoxA(nullptr, "registering", "Server", MB_OK);
  return S_OK;
}

extern "C" HRESULT __stdcall DllUnregisterServer() {
  MessageBoxA(nullptr, "unregistering", "Server", MB_OK);
  return S_OK;
}
