// A host that shows one box or form and tells on standard output what came of
// it. Where it says "waiting" it goes on after a line on standard input.
//   screen_host WHAT
#include <clocale>
#include <cstdio>
#include <functional>
#include <iostream>
#include <map>
#include <string>
#include <string_view>
#include <thread>

#include "dialogs/f_MaxiMin.h"
#include "frame/progress_sink.h"
#include "platform/error_box.h"
#include "platform/form.h"

namespace orv2_geo {
namespace {

void tell(const std::string& line) { std::cout << line << std::endl; }

void wait_for_a_line() {
  tell("waiting");
  std::string line;
  std::getline(std::cin, line);
}

// ---- A form that searches, shows its progress and asks ------------------------

constexpr ControlDesign search_controls[] = {
    {.name = "chkCood00",
     .kind = ControlKind::check_box,
     .left = 96,
     .top = 2064,
     .width = 1788,
     .height = 192,
     .tab_index = 10,
     .text = u"Quitar ptos (0,0)",
     .enabled = false},
    {.name = "FraOption",
     .kind = ControlKind::frame,
     .left = 288,
     .top = 336,
     .width = 2268,
     .height = 1116,
     .tab_index = 5,
     .text = u"Buscar:"},
    {.name = "TxtPresc",
     .kind = ControlKind::text_box,
     .left = 1152,
     .top = 720,
     .width = 972,
     .height = 300,
     .tab_index = 12,
     .text = u"0.001",
     .container = "FraOption"},
    {.name = "Opt3D(1)",
     .kind = ControlKind::option_button,
     .left = 1296,
     .top = 288,
     .width = 876,
     .height = 204,
     .tab_index = 7,
     .text = u"3D",
     .container = "FraOption"},
    {.name = "Opt3D(0)",
     .kind = ControlKind::option_button,
     .left = 288,
     .top = 288,
     .width = 636,
     .height = 204,
     .tab_index = 6,
     .text = u"2D",
     .container = "FraOption",
     .value = -1.0},
    {.name = "Label1",
     .kind = ControlKind::label,
     .left = 144,
     .top = 768,
     .width = 708,
     .height = 192,
     .tab_index = 13,
     .text = u"Precisión:",
     .container = "FraOption",
     .sizes_itself = true},
    {.name = "ProgressBar1",
     .kind = ControlKind::progress_bar,
     .left = 144,
     .top = 1536,
     .width = 2556,
     .height = 156,
     .tab_index = 3,
     .visible = false},
    {.name = "cmdCancelar",
     .kind = ControlKind::button,
     .left = 1632,
     .top = 2400,
     .width = 972,
     .height = 348,
     .tab_index = 0,
     .text = u"Cancelar",
     .is_cancel = true},
    {.name = "cmdCalcular",
     .kind = ControlKind::button,
     .left = 336,
     .top = 2400,
     .width = 972,
     .height = 348,
     .tab_index = 4,
     .text = u"Calcular",
     .is_default = true},
    {.name = "cmdEliminar",
     .kind = ControlKind::button,
     .left = 330,
     .top = 2400,
     .width = 972,
     .height = 348,
     .tab_index = 14,
     .text = u"Eliminar",
     .visible = false},
    {.name = "labCero",
     .kind = ControlKind::label,
     .left = 1968,
     .top = 2064,
     .width = 492,
     .height = 192,
     .tab_index = 11},
    {.name = "Label2",
     .kind = ControlKind::label,
     .left = 468,
     .top = 48,
     .width = 960,
     .height = 192,
     .tab_index = 9,
     .text = u"Nº de puntos:",
     .sizes_itself = true,
     .alignment = CellAlignment::right},
    {.name = "labPuntos",
     .kind = ControlKind::label,
     .left = 1488,
     .top = 48,
     .width = 84,
     .height = 192,
     .tab_index = 8,
     .text = u"0",
     .sizes_itself = true},
    {.name = "lblPtos",
     .kind = ControlKind::label,
     .left = 2550,
     .top = 1710,
     .width = 180,
     .height = 195,
     .tab_index = 2,
     .text = u"0",
     .visible = false,
     .sizes_itself = true},
    {.name = "lblEstudio",
     .kind = ControlKind::label,
     .left = 360,
     .top = 1710,
     .width = 2025,
     .height = 285,
     .tab_index = 1,
     .text = u"estudiando el nº:",
     .visible = false,
     .sizes_itself = true,
     .alignment = CellAlignment::centre,
     .background = 0x00ffff},
};

class SearchForm {
 public:
  SearchForm() {
    form_.on_click("cmdCalcular", [this] { search(); });
    form_.on_click("cmdEliminar", [this] { leave("cmdEliminar"); });
    form_.on_click("cmdCancelar", [this] { leave("cmdCancelar"); });
    form_.control("labPuntos").set_text(u"125000");
  }

