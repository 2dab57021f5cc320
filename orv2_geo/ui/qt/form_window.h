// form_window.h: a form of the form model as a modal window.
#pragma once

#include <QDialog>
#include <QEventLoop>
#include <QTimer>
#include <exception>
#include <functional>
#include <vector>

#include "orv2_geo/platform/form.h"
#include "orv2_geo/ui/qt/control_view.h"
#include "orv2_geo/ui/qt/owner.h"
#include "orv2_geo/ui/qt/title_bar.h"

namespace orv2_geo::qt {

/// While it is up, `window` cannot be minimised: its host waits for an answer, and
/// what has no entry in the task bar would never come back.
void keep_up(QWidget& window);

/// A tool window with the form's controls, at their places below a title bar of
/// its own. The person's actions go to the form, and after each the widgets show
/// the controls' state again.
///
/// The form is told where the focus is; the button that Enter would press is
/// drawn as the one that answers. The title bar's box closes the form.
///
/// A button takes no click made before it could act, nor one that goes on with a
/// double click begun before: the second click on Calcular is none on the button
/// that has come in its place. One that could act all the time takes the clicks made
/// while a routine computed.
class FormWindow final : public QDialog {
 public:
  explicit FormWindow(Form& form);
  ~FormWindow() override;
  FormWindow(const FormWindow&) = delete;
  FormWindow& operator=(const FormWindow&) = delete;

  /// Returns when the form is no longer open, or the application is quitting.
  /// What an action throws ends it and leaves here.
  void run();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void make_controls();
  void set_tab_order();
  bool has_owner() const;
  void centre();
  void refresh();
  void follow(const ControlView& view);
  void bring_up_to_date(const ControlView& view);
  void settle();
  bool comes_too_early(const QObject* watched, const QEvent& event);
  void act(const std::function<void()>& action) noexcept;
  bool take_key(const QKeyEvent& key);
  void follow_focus(const QObject* widget);
  void mark_enter_button();
  QWidget* widget_of(const Control& control) const;

  Form& form_;
  Owner owner_;
  TitleBar* title_bar_;
  QWidget* area_;  // the form's own, in the size of its design
  std::vector<ControlView> views_;
  std::vector<const QObject*> newcomers_;  // buttons that can act since a short time
  QTimer settling_;
  bool settled_ = true;     // what was clicked before they could is dealt with
  quint64 last_press_ = 0;  // of a mouse button: when and where
  QPoint last_place_;
  QEventLoop loop_;
  std::exception_ptr failure_;
};

}  // namespace orv2_geo::qt
