// Windows of other programs, as a person sees and uses them.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/Windows.h"

namespace korb::test {

struct Control {
  HWND handle;
  int id;           ///< 65535 for the text of a message box
  std::string kind; ///< window class, "Button" for example
  std::string text; ///< an access key's '&' is left out
  bool enabled;
};

/// A window as it was when it was looked at.
struct Window {
  HWND handle;
  DWORD process;
  std::string title;
  std::vector<Control> controls; ///< the visible ones, those of inner windows too

  /// The control with this text, or with this number; null when there is none.
  const Control *Find(const std::string &text_or_id) const;
  /// The text of a control: empty when there is none.
  std::string Text(int id) const;
  /// What a message box says.
  std::string Message() const { return Text(65535); }
  /// The title, and a line for each control, for people.
  std::string Describe() const;
};

/// True as soon as `done` is; false when it is not after `milliseconds`.
bool WaitUntil(int milliseconds, const std::function<bool()> &done);

/// The windows that a person could use now: visible, enabled, with controls. The topmost first.
std::vector<Window> OpenWindows();

/// The first window whose title or any text contains `words`, as soon as there is one; nothing after `milliseconds`.
std::optional<Window> WaitForWindow(const std::string &words, int milliseconds = 20000);

/// Clicks the button with this text or number, and waits until that has closed or blocked the window, if it does. False
/// when there is no such button, or it is disabled.
bool Click(const Window &window, const std::string &button);

/// Waits for the window with these words, clicks its button, and gives it as it was. Throws std::runtime_error when
/// either fails.
Window AnswerWindow(const std::string &words, const std::string &button);

/// Types `value` over what an edit control holds.
bool SetText(const Window &window, int id, const std::string &value);

/// Picks the entry with this text in a list box. False when it has none.
bool Choose(const Window &window, int id, const std::string &entry);

/// Presses a key of the keyboard, with another one held down when one is named, for whichever window has the focus.
void Press(int key, int held = 0);

/// True as soon as a control with this number has the focus; false when it doesn't come to that.
bool WaitForFocus(int id);

/// What the progress dialog shows, though another window may block it: its step text and the place of its bar,
/// "text 45"; empty when there is none. Where the program is too busy to answer, `release` ends that: the place is the
/// one that was shown until then.
std::string ShownProgress(const std::function<void()> &release = [] {});

/// True as soon as the progress dialog shows this; false when it doesn't come to that.
bool WaitForProgress(const std::string &state);

} // namespace korb::test
