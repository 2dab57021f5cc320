#include "orv2_geo/ui/qt/title_bar.h"

#include <QMouseEvent>
#include <QPainter>
#include <QWindow>

#include "orv2_geo/ui/qt/x11.h"

namespace orv2_geo::qt {

namespace {

constexpr int margin = 6;

// Another colour than that of a window in front of which a box stands.
QColor ground(const QWidget& bar) {
  const bool active = bar.isActiveWindow();
  return bar.palette().color(QPalette::Active, active ? QPalette::Highlight : QPalette::Mid);
}

QColor ink(const QWidget& bar) {
  const bool active = bar.isActiveWindow();
  return bar.palette().color(QPalette::Active,
                             active ? QPalette::HighlightedText : QPalette::WindowText);
}

class CloseBox final : public QAbstractButton {
 public:
  explicit CloseBox(QWidget* bar) : QAbstractButton(bar) {
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_Hover);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor shade = ink(*this);
    shade.setAlpha(isDown() ? 120 : 60);
    if (underMouse() || isDown()) painter.fillRect(rect(), shade);
    painter.setPen(QPen(ink(*this), 1.6));
    const QPointF middle = QRectF(rect()).center();
    constexpr double arm = 3.5;
    painter.drawLine(middle - QPointF(arm, arm), middle + QPointF(arm, arm));
    painter.drawLine(middle - QPointF(arm, -arm), middle + QPointF(arm, -arm));
  }
};

}  // namespace

TitleBar::TitleBar(QWidget* window) : QWidget(window), close_(new CloseBox(this)) {
  QFont letters = font();
  letters.setBold(true);
  setFont(letters);
  QObject::connect(close_, &QAbstractButton::clicked, window, &QWidget::close);
}

void TitleBar::resizeEvent(QResizeEvent*) {
  close_->setGeometry(width() - QWidget::height(), 0, QWidget::height(), QWidget::height());
}

void TitleBar::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), ground(*this));
  painter.setPen(ink(*this));
  const QRect room = rect().adjusted(margin, 0, -close_->width(), 0);
  const QString title =
      fontMetrics().elidedText(window()->windowTitle(), Qt::ElideRight, room.width());
  painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter, title);
}

void TitleBar::mousePressEvent(QMouseEvent* event) {
  QWindow* const handle = window()->windowHandle();
  if (event->button() != Qt::LeftButton || handle == nullptr) return;
  correct_place(*handle);
  handle->startSystemMove();
}

}  // namespace orv2_geo::qt
