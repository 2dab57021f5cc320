#include "orv2_geo/ui/win32/form_window.h"

#include <windows.h>

#include <commctrl.h>

#include <algorithm>

#include "orv2_geo/ui/win32/owner.h"
#include "orv2_geo/ui/win32/pointer.h"

namespace orv2_geo::win32 {

namespace {

constexpr DWORD window_style = WS_POPUP | WS_CAPTION | WS_SYSMENU;
constexpr DWORD tool_window_style = WS_EX_TOOLWINDOW | WS_EX_CONTROLPARENT;

bool has_owner(const Form& form) { return form.frame().start == StartPosition::centre_of_owner; }

// Without an owner nothing else keeps the host's window from covering what the host waits
// for.
DWORD more_style(const Form& form) {
  return tool_window_style | (has_owner(form) ? 0 : DWORD{WS_EX_TOPMOST});
}

RECT work_area_around(HWND window) {
  MONITORINFO monitor{};
  monitor.cbSize = sizeof(monitor);
  GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTOPRIMARY), &monitor);
  return monitor.rcWork;
}

// The start of a stretch of that length in the middle of another, but within its bounds.
LONG middle(LONG from, LONG to, LONG length, LONG first, LONG last) {
  const LONG start = from + (to - from - length) / 2;
  return std::max(std::min(start, last - length), first);
}

bool was_down_before(const MSG& key) { return (key.lParam >> 30 & 1) != 0; }

bool is_kind(const ControlView& view, ControlKind kind) { return view.design().kind == kind; }

// A value of its own while this lives.
class During {
 public:
  explicit During(bool& flag) : flag_(flag), before_(flag) { flag_ = true; }
  ~During() { flag_ = before_; }
  During(const During&) = delete;
  During& operator=(const During&) = delete;

 private:
  bool& flag_;
  bool before_;
};

}  // namespace

FormWindow::FormWindow(Form& form)
    : form_(form),
      class_(WindowClass::in_use()),
      scale_(Scale::of_screen()),
      letters_(form_letters(scale_)) {
  if (has_owner(form)) owner_ = owner_of_what_comes();
  if (class_ != nullptr) make_window();
  if (window_ == nullptr) return;
  try {
    make_controls();
  } catch (...) {
    DestroyWindow(window_);
    throw;
  }
}

FormWindow::~FormWindow() {
  for (const auto& view : views_) view->control().watch({});
  if (window_ != nullptr) DestroyWindow(window_);
}

// ---- The window and its controls -------------------------------------------

void FormWindow::make_window() {
  RECT place = {0, 0, scale_.pixels(form_.width()), scale_.pixels(form_.height())};
  AdjustWindowRectEx(&place, window_style, FALSE, more_style(form_));
  const SIZE size = {place.right - place.left, place.bottom - place.top};
  window_ =
      CreateWindowExW(more_style(form_), class_->name(), shown(form_.caption()).c_str(),
                      window_style, 0, 0, static_cast<int>(size.cx), static_cast<int>(size.cy),
                      owner_, nullptr, class_->library(), static_cast<WindowBehind*>(this));
  if (window_ != nullptr) centre(size);
}

