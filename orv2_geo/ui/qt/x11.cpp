#include "orv2_geo/ui/qt/x11.h"

#include <xcb/xcb.h>
#include <QGuiApplication>
#include <QScreen>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <vector>

namespace orv2_geo::qt {

namespace {

struct Free {
  void operator()(void* reply) const { std::free(reply); }
};
template <class T>
using Reply = std::unique_ptr<T, Free>;

// Asks and waits. A window may go at any time: null then, and no error is left to
// be reported by anybody.
template <class Answer, class Cookie>
Reply<Answer> answer(Answer* (*reply)(xcb_connection_t*, Cookie, xcb_generic_error_t**),
                     xcb_connection_t* display, Cookie asked) {
  xcb_generic_error_t* error = nullptr;
  Reply<Answer> found(reply(display, asked, &error));
  std::free(error);
  return found;
}

// Qt's connection to the display; null on another platform.
xcb_connection_t* connection() {
  const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  return x11 != nullptr ? x11->connection() : nullptr;
}

xcb_atom_t atom(xcb_connection_t* display, const char* name) {
  const auto size = static_cast<std::uint16_t>(std::strlen(name));
  const auto found =
      answer(xcb_intern_atom_reply, display, xcb_intern_atom(display, 0, size, name));
  return found ? found->atom : xcb_atom_t{XCB_ATOM_NONE};
}

// The 32-bit numbers of a property; none where it does not exist.
std::vector<std::uint32_t> numbers(xcb_connection_t* display, xcb_window_t window,
                                   const char* property) {
  constexpr std::uint32_t most = 16384;
  const auto found = answer(xcb_get_property_reply, display,
                            xcb_get_property(display, 0, window, atom(display, property),
                                             XCB_GET_PROPERTY_TYPE_ANY, 0, most));
  if (!found || found->format != 32) return {};
  const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(found.get()));
  return {first, first + found->value_len};
}

xcb_window_t root_of(xcb_connection_t* display) {
  return xcb_setup_roots_iterator(xcb_get_setup(display)).data->root;
}

bool is_on_screen(xcb_connection_t* display, xcb_window_t window) {
  const auto found =
      answer(xcb_get_window_attributes_reply, display, xcb_get_window_attributes(display, window));
  return found && found->map_state == XCB_MAP_STATE_VIEWABLE;
}

bool is_of_this_process(xcb_connection_t* display, xcb_window_t window) {
  const auto process = static_cast<std::uint32_t>(QCoreApplication::applicationPid());
  return numbers(display, window, "_NET_WM_PID") == std::vector{process};
}

// The display counts its own pixels; a screen's corner is at the same place in
// Qt's count, and all inside is scaled from there.
QRect in_logical_pixels(const QRect& place) {
  for (const QScreen* screen : QGuiApplication::screens()) {
    const double scale = screen->devicePixelRatio();
    const QPoint corner = screen->geometry().topLeft();
    const QRect native(corner, screen->geometry().size() * scale);
    if (!native.contains(place.center())) continue;
    return {corner + (place.topLeft() - corner) / scale, place.size() / scale};
  }
  return place;
}

}  // namespace

void keep_out_of_task_bar(QWidget& window) {
  xcb_connection_t* const display = connection();
  if (display == nullptr) return;
  const xcb_atom_t state = atom(display, "_NET_WM_STATE_SKIP_TASKBAR");
  xcb_change_property(display, XCB_PROP_MODE_APPEND, static_cast<xcb_window_t>(window.winId()),
                      atom(display, "_NET_WM_STATE"), XCB_ATOM_ATOM, 32, 1, &state);
}

std::uint64_t host_window_named(std::uint64_t number) {
  xcb_connection_t* const display = connection();
  if (display == nullptr || number > std::numeric_limits<xcb_window_t>::max()) return 0;
  // A window manager marks the windows that it keeps; they hold all others.
  for (auto window = static_cast<xcb_window_t>(number); window != XCB_WINDOW_NONE;) {
    const bool kept = !numbers(display, window, "WM_STATE").empty();
    if (kept) return is_on_screen(display, window) ? window : 0;
    const auto tree = answer(xcb_query_tree_reply, display, xcb_query_tree(display, window));
    window = tree ? tree->parent : xcb_window_t{XCB_WINDOW_NONE};
  }
  return 0;
}

std::uint64_t host_window_in_front() {
  xcb_connection_t* const display = connection();
  if (display == nullptr) return 0;
  const xcb_window_t root = root_of(display);
  std::vector<std::uint32_t> windows = numbers(display, root, "_NET_CLIENT_LIST_STACKING");
  for (const std::uint32_t active : numbers(display, root, "_NET_ACTIVE_WINDOW")) {
    windows.push_back(active);
  }
  while (!windows.empty()) {
    const std::uint32_t window = windows.back();
    windows.pop_back();
    if (is_of_this_process(display, window) && is_on_screen(display, window)) return window;
  }
  return 0;
}

QRect host_window_place(std::uint64_t number) {
  xcb_connection_t* const display = connection();
  if (display == nullptr) return {};
  const auto window = static_cast<xcb_window_t>(number);
  const auto size = answer(xcb_get_geometry_reply, display, xcb_get_geometry(display, window));
  const auto corner = answer(xcb_translate_coordinates_reply, display,
                             xcb_translate_coordinates(display, window, root_of(display), 0, 0));
  if (!size || !corner) return {};
  return in_logical_pixels({corner->dst_x, corner->dst_y, size->width, size->height});
}

void correct_place(QWindow& window) {
  if (!window.flags().testFlag(Qt::FramelessWindowHint)) return;
  const QRect place = host_window_place(window.winId());
  if (!place.isEmpty() && place.topLeft() != window.position()) {
    window.setPosition(place.topLeft());
  }
}

}  // namespace orv2_geo::qt
