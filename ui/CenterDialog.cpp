#include "ui/CenterDialog.h"

namespace korb {

namespace {

/// Fits `size` into the screen and gives where it starts.
int Center(int screen, int &size) {
  if (size > screen)
    size = screen;
  return (screen - size) >> 1;
}

} // namespace

void CenterDialog(HWND window) {
  RECT rect;
  GetWindowRect(window, &rect);
  int width = rect.right - rect.left + 1;
  int height = rect.bottom - rect.top + 1;
  const int x = Center(GetSystemMetrics(SM_CXSCREEN), width);
  const int y = Center(GetSystemMetrics(SM_CYSCREEN), height);
  MoveWindow(window, x, y, width, height, TRUE);
}

} // namespace korb
