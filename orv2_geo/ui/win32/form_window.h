// form_window.h: a form of the form model as a modal window.
#pragma once

#include <windows.h>

#include <exception>
#include <memory>
#include <string_view>
#include <vector>

#include "orv2_geo/platform/form.h"
#include "orv2_geo/ui/win32/control_view.h"
#include "orv2_geo/ui/win32/early_clicks.h"
#include "orv2_geo/ui/win32/letters.h"
#include "orv2_geo/ui/win32/window_class.h"

namespace orv2_geo::win32 {

/// A tool window with the form's controls. The person's actions go to the form, and after
/// each the windows show the controls' state again; what a routine sets is shown at once.
///
/// The form is told where the focus is; the button that Enter would press is drawn as the
/// one that answers. The title bar's box closes the form.
class FormWindow final : private WindowBehind {
 public:
  explicit FormWindow(Form& form);
  ~FormWindow();
  FormWindow(const FormWindow&) = delete;
  FormWindow& operator=(const FormWindow&) = delete;

  /// False where the system makes no window: nobody could see it.
  bool exists() const noexcept { return window_ != nullptr; }

  /// Returns when the form is no longer open, or the program is to quit. What an action
  /// throws ends it and leaves here.
  void run();

 private:
  bool hears(UINT message, WPARAM w, LPARAM l, LRESULT& answer) noexcept override;
  bool answers(UINT message, WPARAM w, LPARAM l, LRESULT& answer);

  void make_window();
  void make_controls();
  void centre(SIZE size);
  void watch_controls();
  void show_first();

  void handle_messages();
  static void wake_loop() noexcept;
  void take(MSG& message);
  bool take_key(const MSG& message);
  void count_each_click(MSG& message) const;
  bool is_up() const noexcept { return window_ != nullptr && form_.open() && !failure_; }

  void hear_of(HWND control, WORD what);
  void clicked(const ControlView& view);
  void typed(const ControlView& view);
  template <class Action>
  void act(Action&& action) noexcept;

  void refresh();
  void bring_up_to_date(ControlView& view);
  void follow(ControlView& view);
  void leave_focus(HWND control);
  void follow_focus(const ControlView& view);
  void give_focus();
  void mark_enter_button();
  ControlView* view_of(HWND window) const;
  ControlView* view_of(const Control& control) const;

  Form& form_;
  std::shared_ptr<const WindowClass> class_;
  Scale scale_;
  Letters letters_;
  HWND owner_ = nullptr;
  HWND window_ = nullptr;
  HWND focus_ = nullptr;  // of the controls, the one that has it or had it last
  std::vector<std::unique_ptr<ControlView>> views_;  // in tab order
  EarlyClicks early_clicks_;
  bool at_work_ = false;     // a routine of the form
  bool refreshing_ = false;  // what the windows tell is not the person's doing
  std::exception_ptr failure_;
};

}  // namespace orv2_geo::win32
