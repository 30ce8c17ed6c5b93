#include "ui/BackgroundWindow.h"

#include "archive/InstallConfig.h"
#include "core/Failure.h"
#include "core/RunValues.h"
#include "core/Text.h"
#include "files/SystemFunction.h"
#include "format/Texts.h"
#include "ui/PaintGradient.h"
#include "ui/TextLookup.h"
#include "ui/WindowHandles.h"

#include <imm.h>

namespace korb {

String MainTitle;
DibImage BackgroundImage;

namespace {

constexpr const char *kClassName = "KRB Window Class";
constexpr int kLargestTitle = 26; // points
constexpr int kSmallestTitle = 6;
constexpr int kTitleLeft = 2;
constexpr int kWideRoom = 2048; ///< UTF-16 units, more than a screen has room for

/// The window's; it is made with them and never painted without.
const Looks *window_looks = nullptr;

void PaintBackground(HWND window, HDC hdc) {
  RECT rect;
  GetClientRect(window, &rect);
  if (!BackgroundImage.is_empty() && BackgroundImage.has_all_pixels())
    BackgroundImage.draw(hdc, rect, SRCCOPY);
  else if (window_looks->mono_color)
    FillColor(hdc, rect, window_looks->top_color);
  else
    PaintGradient(hdc, window_looks->top_color, rect, window_looks->bottom_color);
}

HFONT TitleFont(int height) {
  return CreateFontA(height, 0, 0, 0, FW_BOLD, TRUE, FALSE, FALSE, DEFAULT_CHARSET, OUT_TT_PRECIS, CLIP_DEFAULT_PRECIS,
                     PROOF_QUALITY, DEFAULT_PITCH, "Times New Roman");
}

/// What a text is in UTF-16, and how many units that are, 0 where there are too many: bytes would be drawn in the
/// system's code page, though the program may have asked for UTF-8.
WCHAR wide_text[kWideRoom];
int MakeWide(const char *text, int length) {
  return MultiByteToWideChar(CP_ACP, 0, text, length, wide_text, kWideRoom);
}

/// The largest size in which all of the title, taken as one line, is no wider than the window. The font is left
/// selected and is the caller's; `old_font` is what was selected before, `height` the font's in pixels.
HFONT SelectTitleFont(HDC hdc, int width, HGDIOBJ &old_font, int &height) {
  const int length = MakeWide(MainTitle, MainTitle.length());
  for (int size = kLargestTitle;; --size) {
    height = GetDeviceCaps(hdc, LOGPIXELSY) * size / 72;
    const HFONT font = TitleFont(height);
    old_font = SelectObject(hdc, font);
    SIZE extent;
    if (size <= kSmallestTitle ||
        (GetTextExtentPoint32W(hdc, wide_text, length, &extent) && extent.cx + kTitleLeft < width))
      return font;
    SelectObject(hdc, old_font);
    DeleteObject(font);
  }
}

void DrawTitleLines(HDC hdc, int x, int y, int line_height, const String &text) {
  for (int32_t start = 0; start < text.length(); y += line_height) {
    int32_t next = text.find_line_end(start);
    if (next < 0)
      next = text.length();
    int32_t end = next;
    while (end > start && is_space(text.char_at(end - 1)))
      --end;
    TextOutW(hdc, x, y, wide_text, MakeWide(text.c_str() + start, end - start));
    start = next;
  }
}

void PaintTitle(HWND window, HDC hdc) {
  if (MainTitle.is_empty())
    return;
  RECT rect;
  GetClientRect(window, &rect);
  HGDIOBJ old_font;
  int height;
  const HFONT font = SelectTitleFont(hdc, rect.right, old_font, height);
  SetBkMode(hdc, TRANSPARENT);
  const int shadow = window_looks->title_shadow;
  if (shadow != 0) {
    SetTextColor(hdc, RGB(0, 0, 0));
    DrawTitleLines(hdc, shadow + kTitleLeft, shadow, height, MainTitle);
  }
  SetTextColor(hdc, window_looks->title_color);
  DrawTitleLines(hdc, kTitleLeft, 0, height, MainTitle);
  SelectObject(hdc, old_font);
  DeleteObject(font);
}

LRESULT CALLBACK MainWindowProcedure(HWND window, UINT message, WPARAM word, LPARAM value) {
  if (message == WM_ERASEBKGND) {
    PaintBackground(window, reinterpret_cast<HDC>(word));
    return 1;
  }
  if (message == WM_PAINT) {
    PAINTSTRUCT paint;
    PaintTitle(window, BeginPaint(window, &paint));
    EndPaint(window, &paint);
    return 0;
  }
  return DefWindowProcA(window, message, word, value);
}

void RegisterMainClass(HINSTANCE instance) {
  static bool registered = false;
  if (registered)
    return;
  WNDCLASSA kind{};
  kind.style = CS_HREDRAW | CS_VREDRAW;
  kind.lpfnWndProc = MainWindowProcedure;
  kind.hInstance = instance;
  kind.lpszClassName = kClassName;
  if (RegisterClassA(&kind) == 0)
    InternalError("Installer", 54);
  registered = true;
}

/// Where nothing is typed: the first window that is shown would set them up, which takes as long as fifty small files.
void DoWithoutInputMethods() {
  const auto disable = KORB_SYSTEM_FUNCTION("imm32.dll", ImmDisableIME);
  if (disable)
    disable(0); // for this thread
}

} // namespace

Looks SystemLooks() {
  Looks looks;
  looks.title_color = GetSysColor(COLOR_WINDOWTEXT);
  looks.top_color = GetSysColor(COLOR_WINDOW);
  return looks;
}

void CreateMainWindow(HINSTANCE instance, HWND parent, const Looks &looks) {
  window_looks = &looks;
  if (AutomaticMode || UninstallMode)
    DoWithoutInputMethods();
  RegisterMainClass(instance);
  MainWindow = CreateWindowExA(0, kClassName, "", WS_POPUP, 0, 0, 0, 0, parent, nullptr, instance, nullptr);
  if (!MainWindow)
    FatalMessage("Failed to create the window.  Please reboot your machine and try again.");
  ShowWindow(MainWindow, SW_HIDE);
  ShowWindow(MainWindow, SW_MAXIMIZE);
  SetForegroundWindow(MainWindow);
  SetActiveWindow(MainWindow);
  InvalidateRect(MainWindow, nullptr, TRUE);
}

void ShowMainTitle() {
  MainTitle = TextLookup(kTextMainTitle);
  if (MainWindow)
    InvalidateRect(MainWindow, nullptr, TRUE);
}

} // namespace korb
