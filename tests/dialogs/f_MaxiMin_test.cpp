#include "orv2_geo/dialogs/f_MaxiMin.h"

#include <string>
#include <vector>

#include "tests/platform/expect_controls.h"
#include "tests/platform/recording_interface.h"
#include "tests/support/preamble.h"

namespace orv2_geo {
namespace {

using Cells = std::vector<std::vector<std::string>>;

Cells cells_of(f_MaxiMin& dialog) {
  const Grid& grid = dialog.form().control("msf_MaxMin").grid();
  Cells cells(static_cast<std::size_t>(grid.rows));
  std::int32_t row = 0;
  for (auto& line : cells) {
    for (std::int32_t col = 0; col < grid.cols; ++col)
      line.push_back(grid.cell(row, col).to_utf8());
    ++row;
  }
  return cells;
}

std::vector<int> alignments_of(f_MaxiMin& dialog) {
  const Grid& grid = dialog.form().control("msf_MaxMin").grid();
  std::vector<int> alignments;
  for (std::int32_t col = 0; col < grid.cols; ++col) alignments.push_back(grid.alignment(col));
  return alignments;
}

void fill_full(f_MaxiMin& dialog) {
  dialog.A_Let_Parametros_Mdt1(20.25, 10.5, 4480000.1236, 4470000.0, -1.0, -2.5, 3, 1, 5, 7, 2, 6);
}
void fill_short(f_MaxiMin& dialog) {
  dialog.A_Let_Parametros_Mdt(20.25, 10.5, 4480000.1236, 4470000.0, -1.0, -2.5);
}

TEST(ExtremesForm, HasItsControlsInTheirPlaces) {
  using enum ControlKind;
  const ControlRow table[] = {
      {"msf_MaxMin", grid, 45, 90, 7770, 1365, 1, u""},
      {"cmdDatosaceptar", button, 6720, 1620, 1035, 360, 0, u"Aceptar"},
      {"bt_salir", button, 5460, 1620, 1080, 345, 2, u"Cancelar"},
  };
  f_MaxiMin dialog;
  const Form& form = dialog.form();
  EXPECT_EQ(form.name(), "f_MaxiMin");
  EXPECT_EQ(form.caption(), Text(u"Maximos y Minimos:"));
  EXPECT_EQ(form.width(), 7935);
  EXPECT_EQ(form.height(), 2175);
  EXPECT_EQ(form.frame().start, StartPosition::centre_of_screen);
  EXPECT_EQ(form.frame().left, 45);
  EXPECT_EQ(form.frame().top, 210);
  expect_controls(form, table);
  EXPECT_EQ(controls_where(form, [](const Control& one) { return one.design().is_cancel; }),
            "bt_salir ");
  EXPECT_EQ(controls_where(form, [](const Control& one) { return one.design().is_default; }), "");
  EXPECT_EQ(
      controls_where(form, [](const Control& one) { return !one.visible() || !one.enabled(); }),
      "");
}

TEST(ExtremesForm, StartsWithAnEmptyGridOfFourByFour) {
  f_MaxiMin dialog;
  const Grid& grid = dialog.form().control("msf_MaxMin").grid();
  EXPECT_EQ(grid.rows, 4);
  EXPECT_EQ(grid.cols, 4);
  EXPECT_EQ(grid.fixed_rows, 1);
  EXPECT_EQ(grid.fixed_cols, 1);
  EXPECT_EQ(grid.font, "Courier New");
  EXPECT_EQ(cells_of(dialog), Cells(4, std::vector<std::string>(4)));
}

TEST(ExtremesForm, TheFullerLayoutShowsThePoints) {
  f_MaxiMin dialog;
  fill_full(dialog);
  EXPECT_EQ(dialog.form().control("msf_MaxMin").grid().format_string,
            Text(u"       |   Mínimos   |  Pto  |  Máximos   |  Pto  | Diferencias"));
  EXPECT_EQ(
      cells_of(dialog),
      (Cells{{"       ", "   Mínimos   ", "  Pto  ", "  Máximos   ", "  Pto  ", " Diferencias"},
             {"    X", "10.500", "7", "20.250", "3", "9.750"},
             {"    Y", "4470000.000", "2", "4480000.124", "1", "10000.124"},
             {"    Z", "-2.500", "6", "-1.000", "5", "1.500"}}));
  EXPECT_EQ(alignments_of(dialog), (std::vector<int>{1, 7, 4, 7, 4, 7}));
}

TEST(ExtremesForm, TheShortLayoutShowsTheExtremesAlone) {
  f_MaxiMin dialog;
  fill_short(dialog);
  EXPECT_EQ(dialog.form().control("msf_MaxMin").grid().format_string,
            Text(u"          |   Mínimos   |  Máximos   |  Diferencias"));
  EXPECT_EQ(cells_of(dialog),
            (Cells{{"          ", "   Mínimos   ", "  Máximos   ", "  Diferencias"},
                   {"    X", "10.500", "20.250", "9.750"},
                   {"    Y", "4470000.000", "4480000.124", "10000.124"},
                   {"    Z", "-2.500", "-1.000", "1.500"}}));
  EXPECT_EQ(alignments_of(dialog), (std::vector<int>{1, 7, 7, 7}));
}

TEST(ExtremesForm, EqualExtremesDifferByZero) {
  f_MaxiMin dialog;
  dialog.A_Let_Parametros_Mdt(5, 5, 5, 5, 5, 5);
  EXPECT_EQ(cells_of(dialog)[2], (std::vector<std::string>{"    Y", "5.000", "5.000", "0.000"}));
}

TEST(ExtremesForm, ADifferenceHasNoSign) {
  f_MaxiMin dialog;
  dialog.A_Let_Parametros_Mdt(1, 4, 0, 0, 0, 0);
  EXPECT_EQ(cells_of(dialog)[1], (std::vector<std::string>{"    X", "4.000", "1.000", "3.000"}));
}

// A point number keeps its digits whatever the locale.
TEST(ExtremesForm, PointNumbersOfAnySize) {
  f_MaxiMin dialog;
  dialog.A_Let_Parametros_Mdt1(0, 0, 0, 0, 0, 0, 2147483647, 0, 0, -1, 1000000, 0);
  EXPECT_EQ(cells_of(dialog)[1][4], "2147483647");
  EXPECT_EQ(cells_of(dialog)[1][2], "-1");
  EXPECT_EQ(cells_of(dialog)[2][2], "1000000");
}

struct OverflowRow {
  const char* rule;
  double max[3], min[3];
  std::vector<bool> written;  // the difference of each row
};

TEST(ExtremesForm, ADifferenceThatOverflowsIsFailure6AfterTheCellsBeforeIt) {
  const double huge = 1.7e308;
  const OverflowRow table[] = {
      {"in X", {huge, 1, 1}, {-huge, 0, 0}, {false, false, false}},
      {"in Y", {1, huge, 1}, {0, -huge, 0}, {true, false, false}},
      {"in Z", {1, 1, huge}, {0, 0, -huge}, {true, true, false}},
  };
  for (const OverflowRow& row : table) {
    const double x = row.max[0], y = row.max[1], z = row.max[2];
    const double least_x = row.min[0], least_y = row.min[1], least_z = row.min[2];
    f_MaxiMin full, brief;
    EXPECT_EQ(failure_of([&] {
                full.A_Let_Parametros_Mdt1(x, least_x, y, least_y, z, least_z, 1, 2, 3, 4, 5, 6);
              }),
              6)
        << row.rule;
    EXPECT_EQ(failure_of([&] { brief.A_Let_Parametros_Mdt(x, least_x, y, least_y, z, least_z); }),
              6)
        << row.rule;
    for (f_MaxiMin* dialog : {&full, &brief}) {
      const Cells cells = cells_of(*dialog);
      for (std::size_t i = 1; i <= 3; ++i) {
        EXPECT_EQ(!cells[i].back().empty(), row.written[i - 1]) << row.rule << i;
        for (std::size_t col = 0; col + 1 < cells[i].size(); ++col) {
          EXPECT_FALSE(cells[i][col].empty()) << row.rule << i << col;
        }
      }
    }
  }
}

struct ExitRow {
  const char* rule;
  void (*action)(Form&);
  bool leaves;
};

TEST(ExtremesForm, EveryWayOutUnloadsIt) {
  const ExitRow table[] = {
      {"Aceptar", [](Form& form) { form.click("cmdDatosaceptar"); }, true},
      {"Cancelar", [](Form& form) { form.click("bt_salir"); }, true},
      {"Escape", [](Form& form) { form.press_escape(); }, true},
      {"the title bar", [](Form& form) { form.close(); }, true},
      {"Enter, Aceptar in focus", [](Form& form) { form.press_enter(); }, true},
      {"Enter on Cancelar",
       [](Form& form) {
         form.set_focus("bt_salir");
         form.press_enter();
       },
       true},
      {"Enter on the grid, as Aceptar",
       [](Form& form) {
         form.set_focus("msf_MaxMin");
         EXPECT_EQ(form.enter_button()->design().name, "cmdDatosaceptar");
         form.press_enter();
       },
       true},
      {"nothing in the grid can be edited",
       [](Form& form) { form.set_text("msf_MaxMin", Text(u"9")); }, false},
      {"a click on the grid", [](Form& form) { form.click("msf_MaxMin"); }, false},
  };
  for (const ExitRow& row : table) {
    RecordingInterface screen;
    f_MaxiMin dialog;
    fill_full(dialog);
    const Cells before = cells_of(dialog);
    bool open = true;
    screen.user = [&](Form& form) {
      EXPECT_TRUE(form.open());
      row.action(form);
      open = form.open();
    };
    dialog.show_modal();
    EXPECT_EQ(open, !row.leaves) << row.rule;
    EXPECT_FALSE(dialog.form().open()) << row.rule;
    dialog.unload();  // once more changes nothing
    EXPECT_FALSE(dialog.form().open()) << row.rule;
    EXPECT_EQ(cells_of(dialog), before) << row.rule;
  }
}

}  // namespace
}  // namespace orv2_geo