void FormWindow::centre(SIZE size) {
  HWND const near_it = owner_ != nullptr ? owner_ : GetActiveWindow();
  const RECT space = work_area_around(near_it);
  RECT middle_of = space;
  if (owner_ != nullptr && !IsIconic(owner_)) GetWindowRect(owner_, &middle_of);
  const LONG left = middle(middle_of.left, middle_of.right, size.cx, space.left, space.right);
  const LONG top = middle(middle_of.top, middle_of.bottom, size.cy, space.top, space.bottom);
  SetWindowPos(window_, nullptr, static_cast<int>(left), static_cast<int>(top), 0, 0,
               SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

// The windows' order is the order of tabs. Option buttons of a container that follow one
// another are one group, in which the arrows move.
void FormWindow::make_controls() {
  std::vector<Control*> order;
  for (std::size_t i = 0; i < form_.size(); ++i) order.push_back(&form_.control(i));
  std::stable_sort(order.begin(), order.end(), [](const Control* a, const Control* b) {
    return a->design().tab_index < b->design().tab_index;
  });
  const Surroundings around = {form_, window_, scale_, letters_};
  HWND before = HWND_TOP;
  const ControlDesign* last = nullptr;
  for (Control* const control : order) {
    views_.push_back(make_view(around, *control));
    const ControlView& view = *views_.back();
    SetWindowPos(view.window(), before, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    before = view.window();
    const bool in_group = last != nullptr && last->kind == ControlKind::option_button &&
                          is_kind(view, ControlKind::option_button) &&
                          last->container == view.design().container;
    if (!in_group) {
      const LONG_PTR style = GetWindowLongPtrW(view.window(), GWL_STYLE);
      SetWindowLongPtrW(view.window(), GWL_STYLE, style | WS_GROUP);
    }
    last = &view.design();
  }
  refresh();
}

ControlView* FormWindow::view_of(HWND window) const {
  const auto has_it = [&](const auto& view) { return view->window() == window; };
  const auto found = std::find_if(views_.begin(), views_.end(), has_it);
  return found != views_.end() ? found->get() : nullptr;
}

ControlView* FormWindow::view_of(const Control& control) const {
  const auto has_it = [&](const auto& view) { return &view->control() == &control; };
  return std::find_if(views_.begin(), views_.end(), has_it)->get();
}

// ---- While it is up ----------------------------------------------------------

void FormWindow::run() {
  {
    const HostAtRest host(owner_, window_);
    const FormInFront in_front(window_);
    watch_controls();
    if (is_up()) show_first();
    handle_messages();
  }
  if (window_ != nullptr) ShowWindow(window_, SW_HIDE);
  if (failure_) std::rethrow_exception(failure_);
}

void FormWindow::watch_controls() {
  for (const auto& view : views_) {
    view->control().watch([this, &view = *view] { follow(view); });
  }
}

void FormWindow::show_first() {
  if (const Control* first = form_.focus()) focus_ = view_of(*first)->window();
  // The focus is drawn from the start.
  SendMessageW(window_, WM_CHANGEUISTATE, MAKEWPARAM(UIS_CLEAR, UISF_HIDEFOCUS), 0);
  ShowWindow(window_, SW_SHOW);
  SetForegroundWindow(window_);
  give_focus();
  UpdateWindow(window_);
}

void FormWindow::handle_messages() {
  MSG message{};
  while (is_up()) {
    const BOOL told = GetMessageW(&message, nullptr, 0, 0);
    if (told == 0) PostQuitMessage(static_cast<int>(message.wParam));  // the host's loop ends too
    if (told <= 0) return;
    take(message);
  }
}

// A host's filters see what a form's loop handles, as that of any other dialog.
void FormWindow::take(MSG& message) {
  if (CallMsgFilterW(&message, MSGF_DIALOGBOX)) return;
  const bool ours = message.hwnd == window_ || IsChild(window_, message.hwnd);
  if (ours && (early_clicks_.are_in(message) || take_key(message))) return;
  if (ours) count_each_click(message);
  if (IsDialogMessageW(window_, &message)) return mark_enter_button();  // it has its own idea
  TranslateMessage(&message);
  DispatchMessageW(&message);
}

// The second click of a double click is a click too, but in a text or a grid.
void FormWindow::count_each_click(MSG& message) const {
  if (message.message != WM_LBUTTONDBLCLK) return;
  const ControlView* const view = view_of(message.hwnd);
  const bool selects = view != nullptr &&
                       (is_kind(*view, ControlKind::text_box) || is_kind(*view, ControlKind::grid));
  if (!selects) message.message = WM_LBUTTONDOWN;
}

// A key held down since before the form came up presses nothing.
bool FormWindow::take_key(const MSG& message) {
  if (message.message != WM_KEYDOWN) return false;
  const ControlView* const in_focus = view_of(GetFocus());
  const bool all = message.wParam == 'A' && GetKeyState(VK_CONTROL) < 0;
  if (all && in_focus != nullptr && is_kind(*in_focus, ControlKind::text_box)) {
    SendMessageW(in_focus->window(), EM_SETSEL, 0, -1);
    return true;
  }
  const bool enter = message.wParam == VK_RETURN;
  if (!enter && message.wParam != VK_ESCAPE) return false;
  if (!was_down_before(message)) {
    act([&] {
      const BusyPointer busy;
      enter ? form_.press_enter() : form_.press_escape();
    });
  }
  return true;
}

bool FormWindow::hears(UINT message, WPARAM w, LPARAM l, LRESULT& answer) noexcept {
  try {
    return answers(message, w, l, answer);
  } catch (...) {
    failure_ = std::current_exception();
    wake_loop();
    return true;
  }
}

bool FormWindow::answers(UINT message, WPARAM w, LPARAM l, LRESULT& answer) {
  switch (message) {
    case WM_CLOSE: return act([this] { form_.close(); }), true;
    case WM_NCDESTROY:  // with its owner
      window_ = nullptr;
      wake_loop();
      return false;
    case WM_COMMAND: return hear_of(reinterpret_cast<HWND>(l), HIWORD(w)), true;
    case WM_SETFOCUS: return give_focus(), true;
    case WM_ACTIVATE:
      if (LOWORD(w) == WA_INACTIVE) return false;
      give_focus();
      return true;
    case WM_SETCURSOR:
      if (!at_work_) return false;
      SetCursor(LoadCursorW(nullptr, IDC_WAIT));
      answer = TRUE;
      return true;
    case WM_DRAWITEM: {
      const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(l);
      if (ControlView* const view = view_of(item.hwndItem)) view->draw(item);
      answer = TRUE;
      return true;
    }
    case WM_NOTIFY: {
      auto& told = *reinterpret_cast<NMHDR*>(l);
      ControlView* const view = view_of(told.hwndFrom);
      if (view == nullptr) return false;
      if (told.code == NM_SETFOCUS) follow_focus(*view);
      const std::optional<LRESULT> given = view->notified(told);
      answer = given.value_or(0);
      return given.has_value();
    }
    default: return false;
  }
}

// The loop may be waiting for a message while one of another thread's is answered.
void FormWindow::wake_loop() noexcept { PostMessageW(nullptr, WM_NULL, 0, 0); }

// ---- The person's actions ------------------------------------------------------

void FormWindow::hear_of(HWND control, WORD what) {
  ControlView* const view = view_of(control);
  if (view == nullptr || refreshing_) return;
  if (is_kind(*view, ControlKind::text_box)) {
    if (what == EN_CHANGE) typed(*view);
    if (what == EN_SETFOCUS) follow_focus(*view);
  } else if (what == BN_CLICKED) {
    clicked(*view);
  } else if (what == BN_SETFOCUS && !is_kind(*view, ControlKind::label)) {
    follow_focus(*view);
  }
}

// An option that is on already has nothing new to tell: the system tells of it once more
// for a click that brings the focus along.
void FormWindow::clicked(const ControlView& view) {
  if (is_kind(view, ControlKind::option_button) && view.control().value() != 0.0) return;
  act([&] {
    const BusyPointer busy;
    form_.click(view.design().name);
  });
}

void FormWindow::typed(const ControlView& view) {
  std::u16string text(static_cast<std::size_t>(GetWindowTextLengthW(view.window())), u'\0');
  GetWindowTextW(view.window(), reinterpret_cast<wchar_t*>(text.data()),
                 static_cast<int>(text.size()) + 1);
  act([&] { form_.set_text(view.design().name, Text(text)); });
}

template <class Action>
void FormWindow::act(Action&& action) noexcept {
  if (!is_up() || at_work_) return;
  try {
    const During work(at_work_);
    action();
    if (is_up()) refresh();
  } catch (...) {
    failure_ = std::current_exception();
  }
  early_clicks_.routine_is_over();
  if (!is_up()) wake_loop();
}

// ---- What the windows show ---------------------------------------------------

void FormWindow::refresh() {
  for (const auto& view : views_) bring_up_to_date(*view);
  if (IsWindowVisible(window_) && form_.focus() == nullptr) give_focus();
  mark_enter_button();
}

void FormWindow::bring_up_to_date(ControlView& view) {
  const During refresh(refreshing_);
  HWND const control = view.window();
  const bool could_act = IsWindowVisible(control) && IsWindowEnabled(control);
  view.show_content();
  if (could_act && !view.can_act()) leave_focus(control);
  const bool shown_now = (GetWindowLongPtrW(control, GWL_STYLE) & WS_VISIBLE) != 0;
  const bool enabled_now = (GetWindowLongPtrW(control, GWL_STYLE) & WS_DISABLED) == 0;
  const bool enabled = view.can_act() || !view.is_seen();
  if (enabled_now != enabled) EnableWindow(control, enabled);
  if (shown_now != view.is_seen()) ShowWindow(control, view.is_seen() ? SW_SHOWNA : SW_HIDE);
  if (IsWindowVisible(window_) && !could_act && view.can_act()) early_clicks_.newcomer(control);
}

// A routine is at work and no events are handled: what it shows, hides, enables and
// disables is painted at once.
void FormWindow::follow(ControlView& view) {
  if (window_ == nullptr) return;
  const LONG_PTR style = GetWindowLongPtrW(view.window(), GWL_STYLE);
  const bool same = ((style & WS_VISIBLE) != 0) == view.is_seen() &&
                    (!view.is_seen() || ((style & WS_DISABLED) == 0) == view.can_act());
  if (same) return bring_up_to_date(view);
  for (const auto& one : views_) bring_up_to_date(*one);  // those in a frame with it
  RedrawWindow(window_, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

// Keys would reach nothing in a control that is taken away with the focus in it.
void FormWindow::leave_focus(HWND control) {
  if (focus_ != control) return;
  HWND const next = GetNextDlgTabItem(window_, control, FALSE);
  focus_ = next != control ? next : nullptr;
  if (GetFocus() == control) SetFocus(focus_ != nullptr ? focus_ : window_);
  if (const ControlView* const view = view_of(focus_)) form_.set_focus(view->design().name);
}

void FormWindow::follow_focus(const ControlView& view) {
  focus_ = view.window();
  form_.set_focus(view.design().name);
  mark_enter_button();
}

// To the control that had it last, or the first in tab order that can take it.
void FormWindow::give_focus() {
  if (window_ == nullptr || GetActiveWindow() != window_) return;
  const ControlView* const last = view_of(focus_);
  if (last == nullptr || !last->can_act()) focus_ = GetNextDlgTabItem(window_, nullptr, FALSE);
  if (view_of(focus_) == nullptr || GetFocus() == focus_) return;
  const During refresh(refreshing_);  // an option is not chosen by the focus alone
  SetFocus(focus_);
  follow_focus(*view_of(focus_));
}

void FormWindow::mark_enter_button() {
  if (window_ == nullptr) return;
  const Control* const marked = form_.enter_button();
  for (const auto& view : views_) {
    if (!is_kind(*view, ControlKind::button)) continue;
    const LONG_PTR kind = GetWindowLongPtrW(view->window(), GWL_STYLE) & BS_TYPEMASK;
    const LONG_PTR wanted = &view->control() == marked ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON;
    if (kind != wanted) {
      SendMessageW(view->window(), BM_SETSTYLE, static_cast<WPARAM>(wanted), TRUE);
    }
  }
}

}  // namespace orv2_geo::win32
