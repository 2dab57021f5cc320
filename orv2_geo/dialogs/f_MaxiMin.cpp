#include "orv2_geo/dialogs/f_MaxiMin.h"

#include <initializer_list>

#include "orv2_geo/dialogs/m_sys.h"
#include "orv2_geo/frame/checked_math.h"

namespace orv2_geo {

namespace {

constexpr ControlDesign controls[] = {
    {.name = "msf_MaxMin",
     .kind = ControlKind::grid,
     .left = 45,
     .top = 90,
     .width = 7770,
     .height = 1365,
     .tab_index = 1},
    {.name = "cmdDatosaceptar",
     .kind = ControlKind::button,
     .left = 6720,
     .top = 1620,
     .width = 1035,
     .height = 360,
     .tab_index = 0,
     .text = u"Aceptar"},
    {.name = "bt_salir",
     .kind = ControlKind::button,
     .left = 5460,
     .top = 1620,
     .width = 1080,
     .height = 345,
     .tab_index = 2,
     .text = u"Cancelar",
     .is_cancel = true},
};

constexpr std::int16_t coordinate_decimals = 3;
constexpr std::int16_t no_decimals = 0;
constexpr std::int16_t no_width = 0;
constexpr auto centre = static_cast<std::int16_t>(CellAlignment::centre);
constexpr auto right = static_cast<std::int16_t>(CellAlignment::right);

// From column 1 on; column 0 keeps the grid's own.
void align(Grid& grid, std::initializer_list<std::int16_t> alignments) {
  std::int32_t col = 0;
  for (const std::int16_t alignment : alignments) grid.set_alignment(++col, alignment);
}

void write_row_labels(Grid& grid) {
  std::int32_t row = 0;
  for (const char16_t* label : {u"    X", u"    Y", u"    Z"}) grid.set_cell(++row, 0, label);
}

void write_coordinates(Grid& grid, std::int32_t col, double x, double y, double z) {
  std::int32_t row = 0;
  for (const double value : {x, y, z}) {
    grid.set_cell(++row, col, Texto_de_Numero(value, coordinate_decimals, no_width));
  }
}

void write_points(Grid& grid, std::int32_t col, std::int32_t x, std::int32_t y, std::int32_t z) {
  std::int32_t row = 0;
  for (const std::int32_t point : {x, y, z}) {
    grid.set_cell(++row, col, Texto_de_Numero(point, no_decimals, no_width));
  }
}

void write_difference(Grid& grid, std::int32_t row, std::int32_t col, double least,
                      double greatest) {
  const Checked difference = abs(Checked(least) - Checked(greatest));
  grid.set_cell(row, col, Texto_de_Numero(difference.value(), coordinate_decimals, no_width));
}

}  // namespace

f_MaxiMin::f_MaxiMin() : form_("f_MaxiMin", u"Maximos y Minimos:", 7935, 2175, controls) {
  form_.set_frame({.start = StartPosition::centre_of_screen, .left = 45, .top = 210});
  Grid& grid = form_.control("msf_MaxMin").grid();
  grid.rows = 4;
  grid.cols = 4;
  grid.fixed_rows = 1;
  grid.fixed_cols = 1;
  form_.on_click("bt_salir", [this] { bt_salir_Click(); });
  form_.on_click("cmdDatosaceptar", [this] { cmdDatosaceptar_Click(); });
}

void f_MaxiMin::A_Let_Parametros_Mdt1(const double& MaxX, const double& MinX, const double& MaxY,
                                      const double& MinY, const double& MaxZ, const double& MinZ,
                                      const std::int32_t& PtoMaxX, const std::int32_t& PtoMaxY,
                                      const std::int32_t& PtoMaxZ, const std::int32_t& PtoMinX,
                                      const std::int32_t& PtoMinY, const std::int32_t& PtoMinZ) {
  Grid& grid = form_.control("msf_MaxMin").grid();
  // The blanks around the headers make the columns wide enough for coordinates.
  grid.set_format_string(u"       |   Mínimos   |  Pto  |  Máximos   |  Pto  | Diferencias");
  grid.cols = 6;
  align(grid, {right, centre, right, centre, right});
  write_row_labels(grid);
  write_coordinates(grid, 1, MinX, MinY, MinZ);
  write_points(grid, 2, PtoMinX, PtoMinY, PtoMinZ);
  write_coordinates(grid, 3, MaxX, MaxY, MaxZ);
  write_points(grid, 4, PtoMaxX, PtoMaxY, PtoMaxZ);
  write_difference(grid, 1, 5, MinX, MaxX);
  write_difference(grid, 2, 5, MinY, MaxY);
  write_difference(grid, 3, 5, MinZ, MaxZ);
}

void f_MaxiMin::A_Let_Parametros_Mdt(const double& MaxX, const double& MinX, const double& MaxY,
                                     const double& MinY, const double& MaxZ, const double& MinZ) {
  Grid& grid = form_.control("msf_MaxMin").grid();
  grid.set_format_string(u"          |   Mínimos   |  Máximos   |  Diferencias");
  align(grid, {right, right, right});
  write_row_labels(grid);
  write_coordinates(grid, 1, MinX, MinY, MinZ);
  write_coordinates(grid, 2, MaxX, MaxY, MaxZ);
  write_difference(grid, 1, 3, MinX, MaxX);
  write_difference(grid, 2, 3, MinY, MaxY);
  write_difference(grid, 3, 3, MinZ, MaxZ);
}

}  // namespace orv2_geo
