// What the controls of a dialog say.
#pragma once

#include <cstdint>

#include "core/Windows.h"

namespace korb {

void SetControlText(HWND dialog, int32_t control, const char *text);

/// Which text of the archive a control shows.
struct DialogText {
  int8_t control; ///< less kFirstControl; 0: the dialog itself, which shows it as its title
  int8_t number;  ///< below 0: the end of the list
};
inline constexpr int32_t kFirstControl = 1000;

/// One entry of a list; `control` is its number in full, or 0.
constexpr DialogText TextOf(int32_t control, int32_t number) {
  return {static_cast<int8_t>(control != 0 ? control - kFirstControl : 0), static_cast<int8_t>(number)};
}
inline constexpr DialogText kNoMoreTexts{0, -1};

/// Gives controls their texts.
void ShowTexts(HWND dialog, const DialogText *texts);

} // namespace korb
