#include "ui/PaintGradient.h"

#include "core/Arithmetic.h"
#include "files/SystemFunction.h"

namespace korb {

namespace {

using GradientFillFunction = BOOL(WINAPI *)(HDC, TRIVERTEX *, ULONG, void *, ULONG, ULONG);

constexpr int kShades = 224;
constexpr int kWidestBand = 3; // pixels

TRIVERTEX Vertex(LONG x, LONG y, COLORREF color) {
  const auto component = [color](int shift) { return static_cast<COLOR16>((color >> shift & 0xFF) << 8); };
  return {x, y, component(0), component(8), component(16), 0};
}

int32_t Component(COLORREF color, int shift) {
  return static_cast<int32_t>(color >> shift & 0xFF);
}

RationalStepper Steps(COLORREF top_color, COLORREF bottom_color, int shift, int steps) {
  return RationalStepper(Component(top_color, shift) - Component(bottom_color, shift), steps);
}

} // namespace

void FillColor(HDC hdc, const RECT &rect, COLORREF color) {
  const HBRUSH brush = CreateSolidBrush(color);
  FillRect(hdc, &rect, brush);
  DeleteObject(brush);
}

void PaintGradient(HDC hdc, COLORREF top_color, const RECT &rect, COLORREF bottom_color) {
  static const auto fill = reinterpret_cast<GradientFillFunction>(SystemFunction("msimg32.dll", "GradientFill"));
  if (!fill)
    return PaintBands(hdc, top_color, rect, bottom_color);
  TRIVERTEX corners[] = {Vertex(rect.left, rect.top, top_color), Vertex(rect.right, rect.bottom, bottom_color)};
  GRADIENT_RECT area{0, 1};
  fill(hdc, corners, 2, &area, 1, GRADIENT_FILL_RECT_V);
}

void PaintBands(HDC hdc, COLORREF top_color, RECT rect, COLORREF bottom_color) {
  const int height = rect.bottom - rect.top + 1;
  int band = height / kShades;
  band = band < 1 ? 1 : band > kWidestBand ? kWidestBand : band;
  const int steps = height / band;
  int32_t shades[3];
  RationalStepper steppers[] = {Steps(top_color, bottom_color, 0, steps), Steps(top_color, bottom_color, 8, steps),
                                Steps(top_color, bottom_color, 16, steps)};
  for (int i = 0; i < 3; ++i)
    shades[i] = Component(top_color, i * 8);
  ++rect.right;
  const LONG bottom = rect.bottom;
  for (; rect.top < bottom; rect.top += band) {
    COLORREF color = 0;
    for (int i = 0; i < 3; ++i) {
      shades[i] -= steppers[i].next();
      color |= static_cast<COLORREF>(shades[i] & 0xFF) << i * 8;
    }
    rect.bottom = rect.top + band;
    FillColor(hdc, rect, color);
  }
}

} // namespace korb
