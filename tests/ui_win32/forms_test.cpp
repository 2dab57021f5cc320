// Both dialogs and the box, answered by window messages.
#include <windows.h>

#include <commctrl.h>

#include <string>

#include "orv2_geo/orv2_geo.hpp"
#include "orv2_geo/platform/error_box.h"
#include "orv2_geo/platform/event_pump.h"
#include "orv2_geo/platform/form.h"
#include "orv2_geo/platform/owner_window.h"
#include "tests/support/preamble.h"
#include "tests/ui_win32/person.h"

namespace orv2_geo {
namespace {

constexpr const wchar_t* points_title = L"Quitar puntos repetidos:";
constexpr const wchar_t* extremes_title = L"Maximos y Minimos:";
constexpr const wchar_t* box_title = L"Orv2_Geo";

// Of six points 2, 3 and 4 are on one spot in plan, 2 and 4 in space; 5 is 0.0005 from 6.
struct Points {
  Points() {
    constexpr double xs[] = {0, 10, 20, 20, 20, 30, 30.0005};
    constexpr double zs[] = {0, 1, 2, 7, 2, 4, 4};
    for (std::int32_t i = 1; i <= count; ++i) {
      x(i) = xs[i];
      z(i) = zs[i];
    }
  }

  /// The member's dialog. Answers with the failure's number, 0 for none.
  std::int32_t ask() {
    return failure_of([&] {
      double precision = 0.0;
      cgeo_Matrices().Quita_Pts_Repetidos(count, x, y, z, codes, names, layers, numbers, true,
                                          precision);
    });
  }

  std::int32_t count = 6;
  DoubleArray x{0, 6}, y{0, 6}, z{0, 6};
  StringArray codes{0, 6}, names{0, 6};
  ShortArray layers{0, 6};
  LongArray numbers{0, 6};
};

std::int32_t count_after(const std::function<void(HWND)>& answer) {
  Points points;
  const Person person(points_title, answer);
  EXPECT_EQ(points.ask(), 0);
  return points.count;
}

void compute_and_remove(HWND form) {
  click(form, L"Calcular");
  click(form, L"Eliminar");
}

TEST(RepeatedPoints, EveryWayOut) {
  const struct {
    const char* way;
    std::function<void(HWND)> answer;
    std::int32_t count;
  } rows[] = {
      {"Calcular, Eliminar", compute_and_remove, 3},
      {"Cancelar", [](HWND form) { click(form, L"Cancelar"); }, 6},
      {"Calcular, Cancelar",
       [](HWND form) {
         click(form, L"Calcular");
         click(form, L"Cancelar");
       },
       6},
      {"Escape", [](HWND form) { press(form, VK_ESCAPE); }, 6},
      {"Enter computes",
       [](HWND form) {
         press(control(form, L"Edit"), VK_RETURN);
         click(form, L"Eliminar");
       },
       3},
      {"the title bar's box", [](HWND form) { PostMessageW(form, WM_CLOSE, 0, 0); }, 0},
      {"the title bar's box, by a message that waits",
       [](HWND form) { SendMessageW(form, WM_CLOSE, 0, 0); }, 0},
      {"a smaller tolerance",
       [](HWND form) {
         SendMessageW(control(form, L"Edit"), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"0.0001"));
         compute_and_remove(form);
       },
       4},
      {"in space",
       [](HWND form) {
         SendMessageW(control(form, L"Button", L"3D"), BM_CLICK, 0, 0);
         compute_and_remove(form);
       },
       5},
  };
  for (const auto& row : rows) EXPECT_EQ(count_after(row.answer), row.count) << row.way;
}

TEST(RepeatedPoints, WhatItShows) {
  count_after([](HWND form) {
    EXPECT_EQ(text_of(control(form, L"Edit")), L"0.001");
    EXPECT_NE(control(form, L"Static", L"Nº de puntos:"), nullptr);
    EXPECT_NE(control(form, L"Static", L"6"), nullptr);
    EXPECT_EQ(SendMessageW(control(form, L"Button", L"2D"), BM_GETCHECK, 0, 0), BST_CHECKED);
    EXPECT_FALSE(IsWindowEnabled(control(form, L"Button", L"Quitar ptos (0,0)")));
    EXPECT_EQ(control(form, PROGRESS_CLASSW), nullptr);
    click(form, L"Calcular");
    EXPECT_NE(control(form, L"Static", L"Hay 3 puntos repetidos"), nullptr);
    EXPECT_EQ(control(form, L"Button", L"Calcular"), nullptr);
    EXPECT_FALSE(IsWindowEnabled(control(form, L"Edit")));
    EXPECT_FALSE(IsWindowEnabled(control(form, L"Button", L"3D")));
    click(form, L"Cancelar");
  });
}

TEST(RepeatedPoints, AFailureOfTheRoutineReachesTheHost) {
  const HostWindow host(L"Programa de dibujo");
  Points points;
  const Person person(points_title, [](HWND form) {
    SendMessageW(control(form, L"Edit"), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"1e999"));
    click(form, L"Calcular");
  });
  EXPECT_EQ(points.ask(), 6);
  EXPECT_EQ(points.count, 6);
  EXPECT_TRUE(IsWindowEnabled(host.handle()));
}

