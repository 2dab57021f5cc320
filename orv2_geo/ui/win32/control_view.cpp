#include "orv2_geo/ui/win32/control_view.h"

#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <cmath>

namespace orv2_geo::win32 {

namespace {

UINT drawn_alignment(CellAlignment alignment) {
  switch (alignment) {
    case CellAlignment::centre: return DT_CENTER;
    case CellAlignment::right: return DT_RIGHT;
    case CellAlignment::left: break;
  }
  return DT_LEFT;
}

// ---- Labels ----------------------------------------------------------------

COLORREF colour_of(std::int32_t background) {
  return RGB(background >> 16 & 0xff, background >> 8 & 0xff, background & 0xff);
}

bool is_dark(COLORREF colour) {
  return 299 * GetRValue(colour) + 587 * GetGValue(colour) + 114 * GetBValue(colour) < 128 * 1000;
}

class LabelView final : public ControlView {
 public:
  LabelView(const Surroundings& around, Control& control) : ControlView(around, control) {
    make(WC_STATICW, SS_OWNERDRAW | SS_NOTIFY);
  }

  void show_content() override {
    text_ = shown(control().text());
    write(text_);
    if (design().sizes_itself) fit_to_text();
    InvalidateRect(window(), nullptr, TRUE);
  }

  void draw(const DRAWITEMSTRUCT& item) override {
    const bool coloured = design().background >= 0;
    const COLORREF ground = coloured ? colour_of(design().background) : GetSysColor(COLOR_3DFACE);
    const COLORREF ink = coloured ? (is_dark(ground) ? RGB(255, 255, 255) : RGB(0, 0, 0))
                                  : GetSysColor(COLOR_BTNTEXT);
    SetBkColor(item.hDC, ground);
    ExtTextOutW(item.hDC, 0, 0, ETO_OPAQUE, &item.rcItem, nullptr, 0, nullptr);
    SetTextColor(item.hDC, IsWindowEnabled(window()) ? ink : GetSysColor(COLOR_GRAYTEXT));
    SetBkMode(item.hDC, TRANSPARENT);
    const HGDIOBJ before = SelectObject(item.hDC, letters().font());
    RECT inside = item.rcItem;
    InflateRect(&inside, -margin().cx, -margin().cy);
    const UINT lines = design().sizes_itself ? 0 : DT_WORDBREAK;
    DrawTextW(item.hDC, text_.c_str(), static_cast<int>(text_.size()), &inside,
              drawn_alignment(design().alignment) | DT_NOPREFIX | lines);
    SelectObject(item.hDC, before);
  }

 private:
  // Around the text of a coloured label.
  SIZE margin() const {
    if (design().background < 0) return {0, 0};
    return {scale().grown(4), scale().grown(2)};
  }

  // It holds the edge, or the middle, that its text is aligned to.
  void fit_to_text() {
    const SIZE text = letters().room_for(text_);
    const RECT designed = place();
    const int width = static_cast<int>(text.cx + 2 * margin().cx);
    const int height = static_cast<int>(text.cy + 2 * margin().cy);
    int left = static_cast<int>(designed.left);
    const int to_spare = static_cast<int>(designed.right - designed.left) - width;
    if (design().alignment == CellAlignment::centre) left += to_spare / 2;
    if (design().alignment == CellAlignment::right) left += to_spare;
    SetWindowPos(window(), nullptr, left, static_cast<int>(designed.top), width, height,
                 SWP_NOZORDER | SWP_NOACTIVATE);
  }

  std::wstring text_;
};

// ---- Text boxes ------------------------------------------------------------

class TextBoxView final : public ControlView {
 public:
  TextBoxView(const Surroundings& around, Control& control) : ControlView(around, control) {
    make(WC_EDITW, ES_AUTOHSCROLL | WS_TABSTOP, WS_EX_CLIENTEDGE);
    SendMessageW(window(), EM_SETLIMITTEXT, 0, 0);
  }

  // What stands there already stays, and the cursor in it.
  void show_content() override {
    const std::wstring text = shown(control().text());
    std::wstring there(static_cast<std::size_t>(GetWindowTextLengthW(window())), L'\0');
    GetWindowTextW(window(), there.data(), static_cast<int>(there.size()) + 1);
    if (there != text) SetWindowTextW(window(), text.c_str());
  }
};

// ---- Buttons of all kinds, frames ------------------------------------------

// In a caption a single ampersand would underline the letter behind it.
std::wstring caption_of(const Control& control) {
  std::wstring caption;
  for (const wchar_t unit : shown(control.text())) caption.append(unit == L'&' ? 2 : 1, unit);
  return caption;
}

class ButtonView final : public ControlView {
 public:
  ButtonView(const Surroundings& around, Control& control, DWORD style)
      : ControlView(around, control), is_choice_(style != BS_PUSHBUTTON && style != BS_GROUPBOX) {
    const DWORD takes_focus = style != BS_GROUPBOX ? BS_NOTIFY | WS_TABSTOP : 0;
    make_at(is_choice_ ? with_height() : place(), WC_BUTTONW, style | takes_focus, 0);
  }

