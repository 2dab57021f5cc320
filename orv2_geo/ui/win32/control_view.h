// control_view.h: a control of the form model as a control of the system.
#pragma once

#include <windows.h>

#include <memory>
#include <optional>
#include <string>

#include "orv2_geo/platform/form.h"
#include "orv2_geo/ui/win32/letters.h"

namespace orv2_geo::win32 {

/// What the controls of one form have in common.
struct Surroundings {
  const Form& form;
  HWND window;
  const Scale& scale;
  const Letters& letters;
};

/// The system's control of one control. It ends with its window, not with this.
class ControlView {
 public:
  ControlView(const Surroundings& around, Control& control) : around_(around), control_(control) {}
  virtual ~ControlView() = default;
  ControlView(const ControlView&) = delete;
  ControlView& operator=(const ControlView&) = delete;

  Control& control() const noexcept { return control_; }
  const ControlDesign& design() const noexcept { return control_.design(); }
  HWND window() const noexcept { return window_; }

  /// Whether the control is shown, and whether the person can use it; what its container
  /// is not it is not either.
  bool is_seen() const { return with_containers(&Control::visible); }
  bool can_act() const { return is_seen() && with_containers(&Control::enabled); }

  /// Brings text, value and the like to the control's.
  virtual void show_content() = 0;

  /// A label draws itself; so does each row of a grid.
  virtual void draw(const DRAWITEMSTRUCT&) {}
  virtual std::optional<LRESULT> notified(NMHDR&) { return std::nullopt; }

 protected:
  /// Makes the control's window, at the place of the design or the one given.
  void make(const wchar_t* kind, DWORD style, DWORD more_style = 0);
  void make_at(const RECT& place, const wchar_t* kind, DWORD style, DWORD more_style);

  /// Its place on the form, those of its containers counted in.
  RECT place() const;

  /// Writes the caption, unless it is there already.
  void write(const std::wstring& text);

  const Scale& scale() const noexcept { return around_.scale; }
  const Letters& letters() const noexcept { return around_.letters; }

 private:
  bool with_containers(bool (Control::*property)() const noexcept) const;

  Surroundings around_;
  Control& control_;
  HWND window_ = nullptr;
  std::wstring written_;
};

/// The view of a control of any kind.
std::unique_ptr<ControlView> make_view(const Surroundings& around, Control& control);

/// The view of a grid: a list in columns, whose cells can be selected and copied.
std::unique_ptr<ControlView> make_grid_view(const Surroundings& around, Control& control);

}  // namespace orv2_geo::win32
