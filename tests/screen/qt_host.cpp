// A host with a Qt application of its own, with or without widgets, that shows
// a box and a form of the library over its window.
//   qt_host widgets|core
// Or one that knows Qt and leaves the application to the library.
//   qt_host library
// At the end it tells what the menu of a text box calls one of its entries.
#include <QApplication>
#include <QTimer>
#include <QWidget>
#include <iostream>
#include <string_view>

#include "orv2_geo/platform/error_box.h"
#include "orv2_geo/platform/form.h"

namespace {

using namespace orv2_geo;

constexpr ControlDesign controls[] = {
    {.name = "cmdAceptar",
     .kind = ControlKind::button,
     .left = 300,
     .top = 300,
     .width = 1050,
     .height = 360,
     .text = u"Aceptar",
     .is_default = true},
};

void show_both() {
  error_box(u"sobre la ventana");
  Form form("f_Sobre", u"Sobre su dueña:", 1650, 1050, controls);
  form.on_click("cmdAceptar", [&] { form.hide(); });
  form.show_modal();
  std::cout << "returned" << std::endl;
}

void tell_menu_word() {
  const QString word = QCoreApplication::translate("QLineEdit", "Select All");
  std::cout << word.toStdString() << std::endl;
}

int run_without_an_application() {
  error_box(u"sin ventana");
  tell_menu_word();
  return 0;
}

int run_with_widgets(int& count, char** words) {
  QApplication application(count, words);
  QWidget window;
  window.setWindowTitle("Programa anfitrión");
  window.setGeometry(40, 60, 400, 300);
  window.show();
  QTimer::singleShot(0, &window, [&] {
    while (!window.isActiveWindow()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    show_both();
    tell_menu_word();
    QCoreApplication::quit();
  });
  return QCoreApplication::exec();
}

int run_without_widgets(int& count, char** words) {
  const QCoreApplication application(count, words);
  show_both();
  return 0;
}

}  // namespace

int main(int count, char** words) {
  const std::string_view what = count == 2 ? words[1] : "";
  if (what == "library") return run_without_an_application();
  if (what == "widgets") return run_with_widgets(count, words);
  return what == "core" ? run_without_widgets(count, words) : 2;
}
