#include "core/MessagePump.h"

#include "core/Windows.h"
#include "ui/Progress.h"

namespace korb {

bool PumpMessages() {
  MSG message;
  while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
    TranslateMessage(&message);
    DispatchMessageA(&message);
    if (message.message == WM_DESTROY || message.message == WM_CLOSE || message.message == WM_QUIT)
      return true;
  }
  return false;
}

void ShowPendingProgress() {
  FlushProgress();
}

} // namespace korb
