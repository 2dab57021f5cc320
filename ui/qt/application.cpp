#include "ui/qt/application.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLibrary>
#include <QLibraryInfo>
#include <QStringList>
#include <QThread>
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

bool x_display_opens() {
  QLibrary xcb("xcb", 1);
  using Connect = void* (*)(const char* display, int* screen);
  const auto connect = reinterpret_cast<Connect>(xcb.resolve("xcb_connect"));
  const auto error = reinterpret_cast<int (*)(void*)>(xcb.resolve("xcb_connection_has_error"));
  const auto disconnect = reinterpret_cast<void (*)(void*)>(xcb.resolve("xcb_disconnect"));
  if (connect == nullptr || error == nullptr || disconnect == nullptr) return false;
  void* connection = connect(nullptr, nullptr);
  const bool opens = error(connection) == 0;
  disconnect(connection);
  return opens;
}

bool wayland_display_opens() {
  const QString socket = qEnvironmentVariable("WAYLAND_DISPLAY");
  const QDir run_time_folder(qEnvironmentVariable("XDG_RUNTIME_DIR"));
  return !socket.isEmpty() && QFileInfo::exists(run_time_folder.absoluteFilePath(socket));
}

// The platform to start on, or null. One that QT_QPA_PLATFORM names has to be
// among those that a person can see.
const char* platform() {
  const QString wanted = qEnvironmentVariable("QT_QPA_PLATFORM");
  const auto allowed = [&](const char* name) { return wanted.isEmpty() || wanted.contains(name); };
  if (allowed("xcb") && !qEnvironmentVariableIsEmpty("DISPLAY") && plugin_loads("xcb") &&
      x_display_opens()) {
    return "xcb";
  }
  if (allowed("wayland") && wayland_display_opens() && plugin_loads("wayland-generic")) {
    return "wayland";
  }
  return nullptr;
}

QApplication* made() {
  const char* name = platform();
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
