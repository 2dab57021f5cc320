// form.h: a modal form as data: a table of controls and the routines behind
// their events. Whoever shows it, reads the controls and reports what the
// person did.
#pragma once

#include <cstdint>
#include <exception>
#include <functional>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "orv2_geo/frame/export.h"
#include "orv2_geo/frame/late_bound.h"
#include "orv2_geo/frame/text.h"

namespace orv2_geo {

enum class ControlKind : std::uint8_t {
  label = 0,
  text_box = 1,
  check_box = 2,
  option_button = 3,
  button = 4,
  frame = 5,
  progress_bar = 6,
  grid = 7,
};

/// Cell alignments of a grid's column, all centred vertically.
enum class CellAlignment : std::int16_t { left = 1, centre = 4, right = 7 };

/// Where a form appears: in the middle of its owner, which is the host's window
/// (owner_window.h), or of the screen. In the middle of its owner it stays above that,
/// and is in the middle of the screen where there is none. A form that is centred on
/// the screen has no owner, and stays above all windows.
enum class StartPosition : std::uint8_t { centre_of_owner = 0, centre_of_screen = 1 };

/// One line of a form's design. Places and sizes are in twips; inside a frame
/// they are relative to it.
// In the order in which a table of controls reads, gaps or not.
struct ControlDesign {
  std::string_view name{};  // a member of a control array carries its number: "Opt3D(1)"
  ControlKind kind = ControlKind::label;
  std::int32_t left = 0;
  std::int32_t top = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::int16_t tab_index = 0;
  std::u16string_view text{};
  std::string_view container{};  // empty: the form itself
  bool visible = true;
  bool enabled = true;
  double value = 0.0;         // ticked or selected: non-zero
  bool is_default = false;    // answers to Enter
  bool is_cancel = false;     // answers to Escape
  bool sizes_itself = false;  // a label as wide as its text
  CellAlignment alignment = CellAlignment::left;
  std::int32_t background = -1;  // 0xRRGGBB; -1: the form's own
};

/// What stands around a form. All forms of the library are fixed tool windows.
struct FormFrame {
  StartPosition start = StartPosition::centre_of_owner;
  std::int32_t left = 0;  // of the design, in twips; where it appears is the start position's
  std::int32_t top = 0;
  bool tool_window = true;  // a narrow title bar
  bool resizable = false;
  bool minimise_box = false;
  bool maximise_box = false;
  bool in_task_bar = false;
};

class Form;

/// The cells of a grid control.
struct ORV2_PUBLIC Grid {
  Text format_string;
  std::int32_t rows = 0;
  std::int32_t cols = 0;
  std::int32_t fixed_rows = 0;
  std::int32_t fixed_cols = 0;
  std::string_view font = "Courier New";
  double font_points = 8.25;
  std::int32_t font_weight = 400;
  std::map<std::int32_t, std::int16_t> alignments;
  std::map<std::pair<std::int32_t, std::int32_t>, Text> cells;

  /// Fields between vertical bars become the header texts and set the columns.
  void set_format_string(const Text& format);
  void set_cell(std::int32_t row, std::int32_t col, const Text& text);  // 9 outside the grid
  void set_alignment(std::int32_t col, std::int16_t alignment);         // 9 outside the grid
  Text cell(std::int32_t row, std::int32_t col) const;
  std::int16_t alignment(std::int32_t col) const;
};

/// A control on a form. It is a late-bound object like a host's own: the
/// properties Visible, Enabled, Caption, Text, Value, Min and max can be set by
/// name, so a progress bar is a progress indicator with nothing added.
class ORV2_PUBLIC Control final : public LateBound {
 public:
  explicit Control(const ControlDesign& design);

  const ControlDesign& design() const noexcept { return design_; }
  bool visible() const noexcept { return visible_; }
  bool enabled() const noexcept { return enabled_; }
  const Text& text() const noexcept { return text_; }
  double value() const noexcept { return value_; }
  double min() const noexcept { return min_; }
  double max() const noexcept { return max_; }
  Grid& grid() noexcept { return grid_; }
  const Grid& grid() const noexcept { return grid_; }

