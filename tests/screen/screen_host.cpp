// A host that lets the library, or a form of its own, ask the person once and
// tells on standard output what came back. Where it says "waiting" it goes on after a line on
// standard input.
//   screen_host WHAT
#include <clocale>
#include <cstdio>
#include <functional>
#include <iostream>
#include <map>
#include <string>
#include <string_view>
#include <thread>

#include "orv2_geo/frame/progress_sink.h"
#include "orv2_geo/orv2_geo.hpp"
#include "orv2_geo/platform/error_box.h"
#include "orv2_geo/platform/text_services.h"

namespace orv2_geo {
namespace {

void tell(const std::string& line) { std::cout << line << std::endl; }

void wait_for_a_line() {
  tell("waiting");
  std::string line;
  std::getline(std::cin, line);
}

// ---- Repeated points ----------------------------------------------------------

std::string word(double value) { return text_services::default_text(value).to_utf8(); }
std::string word(std::int32_t value) { return std::to_string(value); }
std::string word(const Text& text) { return text.to_utf8(); }

template <class T>
void tell_elements(const std::string& name, const GeoArray<T>& array) {
  std::string line = name;
  for (std::uint32_t i = 0; i < array.count(); ++i) line += " " + word(array.data()[i]);
  tell(line);
}

struct Points {
  explicit Points(std::int32_t n)
      : count(n),
        x(0, n),
        y(0, n),
        z(0, n),
        codes(0, n),
        names(0, n),
        layers(0, n),
        numbers(0, n) {}

  /// The member's dialog, and what it left of the points' number and Precision.
  void drop_repeated() {
    double Precision = 0.0;
    try {
      cgeo_Matrices().Quita_Pts_Repetidos(count, x, y, z, codes, names, layers, numbers, true,
                                          Precision);
    } catch (const RunFailure& failure) {
      tell("failure " + word(failure.number()));
    }
    tell("points " + word(count) + " precision " + word(Precision));
  }

