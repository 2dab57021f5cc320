#include "orv2_geo/dialogs/f_Pts_Repet.h"

#include <string>
#include <vector>

#include "tests/platform/expect_controls.h"
#include "tests/platform/recording_interface.h"
#include "tests/support/arrays.h"
#include "tests/support/preamble.h"

namespace orv2_geo {
namespace {

// Eight points, 2 repeated in plan at 3 and in space at 5; 6 is 0.0005 away from 4.
class RepeatedPoints : public ::testing::Test {
 protected:
  RepeatedPoints() {
    const double xs[] = {0, 10, 20, 20, 30, 20, 30.0005, 40, 50};
    const double zs[] = {0, 1, 2, 7, 4, 2, 4, 6, 8};
    for (std::int32_t i = 0; i <= 8; ++i) {
      x(i) = xs[i];
      y(i) = 100 + (i == 0 ? 0 : 1);
      z(i) = zs[i];
      const std::string number = std::to_string(i);
      codes(i) = Text::from_utf8("C" + number);
      layers(i) = static_cast<std::int16_t>(10 * i);
      numbers(i) = -i;
    }
    for (std::int32_t i = 0; i <= 10; ++i) names(i) = Text::from_utf8("N" + std::to_string(i));
  }

  void with_person(std::function<void(Form&)> actions) {
    screen.user = std::move(actions);
    dialog.A_Quita_Pts_Repetidos(count, x, y, z, codes, names, layers, numbers, aviso, precision);
    dialog.unload();
  }

  std::vector<std::string> texts(const StringArray& array) const {
    std::vector<std::string> all;
    for (const Text& text : elements(array)) all.push_back(text.to_utf8());
    return all;
  }
  std::string text(Form& form, const char* name) { return form.control(name).text().to_utf8(); }
  bool shown(Form& form, const char* name) { return form.control(name).visible(); }
  bool enabled(Form& form, const char* name) { return form.control(name).enabled(); }