RECT place_of(HWND window) {
  RECT place{};
  GetWindowRect(window, &place);
  return place;
}

TEST(Owners, AreOutOfReachWhileAFormIsUpAndInFrontAfterwards) {
  const HostWindow other(L"Otra ventana");
  const HostWindow host(L"Programa de dibujo");
  count_after([&](HWND form) {
    EXPECT_EQ(GetWindow(form, GW_OWNER), host.handle());
    EXPECT_FALSE(IsWindowEnabled(host.handle()));
    EXPECT_FALSE(IsWindowEnabled(other.handle()));
    const RECT over = place_of(form);
    const RECT below = place_of(host.handle());
    EXPECT_NEAR((over.left + over.right) / 2.0, (below.left + below.right) / 2.0, 2);
    EXPECT_NEAR((over.top + over.bottom) / 2.0, (below.top + below.bottom) / 2.0, 2);
    click(form, L"Cancelar");
  });
  EXPECT_TRUE(IsWindowEnabled(host.handle()));
  EXPECT_TRUE(IsWindowEnabled(other.handle()));
  EXPECT_EQ(GetActiveWindow(), host.handle());
}

TEST(Owners, AHostNamesAnother) {
  const HostWindow other(L"Otra ventana");
  const HostWindow host(L"Programa de dibujo");
  set_owner_window(reinterpret_cast<std::uintptr_t>(other.handle()));
  count_after([&](HWND form) {
    EXPECT_EQ(GetWindow(form, GW_OWNER), other.handle());
    press(form, VK_ESCAPE);
  });
  set_owner_window(0x7ff0);  // none
  count_after([&](HWND form) {
    EXPECT_EQ(GetWindow(form, GW_OWNER), host.handle());
    press(form, VK_ESCAPE);
  });
  set_owner_window(0);
}

TEST(Owners, AFormIsKeptInTheWorkArea) {
  const HostWindow host(L"Programa de dibujo");
  SetWindowPos(host.handle(), nullptr, -650, -450, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
  count_after([&](HWND form) {
    RECT area{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
    EXPECT_EQ(place_of(form).left, area.left);
    EXPECT_EQ(place_of(form).top, area.top);
    press(form, VK_ESCAPE);
  });
}

TEST(Forms, LeaveNothingBehind) {
  const auto form_class = [] {
    WNDCLASSEXW found{};
    found.cbSize = sizeof(found);
    return GetClassInfoExW(GetModuleHandleW(nullptr), L"Orv2_Geo.Form", &found);
  };
  const auto ways = [] {
    count_after([&](HWND form) { compute_and_remove(form); });
    count_after([&](HWND form) { press(form, VK_ESCAPE); });
  };
  ways();  // what the system itself makes with the first
  const DWORD fonts = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
  const DWORD windows = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
  for (int round = 0; round < 5; ++round) ways();
  EXPECT_EQ(GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS), fonts);
  EXPECT_EQ(GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS), windows);
  EXPECT_FALSE(form_class());
  EXPECT_EQ(FindWindowW(nullptr, points_title), nullptr);
  count_after([&](HWND form) {
    EXPECT_TRUE(form_class());
    press(form, VK_ESCAPE);
  });
}

TEST(Forms, AProgramThatIsToQuitCancelsThemAndStillHearsOfIt) {
  const DWORD here = GetCurrentThreadId();
  EXPECT_EQ(count_after([&](HWND) { PostThreadMessageW(here, WM_QUIT, 7, 0); }), 6);
  MSG message{};
  ASSERT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
  EXPECT_EQ(message.wParam, 7U);
}

