// Areas of colour. Colours are 0x00BBGGRR.
#pragma once

#include "core/Windows.h"

namespace korb {

void FillColor(HDC hdc, const RECT &rect, COLORREF color);

/// Fills `rect` from its top in `top_color` to its bottom in `bottom_color`: by the system where it can, else by
/// PaintBands.
void PaintGradient(HDC hdc, COLORREF top_color, const RECT &rect, COLORREF bottom_color);

/// The same in bands of one to three pixels, in some 224 shades. The first one is a step past `top_color` already; one
/// more column than `rect` is painted.
void PaintBands(HDC hdc, COLORREF top_color, RECT rect, COLORREF bottom_color);

} // namespace korb
