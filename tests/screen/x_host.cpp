// A host without Qt: windows made with the display's own calls, over which it lets
// the library show a box and its dialogs.
//   x_host found         the library finds the active window
//   x_host named         it is told of the window that is not active
//   x_host inside        it is told of a window inside that one
//   x_host gone|wrong    it is told of a window that is gone, of a number that is none
#include <unistd.h>
#include <xcb/xcb.h>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>
#include <string_view>

#include "orv2_geo/orv2_geo.h"
#include "orv2_geo/orv2_geo.hpp"
#include "orv2_geo/platform/error_box.h"

namespace {

using namespace orv2_geo;

xcb_atom_t atom(xcb_connection_t* display, const char* name) {
  xcb_intern_atom_reply_t* found = xcb_intern_atom_reply(
      display, xcb_intern_atom(display, 0, static_cast<std::uint16_t>(std::strlen(name)), name),
      nullptr);
  const xcb_atom_t number = found->atom;
  std::free(found);
  return number;
}

xcb_window_t made(xcb_connection_t* display, xcb_window_t parent, std::int16_t left,
                  std::int16_t top, std::uint16_t width, std::uint16_t height) {
  const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(display)).data;
  const xcb_window_t window = xcb_generate_id(display);
  const std::uint32_t values[] = {screen->white_pixel, XCB_EVENT_MASK_FOCUS_CHANGE};
  xcb_create_window(display, XCB_COPY_FROM_PARENT, window, parent, left, top, width, height, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual,
                    XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values);
  return window;
}

// A window of the host's, on the screen and with the keyboard.
xcb_window_t shown(xcb_connection_t* display, std::string_view title, std::int16_t left,
                   std::int16_t top) {
  const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(display)).data;
  const xcb_window_t window = made(display, screen->root, left, top, 700, 500);
  const auto size = static_cast<std::uint32_t>(title.size());
  xcb_change_property(display, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8,
                      size, title.data());
  const auto process = static_cast<std::uint32_t>(getpid());
  xcb_change_property(display, XCB_PROP_MODE_REPLACE, window, atom(display, "_NET_WM_PID"),
                      XCB_ATOM_CARDINAL, 32, 1, &process);
  // WM_NORMAL_HINTS: the place is the host's own wish.
  const std::uint32_t hints[18] = {1};
  xcb_change_property(display, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NORMAL_HINTS,
                      XCB_ATOM_WM_SIZE_HINTS, 32, 18, hints);
  xcb_map_window(display, window);
  xcb_flush(display);
  while (xcb_generic_event_t* event = xcb_wait_for_event(display)) {
    const bool focused = (event->response_type & 0x7f) == XCB_FOCUS_IN;
    std::free(event);
    if (focused) break;
  }
  return window;
}

void name_owner(xcb_connection_t* display, std::string_view what, xcb_window_t window) {
  std::uint64_t number = window;
  if (what == "found") return;
  if (what == "inside") {
    number = made(display, window, 10, 10, 20, 20);
    xcb_map_window(display, static_cast<xcb_window_t>(number));
  }
  if (what == "gone") {
    number = made(display, window, 10, 10, 20, 20);
    xcb_destroy_window(display, static_cast<xcb_window_t>(number));
  }
  if (what == "wrong") number = 0xffff'ffff'0000'0001;
  std::free(xcb_get_input_focus_reply(display, xcb_get_input_focus(display), nullptr));
  orv2_set_owner_window(number);
}

// The box, the dialog on its owner and the dialog in the middle of the screen.
void ask() {
  error_box(u"sobre la ventana");
  std::int32_t count = 2;
  DoubleArray x(0, 2), y(0, 2), z(0, 2);
  StringArray codes(0, 2), names(0, 2);
  ShortArray layers(0, 2);
  LongArray numbers(0, 2);
  double precision = 1.0;
  const cgeo_Matrices matrices;
  matrices.Quita_Pts_Repetidos(count, x, y, z, codes, names, layers, numbers, true, precision);
  double found[6] = {};
  matrices.MaxMin_3Matriz(x, y, z, found[0], found[1], found[2], found[3], found[4], found[5],
                          true);
}

}  // namespace

int main(int count, char** words) {
  if (count != 2) return 2;
  xcb_connection_t* const display = xcb_connect(nullptr, nullptr);
  const xcb_window_t first = shown(display, "Programa de dibujo", 40, 60);
  shown(display, "Otra ventana", 800, 600);
  name_owner(display, words[1], first);
  ask();
  std::cout << "returned" << std::endl;
  xcb_disconnect(display);
  return 0;
}
