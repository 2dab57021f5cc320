#include "orv2_geo/platform/form.h"

#include "orv2_geo/frame/progress_sink.h"
#include "tests/platform/recording_interface.h"
#include "tests/support/preamble.h"
#include "tests/support/refused_memory.h"

namespace orv2_geo {
namespace {

const ControlDesign controls[] = {
    {.name = "Fra", .kind = ControlKind::frame, .left = 10, .top = 20, .width = 300, .height = 200},
    {.name = "Opt(0)", .kind = ControlKind::option_button, .container = "Fra", .value = -1.0},
    {.name = "Opt(1)", .kind = ControlKind::option_button, .container = "Fra"},
    {.name = "Otra", .kind = ControlKind::option_button, .value = -1.0},
    {.name = "Txt", .kind = ControlKind::text_box, .text = u"0.001", .container = "Fra"},
    {.name = "chk", .kind = ControlKind::check_box},
    {.name = "chkApagado", .kind = ControlKind::check_box, .enabled = false},
    {.name = "cmdCalcular", .kind = ControlKind::button, .is_default = true},
    {.name = "cmdEliminar", .kind = ControlKind::button, .visible = false},
    {.name = "cmdCancelar", .kind = ControlKind::button, .is_cancel = true},
    {.name = "Barra", .kind = ControlKind::progress_bar, .visible = false},
    {.name = "Rejilla", .kind = ControlKind::grid},
    {.name = "lbl", .kind = ControlKind::label, .text = u"0"},
};

class Forms : public ::testing::Test {
 protected:
  Forms() {
    for (const char* name : {"cmdCalcular", "cmdEliminar", "cmdCancelar", "chk", "Opt(1)"}) {
      form.on_click(name, [this, name] { clicks.emplace_back(name); });
    }
  }

  // Runs what a person does while the form is on the screen.
  void with_person(std::function<void()> actions) {
    screen.user = [&](Form&) { actions(); };
    form.show_modal();
  }

