#include "orv2_geo/platform/form.h"

#include <algorithm>
#include <type_traits>
#include <variant>

#include "orv2_geo/frame/argument.h"
#include "orv2_geo/frame/floating_point_guard.h"
#include "orv2_geo/frame/names.h"
#include "orv2_geo/frame/run_failure.h"
#include "orv2_geo/platform/asked_interface.h"
#include "orv2_geo/platform/text_services.h"

namespace orv2_geo {

namespace {

double number_of(const Variant& value) {
  return std::visit(
      [](const auto& held) -> double {
        using T = std::remove_cvref_t<decltype(held)>;
        if constexpr (std::is_arithmetic_v<T>) return static_cast<double>(held);
        if constexpr (std::is_same_v<T, Bool>) return held ? -1.0 : 0.0;
        raise(failure::type_mismatch);
      },
      value.value());
}

Text text_of(const Variant& value) {
  const Text* text = value.get<Text>();
  return text != nullptr ? *text : text_services::default_text(number_of(value));
}

bool is_choice(ControlKind kind) {
  return kind == ControlKind::option_button || kind == ControlKind::check_box;
}

}  // namespace

void Grid::set_format_string(const Text& format) {
  format_string = format;
  std::u16string_view rest = format.view();
  std::int32_t col = 0;
  while (true) {
    const std::size_t bar = rest.find(u'|');
    cells[{0, col++}] = Text(rest.substr(0, bar));
    if (bar == std::u16string_view::npos) break;
    rest.remove_prefix(bar + 1);
  }
  cols = col;
}

void Grid::set_cell(std::int32_t row, std::int32_t col, const Text& text) {
  if (row < 0 || row >= rows || col < 0 || col >= cols) raise(failure::subscript_out_of_range);
  cells[{row, col}] = text;
}

void Grid::set_alignment(std::int32_t col, std::int16_t alignment) {
  if (col < 0 || col >= cols) raise(failure::subscript_out_of_range);
  alignments[col] = alignment;
}

Text Grid::cell(std::int32_t row, std::int32_t col) const {
  const auto found = cells.find({row, col});
  return found != cells.end() ? found->second : Text();
}

std::int16_t Grid::alignment(std::int32_t col) const {
  const auto found = alignments.find(col);
  return found != alignments.end() ? found->second : static_cast<std::int16_t>(CellAlignment::left);
}

Control::Control(const ControlDesign& design)
    : design_(design),
      visible_(design.visible),
      enabled_(design.enabled),
      text_(design.text),
      value_(design.value) {}

Variant Control::call(std::string_view, std::span<const Argument>) {
  raise(failure::no_such_member);
}

void Control::set_property(std::string_view name, const Variant& value) {
  const auto is = [&](std::string_view property) { return same_name(name, property); };
  if (is("Visible")) {
    set_visible(number_of(value) != 0.0);
  } else if (is("Enabled")) {
    set_enabled(number_of(value) != 0.0);
  } else if (is("Caption") || is("Text")) {
    set_text(text_of(value));
  } else if (is("Value")) {
    set_value(number_of(value));
  } else if (is("Min")) {
    put(min_, number_of(value));
  } else if (is("max")) {
    put(max_, number_of(value));
  } else {
    raise(failure::no_such_member);
  }
}

Form::Form(std::string_view name, std::u16string_view caption, std::int32_t width,
           std::int32_t height, std::span<const ControlDesign> controls)
    : name_(name), caption_(caption), width_(width), height_(height) {
  for (const ControlDesign& design : controls) {
    auto* const control = new Control(design);
    const ObjectRef held(control);  // already where the list below has no memory to grow
    owned_.push_back(held);
    controls_.push_back(control);
  }
}

Control& Form::control(std::string_view name) const {
  for (Control* control : controls_) {
    if (same_name(control->design().name, name)) return *control;
  }
  raise(failure::no_such_member);
}

void Form::on_click(std::string_view name, std::function<void()> routine) {
  clicks_[std::string(control(name).design().name)] = std::move(routine);
}

void Form::show_modal() {
  open_ = true;
  failure_ = nullptr;
  focus_ = first_in_tab_order([this](const Control& one) { return can_take_focus(one); });
  try {
    ask_user_interface([this](UserInterface& shown) { shown.show_modal(*this); });
  } catch (...) {
    open_ = false;
    raise_failure();
    throw;
  }
  raise_failure();
  if (open_) cancel();
}

void Form::raise_failure() {
  if (failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
}

bool Form::reachable(const Control& control) const {
  if (!open_ || !control.visible() || !control.enabled()) return false;
  const std::string_view container = control.design().container;
  return container.empty() || reachable(this->control(container));
}

void Form::fire_click(const Control& control) {
  const auto routine = clicks_.find(control.design().name);
  if (routine == clicks_.end()) return;
  const FloatingPointGuard usual;
  try {
    routine->second();
  } catch (...) {
    if (!failure_) failure_ = std::current_exception();
    open_ = false;
    throw;
  }
}

void Form::click(std::string_view name) {
  Control& target = control(name);
  if (!reachable(target)) return;
  if (target.design().kind == ControlKind::check_box) {
    target.set_value(target.value() != 0.0 ? 0.0 : 1.0);
  } else if (is_choice(target.design().kind)) {
    return select(name);
  }
  fire_click(target);
}

void Form::select(std::string_view name) {
  Control& target = control(name);
  if (!reachable(target) || !is_choice(target.design().kind)) return;
  if (target.design().kind == ControlKind::option_button) {
    // One option of a container is on at a time; on is true, -1.
    for (Control* other : controls_) {
      const bool rival = other->design().kind == ControlKind::option_button &&
                         other->design().container == target.design().container;
      if (rival) other->set_value(0.0);
    }
    target.set_value(-1.0);
  } else {
    target.set_value(1.0);
  }
  fire_click(target);
}

void Form::set_text(std::string_view name, const Text& text) {
  Control& target = control(name);
  if (reachable(target) && target.design().kind == ControlKind::text_box) target.set_text(text);
}

// Of equal tab indexes the first in the design.
template <class Condition>
const Control* Form::first_in_tab_order(Condition condition) const {
  const Control* first = nullptr;
  for (const Control* control : controls_) {
    const bool later = first != nullptr && control->design().tab_index >= first->design().tab_index;
    if (!later && condition(*control)) first = control;
  }
  return first;
}

bool Form::can_take_focus(const Control& control) const {
  switch (control.design().kind) {
    case ControlKind::label:
    case ControlKind::frame:
    case ControlKind::progress_bar: return false;
    default: return reachable(control);
  }
}

const Control* Form::focus() const {
  return focus_ != nullptr && can_take_focus(*focus_) ? focus_ : nullptr;
}

void Form::set_focus(std::string_view name) {
  const Control& target = control(name);
  if (can_take_focus(target)) focus_ = &target;
}

const Control* Form::button_for(bool ControlDesign::*role) const {
  for (const Control* control : controls_) {
    if (control->design().*role && reachable(*control)) return control;
  }
  return nullptr;
}

const Control* Form::enter_button() const {
  if (const Control* button = button_for(&ControlDesign::is_default)) return button;
  const Control* const in_focus = focus();
  if (in_focus == nullptr || in_focus->design().kind == ControlKind::button) return in_focus;
  const auto is_default = [](const Control* one) { return one->design().is_default; };
  const bool has_default = std::any_of(controls_.begin(), controls_.end(), is_default);
  if (in_focus->design().kind != ControlKind::grid || has_default) return nullptr;
  return first_in_tab_order([this](const Control& one) {
    return one.design().kind == ControlKind::button && reachable(one);
  });
}

void Form::press_enter() {
  if (const Control* button = enter_button()) fire_click(*button);
}

void Form::press_escape() {
  if (const Control* button = button_for(&ControlDesign::is_cancel)) fire_click(*button);
}

void Form::cancel() {
  press_escape();
  open_ = false;
}

}  // namespace orv2_geo