  void show_content() override {
    write(caption_of(control()));
    if (!is_choice_) return;
    const WPARAM state = control().value() != 0.0 ? BST_CHECKED : BST_UNCHECKED;
    if (static_cast<WPARAM>(SendMessageW(window(), BM_GETCHECK, 0, 0)) != state) {
      SendMessageW(window(), BM_SETCHECK, state, 0);
    }
  }

 private:
  // Letters are not cut off where the design leaves them little height.
  RECT with_height() const {
    RECT room = place();
    const int more =
        letters().height() + scale().grown(2) - static_cast<int>(room.bottom - room.top);
    if (more > 0) {
      room.top -= more / 2;
      room.bottom += more - more / 2;
    }
    return room;
  }

  bool is_choice_;
};

// ---- Progress bars ---------------------------------------------------------

constexpr int progress_steps = 1000;

int step_of(const Control& control) {
  const double done = (control.value() - control.min()) / (control.max() - control.min());
  if (std::isnan(done)) return 0;
  return static_cast<int>(std::clamp(done, 0.0, 1.0) * progress_steps);
}

class ProgressView final : public ControlView {
 public:
  ProgressView(const Surroundings& around, Control& control) : ControlView(around, control) {
    make(PROGRESS_CLASSW, PBS_SMOOTH);
    SendMessageW(window(), PBM_SETRANGE32, 0, progress_steps);
  }

  void show_content() override {
    const int step = step_of(control());
    if (step == step_) return;
    step_ = step;
    SendMessageW(window(), PBM_SETPOS, static_cast<WPARAM>(step), 0);
    UpdateWindow(window());
  }

 private:
  int step_ = 0;
};

}  // namespace

void ControlView::make(const wchar_t* kind, DWORD style, DWORD more_style) {
  make_at(place(), kind, style, more_style);
}

void ControlView::make_at(const RECT& place, const wchar_t* kind, DWORD style, DWORD more_style) {
  window_ = CreateWindowExW(more_style, kind, L"", style | WS_CHILD, static_cast<int>(place.left),
                            static_cast<int>(place.top), static_cast<int>(place.right - place.left),
                            static_cast<int>(place.bottom - place.top), around_.window, nullptr,
                            nullptr, nullptr);
  SendMessageW(window_, WM_SETFONT, reinterpret_cast<WPARAM>(letters().font()), FALSE);
}

RECT ControlView::place() const {
  std::int32_t left = design().left;
  std::int32_t top = design().top;
  for (std::string_view name = design().container; !name.empty();) {
    const ControlDesign& container = around_.form.control(name).design();
    left += container.left;
    top += container.top;
    name = container.container;
  }
  const auto at = [&](std::int32_t twips) { return static_cast<LONG>(scale().pixels(twips)); };
  return {at(left), at(top), at(left) + at(design().width), at(top) + at(design().height)};
}

void ControlView::write(const std::wstring& text) {
  if (text == written_) return;
  SetWindowTextW(window_, text.c_str());
  written_ = text;
}

bool ControlView::with_containers(bool (Control::*property)() const noexcept) const {
  const Control* control = &control_;
  while ((control->*property)()) {
    if (control->design().container.empty()) return true;
    control = &around_.form.control(control->design().container);
  }
  return false;
}

std::unique_ptr<ControlView> make_view(const Surroundings& around, Control& control) {
  const auto button = [&](DWORD style) {
    return std::make_unique<ButtonView>(around, control, style);
  };
  switch (control.design().kind) {
    case ControlKind::text_box: return std::make_unique<TextBoxView>(around, control);
    case ControlKind::check_box: return button(BS_CHECKBOX);
    case ControlKind::option_button: return button(BS_AUTORADIOBUTTON);
    case ControlKind::button: return button(BS_PUSHBUTTON);
    case ControlKind::frame: return button(BS_GROUPBOX);
    case ControlKind::progress_bar: return std::make_unique<ProgressView>(around, control);
    case ControlKind::grid: return make_grid_view(around, control);
    case ControlKind::label: break;
  }
  return std::make_unique<LabelView>(around, control);
}

}  // namespace orv2_geo::win32