TEST(Forms, AnOwnerThatIsDestroyedTakesThemAlong) {
  auto host = std::make_unique<HostWindow>(L"Programa de dibujo");
  HWND const window = host->handle();
  EXPECT_EQ(count_after([&](HWND) { SendMessageW(window, WM_CLOSE, 0, 0); }), 6);
}

// ---- The extremes -------------------------------------------------------------

std::wstring cell(HWND list, int row, int col) {
  std::wstring text(100, L'\0');
  LVITEMW item{};
  item.iSubItem = col;
  item.pszText = text.data();
  item.cchTextMax = 100;
  text.resize(static_cast<std::size_t>(SendMessageW(
      list, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item))));
  return text;
}

void show_extremes(const std::function<void(HWND)>& answer) {
  DoubleArray x(0, 3);
  x(1) = 10.5;
  x(2) = 20.25;
  x(3) = 12.0;
  const Person person(extremes_title, answer);
  double max_x = 0, min_x = 0, max_y = 0, min_y = 0, max_z = 0, min_z = 0;
  cgeo_Matrices().MaxMin_3Matriz(x, x, x, max_x, min_x, max_y, min_y, max_z, min_z, true);
  EXPECT_EQ(max_x, 20.25);
}

TEST(Extremes, ShowTheirCells) {
  show_extremes([](HWND form) {
    HWND const list = control(form, WC_LISTVIEWW);
    EXPECT_EQ(SendMessageW(list, LVM_GETITEMCOUNT, 0, 0), 4);
    EXPECT_EQ(cell(list, 0, 1), L"   Mínimos   ");
    EXPECT_EQ(cell(list, 1, 0), L"    X");
    EXPECT_EQ(cell(list, 1, 1), L"10.500");
    EXPECT_EQ(cell(list, 1, 2), L"1");
    EXPECT_EQ(cell(list, 3, 3), L"20.250");
    EXPECT_EQ(cell(list, 3, 5), L"9.750");
    click(form, L"Aceptar");
  });
}

TEST(Extremes, HaveNoOwnerAndStayAboveAll) {
  const HostWindow host(L"Programa de dibujo");
  show_extremes([&](HWND form) {
    EXPECT_EQ(GetWindow(form, GW_OWNER), nullptr);
    EXPECT_TRUE(GetWindowLongPtrW(form, GWL_EXSTYLE) & WS_EX_TOPMOST);
    EXPECT_FALSE(IsWindowEnabled(host.handle()));
    press(form, VK_ESCAPE);
  });
  EXPECT_TRUE(IsWindowEnabled(host.handle()));
  EXPECT_EQ(GetActiveWindow(), host.handle());
}

TEST(Extremes, EveryOtherWayOut) {
  show_extremes([](HWND form) { click(form, L"Cancelar"); });
  show_extremes([](HWND form) { press(form, VK_RETURN); });
  show_extremes([](HWND form) { press(control(form, WC_LISTVIEWW), VK_ESCAPE); });
  show_extremes([](HWND form) { PostMessageW(form, WM_CLOSE, 0, 0); });
}

// ---- Boxes ----------------------------------------------------------------------

TEST(Boxes, StandOverTheHostsWindowAndShowAllOfTheirText) {
  const HostWindow host(L"Programa de dibujo");
  const Person person(box_title, [&](HWND box) {
    EXPECT_EQ(GetWindow(box, GW_OWNER), host.handle());
    EXPECT_FALSE(IsWindowEnabled(host.handle()));
    EXPECT_NE(FindWindowExW(box, nullptr, L"Static", L"antes después & más"), nullptr);
    PostMessageW(box, WM_COMMAND, IDOK, 0);
  });
  error_box(std::u16string_view(u"antes\0después & más", 19));
  EXPECT_TRUE(IsWindowEnabled(host.handle()));
}

TEST(Boxes, OfAFailureHaveItsSourceAndAnIcon) {
  const Person person(L"Orv2_Geo.cgeo_api", [](HWND box) {
    bool icon = false;
    for (HWND one = nullptr; (one = FindWindowExW(box, one, L"Static", nullptr)) != nullptr;) {
      icon = icon || (GetWindowLongPtrW(one, GWL_STYLE) & SS_TYPEMASK) == SS_ICON;
    }
    EXPECT_TRUE(icon);
    PostMessageW(box, WM_COMMAND, IDOK, 0);
  });
  critical_box(u"fallo", RunFailure(6, "", "Orv2_Geo.cgeo_api"));
}

