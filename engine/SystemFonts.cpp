#include "engine/SystemFonts.h"

#include "core/Windows.h"

namespace korb {

bool AddSystemFont(const char *name) {
  return AddFontResourceA(name) != 0;
}

void TellOfFonts() {
  SendMessageA(HWND_BROADCAST, WM_FONTCHANGE, 0, 0);
}

} // namespace korb
