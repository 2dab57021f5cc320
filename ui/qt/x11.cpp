#include "ui/qt/x11.h"

#include <xcb/xcb.h>
#include <QGuiApplication>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace orv2_geo::qt {

namespace {

struct Free {
  void operator()(void* reply) const { std::free(reply); }
};
template <class T>
using Reply = std::unique_ptr<T, Free>;

// Qt's connection to the display; null on another platform.
xcb_connection_t* connection() {
  const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  return x11 != nullptr ? x11->connection() : nullptr;
}

xcb_atom_t atom(xcb_connection_t* display, const char* name) {
  const auto asked =
      xcb_intern_atom(display, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
  const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(display, asked, nullptr));
  return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

}  // namespace

void keep_out_of_task_bar(QWidget& window) {
  xcb_connection_t* const display = connection();
  if (display == nullptr) return;
  const xcb_atom_t state = atom(display, "_NET_WM_STATE_SKIP_TASKBAR");
  xcb_change_property(display, XCB_PROP_MODE_APPEND, static_cast<xcb_window_t>(window.winId()),
                      atom(display, "_NET_WM_STATE"), XCB_ATOM_ATOM, 32, 1, &state);
}

}  // namespace orv2_geo::qt