  std::int32_t count;
  DoubleArray x, y, z;
  StringArray codes, names;
  ShortArray layers;
  LongArray numbers;
};

// 3 and 5 repeat 2 in plan, 5 in space too; 6 is 0.0005 away from 4.
Points eight_points() {
  constexpr double xs[] = {0, 10, 20, 20, 30, 20, 30.0005, 40, 50};
  constexpr double zs[] = {0, 1, 2, 7, 4, 2, 4, 6, 8};
  Points points(8);
  for (std::int32_t i = 1; i <= points.count; ++i) {
    points.x(i) = xs[i];
    points.y(i) = 101;
    points.z(i) = zs[i];
    points.codes(i) = Text::from_utf8("C" + word(i));
    points.names(i) = Text::from_utf8("Peña" + word(i));
    points.layers(i) = static_cast<std::int16_t>(10 * i);
    points.numbers(i) = -i;
  }
  return points;
}

void drop_and_tell(Points points) {
  points.drop_repeated();
  tell_elements("x", points.x);
  tell_elements("z", points.z);
  tell_elements("codes", points.codes);
  tell_elements("names", points.names);
  tell_elements("layers", points.layers);
  tell_elements("numbers", points.numbers);
}

void drop_repeated_of_short_arrays() {
  Points points = eight_points();
  points.z.size_keeping(0, 3);
  drop_and_tell(points);
}

// Every spot twice, in no order.
void drop_repeated_of_many() {
  Points points(1000000);
  for (std::int32_t i = 1; i <= points.count; ++i) {
    points.x(i) = points.y(i) = i / 2 * 4001 % 1000003 / 8.0;
  }
  points.drop_repeated();
}

// ---- A form with what the others do not have ---------------------------------

constexpr ControlDesign other_controls[] = {
    {.name = "lblLargo",
     .kind = ControlKind::label,
     .left = 150,
     .top = 150,
     .width = 2400,
     .height = 450,
     .text = u"Una línea larga que no cabe en su ancho & pasa a otra"},
    {.name = "chkDibuja",
     .kind = ControlKind::check_box,
     .left = 150,
     .top = 750,
     .width = 2400,
     .height = 240,
     .tab_index = 3,
     .text = u"Dibuja & numera"},
    {.name = "cmdAviso",
     .kind = ControlKind::button,
     .left = 150,
     .top = 1200,
     .width = 1050,
     .height = 360,
     .tab_index = 2,
     .text = u"Aviso"},
    {.name = "cmdFalla",
     .kind = ControlKind::button,
     .left = 1350,
     .top = 1200,
     .width = 1050,
     .height = 360,
     .tab_index = 1,
     .text = u"Falla"},
    {.name = "lblOscuro",
     .kind = ControlKind::label,
     .left = 150,
     .top = 1800,
     .width = 2250,
     .height = 285,
     .text = u"centrado",
     .alignment = CellAlignment::centre,
     .background = 0x000080},
    {.name = "prgAvance",
     .kind = ControlKind::progress_bar,
     .left = 150,
     .top = 2220,
     .width = 2400,
     .height = 156,
     .visible = false},
    {.name = "cmdTrabaja",
     .kind = ControlKind::button,
     .left = 150,
     .top = 2550,
     .width = 1050,
     .height = 360,
     .tab_index = 4,
     .text = u"Trabaja",
     .is_default = true},
};

// Steps that a test can look at one by one.
void work(Form& form) {
  const ObjectRef bar = form.object("prgAvance");
  const ProgressSink progress(bar);
  progress.visible(true);
  progress.min(0);
  progress.max(30.5);
  for (const double value : {0.0, 10.0, 20.0, 30.5}) {
    progress.value(value);
    wait_for_a_line();
  }
}

void show_other_form() {
  Form form("f_Otra", u"Otros controles:", 2700, 3060, other_controls);
  form.on_click("lblLargo", [] { tell("lblLargo"); });
  form.on_click("chkDibuja",
                [&] { tell("tick " + std::to_string(form.control("chkDibuja").value() != 0.0)); });
  form.on_click("cmdAviso", [] {
    error_box(u"Un aviso desde el formulario");
    tell("warned");
  });
  form.on_click("cmdTrabaja", [&] { work(form); });
  form.on_click("cmdFalla", [] { raise(failure::division_by_zero); });
  try {
    form.show_modal();
  } catch (const RunFailure& failure) {
    tell("failure " + std::to_string(failure.number()));
  }
  tell(form.open() ? "open" : "not open");
}

// ---- The extremes ---------------------------------------------------------------

using Extremes = decltype(&cgeo_Matrices::MaxMin_3Matriz);

// Coordinates of a survey's size, each extreme at a point of its own.
void show_extremes(Extremes member) {
  DoubleArray x(0, 1205), y(0, 1205), z(0, 1205);
  for (std::int32_t i = 1; i <= x.upper(); ++i) {
    x(i) = 445000.0;
    y(i) = 4480000.0;
    z(i) = 650.0;
  }
  x(88) = 444980.125;
  x(1204) = 445210.376;
  y(1205) = 4479998.75;
  y(17) = 4480412.5;
  z(40) = -12.5;
  z(3) = 688.214;
  double max_x = 0, min_x = 0, max_y = 0, min_y = 0, max_z = 0, min_z = 0;
  (cgeo_Matrices().*member)(x, y, z, max_x, min_x, max_y, min_y, max_z, min_z, true);
  std::string line;
  for (const double found : {min_x, max_x, min_y, max_y, min_z, max_z}) line += " " + word(found);
  tell("found" + line);
}

// Coordinates from `least` to `greatest` in all three.
void show_long_extremes(double least, double greatest) {
  DoubleArray all(0, 2);
  all(1) = least;
  all(2) = greatest;
  double max_x = 0, min_x = 0, max_y = 0, min_y = 0, max_z = 0, min_z = 0;
  cgeo_Matrices().MaxMin_3Matriz(all, all, all, max_x, min_x, max_y, min_y, max_z, min_z, true);
  tell("returned");
}

// ---- Boxes --------------------------------------------------------------------

void show_box_of_a_failure() {
  const DoubleArray x(0, 3);
  LongArray too_short(0, 2);
  cgeo_Matrices().Ordena_en_X_el_Indice_1Matriz1(3, x, too_short, {});
  tell_elements("order", too_short);
}

// A host's way of writing numbers stays as it is.
void show_box_and_locale() {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  error_box(u"Ordenación <b>terminada</b> & más");
  tell(before == std::setlocale(LC_ALL, nullptr) ? "same locale" : "another locale");
}

void show_box_on_another_thread() {
  error_box(u"el primero");
  std::thread([] { error_box(u"en otro hilo"); }).join();
  tell("returned");
}

int run(std::string_view what) {
  const std::map<std::string_view, std::function<void()>> all = {
      {"points", [] { drop_and_tell(eight_points()); }},
      {"short arrays", drop_repeated_of_short_arrays},
      {"many points", drop_repeated_of_many},
      {"extremes", [] { show_extremes(&cgeo_Matrices::MaxMin_3Matriz); }},
      {"sixteen characters", [] { show_long_extremes(-44800123456.789, 155199876543.211); }},
      {"longer than the room", [] { show_long_extremes(-1e30, 1e30); }},
      {"outdated extremes", [] { show_extremes(&cgeo_Matrices::MaxMin_3Matriz1); }},
      {"other", show_other_form},
      {"box", show_box_and_locale},
      {"failure", show_box_of_a_failure},
      {"thread", show_box_on_another_thread},
  };
  const auto found = all.find(what);
  if (found == all.end()) return 2;
  found->second();
  wait_for_a_line();  // what was on the screen is gone by now
  return 0;
}

}  // namespace
}  // namespace orv2_geo

int main(int count, char** words) { return count == 2 ? orv2_geo::run(words[1]) : 2; }