  void set_visible(bool visible) { put(visible_, visible); }
  void set_enabled(bool enabled) { put(enabled_, enabled); }
  void set_text(const Text& text) { put(text_, text); }
  void set_value(double value) { put(value_, value); }

  Variant call(std::string_view name, std::span<const Argument> arguments) override;
  void set_property(std::string_view name, const Variant& value) override;

  /// For whoever shows the form: `watcher` is called after a property has been
  /// set, which may be in the middle of a routine. An empty one ends it.
  void watch(std::function<void()> watcher) { watcher_ = std::move(watcher); }

 private:
  template <class T>
  void put(T& property, const T& value) {
    property = value;
    if (watcher_) watcher_();
  }

  ControlDesign design_;
  bool visible_;
  bool enabled_;
  Text text_;
  double value_;
  double min_ = 0.0;
  double max_ = 100.0;
  Grid grid_;
  std::function<void()> watcher_;
};

/// A modal form. The routines behind its events are set by its owner; the
/// actions below are the person's and act, as on a real screen, only on what is
/// visible and enabled, its container included.
///
/// One control has the focus: at first the first in tab order that can take it,
/// then the one that the driver names. Labels, frames and progress bars cannot
/// take it. Escape presses the cancel button. Enter presses
///   1. the default button, wherever the focus is; where it cannot act,
///   2. the button in focus;
///   3. on a grid of a form without a default button, the first button in tab
///      order: a grid has no use for Enter, and the person is done with it;
///   4. otherwise nothing.
///
/// A failure of the routine behind an event closes the form and leaves
/// show_modal, whatever the driver does with it.
class ORV2_PUBLIC Form {
 public:
  Form(std::string_view name, std::u16string_view caption, std::int32_t width, std::int32_t height,
       std::span<const ControlDesign> controls);
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;

  const std::string& name() const noexcept { return name_; }
  const Text& caption() const noexcept { return caption_; }
  std::int32_t width() const noexcept { return width_; }
  std::int32_t height() const noexcept { return height_; }
  const FormFrame& frame() const noexcept { return frame_; }
  std::size_t size() const noexcept { return controls_.size(); }
  Control& control(std::size_t i) const { return *controls_[i]; }

  /// The control of that name, case ignored. Failure 438 when there is none.
  Control& control(std::string_view name) const;
  ObjectRef object(std::string_view name) const { return ObjectRef(&control(name)); }

  /// Still on the screen.
  bool open() const noexcept { return open_; }

  /// The control that has the focus; null once that can no longer act.
  const Control* focus() const;

  /// The button that Enter presses now; null when it presses none.
  const Control* enter_button() const;

  // For the form's owner.
  void set_frame(const FormFrame& frame) noexcept { frame_ = frame; }
  void on_click(std::string_view name, std::function<void()> routine);
  /// Blocks until the form is hidden or closed. Failures: that of the first
  /// routine behind an event that failed, even where the driver kept it to itself
  /// or raised another one; else the driver's own.
  void show_modal();
  void hide() noexcept { open_ = false; }
  void unload() noexcept { open_ = false; }

  // The person's actions. An action that cannot reach its control does nothing.
  // A failure of the routine behind an event reaches the driver too; the form is
  // closed by then.
  void click(std::string_view name);
  void select(std::string_view name);
  void set_text(std::string_view name, const Text& text);
  void set_focus(std::string_view name);  ///< Moves the focus; nothing else does.
  void press_enter();
  void press_escape();
  void close() noexcept { open_ = false; }  ///< The title bar's box.

  /// Leaves as the cancel button would; without one that can act, closes.
  void cancel();

 private:
  bool reachable(const Control& control) const;
  bool can_take_focus(const Control& control) const;
  template <class Condition>
  const Control* first_in_tab_order(Condition condition) const;
  const Control* button_for(bool ControlDesign::*role) const;
  void fire_click(const Control& control);
  void raise_failure();

  std::string name_;
  Text caption_;
  std::int32_t width_;
  std::int32_t height_;
  FormFrame frame_;
  bool open_ = false;
  const Control* focus_ = nullptr;
  std::exception_ptr failure_;  // of a routine behind an event
  std::vector<Control*> controls_;
  std::vector<ObjectRef> owned_;
  std::map<std::string, std::function<void()>, std::less<>> clicks_;
};

}  // namespace orv2_geo
