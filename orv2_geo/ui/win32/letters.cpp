#include "orv2_geo/ui/win32/letters.h"

#include <algorithm>
#include <cmath>

namespace orv2_geo::win32 {

namespace {

// What texts are measured on.
class ScreenSurface {
 public:
  ScreenSurface() : surface_(GetDC(nullptr)) {}
  ~ScreenSurface() { ReleaseDC(nullptr, surface_); }
  ScreenSurface(const ScreenSurface&) = delete;
  ScreenSurface& operator=(const ScreenSurface&) = delete;

  HDC handle() const noexcept { return surface_; }

 private:
  HDC surface_;
};

constexpr int twips_an_inch = 1440;
constexpr double points_an_inch = 72.0;

}  // namespace

Scale Scale::of_screen() {
  const int dots_per_inch = GetDeviceCaps(ScreenSurface().handle(), LOGPIXELSX);
  return Scale(dots_per_inch > 0 ? dots_per_inch : USER_DEFAULT_SCREEN_DPI);
}

int Scale::pixels(std::int32_t twips) const { return MulDiv(twips, dots_per_inch_, twips_an_inch); }

int Scale::grown(int pixels_at_96) const {
  return MulDiv(pixels_at_96, dots_per_inch_, USER_DEFAULT_SCREEN_DPI);
}

int Scale::letter_height(double points) const {
  return -static_cast<int>(std::lround(points * dots_per_inch_ / points_an_inch));
}

SIZE Letters::room_for(const std::wstring& text) const {
  const ScreenSurface surface;
  const HGDIOBJ before = SelectObject(surface.handle(), font_);
  RECT room{};
  DrawTextW(surface.handle(), text.c_str(), static_cast<int>(text.size()), &room,
            DT_CALCRECT | DT_NOPREFIX);
  SelectObject(surface.handle(), before);
  return {room.right, room.bottom};
}

Letters form_letters(const Scale& scale) {
  NONCLIENTMETRICSW metrics{};
  metrics.cbSize = sizeof(metrics);
  SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, metrics.cbSize, &metrics, 0);
  LOGFONTW description = metrics.lfMessageFont;
  constexpr double points_of_the_design = 8.25;
  const LONG highest = scale.letter_height(points_of_the_design);
  const bool fits = description.lfHeight < 0 && description.lfHeight >= highest;
  if (!fits) description.lfHeight = highest;
  description.lfWidth = 0;
  return Letters(description);
}

std::wstring shown(const Text& text) {
  const std::u16string_view units = text.view();
  std::wstring wide(units.size(), L'\0');
  std::transform(units.begin(), units.end(), wide.begin(),
                 [](char16_t unit) { return unit == u'\0' ? L' ' : static_cast<wchar_t>(unit); });
  return wide;
}

}  // namespace orv2_geo::win32
