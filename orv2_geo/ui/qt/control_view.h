// control_view.h: a control of the form model as a widget.
#pragma once

#include <QWidget>
#include <functional>
#include <string_view>

#include "orv2_geo/platform/form.h"

namespace orv2_geo::qt {

/// Twips to the screen's logical pixels, 96 to the inch.
int pixels(std::int32_t twips);

QString to_qstring(const Text& text);

/// What a person does to a control: carried out on the form, whatever leaves.
using Act = std::function<void(const std::function<void()>& action)>;

/// A control's widget, and what brings the widget's text and value to the
/// control's.
struct ControlView {
  Control* control;
  QWidget* widget;
  std::function<void()> show_content;

  /// Brings the widget to the control's state.
  void refresh() const;
};

/// The widget of a control of `form`, in `parent`; the person's actions on it
/// go through `act`.
ControlView make_view(Form& form, Control& control, QWidget* parent, const Act& act);

}  // namespace orv2_geo::qt