  void show() {
    form_.show_modal();
    tell("text " + form_.control("TxtPresc").text().to_utf8());
    tell(form_.control("Opt3D(0)").value() != 0.0 ? "2D" : "3D");
  }

 private:
  void leave(const char* button) {
    tell(button);
    form_.hide();
  }

  void search() {
    tell("cmdCalcular");
    form_.control("FraOption").set_enabled(false);
    form_.control("cmdCalcular").set_enabled(false);
    const ObjectRef bar = form_.object("ProgressBar1");
    const ProgressSink progress(bar);
    progress.visible(true);
    progress.min(0);
    progress.max(30.5);
    for (const double value : {0.0, 10.0, 20.0, 30.5}) {
      progress.value(value);
      wait_for_a_line();
    }
    form_.control("lblEstudio").set_text(u"Hay 112 puntos repetidos");
    form_.control("lblEstudio").set_visible(true);
    form_.control("ProgressBar1").set_visible(false);
    form_.control("cmdCalcular").set_visible(false);
    form_.control("cmdEliminar").set_visible(true);
    tell("searched");
  }

  Form form_{"f_Busca", u"Quitar puntos repetidos:", 2865, 3000, search_controls};
};

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
};

void show_other_form() {
  Form form("f_Otra", u"Otros controles:", 2700, 2250, other_controls);
  form.on_click("lblLargo", [] { tell("lblLargo"); });
  form.on_click("chkDibuja",
                [&] { tell("tick " + std::to_string(form.control("chkDibuja").value() != 0.0)); });
  form.on_click("cmdAviso", [] {
    error_box(u"Un aviso desde el formulario");
    tell("warned");
  });
  form.on_click("cmdFalla", [] { raise(failure::division_by_zero); });
  try {
    form.show_modal();
  } catch (const RunFailure& failure) {
    tell("failure " + std::to_string(failure.number()));
  }
  tell(form.open() ? "open" : "not open");
}

// ---- The extremes ---------------------------------------------------------------

void show_extremes(bool full) {
  f_MaxiMin dialog;
  if (full) {
    dialog.A_Let_Parametros_Mdt1(445210.376, 444980.125, 4480412.5, 4479998.75, 688.214, -12.5,
                                 1204, 17, 3, 88, 1205, 40);
  } else {
    dialog.A_Let_Parametros_Mdt(445210.376, 444980.125, 4480412.5, 4479998.75, 688.214, -12.5);
  }
  dialog.show_modal();
  tell(dialog.form().open() ? "open" : "not open");
}

// ---- Boxes --------------------------------------------------------------------

void show_trapped_box() {
  trapped("Orv2_Geo.cgeo_api", u"Pto en Polígono - Error nº ",
          [] { raise(failure::division_by_zero); });
  tell("returned");
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
      {"search", [] { SearchForm().show(); }},
      {"other", show_other_form},
      {"extremes", [] { show_extremes(true); }},
      {"short", [] { show_extremes(false); }},
      {"box", show_box_and_locale},
      {"trapped", show_trapped_box},
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
