#include "orv2_geo/ui/qt/application.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLibrary>
#include <QLibraryInfo>
#include <QLocale>
#include <QStringList>
#include <QThread>
#include <QTranslator>
#include <clocale>
#include <string>

namespace orv2_geo::qt {

namespace {

// Qt ends the process when it cannot start, so what it needs is tried first:
// its plugin for the platform, and the display itself.
bool plugin_loads(const QString& platform) {
  QStringList folders = QCoreApplication::libraryPaths();
  folders.prepend(QLibraryInfo::path(QLibraryInfo::PluginsPath));
  for (const QString& folder : folders) {
    const QString file = folder + "/platforms/libq" + platform + ".so";
    if (QFile::exists(file) && QLibrary(file).load()) return true;
  }
  return false;
}

// A connection of our own to the X display that the environment names. It is kept
// until Qt has one: a server may start anew when its last client leaves.
class XDisplay {
 public:
  XDisplay() : xcb_("xcb", 1) {
    using Connect = void* (*)(const char* display, int* screen);
    const auto connect = reinterpret_cast<Connect>(xcb_.resolve("xcb_connect"));
    if (connect != nullptr && !qEnvironmentVariableIsEmpty("DISPLAY")) {
      connection_ = connect(nullptr, nullptr);
    }
  }
  ~XDisplay() {
    const auto disconnect = reinterpret_cast<void (*)(void*)>(xcb_.resolve("xcb_disconnect"));
    if (connection_ != nullptr && disconnect != nullptr) disconnect(connection_);
  }
  XDisplay(const XDisplay&) = delete;
  XDisplay& operator=(const XDisplay&) = delete;

  bool opens() {
    const auto error = reinterpret_cast<int (*)(void*)>(xcb_.resolve("xcb_connection_has_error"));
    return connection_ != nullptr && error != nullptr && error(connection_) == 0;
  }

 private:
  QLibrary xcb_;
  void* connection_ = nullptr;
};

bool wayland_display_opens() {
  const QString socket = qEnvironmentVariable("WAYLAND_DISPLAY");
  const QDir run_time_folder(qEnvironmentVariable("XDG_RUNTIME_DIR"));
  return !socket.isEmpty() && QFileInfo::exists(run_time_folder.absoluteFilePath(socket));
}

// The platform to start on, or null. One that QT_QPA_PLATFORM names has to be
// among those that a person can see.
const char* platform(XDisplay& display) {
  const QString wanted = qEnvironmentVariable("QT_QPA_PLATFORM");
  const auto allowed = [&](const char* name) { return wanted.isEmpty() || wanted.contains(name); };
  if (allowed("xcb") && plugin_loads("xcb") && display.opens()) return "xcb";
  if (allowed("wayland") && wayland_display_opens() && plugin_loads("wayland-generic")) {
    return "wayland";
  }
  return nullptr;
}

// What Qt itself says, such as in a text box's menu. A host's own application says
// what its host has chosen.
void speak_the_users_language(QApplication& application) {
  auto* const words = new QTranslator(&application);
  const QString folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
  if (words->load(QLocale(), "qtbase", "_", folder)) QCoreApplication::installTranslator(words);
}

QApplication* made() {
  XDisplay display;
  const char* name = platform(display);
  if (name == nullptr) return nullptr;
  // The application reads these as long as it lives.
  static std::string words[] = {"Orv2_Geo", "-platform", name};
  static char* arguments[] = {words[0].data(), words[1].data(), words[2].data(), nullptr};
  static int count = 3;
  // Qt sets the C run-time's locale to the user's; the host's way of writing
  // numbers is not ours to change.
  const std::string locale = std::setlocale(LC_ALL, nullptr);
  // Never ended: at the end of the process its display may be gone before it.
  auto* const application = new QApplication(count, arguments);
  std::setlocale(LC_ALL, locale.c_str());
  QApplication::setQuitOnLastWindowClosed(false);
  speak_the_users_language(*application);
  return application;
}

}  // namespace

QApplication* application() {
  if (QCoreApplication* running = QCoreApplication::instance()) {
    const bool ours = running->thread() == QThread::currentThread();
    return ours ? qobject_cast<QApplication*>(running) : nullptr;
  }
  return made();
}

}  // namespace orv2_geo::qt