  RecordingInterface screen;
  Form form{"f_Prueba", u"Prueba:", 2865, 3000, controls};
  std::vector<std::string> clicks;
};

TEST_F(Forms, AButtonActsWhenItCanBeReached) {
  with_person([&] {
    form.click("cmdcalcular");
    form.click("cmdEliminar");  // hidden
    form.control("cmdEliminar").set_visible(true);
    form.control("cmdCalcular").set_enabled(false);
    form.click("cmdCalcular");
    form.click("cmdEliminar");
  });
  EXPECT_EQ(clicks, (std::vector<std::string>{"cmdCalcular", "cmdEliminar", "cmdCancelar"}));
}

TEST_F(Forms, NothingActsOnAFormThatIsNotOpen) {
  form.click("cmdCalcular");
  form.press_escape();
  EXPECT_TRUE(clicks.empty());
}

TEST_F(Forms, OneOptionOfAContainerIsOn) {
  with_person([&] {
    form.select("Opt(1)");
    EXPECT_EQ(form.control("Opt(0)").value(), 0.0);
    EXPECT_EQ(form.control("Opt(1)").value(), -1.0);
    EXPECT_EQ(form.control("Otra").value(), -1.0);
    form.click("Opt(0)");
    EXPECT_EQ(form.control("Opt(0)").value(), -1.0);
    EXPECT_EQ(form.control("Opt(1)").value(), 0.0);
  });
}

TEST_F(Forms, ADisabledFrameFreezesWhatItHolds) {
  with_person([&] {
    form.set_text("Txt", Text(u"0.5"));
    form.control("Fra").set_enabled(false);
    form.set_text("Txt", Text(u"9"));
    form.select("Opt(1)");
    EXPECT_EQ(form.control("Txt").text(), Text(u"0.5"));
    EXPECT_EQ(form.control("Opt(0)").value(), -1.0);
  });
}

TEST_F(Forms, ACheckBoxTurnsOver) {
  with_person([&] {
    form.click("chk");
    EXPECT_EQ(form.control("chk").value(), 1.0);
    form.click("chk");
    EXPECT_EQ(form.control("chk").value(), 0.0);
    form.select("chk");
    EXPECT_EQ(form.control("chk").value(), 1.0);
    form.click("chkApagado");
    EXPECT_EQ(form.control("chkApagado").value(), 0.0);
  });
}

TEST_F(Forms, EnterAndEscapeFindTheirButtons) {
  with_person([&] {
    form.press_enter();
    form.control("cmdCalcular").set_visible(false);
    form.press_enter();
    form.press_escape();
    form.unload();
  });
  EXPECT_EQ(clicks, (std::vector<std::string>{"cmdCalcular", "cmdCancelar"}));
}

std::string focus_of(const Form& form) {
  const Control* control = form.focus();
  return control != nullptr ? std::string(control->design().name) : "none";
}

struct FirstFocusRow {
  const char* rule;
  std::vector<ControlDesign> controls;
  const char* focus;
};

TEST(FormFocus, StartsOnTheFirstInTabOrderThatCanTakeIt) {
  using enum ControlKind;
  const ControlDesign ok{.name = "ok", .kind = button, .tab_index = 5};
  const FirstFocusRow table[] = {
      {"no label", {{.name = "lbl", .kind = label}, ok}, "ok"},
      {"no frame", {{.name = "fra", .kind = frame}, ok}, "ok"},
      {"no progress bar", {{.name = "bar", .kind = progress_bar}, ok}, "ok"},
      {"a text box", {ok, {.name = "txt", .kind = text_box}}, "txt"},
      {"a check box", {ok, {.name = "chk", .kind = check_box}}, "chk"},
      {"an option button", {ok, {.name = "opt", .kind = option_button}}, "opt"},
      {"a grid", {ok, {.name = "grd", .kind = grid}}, "grd"},
      {"nothing hidden", {{.name = "a", .kind = button, .visible = false}, ok}, "ok"},
      {"nothing disabled", {{.name = "a", .kind = button, .enabled = false}, ok}, "ok"},
      {"nothing in a hidden frame",
       {{.name = "fra", .kind = frame, .visible = false},
        {.name = "txt", .kind = text_box, .container = "fra"},
        ok},
       "ok"},
      {"nothing in a disabled frame",
       {{.name = "fra", .kind = frame, .enabled = false},
        {.name = "txt", .kind = text_box, .container = "fra"},
        ok},
       "ok"},
      {"of equals the first in the design",
       {ok, {.name = "other", .kind = button, .tab_index = 5}},
       "ok"},
      {"nothing at all", {{.name = "lbl", .kind = label}}, "none"},
  };
  for (const FirstFocusRow& row : table) {
    RecordingInterface screen;
    Form form("f_Foco", u"", 100, 100, row.controls);
    std::string found;
    screen.user = [&](Form& shown) { found = focus_of(shown); };
    form.show_modal();
    EXPECT_EQ(found, row.focus) << row.rule;
    EXPECT_EQ(focus_of(form), "none") << row.rule << ": a form that is not open";
  }
}

TEST_F(Forms, TheFocusMovesOnlyWhereItIsToldAndCanGo) {
  with_person([&] {
    EXPECT_EQ(focus_of(form), "Opt(0)");
    form.set_focus("TXT");
    EXPECT_EQ(focus_of(form), "Txt");
    for (const char* name : {"lbl", "Fra", "Barra", "cmdEliminar", "chkApagado"}) {
      form.set_focus(name);
      EXPECT_EQ(focus_of(form), "Txt") << name;
    }
    EXPECT_EQ(failure_of([&] { form.set_focus("nada"); }), 438);
    form.click("cmdCalcular");
    EXPECT_EQ(focus_of(form), "Txt");
    form.control("Fra").set_enabled(false);
    EXPECT_EQ(focus_of(form), "none");
  });
  with_person([&] { EXPECT_EQ(focus_of(form), "Otra"); });  // shown again it starts anew
}

struct EnterRow {
  const char* rule;
  std::function<void(Form&)> before;
  const char* pressed;
};

TEST_F(Forms, EnterPressesTheDefaultButtonElseTheOneInFocus) {
  const auto without_default = [](Form& shown) { shown.control("cmdCalcular").set_enabled(false); };
  const EnterRow table[] = {
      {"the default button", [](Form&) {}, "cmdCalcular"},
      {"the default button, another in focus", [](Form& shown) { shown.set_focus("cmdCancelar"); },
       "cmdCalcular"},
      {"the default button, a grid in focus", [](Form& shown) { shown.set_focus("Rejilla"); },
       "cmdCalcular"},
      {"it cannot act: the button in focus",
       [&](Form& shown) {
         without_default(shown);
         shown.set_focus("cmdCancelar");
       },
       "cmdCancelar"},
      {"that was disabled since",
       [&](Form& shown) {
         without_default(shown);
         shown.set_focus("cmdCancelar");
         shown.control("cmdCancelar").set_enabled(false);
       },
       "nothing"},
      {"no button in focus",
       [&](Form& shown) {
         without_default(shown);
         shown.set_focus("Txt");
       },
       "nothing"},
      {"a grid in focus, of a form that has a default button",
       [&](Form& shown) {
         without_default(shown);
         shown.set_focus("Rejilla");
       },
       "nothing"},
  };
  for (const EnterRow& row : table) {
    Form one("f_Prueba", u"Prueba:", 2865, 3000, controls);
    std::string pressed = "nothing";
    for (const char* name : {"cmdCalcular", "cmdEliminar", "cmdCancelar"}) {
      one.on_click(name, [&, name] { pressed = name; });
    }
    screen.user = [&](Form& shown) {
      row.before(shown);
      shown.press_enter();
      shown.close();
    };
    one.show_modal();
    EXPECT_EQ(pressed, row.pressed) << row.rule;
  }
}

TEST_F(Forms, TheTitleBarsBoxIsNoCancel) {
  with_person([&] { form.close(); });
  EXPECT_TRUE(clicks.empty());
  EXPECT_FALSE(form.open());
}

TEST_F(Forms, LeftOpenByItsDriverAFormIsCancelled) {
  with_person([] {});
  EXPECT_EQ(clicks, std::vector<std::string>{"cmdCancelar"});
  EXPECT_FALSE(form.open());
}

TEST_F(Forms, AProgressBarIsAProgressIndicator) {
  const ObjectRef bar = form.object("Barra");
  const ProgressSink sink(bar);
  sink.visible(true);
  sink.min(0);
  sink.max(30.5);
  sink.value(7.0);
  const Control& shown = form.control("Barra");
  EXPECT_TRUE(shown.visible());
  EXPECT_EQ(shown.min(), 0.0);
  EXPECT_EQ(shown.max(), 30.5);
  EXPECT_EQ(shown.value(), 7.0);
  EXPECT_EQ(failure_of([&] { bar->set_property("Color", 1.0); }), 438);
  EXPECT_EQ(failure_of([&] { bar->call("Refresh", {}); }), 438);
  EXPECT_EQ(failure_of([&] { bar->set_property("Value", Text(u"x")); }), 13);
}

TEST_F(Forms, AWatcherIsToldOfEachPropertySet) {
  Control& bar = form.control("Barra");
  std::vector<double> seen;
  bar.watch([&] { seen.push_back(bar.value()); });
  const ObjectRef indicator = form.object("Barra");
  indicator->set_property("Value", 3.0);
  EXPECT_EQ(failure_of([&] { indicator->set_property("Color", 1.0); }), 438);
  indicator->set_property("Visible", Bool(true));
  bar.set_value(4.0);
  bar.set_enabled(false);
  bar.watch({});
  indicator->set_property("Value", 5.0);
  EXPECT_EQ(seen, (std::vector<double>{3.0, 3.0, 4.0, 4.0}));
}

TEST_F(Forms, AFormStartsOverItsOwnerUnlessToldOtherwise) {
  EXPECT_EQ(form.frame().start, StartPosition::centre_of_owner);
  form.set_frame({.start = StartPosition::centre_of_screen});
  EXPECT_EQ(form.frame().start, StartPosition::centre_of_screen);
}

TEST_F(Forms, ALateBoundCaptionTakesNumbersAsTheirText) {
  form.object("lbl")->set_property("caption", std::int32_t{12});
  EXPECT_EQ(form.control("lbl").text(), Text(u"12"));
  form.object("lbl")->set_property("Caption", Text(u"Hay 3"));
  EXPECT_EQ(form.control("lbl").text(), Text(u"Hay 3"));
}

TEST_F(Forms, AFormatStringSetsHeadersAndColumns) {
  Grid& grid = form.control("Rejilla").grid();
  grid.rows = 4;
  grid.set_format_string(Text(u"   |  Mínimos  |Pto"));
  EXPECT_EQ(grid.cols, 3);
  EXPECT_EQ(grid.cell(0, 1), Text(u"  Mínimos  "));
  grid.set_cell(3, 2, Text(u"7"));
  EXPECT_EQ(grid.cell(3, 2), Text(u"7"));
  EXPECT_EQ(failure_of([&] { grid.set_cell(4, 0, Text()); }), 9);
  EXPECT_EQ(failure_of([&] { grid.set_cell(0, 3, Text()); }), 9);
  EXPECT_EQ(failure_of([&] { grid.set_alignment(3, 7); }), 9);
  grid.set_alignment(2, 4);
  EXPECT_EQ(grid.alignment(2), 4);
  EXPECT_EQ(grid.alignment(0), 1);
}

struct CellRow {
  const char* rule;
  std::int32_t row, col;
  std::int32_t failure;
};

TEST_F(Forms, AGridHasItsCellsFromTheFirstToTheLastAndNoOthers) {
  const CellRow table[] = {
      {"the first", 0, 0, 0},      {"the first row's last", 0, 2, 0},
      {"the last row's", 3, 0, 0}, {"the last", 3, 2, 0},
      {"above", -1, 0, 9},         {"below", 4, 0, 9},
      {"to the left", 0, -1, 9},   {"to the right", 0, 3, 9},
      {"below the last", 4, 2, 9}, {"beside the last", 3, 3, 9},
  };
  Grid& grid = form.control("Rejilla").grid();
  grid.rows = 4;
  grid.cols = 3;
  for (const CellRow& row : table) {
    EXPECT_EQ(failure_of([&] { grid.set_cell(row.row, row.col, u"x"); }), row.failure) << row.rule;
    EXPECT_EQ(grid.cell(row.row, row.col), Text(row.failure == 0 ? u"x" : u"")) << row.rule;
  }
  EXPECT_EQ(grid.cells.size(), 4U);
}

TEST(Grids, HaveNoColumnsBeforeTheyAreTold) {
  Grid grid;
  EXPECT_EQ(failure_of([&] { grid.set_alignment(0, 0); }), 9);
  grid.rows = 1;
  EXPECT_EQ(failure_of([&] { grid.set_cell(0, 0, Text()); }), 9);
}

TEST_F(Forms, AGridsColumnsAreAlignedFromTheFirstToTheLast) {
  Grid& grid = form.control("Rejilla").grid();
  grid.cols = 2;
  for (const std::int32_t col : {0, 1}) {
    EXPECT_EQ(grid.alignment(col), 1) << col;
    grid.set_alignment(col, 7);
    EXPECT_EQ(grid.alignment(col), 7) << col;
  }
  for (const std::int32_t col : {-1, 2}) {
    EXPECT_EQ(failure_of([&] { grid.set_alignment(col, 7); }), 9) << col;
    EXPECT_EQ(grid.alignment(col), 1) << col;
  }
}

struct PropertyRow {
  const char* rule;
  const char* name;
  Variant value;
  std::function<bool(const Control&)> stands;
};

TEST_F(Forms, APropertySetByNameTakesWhatReadsAsOne) {
  const PropertyRow table[] = {
      {"a flag", "visible", Bool(true), [](const Control& one) { return one.visible(); }},
      {"a number for a flag", "ENABLED", 0.0, [](const Control& one) { return !one.enabled(); }},
      {"any other number", "Enabled", std::int16_t{2},
       [](const Control& one) { return one.enabled(); }},
      {"true is -1", "Value", Bool(true), [](const Control& one) { return one.value() == -1.0; }},
      {"false is 0", "Value", Bool(false), [](const Control& one) { return one.value() == 0.0; }},
      {"a single", "Min", 2.5F, [](const Control& one) { return one.min() == 2.5; }},
      {"a long", "Max", 70000, [](const Control& one) { return one.max() == 70000.0; }},
      {"a text", "Text", Text(u"ab"), [](const Control& one) { return one.text() == Text(u"ab"); }},
      {"a flag's text is its number's", "Caption", Bool(true),
       [](const Control& one) { return one.text() == Text(u"-1"); }},
  };
  for (const PropertyRow& row : table) {
    form.object("Barra")->set_property(row.name, row.value);
    EXPECT_TRUE(row.stands(form.control("Barra"))) << row.rule;
  }
}

TEST_F(Forms, UnknownControlsAre438) {
  EXPECT_EQ(failure_of([&] { form.click("nada"); }), 438);
  EXPECT_EQ(failure_of([&] { form.on_click("nada", [] {}); }), 438);
}

struct FailureRow {
  const char* rule;
  std::function<void(Form&)> driver;
};

TEST_F(Forms, AFailureBehindAnEventClosesTheFormAndLeavesShowModal) {
  const FailureRow table[] = {
      {"the driver lets it pass", [](Form& shown) { shown.click("cmdCalcular"); }},
      {"keeps it to itself",
       [](Form& shown) { EXPECT_EQ(failure_of([&] { shown.click("cmdCalcular"); }), 9); }},
      {"goes on",
       [](Form& shown) {
         EXPECT_EQ(failure_of([&] { shown.press_enter(); }), 9);
         shown.click("cmdCancelar");
         shown.press_escape();
       }},
      {"raises another one",
       [](Form& shown) {
         EXPECT_EQ(failure_of([&] { shown.click("cmdCalcular"); }), 9);
         raise(11);
       }},
      {"an option's routine",
       [](Form& shown) { EXPECT_EQ(failure_of([&] { shown.select("Opt(1)"); }), 9); }},
  };
  for (const char* name : {"cmdCalcular", "Opt(1)"}) form.on_click(name, [] { raise(9); });
  for (const FailureRow& row : table) {
    screen.user = [&](Form& shown) {
      row.driver(shown);
      EXPECT_FALSE(shown.open()) << row.rule;
    };
    EXPECT_EQ(failure_of([&] { form.show_modal(); }), 9) << row.rule;
    EXPECT_FALSE(form.open()) << row.rule;
  }
  EXPECT_TRUE(clicks.empty());  // closed, it is not cancelled as well
  EXPECT_TRUE(screen.boxes.empty());
  with_person([&] { form.click("cmdCancelar"); });  // shown again, nothing is left of it
  EXPECT_EQ(clicks, (std::vector<std::string>{"cmdCancelar", "cmdCancelar"}));
}

TEST_F(Forms, AFailureBehindAnEventOfAFormOverAnotherLeavesBoth) {
  Form over("f_Encima", u"", 100, 100, controls);
  over.on_click("cmdCalcular", [] { raise(9); });
  form.on_click("cmdCalcular", [&] { over.show_modal(); });
  screen.user = [](Form& shown) {
    try {
      shown.click("cmdCalcular");
    } catch (const RunFailure&) {
      EXPECT_FALSE(shown.open());
    }
  };
  EXPECT_EQ(failure_of([&] { form.show_modal(); }), 9);
}

TEST(FormMemory, AFormThatCannotBeMadeLeavesNothingBehind) {
  bool refused = true;
  for (long let_pass = 0; refused; ++let_pass) {
    const long before = allocations_in_use();
    try {
      const RefusedAllocation refusal(let_pass);
      const Form form("f_Prueba", u"Prueba:", 2865, 3000, controls);
      refused = RefusedAllocation::happened();
    } catch (...) {
      EXPECT_EQ(failure_in_flight().number(), failure::out_of_memory);
    }
    EXPECT_EQ(allocations_in_use(), before) << let_pass;
  }
}

}  // namespace
}  // namespace orv2_geo
