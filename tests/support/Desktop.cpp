#include "tests/support/Desktop.h"

#include <stdexcept>

#include <commctrl.h>

namespace korb::test {

namespace {

constexpr UINT kAnswerTime = 2000; // for a program that does not answer any more

std::string TextOf(HWND handle) {
  std::string text(65536, '\0');
  DWORD_PTR length = 0;
  SendMessageTimeoutA(handle, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()), SMTO_ABORTIFHUNG,
                      kAnswerTime, &length);
  text.resize(length);
  return text;
}

std::string KindOf(HWND handle) {
  char name[100];
  return std::string(name, static_cast<size_t>(GetClassNameA(handle, name, sizeof name)));
}

std::string WithoutAccessKey(const std::string &text) {
  std::string plain;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '&' && i + 1 < text.size())
      ++i;
    plain += text[i];
  }
  return plain;
}

BOOL CALLBACK AddControl(HWND handle, LPARAM controls) {
  if (IsWindowVisible(handle)) {
    const std::string kind = KindOf(handle), text = TextOf(handle);
    reinterpret_cast<std::vector<Control> *>(controls)->push_back({handle, GetDlgCtrlID(handle) & 0xFFFF, kind,
                                                                   kind == "Button" ? WithoutAccessKey(text) : text,
                                                                   IsWindowEnabled(handle) != FALSE});
  }
  return TRUE;
}

BOOL CALLBACK AddWindow(HWND handle, LPARAM windows) {
  if (IsWindowVisible(handle) && IsWindowEnabled(handle)) {
    Window window{handle, 0, TextOf(handle), {}};
    GetWindowThreadProcessId(handle, &window.process);
    EnumChildWindows(handle, AddControl, reinterpret_cast<LPARAM>(&window.controls));
    if (!window.controls.empty())
      reinterpret_cast<std::vector<Window> *>(windows)->push_back(window);
  }
  return TRUE;
}

bool Contains(const Window &window, const std::string &words) {
  if (window.title.find(words) != std::string::npos)
    return true;
  for (const Control &control : window.controls)
    if (control.text.find(words) != std::string::npos)
      return true;
  return false;
}

BOOL CALLBACK FindBar(HWND handle, LPARAM bar) {
  if (KindOf(handle) != PROGRESS_CLASSA)
    return TRUE;
  *reinterpret_cast<HWND *>(bar) = handle;
  return FALSE;
}

BOOL CALLBACK FindBarOfWindow(HWND handle, LPARAM bar) {
  EnumChildWindows(handle, FindBar, bar);
  return *reinterpret_cast<HWND *>(bar) == nullptr;
}

void CALLBACK TakeAnswer(HWND, UINT, ULONG_PTR answer, LRESULT result) {
  *reinterpret_cast<LRESULT *>(answer) = result;
}

} // namespace

bool WaitUntil(int milliseconds, const std::function<bool()> &done) {
  for (const DWORD start = GetTickCount(); !done(); Sleep(10))
    if (GetTickCount() - start > static_cast<DWORD>(milliseconds))
      return false;
  return true;
}

const Control *Window::Find(const std::string &text_or_id) const {
  for (const Control &control : controls)
    if (control.text == text_or_id)
      return &control;
  for (const Control &control : controls)
    if (std::to_string(control.id) == text_or_id)
      return &control;
  return nullptr;
}

std::string Window::Text(int id) const {
  for (const Control &control : controls)
    if (control.id == id)
      return control.text;
  return std::string();
}

std::string Window::Describe() const {
  std::string lines = "[" + title + "]\n";
  for (const Control &control : controls)
    lines += "  " + control.kind + " " + std::to_string(control.id) + (control.enabled ? "" : " (disabled)") + ": " +
             control.text + "\n";
  return lines;
}

std::vector<Window> OpenWindows() {
  std::vector<Window> windows;
  EnumWindows(AddWindow, reinterpret_cast<LPARAM>(&windows));
  return windows;
}

std::optional<Window> WaitForWindow(const std::string &words, int milliseconds) {
  std::optional<Window> found;
  WaitUntil(milliseconds, [&] {
    for (const Window &window : OpenWindows())
      if (!found && Contains(window, words))
        found = window;
    return found.has_value();
  });
  return found;
}

bool Click(const Window &window, const std::string &button) {
  const Control *control = window.Find(button);
  if (!control || control->kind != "Button" || !control->enabled)
    return false;
  PostMessageA(control->handle, BM_CLICK, 0, 0);
  const LONG style = GetWindowLongA(control->handle, GWL_STYLE) & BS_TYPEMASK;
  if (style == BS_PUSHBUTTON || style == BS_DEFPUSHBUTTON)
    WaitUntil(2000, [&] { return !IsWindow(window.handle) || !IsWindowEnabled(window.handle); });
  return true;
}

Window AnswerWindow(const std::string &words, const std::string &button) {
  const std::optional<Window> window = WaitForWindow(words);
  if (!window || !Click(*window, button))
    throw std::runtime_error(window ? "no button " + button + " in " + window->Describe() : "no window: " + words);
  return *window;
}

bool SetText(const Window &window, int id, const std::string &value) {
  const Control *control = window.Find(std::to_string(id));
  DWORD_PTR done = FALSE;
  return control &&
         SendMessageTimeoutA(control->handle, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(value.c_str()), SMTO_ABORTIFHUNG,
                             kAnswerTime, &done) &&
         done;
}

bool Choose(const Window &window, int id, const std::string &entry) {
  const Control *control = window.Find(std::to_string(id));
  if (!control)
    return false;
  const LRESULT at = SendMessageA(control->handle, LB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                                  reinterpret_cast<LPARAM>(entry.c_str()));
  if (at < 0)
    return false;
  SendMessageA(control->handle, LB_SETCURSEL, static_cast<WPARAM>(at), 0);
  SendMessageA(GetParent(control->handle), WM_COMMAND, static_cast<WPARAM>(MAKELONG(id, LBN_SELCHANGE)),
               reinterpret_cast<LPARAM>(control->handle));
  return true;
}

void Press(int key, int held) {
  const auto turn = [](int which, DWORD way) {
    if (which != 0)
      keybd_event(static_cast<BYTE>(which), static_cast<BYTE>(MapVirtualKeyA(static_cast<UINT>(which), 0)), way, 0);
  };
  turn(held, 0);
  turn(key, 0);
  turn(key, KEYEVENTF_KEYUP);
  turn(held, KEYEVENTF_KEYUP);
}

bool WaitForFocus(int id) {
  return WaitUntil(2000, [&] {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    return GetGUIThreadInfo(0, &info) && info.hwndFocus && GetDlgCtrlID(info.hwndFocus) == id;
  });
}

std::string ShownProgress(const std::function<void()> &release) {
  HWND bar = nullptr;
  EnumWindows(FindBarOfWindow, reinterpret_cast<LPARAM>(&bar));
  if (!bar)
    return {};
  char text[300] = ""; // the system keeps it, so the program need not answer
  GetWindowTextA(GetDlgItem(GetParent(bar), 1011), text, sizeof text);
  // A program handles what it is sent before all else that waits for it.
  LRESULT place = -1;
  SendMessageCallbackA(bar, PBM_GETPOS, 0, 0, TakeAnswer, reinterpret_cast<ULONG_PTR>(&place));
  release();
  WaitUntil(2000, [&] {
    MSG message;
    PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE);
    return place >= 0;
  });
  return text + (" " + std::to_string(place));
}

bool WaitForProgress(const std::string &state) {
  return WaitUntil(20000, [&] { return ShownProgress() == state; });
}

} // namespace korb::test