  RecordingInterface screen;
  std::int32_t count = 8;
  DoubleArray x{0, 8}, y{0, 8}, z{0, 8};
  StringArray codes{0, 8}, names{0, 10};
  ShortArray layers{0, 8};
  LongArray numbers{0, 8};
  Bool aviso = true;
  double precision = 5.0;
  f_Pts_Repet dialog;
};

using Doubles = std::vector<double>;
using Longs = std::vector<std::int32_t>;
using Texts = std::vector<std::string>;

TEST_F(RepeatedPoints, HasItsControlsInTheirPlaces) {
  using enum ControlKind;
  const ControlRow table[] = {
      {"chkCood00", check_box, 96, 2064, 1788, 192, 10, u"Quitar ptos (0,0)"},
      {"FraOption", frame, 288, 336, 2268, 1116, 5, u"Buscar:"},
      {"TxtPresc", text_box, 1152, 720, 972, 300, 12, u"0.001", "FraOption"},
      {"Opt3D(1)", option_button, 1296, 288, 876, 204, 7, u"3D", "FraOption"},
      {"Opt3D(0)", option_button, 288, 288, 636, 204, 6, u"2D", "FraOption"},
      {"Label1", label, 144, 768, 708, 192, 13, u"Precisión:", "FraOption"},
      {"ProgressBar1", progress_bar, 144, 1536, 2556, 156, 3, u""},
      {"cmdCancelar", button, 1632, 2400, 972, 348, 0, u"Cancelar"},
      {"cmdCalcular", button, 336, 2400, 972, 348, 4, u"Calcular"},
      {"cmdEliminar", button, 330, 2400, 972, 348, 14, u"Eliminar"},
      {"labCero", label, 1968, 2064, 492, 192, 11, u""},
      {"Label2", label, 468, 48, 960, 192, 9, u"Nº de puntos:"},
      {"labPuntos", label, 1488, 48, 84, 192, 8, u"0"},
      {"lblPtos", label, 2550, 1710, 180, 195, 2, u"0"},
      {"lblEstudio", label, 360, 1710, 2025, 285, 1, u"estudiando el nº:"},
  };
  const Form& form = dialog.form();
  EXPECT_EQ(form.name(), "f_Pts_Repet");
  EXPECT_EQ(form.caption().to_utf8(), "Quitar puntos repetidos:");
  EXPECT_EQ(form.width(), 2865);
  EXPECT_EQ(form.height(), 3000);
  EXPECT_EQ(form.frame().start, StartPosition::centre_of_owner);
  expect_controls(form, table);
}

TEST_F(RepeatedPoints, HowItsControlsStart) {
  Form& form = dialog.form();
  const auto where = [&](auto condition) { return controls_where(form, condition); };
  EXPECT_EQ(where([](const Control& one) { return !one.visible(); }),
            "ProgressBar1 cmdEliminar lblPtos lblEstudio ");
  EXPECT_EQ(where([](const Control& one) { return !one.enabled(); }), "chkCood00 ");
  EXPECT_EQ(where([](const Control& one) { return one.value() == -1.0; }), "Opt3D(0) ");
  EXPECT_EQ(where([](const Control& one) { return one.value() != 0.0; }), "Opt3D(0) ");
  EXPECT_EQ(where([](const Control& one) { return one.design().is_default; }), "cmdCalcular ");
  EXPECT_EQ(where([](const Control& one) { return one.design().is_cancel; }), "cmdCancelar ");
  EXPECT_EQ(where([](const Control& one) { return one.design().sizes_itself; }),
            "Label1 Label2 labPuntos lblPtos lblEstudio ");
  EXPECT_EQ(
      where([](const Control& one) { return one.design().alignment == CellAlignment::right; }),
      "Label2 ");
  EXPECT_EQ(
      where([](const Control& one) { return one.design().alignment == CellAlignment::centre; }),
      "lblEstudio ");
  EXPECT_EQ(where([](const Control& one) { return one.design().background != -1; }), "lblEstudio ");
  EXPECT_EQ(form.control("lblEstudio").design().background, 0x00ffff);
  EXPECT_EQ(form.control("ProgressBar1").min(), 0.0);
  EXPECT_EQ(form.control("ProgressBar1").max(), 100.0);
}

TEST_F(RepeatedPoints, ComputeAndDelete) {
  with_person([&](Form& form) {
    EXPECT_EQ(text(form, "labPuntos"), "8");
    EXPECT_TRUE(enabled(form, "FraOption"));
    form.click("cmdCalcular");
    // Confirming.
    EXPECT_FALSE(enabled(form, "FraOption"));
    EXPECT_FALSE(enabled(form, "cmdCalcular"));
    EXPECT_FALSE(shown(form, "cmdCalcular"));
    EXPECT_TRUE(shown(form, "cmdEliminar"));
    EXPECT_TRUE(shown(form, "lblEstudio"));
    EXPECT_FALSE(shown(form, "ProgressBar1"));
    EXPECT_EQ(text(form, "lblEstudio"), "Hay 3 puntos repetidos");
    EXPECT_EQ(text(form, "labCero"), "");
    form.set_text("TxtPresc", u"9");  // frozen with its frame
    EXPECT_EQ(text(form, "TxtPresc"), "0.001");
    form.click("cmdEliminar");
  });
  EXPECT_FALSE(dialog.Cancelado);
  EXPECT_EQ(count, 5);
  EXPECT_EQ(elements(x), (Doubles{0, 10, 20, 30, 40, 50}));
  EXPECT_EQ(elements(z), (Doubles{0, 1, 7, 4, 6, 8}));  // of a cluster the highest stays
  EXPECT_EQ(texts(codes), (Texts{"C0", "C1", "C3", "C4", "C7", "C8"}));
  EXPECT_EQ(elements(layers), (std::vector<std::int16_t>{0, 10, 30, 40, 70, 80}));
  EXPECT_EQ(texts(names),
            (Texts{"N0", "N1", "N3", "N4", "N7", "N8", "N6", "N7", "N8", "N9", "N10"}));
  EXPECT_EQ(elements(numbers), (Longs{0, 1, 2, 2, 3, 2, 3, 4, 5}));
  EXPECT_TRUE(screen.boxes.empty());
}

TEST_F(RepeatedPoints, ThreeDimensionsCompareTheElevations) {
  with_person([](Form& form) {
    form.select("Opt3D(1)");
    form.press_enter();  // Calcular is the default button
    EXPECT_EQ(form.control("lblEstudio").text().to_utf8(), "Hay 1 puntos repetidos");
    form.click("cmdEliminar");
  });
  EXPECT_EQ(count, 7);
  for (const DoubleArray* array : {&x, &y, &z}) EXPECT_EQ(array->upper(), 7);
  EXPECT_EQ(codes.upper(), 7);
  EXPECT_EQ(layers.upper(), 7);
  EXPECT_EQ(names.upper(), 10);
}

struct ToleranceRow {
  const char* rule;
  const char16_t* typed;
  const char* found;
};

TEST_F(RepeatedPoints, TheTypedTolerance) {
  const ToleranceRow table[] = {
      {"as it stands", u"0.001", "Hay 3 puntos repetidos"},
      {"smaller", u"0.0004", "Hay 2 puntos repetidos"},
      {"a decimal comma ends the number: the default applies", u"0,001", "Hay 2 puntos repetidos"},
      {"letters: the default", u"abc", "Hay 2 puntos repetidos"},
      {"empty: the default", u"", "Hay 2 puntos repetidos"},
      {"what follows the number is passed over", u" 0.001 m", "Hay 3 puntos repetidos"},
      {"large", u"10.5", "Hay 5 puntos repetidos"},
      {"negative: nothing is a repeat", u"-1", "Hay 0 puntos repetidos"},
  };
  for (const ToleranceRow& row : table) {
    f_Pts_Repet one;
    std::string found;
    screen.user = [&](Form& form) {
      form.set_text("TxtPresc", row.typed);
      form.click("cmdCalcular");
      found = form.control("lblEstudio").text().to_utf8();
      form.click("cmdCancelar");
    };
    one.A_Quita_Pts_Repetidos(count, x, y, z, codes, names, layers, numbers, aviso, precision);
    EXPECT_EQ(found, row.found) << row.rule;
    EXPECT_TRUE(screen.boxes.empty()) << row.rule;
  }
}

TEST_F(RepeatedPoints, NoRepeatsAreOfferedForDeletionToo) {
  count = 2;
  with_person([](Form& form) {
    form.click("cmdCalcular");
    EXPECT_EQ(form.control("lblEstudio").text().to_utf8(), "Hay 0 puntos repetidos");
    EXPECT_TRUE(form.control("cmdEliminar").visible());
    form.click("cmdEliminar");
  });
  EXPECT_EQ(count, 2);
  EXPECT_EQ(elements(x), (Doubles{0, 10, 20}));
  EXPECT_EQ(elements(numbers), (Longs{0, 1, 2}));
}

TEST_F(RepeatedPoints, CancellingInEveryStateChangesNothing) {
  const std::function<void(Form&)> ways[] = {
      [](Form& form) { form.click("cmdCancelar"); },
      [](Form& form) { form.press_escape(); },
      [](Form& form) {
        form.click("cmdCalcular");
        form.click("cmdCancelar");
      },
      [](Form& form) {
        form.press_enter();
        form.press_escape();
      },
      [](Form&) {},  // an interface that cannot show it
  };
  const Doubles before_x = elements(x), before_y = elements(y), before_z = elements(z);
  const Texts before_codes = texts(codes), before_names = texts(names);
  const std::vector<std::int16_t> before_layers = elements(layers);
  for (const auto& way : ways) {
    f_Pts_Repet one;
    screen.user = way;
    one.A_Quita_Pts_Repetidos(count, x, y, z, codes, names, layers, numbers, aviso, precision);
    EXPECT_TRUE(one.Cancelado);
    EXPECT_EQ(count, 8);
    EXPECT_EQ(elements(x), before_x);
    EXPECT_EQ(elements(y), before_y);
    EXPECT_EQ(elements(z), before_z);
    EXPECT_EQ(texts(codes), before_codes);
    EXPECT_EQ(texts(names), before_names);
    EXPECT_EQ(elements(layers), before_layers);
    EXPECT_EQ(elements(numbers), (Longs{0, -1, -2, -3, -4, -5, -6, -7, -8}));
    EXPECT_EQ(names.upper(), 10);
  }
}

TEST_F(RepeatedPoints, TheTitleBarsBoxIsNoCancelling) {
  with_person([](Form& form) {
    form.click("cmdCalcular");
    form.close();
  });
  EXPECT_EQ(count, 5);
  EXPECT_EQ(x.upper(), 5);
}

TEST_F(RepeatedPoints, TheTitleBarsBoxBeforeAnyCountingLeavesNoPoint) {
  numbers(0) = 5;  // of no point: element 0 of the others stays
  with_person([](Form& form) { form.close(); });
  EXPECT_EQ(count, 0);
  EXPECT_EQ(elements(x), (Doubles{0}));
  EXPECT_EQ(y.upper(), 0);
  EXPECT_EQ(z.upper(), 0);
  EXPECT_EQ(texts(codes), (Texts{"C0"}));
  EXPECT_EQ(layers.upper(), 0);
  EXPECT_EQ(names.upper(), 10);
  EXPECT_FALSE(numbers.allocated());
}

TEST_F(RepeatedPoints, AFailureOfTheEngineLeavesOnlyCancelling) {
  z = DoubleArray(0, 3);
  with_person([&](Form& form) {
    form.click("cmdCalcular");
    ASSERT_EQ(screen.boxes.size(), 1U);
    EXPECT_EQ(screen.boxes[0].text,
              "m_Indice_de_Puntos_sin_Repetir_2 - Error nº  9:El subíndice está fuera del "
              "intervalo");
    EXPECT_FALSE(enabled(form, "cmdCalcular"));
    EXPECT_TRUE(shown(form, "cmdCalcular"));
    EXPECT_FALSE(shown(form, "cmdEliminar"));
    EXPECT_FALSE(shown(form, "lblEstudio"));
    form.click("cmdCalcular");
    form.click("cmdEliminar");
    EXPECT_TRUE(form.open());
    form.click("cmdCancelar");
    EXPECT_FALSE(form.open());
  });
  EXPECT_TRUE(dialog.Cancelado);
  EXPECT_EQ(count, 8);
}

// The focus is on Cancelar from the start, and Calcular can act no more.
TEST_F(RepeatedPoints, EnterAfterTheComputationPressesTheButtonInFocus) {
  with_person([](Form& form) {
    form.press_enter();
    EXPECT_TRUE(form.control("cmdEliminar").visible());
    form.press_enter();
  });
  EXPECT_TRUE(dialog.Cancelado);
  f_Pts_Repet other;
  screen.user = [](Form& form) {
    form.press_enter();
    form.set_focus("cmdEliminar");
    form.press_enter();
  };
  other.A_Quita_Pts_Repetidos(count, x, y, z, codes, names, layers, numbers, aviso, precision);
  EXPECT_FALSE(other.Cancelado);
  EXPECT_EQ(count, 5);
}

TEST_F(RepeatedPoints, NoPointsAtAll) {
  count = 0;
  with_person([&](Form& form) {
    form.click("cmdCalcular");
    EXPECT_EQ(screen.boxes.size(), 1U);
    form.press_escape();
  });
  EXPECT_TRUE(dialog.Cancelado);
}

struct RoutineFailureRow {
  const char* rule;
  std::int32_t points;
  const char16_t* tolerance;
  std::int32_t failure;
};

// Whether the driver passes the failure on or keeps it to itself.
TEST_F(RepeatedPoints, WhatCalcularCannotWorkWithReachesTheCallerWithNothingChanged) {
  const RoutineFailureRow table[] = {
      {"a tolerance beyond all numbers", 8, u"1e999", 6},
      {"fewer points than none", -1, u"0.001", 9},
  };
  const Doubles before_x = elements(x);
  const Texts before_names = texts(names);
  for (const RoutineFailureRow& row : table) {
    for (const bool kept : {false, true}) {
      f_Pts_Repet one;
      screen.user = [&](Form& form) {
        form.set_text("TxtPresc", row.tolerance);
        const auto compute = [&] { form.click("cmdCalcular"); };
        if (!kept) return compute();
        EXPECT_EQ(failure_of(compute), row.failure) << row.rule;
        EXPECT_FALSE(form.control("cmdCalcular").enabled()) << row.rule;
        EXPECT_FALSE(form.open()) << row.rule;
      };
      count = row.points;
      EXPECT_EQ(failure_of([&] {
                  one.A_Quita_Pts_Repetidos(count, x, y, z, codes, names, layers, numbers, aviso,
                                            precision);
                }),
                row.failure)
          << row.rule << kept;
      EXPECT_EQ(count, row.points) << row.rule;
      EXPECT_EQ(elements(x), before_x) << row.rule;
      EXPECT_EQ(texts(names), before_names) << row.rule;
      EXPECT_EQ(elements(numbers), (Longs{0, -1, -2, -3, -4, -5, -6, -7, -8})) << row.rule;
      EXPECT_TRUE(screen.boxes.empty()) << row.rule;
    }
  }
}

TEST_F(RepeatedPoints, AShortArrayFailsWithTheOthersWrittenSoFar) {
  layers = ShortArray(0, 2);
  EXPECT_EQ(failure_of([&] {
              with_person([](Form& form) {
                form.click("cmdCalcular");
                form.click("cmdEliminar");
              });
            }),
            9);
  EXPECT_EQ(count, 8);
  EXPECT_EQ(x.upper(), 8);
  EXPECT_EQ(x(3), 20);  // point 3 went to 2 before layer 3 was missing
  EXPECT_EQ(codes(2).to_utf8(), "C3");
  EXPECT_EQ(names(2).to_utf8(), "N2");  // not yet its turn
  EXPECT_EQ(elements(numbers), (Longs{0, -1, -2, -3, -4, -5, -6, -7, -8}));
}

// The arrays in the order in which their elements are written.
constexpr const char* in_order[] = {"X", "Y", "Z", "codigo", "CapaP", "Nombre"};

// The host puts another array in place of one of its own while the dialog is up. Of the points
// that stay the 4th is the 7th.
TEST_F(RepeatedPoints, AnArrayThatBecameShortLeavesTheOnesInFrontWritten) {
  for (std::size_t one = 0; one < std::size(in_order); ++one) {
    SCOPED_TRACE(in_order[one]);
    DoubleArray X = x, Y = y, Z = z;
    StringArray Codes = codes, Names = names;
    ShortArray Layers = layers;
    std::int32_t points = count;
    f_Pts_Repet fresh;
    screen.user = [&](Form& form) {
      form.click("cmdCalcular");
      const auto shorten = [&](auto& array, std::size_t place) {
        if (place == one) array.size_keeping(0, 3);
      };
      shorten(X, 0), shorten(Y, 1), shorten(Z, 2), shorten(Codes, 3), shorten(Layers, 4);
      shorten(Names, 5);
      for (DoubleArray* array : {&X, &Y, &Z}) {
        if (array->upper() == 8) (*array)(4) = -1;
      }
      form.click("cmdEliminar");
    };
    LongArray index = numbers;
    EXPECT_EQ(failure_of([&] {
                fresh.A_Quita_Pts_Repetidos(points, X, Y, Z, Codes, Names, Layers, index, aviso,
                                            precision);
              }),
              9);
    const bool written[] = {X.upper() == 8 && X(4) == 40,
                            Y.upper() == 8 && Y(4) == 101,
                            Z.upper() == 8 && Z(4) == 6,
                            Codes.upper() == 8 && Codes(4) == Text(u"C7"),
                            Layers.upper() == 8 && Layers(4) == 70,
                            Names.upper() == 10 && Names(4) == Text(u"N7")};
    for (std::size_t k = 0; k < std::size(written); ++k) {
      EXPECT_EQ(written[k], k < one) << in_order[k];
    }
    EXPECT_EQ(points, 8);
    EXPECT_EQ(elements(index), elements(numbers));
  }
}

TEST_F(RepeatedPoints, AnArrayThatBeginsWithElement1LeavesTheOnesInFrontResized) {
  for (std::size_t one = 0; one + 1 < std::size(in_order); ++one) {
    SCOPED_TRACE(in_order[one]);
    DoubleArray X = x, Y = y, Z = z;
    StringArray Codes = codes, Names = names;
    ShortArray Layers = layers;
    std::int32_t points = count;
    f_Pts_Repet fresh;
    screen.user = [&](Form& form) {
      form.click("cmdCalcular");
      const auto move = [&](auto& array, std::size_t place) {
        if (place == one) array.size_keeping(1, 8);
      };
      move(X, 0), move(Y, 1), move(Z, 2), move(Codes, 3), move(Layers, 4);
      form.click("cmdEliminar");
    };
    LongArray index = numbers;
    EXPECT_EQ(failure_of([&] {
                fresh.A_Quita_Pts_Repetidos(points, X, Y, Z, Codes, Names, Layers, index, aviso,
                                            precision);
              }),
              9);
    const std::int32_t upper[] = {X.upper(), Y.upper(), Z.upper(), Codes.upper(), Layers.upper()};
    for (std::size_t k = 0; k < std::size(upper); ++k) {
      EXPECT_EQ(upper[k], k < one ? 5 : 8) << in_order[k];
    }
    EXPECT_EQ(points, 5);  // written before
    EXPECT_EQ(X(4), 40);   // as all points are
    EXPECT_EQ(Layers(4), 70);
  }
}

}  // namespace
}  // namespace orv2_geo
