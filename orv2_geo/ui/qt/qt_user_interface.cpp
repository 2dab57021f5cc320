// The module's one function, and boxes and forms on the screen behind it.
#include <QApplication>
#include <QGridLayout>
#include <QMessageBox>
#include <QPainter>
#include <QPixmap>
#include <QPushButton>

#include "orv2_geo/platform/error_box.h"
#include "orv2_geo/platform/screen_module.h"
#include "orv2_geo/ui/qt/application.h"
#include "orv2_geo/ui/qt/form_window.h"
#include "orv2_geo/ui/qt/letters.h"
#include "orv2_geo/ui/qt/pointer.h"

namespace orv2_geo::qt {

namespace {

constexpr int widest_text = 400;

// However short the text, the caption has room beside the boxes of the title bar,
// in the desktop's own letters.
void make_room_for_caption(QMessageBox& box) {
  constexpr int boxes = 120;
  auto* const layout = qobject_cast<QGridLayout*>(box.layout());
  if (layout == nullptr) return;
  QFont letters = QApplication::font();
  letters.setBold(true);
  const int caption = QFontMetrics(letters).horizontalAdvance(box.windowTitle());
  auto* const room = new QSpacerItem(caption + boxes, 0);
  layout->addItem(room, layout->rowCount(), 0, 1, layout->columnCount());
}

// Drawn for the screen that it is on: a desktop's own may be enlarged.
QPixmap critical_picture() {
  constexpr int size = 32;
  const double scale = qApp->devicePixelRatio();
  QPixmap picture(QSize(size, size) * scale);
  picture.setDevicePixelRatio(scale);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(200, 30, 30));
  painter.drawEllipse(QRectF(1, 1, size - 2, size - 2));
  painter.setPen(QPen(Qt::white, 4, Qt::SolidLine, Qt::RoundCap));
  constexpr double near = 11;
  constexpr double far = size - near;
  painter.drawLine(QPointF(near, near), QPointF(far, far));
  painter.drawLine(QPointF(near, far), QPointF(far, near));
  return picture;
}

class QtUserInterface final : public UserInterface {
 public:
  explicit QtUserInterface(UserInterface& without_screen) : without_screen_(without_screen) {}

  void error_box(const Text& text, std::int32_t flags, const Text* caption) override {
    if (application() == nullptr) return without_screen_.error_box(text, flags, caption);
    const PointerAtRest pointer;
    const Owner owner;
    QMessageBox box(QMessageBox::NoIcon,
                    caption != nullptr ? to_qstring(*caption) : QStringLiteral("Orv2_Geo"),
                    in_even_lines(to_qstring(text), form_font(), widest_text), QMessageBox::Ok);
    box.setFont(form_font());
    box.button(QMessageBox::Ok)->setIcon({});
    if (flags == critical_icon) box.setIconPixmap(critical_picture());
    box.setTextFormat(Qt::PlainText);
    box.setAttribute(Qt::WA_QuitOnClose, false);
    box.setWindowModality(Qt::ApplicationModal);
    make_room_for_caption(box);
    keep_up(box);
    owner.show_over(box);
    box.exec();
  }

  void show_modal(Form& form) override {
    if (application() == nullptr) return without_screen_.show_modal(form);
    const PointerAtRest pointer;
    FormWindow(form).run();
  }

 private:
  UserInterface& without_screen_;
};

}  // namespace

}  // namespace orv2_geo::qt

extern "C" ORV2_PUBLIC orv2_geo::UserInterface* orv2_geo_screen(
    std::uint32_t version, orv2_geo::LibraryMark library, orv2_geo::UserInterface* without_screen) {
  const bool fits = version == orv2_geo::screen_module_version && library == orv2_geo::this_library;
  if (!fits) return nullptr;
  static orv2_geo::qt::QtUserInterface interface(*without_screen);
  return &interface;
}