// ---- Any form ---------------------------------------------------------------------

constexpr ControlDesign controls[] = {
    {.name = "cmdAviso",
     .kind = ControlKind::button,
     .left = 150,
     .top = 150,
     .width = 1200,
     .height = 360,
     .text = u"Aviso"},
    {.name = "cmdSalir",
     .kind = ControlKind::button,
     .left = 1500,
     .top = 150,
     .width = 1200,
     .height = 360,
     .tab_index = 1,
     .text = u"Salir & fin",
     .is_cancel = true},
    {.name = "chkDibuja",
     .kind = ControlKind::check_box,
     .left = 150,
     .top = 600,
     .width = 1200,
     .height = 240,
     .tab_index = 2,
     .text = u"Dibuja"},
};

TEST(Forms, ABoxOfARoutineStandsOverItsForm) {
  Form form("f_Otra", u"Otra forma", 3000, 900, controls);
  form.on_click("cmdSalir", [&] { form.hide(); });
  form.on_click("cmdAviso", [] { error_box(u"un aviso"); });
  const Person person(L"Otra forma", [](HWND window) {
    HWND const button = control(window, L"Button", L"Aviso");
    PostMessageW(button, BM_CLICK, 0, 0);
    HWND const box = window_titled(box_title);
    EXPECT_EQ(GetWindow(box, GW_OWNER), window);
    PostMessageW(window, WM_CLOSE, 0, 0);  // the routine is at work
    PostMessageW(box, WM_COMMAND, IDOK, 0);
    until([&] { return IsWindowEnabled(window) != FALSE; });
    EXPECT_TRUE(IsWindowVisible(window));
    click(window, L"Salir && fin");
  });
  form.show_modal();
  EXPECT_FALSE(form.open());
}

TEST(Forms, TheFocusGoesOnFromAButtonThatARoutineDisables) {
  Form form("f_Otra", u"Otra forma", 3000, 900, controls);
  std::string in_focus;
  form.on_click("cmdSalir", [&] { form.hide(); });
  form.on_click("cmdAviso", [&] {
    form.control("chkDibuja").set_value(1.0);
    form.control("cmdAviso").set_enabled(false);
    in_focus = form.focus()->design().name;
  });
  const Person person(L"Otra forma", [&](HWND window) {
    click(window, L"Aviso");
    EXPECT_EQ(SendMessageW(control(window, L"Button", L"Dibuja"), BM_GETCHECK, 0, 0), BST_CHECKED);
    EXPECT_FALSE(IsWindowEnabled(control(window, L"Button", L"Aviso")));
    press(window, VK_RETURN);
  });
  form.show_modal();
  EXPECT_EQ(in_focus, "cmdSalir");
}

TEST(Forms, ATickIsTheFormsToo) {
  Form form("f_Otra", u"Otra forma", 3000, 900, controls);
  int ticks = 0;
  form.on_click("cmdSalir", [&] { form.hide(); });
  form.on_click("chkDibuja", [&] { ++ticks; });
  const Person person(L"Otra forma", [&](HWND window) {
    HWND const tick = control(window, L"Button", L"Dibuja");
    SendMessageW(tick, BM_CLICK, 0, 0);
    EXPECT_EQ(SendMessageW(tick, BM_GETCHECK, 0, 0), BST_CHECKED);
    SendMessageW(tick, BM_CLICK, 0, 0);
    EXPECT_EQ(SendMessageW(tick, BM_GETCHECK, 0, 0), BST_UNCHECKED);
    SendMessageW(tick, BM_CLICK, 0, 0);
    click(window, L"Salir && fin");
  });
  form.show_modal();
  EXPECT_EQ(ticks, 3);
  EXPECT_NE(form.control("chkDibuja").value(), 0.0);
}

// ---- Waiting events ---------------------------------------------------------------

TEST(Events, ThatWaitAreHandledAndAnEndIsPassedOn) {
  const HostWindow host(L"Programa de dibujo");
  PostMessageW(host.handle(), WM_CLOSE, 0, 0);
  EXPECT_TRUE(IsWindow(host.handle()));
  yield_to_events();
  EXPECT_FALSE(IsWindow(host.handle()));
  PostQuitMessage(3);
  yield_to_events();
  MSG message{};
  ASSERT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
  EXPECT_EQ(message.wParam, 3U);
}

}  // namespace
}  // namespace orv2_geo
