// The module's one function, and boxes and forms on the screen behind it.
#include <QApplication>
#include <QGridLayout>
#include <QMessageBox>

#include "platform/error_box.h"
#include "platform/screen_module.h"
#include "ui/qt/application.h"
#include "ui/qt/form_window.h"
#include "ui/qt/pointer.h"

namespace orv2_geo::qt {

namespace {

// However short the text, the caption has room beside the boxes of the title bar.
void make_room_for_caption(QMessageBox& box) {
  constexpr int boxes = 120;
  auto* const layout = qobject_cast<QGridLayout*>(box.layout());
  if (layout == nullptr) return;
  const int caption = box.fontMetrics().horizontalAdvance(box.windowTitle());
  auto* const room = new QSpacerItem(caption + boxes, 0);
  layout->addItem(room, layout->rowCount(), 0, 1, layout->columnCount());
}

class QtUserInterface final : public UserInterface {
 public:
  explicit QtUserInterface(UserInterface& without_screen) : without_screen_(without_screen) {}

  void error_box(const Text& text, std::int32_t flags, const Text* caption) override {
    if (application() == nullptr) return without_screen_.error_box(text, flags, caption);
    const PointerAtRest pointer;
    const Owner owner;
    QMessageBox box(flags == critical_icon ? QMessageBox::Critical : QMessageBox::NoIcon,
                    caption != nullptr ? to_qstring(*caption) : QStringLiteral("Orv2_Geo"),
                    to_qstring(text), QMessageBox::Ok);
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
