#include "orv2_geo/ui/qt/form_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QStyleHints>
#include <QTimer>
#include <QWindow>
#include <algorithm>

#include "orv2_geo/ui/qt/letters.h"
#include "orv2_geo/ui/qt/pointer.h"
#include "orv2_geo/ui/qt/x11.h"

namespace orv2_geo::qt {

namespace {

constexpr int border = 1;

// Undoes a minimise as soon as the change itself has been dealt with.
class Raiser final : public QObject {
 public:
  explicit Raiser(QWidget& window) : QObject(&window) {
    soon_.setSingleShot(true);
    QObject::connect(&soon_, &QTimer::timeout, &window, [&window] {
      window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
      window.activateWindow();
    });
    window.installEventFilter(this);
  }
  bool eventFilter(QObject* watched, QEvent* event) override {
    const bool changed = event->type() == QEvent::WindowStateChange;
    if (changed && static_cast<QWidget*>(watched)->isMinimized()) soon_.start(0);
    return QObject::eventFilter(watched, event);
  }

 private:
  QTimer soon_;
};

bool is_enter(int key) { return key == Qt::Key_Return || key == Qt::Key_Enter; }

}  // namespace

void keep_up(QWidget& window) { new Raiser(window); }

FormWindow::FormWindow(Form& form)
    : QDialog(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::MSWindowsFixedSizeDialogHint),
      form_(form) {
  // Without an owner nothing else keeps the host's window from covering what the host
  // waits for.
  if (!has_owner()) setWindowFlag(Qt::WindowStaysOnTopHint);
  setObjectName(QString::fromStdString(form.name()));
  setWindowTitle(to_qstring(form.caption()));
  setWindowModality(Qt::ApplicationModal);
  setAttribute(Qt::WA_QuitOnClose, false);
  setFont(form_font());
  setAttribute(Qt::WA_KeyboardFocusChange);  // the focus is drawn from the start
  title_bar_ = new TitleBar(this);
  area_ = new QWidget(this);
  const QSize size(pixels(form.width()), pixels(form.height()));
  title_bar_->setGeometry(border, border, size.width(), TitleBar::height);
  area_->setGeometry(QRect(QPoint(border, border + TitleBar::height), size));
  setFixedSize(size.width() + 2 * border, size.height() + TitleBar::height + 2 * border);
  make_controls();
  set_tab_order();
  centre();
  keep_out_of_task_bar(*this);
  keep_up(*this);
  settling_.setSingleShot(true);
  QObject::connect(&settling_, &QTimer::timeout, this, &FormWindow::settle);
}

FormWindow::~FormWindow() {
  for (const ControlView& view : views_) view.control->watch({});
}

void FormWindow::make_controls() {
  const Act act = [this](const std::function<void()>& action) { this->act(action); };
  views_.reserve(form_.size());
  for (std::size_t i = 0; i < form_.size(); ++i) {
    views_.push_back(make_view(form_, form_.control(i), area_, act));
    views_.back().widget->installEventFilter(this);
  }
  for (const ControlView& view : views_) {
    const ControlDesign& design = view.control->design();
    if (design.container.empty()) continue;
    const QPoint place = view.widget->pos();
    view.widget->setParent(widget_of(form_.control(design.container)));
    view.widget->move(place);
  }
  refresh();
}

QWidget* FormWindow::widget_of(const Control& control) const {
  const auto has_it = [&](const ControlView& view) { return view.control == &control; };
  return std::find_if(views_.begin(), views_.end(), has_it)->widget;
}

void FormWindow::set_tab_order() {
  std::vector<const ControlView*> order;
  for (const ControlView& view : views_) {
    if (view.widget->focusPolicy() != Qt::NoFocus) order.push_back(&view);
  }
  std::stable_sort(order.begin(), order.end(), [](const ControlView* a, const ControlView* b) {
    return a->control->design().tab_index < b->control->design().tab_index;
  });
  for (std::size_t i = 1; i < order.size(); ++i) {
    setTabOrder(order[i - 1]->widget, order[i]->widget);
  }
  if (const Control* first = form_.focus()) widget_of(*first)->setFocus();
}

void FormWindow::centre() {
  const bool on_owner = has_owner() && !owner_.place().isNull();
  const QScreen* at = on_owner ? QGuiApplication::screenAt(owner_.place().center()) : nullptr;
  const QRect space = (at != nullptr ? at : screen())->availableGeometry();
  QRect place(QPoint(0, 0), size());
  place.moveCenter(on_owner ? owner_.place().center() : space.center());
  place.moveLeft(std::max(std::min(place.left(), space.right() - place.width()), space.left()));
  place.moveTop(std::max(std::min(place.top(), space.bottom() - place.height()), space.top()));
  move(place.topLeft());
}

bool FormWindow::has_owner() const { return form_.frame().start == StartPosition::centre_of_owner; }

void FormWindow::run() {
  if (has_owner()) {
    owner_.show_over(*this);
  } else {
    show();
  }
  mark_enter_button();
  activateWindow();
  for (const ControlView& view : views_) {
    view.control->watch([this, &view] { follow(view); });
  }
  if (form_.open()) loop_.exec();
  hide();
  if (failure_) std::rethrow_exception(failure_);
}

void FormWindow::refresh() {
  for (const ControlView& view : views_) bring_up_to_date(view);
  mark_enter_button();
}

void FormWindow::bring_up_to_date(const ControlView& view) {
  const auto can_act = [&] { return view.widget->isVisible() && view.widget->isEnabled(); };
  const bool could_act = can_act();
  view.refresh();
  if (isVisible() && !could_act && can_act()) newcomers_.push_back(view.widget);
}

// What has been clicked up to now is on its way; after it has come, with the
// newcomers deaf to it, they are as any other button.
void FormWindow::settle() {
  repaint();
  QGuiApplication::sync();
  settled_ = true;
}

bool FormWindow::comes_too_early(const QObject* watched, const QEvent& event) {
  const bool press =
      event.type() == QEvent::MouseButtonPress || event.type() == QEvent::MouseButtonDblClick;
  if (!press) return false;
  const auto& mouse = static_cast<const QMouseEvent&>(event);
  const QStyleHints& hints = *QGuiApplication::styleHints();
  const QPoint place = mouse.globalPosition().toPoint();
  const bool goes_on =
      mouse.timestamp() - last_press_ <= static_cast<quint64>(hints.mouseDoubleClickInterval()) &&
      (place - last_place_).manhattanLength() <= 2 * hints.mouseDoubleClickDistance();
  if (settled_ && !goes_on) newcomers_.clear();
  last_press_ = mouse.timestamp();
  last_place_ = place;
  return std::find(newcomers_.begin(), newcomers_.end(), watched) != newcomers_.end();
}

// A routine is at work and no events are handled: what it shows, hides, enables
// and disables is painted at once. A step of a progress bar is painted by the
// bar itself.
void FormWindow::follow(const ControlView& view) {
  const QWidget* parent = view.widget->parentWidget();
  const bool same = view.control->visible() == view.widget->isVisibleTo(parent) &&
                    view.control->enabled() == view.widget->isEnabledTo(parent);
  bring_up_to_date(view);
  if (!same) repaint();
}

void FormWindow::act(const std::function<void()>& action) noexcept {
  if (!form_.open() || failure_) return;
  try {
    action();
    refresh();
  } catch (...) {
    failure_ = std::current_exception();
  }
  if (!form_.open() || failure_) return loop_.quit();
  if (newcomers_.empty() || !settled_) return;
  settled_ = false;
  settling_.start(0);
}

void FormWindow::follow_focus(const QObject* widget) {
  const auto is_its = [&](const ControlView& view) { return view.widget == widget; };
  const auto found = std::find_if(views_.begin(), views_.end(), is_its);
  if (found != views_.end()) form_.set_focus(found->control->design().name);
  mark_enter_button();
}

void FormWindow::mark_enter_button() {
  const Control* const marked = form_.enter_button();
  for (const ControlView& view : views_) {
    if (auto* const button = qobject_cast<QPushButton*>(view.widget)) {
      button->setDefault(view.control == marked);
    }
  }
}

// A key held down since before the form came up presses nothing.
bool FormWindow::take_key(const QKeyEvent& key) {
  if (!is_enter(key.key()) && key.key() != Qt::Key_Escape) return false;
  if (!key.isAutoRepeat()) {
    act([&] {
      const BusyPointer busy;
      is_enter(key.key()) ? form_.press_enter() : form_.press_escape();
    });
  }
  return true;
}

// Before the widgets: some desktops let Enter press the button in focus even
// where the form has a default button.
bool FormWindow::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress && take_key(static_cast<QKeyEvent&>(*event))) return true;
  if (event->type() == QEvent::FocusIn) follow_focus(watched);
  if (comes_too_early(watched, *event)) return true;
  return QDialog::eventFilter(watched, event);
}

void FormWindow::keyPressEvent(QKeyEvent* event) {
  if (!take_key(*event)) event->ignore();
}

void FormWindow::changeEvent(QEvent* event) {
  if (event->type() == QEvent::ActivationChange) title_bar_->update();
  QDialog::changeEvent(event);
}

void FormWindow::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setPen(palette().color(QPalette::Dark));
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void FormWindow::closeEvent(QCloseEvent* event) {
  event->ignore();  // the form decides; run() takes the window away
  act([this] { form_.close(); });
}

}  // namespace orv2_geo::qt
