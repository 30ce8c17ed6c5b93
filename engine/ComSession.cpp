#include "engine/ComSession.h"

#include "core/MessagePump.h"
#include "files/SystemFunction.h"

#include <objbase.h>

namespace korb {

namespace {

constexpr const char *kLibrary = "ole32.dll";

} // namespace

ComSession::ComSession() {
  ShowPendingProgress(); // a library is loaded here, and a product's own code run after it
  const auto start = KORB_SYSTEM_FUNCTION(kLibrary, CoInitialize);
  started_ = start && SUCCEEDED(start(nullptr));
}

/// What was there a moment ago may be refused by now.
ComSession::~ComSession() {
  if (!started_)
    return;
  if (const auto end = KORB_SYSTEM_FUNCTION(kLibrary, CoUninitialize))
    end();
}

void *ComSession::Create(const CLSID &object, const IID &interface_id) {
  void *made = nullptr;
  if (!started_)
    return made;
  if (const auto create = KORB_SYSTEM_FUNCTION(kLibrary, CoCreateInstance))
    create(object, nullptr, CLSCTX_INPROC_SERVER, interface_id, &made);
  return made;
}

} // namespace korb
