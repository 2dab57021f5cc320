// letters.h: sizes and letters of boxes and forms on the screen at hand.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <utility>

#include "orv2_geo/frame/text.h"

namespace orv2_geo::win32 {

/// From twips, and from pixels at 96 dots per inch, to those of the screen.
class Scale {
 public:
  /// Of the screen as this process sees it.
  static Scale of_screen();

  int pixels(std::int32_t twips) const;
  int grown(int pixels_at_96) const;

  /// The height of letters of that many points, as fonts are asked for.
  int letter_height(double points) const;

 private:
  explicit Scale(int dots_per_inch) : dots_per_inch_(dots_per_inch) {}
  int dots_per_inch_;
};

/// A font, given back at the end.
class Letters {
 public:
  explicit Letters(const LOGFONTW& description) : font_(CreateFontIndirectW(&description)) {}
  Letters(Letters&& other) noexcept : font_(std::exchange(other.font_, nullptr)) {}
  Letters& operator=(Letters&&) = delete;
  ~Letters() {
    if (font_ != nullptr) DeleteObject(font_);
  }

  HFONT font() const noexcept { return font_; }

  /// The room that the text takes, its line breaks obeyed.
  SIZE room_for(const std::wstring& text) const;
  int height() const { return static_cast<int>(room_for(L"Ag").cy); }

 private:
  HFONT font_;
};

/// The letters of the system's messages, no higher than those that the places of a
/// form's controls are made for: 8.25 points.
Letters form_letters(const Scale& scale);

/// `text` as the system takes it. It ends its texts with a zero; one inside the text
/// becomes a blank, so that what stands behind it is shown too.
std::wstring shown(const Text& text);

}  // namespace orv2_geo::win32
