// Boxes and forms through a C host's callbacks: a real form, driven by the
// functions that a host has.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "orv2_geo/frame/run_failure.h"
#include "orv2_geo/platform/error_box.h"
#include "orv2_geo/platform/event_pump.h"
#include "orv2_geo/platform/form.h"
#include "orv2_geo/platform/owner_window.h"
#include "orv2_geo/platform/user_interface.h"
#include "tests/c_api/boundary.h"
#include "tests/support/expect_failure.h"

namespace orv2_geo::testing_support {
namespace {

// ---- The form --------------------------------------------------------------

ControlDesign designed(std::string_view name, ControlKind kind, std::string_view container = "") {
  ControlDesign design;
  design.name = name;
  design.kind = kind;
  design.container = container;
  return design;
}

std::vector<ControlDesign> designs() {
  std::vector<ControlDesign> all{
      designed("lblTitle", ControlKind::label),
      designed("txtName", ControlKind::text_box),
      designed("chkDraw", ControlKind::check_box),
      designed("fraKind", ControlKind::frame),
      designed("Opt3D(0)", ControlKind::option_button, "fraKind"),
      designed("Opt3D(1)", ControlKind::option_button, "fraKind"),
      designed("OptOther", ControlKind::option_button),
      designed("cmdOk", ControlKind::button),
      designed("cmdCancel", ControlKind::button),
      designed("grdPoints", ControlKind::grid),
      designed("barDone", ControlKind::progress_bar),
  };
  all[0] = {"lblTitle", ControlKind::label, 10, 20, 300, 40, 3, u"A\u00f1o", ""};
  all[7].is_default = true;
  all[8].is_cancel = true;
  return all;
}

class Forms : public ::testing::Test {
 protected:
  Forms() : designs_(designs()), form("frmTest", u"T\u00edtulo", 4000, 3000, designs_) {
    for (const ControlDesign& one : designs_) {
      form.on_click(one.name, [this, name = std::string(one.name)] { clicked(name); });
    }
    callbacks_ = {sizeof(callbacks_), this, box, show, events};
    EXPECT_EQ(orv2_set_user_interface(&callbacks_), 0);
  }
  ~Forms() override { EXPECT_EQ(orv2_set_user_interface(nullptr), 0); }

  void clicked(const std::string& name) {
    clicks.push_back(name);
    if (fails_with != 0) raise(fails_with);
    if (name == "cmdOk" || name == "cmdCancel") form.hide();
  }

  /// Shows the form; the host does this while it is open.
  void drive(std::function<void(orv2_form*)> actions) {
    actions_ = std::move(actions);
    form.show_modal();
  }

  static std::int32_t box(void*, const char*, std::int32_t, const char*) { return 0; }
  static std::int32_t events(void* context) { return ++static_cast<Forms*>(context)->pumped, 0; }
  static std::int32_t show(void* context, orv2_form* shown) {
    auto& self = *static_cast<Forms*>(context);
    self.actions_(shown);
    return self.status;
  }

  std::vector<ControlDesign> designs_;
  orv2_user_interface callbacks_{};
  std::function<void(orv2_form*)> actions_;

 public:
  Form form;
  std::vector<std::string> clicks;
  std::int32_t fails_with = 0;
  std::int32_t status = 0;
  int pumped = 0;
};

using Names = std::vector<std::string>;

// ---- What a host sees ------------------------------------------------------

TEST_F(Forms, AreDescribed) {
  drive([&](orv2_form* shown) {
    orv2_form_info info{};
    ASSERT_EQ(orv2_form_describe(shown, &info), 0);
    EXPECT_STREQ(info.name, "frmTest");
    EXPECT_STREQ(info.caption, "T\u00edtulo");
    EXPECT_EQ(info.width, 4000);
    EXPECT_EQ(info.height, 3000);
    EXPECT_EQ(info.open, -1);
    EXPECT_EQ(info.control_count, designs_.size());
    orv2_form_close(shown);
    ASSERT_EQ(orv2_form_describe(shown, &info), 0);
    EXPECT_EQ(info.open, 0);
  });
}

TEST_F(Forms, DescribeTheirControls) {
  drive([&](orv2_form* shown) {
    orv2_control_info info{};
    ASSERT_EQ(orv2_form_control(shown, 0, &info), 0);
    EXPECT_STREQ(info.name, "lblTitle");
    EXPECT_STREQ(info.text, "A\u00f1o");
    EXPECT_STREQ(info.container, "");
    EXPECT_EQ(info.kind, ORV2_LABEL);
    const std::vector<std::int32_t> places{info.left, info.top, info.width, info.height,
                                           info.tab_index};
    EXPECT_EQ(places, (std::vector<std::int32_t>{10, 20, 300, 40, 3}));
    EXPECT_EQ(info.visible, -1);
    EXPECT_EQ(info.enabled, -1);
    EXPECT_EQ(info.is_default, 0);
    ASSERT_EQ(orv2_form_control(shown, 4, &info), 0);
    EXPECT_STREQ(info.container, "fraKind");
    ASSERT_EQ(orv2_form_control(shown, 7, &info), 0);
    EXPECT_EQ(info.is_default, -1);
    EXPECT_EQ(info.is_cancel, 0);
    ASSERT_EQ(orv2_form_control(shown, 8, &info), 0);
    EXPECT_EQ(info.is_cancel, -1);
  });
}

TEST_F(Forms, NumberTheKindsAsTheHeaderDoes) {
  const std::int32_t kinds[] = {ORV2_LABEL,         ORV2_TEXT_BOX,      ORV2_CHECK_BOX,
                                ORV2_FRAME,         ORV2_OPTION_BUTTON, ORV2_OPTION_BUTTON,
                                ORV2_OPTION_BUTTON, ORV2_BUTTON,        ORV2_BUTTON,
                                ORV2_GRID,          ORV2_PROGRESS_BAR};
  drive([&](orv2_form* shown) {
    for (std::size_t i = 0; i < std::size(kinds); ++i) {
      orv2_control_info info{};
      ASSERT_EQ(orv2_form_control(shown, i, &info), 0);
      EXPECT_EQ(info.kind, kinds[i]) << info.name;
    }
  });
}

TEST_F(Forms, ShowAProgressBarsPosition) {
  const ObjectRef bar = form.object("barDone");
  bar->set_property("Min", 1.0);
  bar->set_property("Max", 50.0);
  bar->set_property("Value", 25.5);
  drive([&](orv2_form* shown) {
    orv2_control_info info{};
    ASSERT_EQ(orv2_form_control(shown, 10, &info), 0);
    EXPECT_EQ(info.min, 1.0);
    EXPECT_EQ(info.max, 50.0);
    EXPECT_EQ(info.value, 25.5);
  });
}

TEST_F(Forms, ShowAGridsCells) {
  Grid& grid = form.control("grdPoints").grid();
  grid.rows = 3;
  grid.fixed_rows = 1;
  grid.set_format_string(u"Punto|X|Y");
  grid.set_cell(2, 1, u"1,5");
  grid.set_alignment(2, 7);
  drive([&](orv2_form* shown) {
    orv2_grid_info info{};
    ASSERT_EQ(orv2_form_grid(shown, 9, &info), 0);
    EXPECT_STREQ(info.format_string, "Punto|X|Y");
    const std::vector<std::int32_t> sizes{info.rows, info.cols, info.fixed_rows, info.fixed_cols};
    EXPECT_EQ(sizes, (std::vector<std::int32_t>{3, 3, 1, 0}));
    const char* text = nullptr;
    ASSERT_EQ(orv2_form_cell(shown, 9, 0, 2, &text), 0);
    EXPECT_STREQ(text, "Y");
    ASSERT_EQ(orv2_form_cell(shown, 9, 2, 1, &text), 0);
    EXPECT_STREQ(text, "1,5");
    ASSERT_EQ(orv2_form_cell(shown, 9, 1, 1, &text), 0);
    EXPECT_STREQ(text, "");
    std::int32_t alignment = 0;
    ASSERT_EQ(orv2_form_alignment(shown, 9, 2, &alignment), 0);
    EXPECT_EQ(alignment, 7);
    ASSERT_EQ(orv2_form_alignment(shown, 9, 0, &alignment), 0);
    EXPECT_EQ(alignment, 1);
  });
}

TEST_F(Forms, ShowHowTheyAreMeantToLook) {
  form.set_frame({.start = StartPosition::centre_of_screen, .left = 45, .top = 210});
  drive([&](orv2_form* shown) {
    orv2_form_frame frame{};
    ASSERT_EQ(orv2_form_describe_frame(shown, &frame), 0);
    EXPECT_EQ(frame.start, ORV2_CENTRE_OF_SCREEN);
    EXPECT_EQ(frame.left, 45);
    EXPECT_EQ(frame.top, 210);
    EXPECT_EQ(frame.tool_window, -1);
    EXPECT_EQ(frame.resizable, 0);
    EXPECT_EQ(frame.minimise_box, 0);
    EXPECT_EQ(frame.maximise_box, 0);
    EXPECT_EQ(frame.in_task_bar, 0);
    orv2_control_look look{};
    ASSERT_EQ(orv2_form_look(shown, 0, &look), 0);
    EXPECT_EQ(look.alignment, 1);
    EXPECT_EQ(look.background, -1);
    EXPECT_EQ(look.sizes_itself, 0);
    orv2_grid_font font{};
    ASSERT_EQ(orv2_form_font(shown, 9, &font), 0);
    EXPECT_STREQ(font.name, "Courier New");
    EXPECT_EQ(font.points, 8.25);
    EXPECT_EQ(font.weight, 400);
  });
}

// ---- Misuse ----------------------------------------------------------------

struct Misuse {
  const char* name;
  std::int32_t expected;
  std::function<std::int32_t(orv2_form*)> call;
};

TEST_F(Forms, RefuseWhatIsNotThere) {
  form.control("grdPoints").grid().rows = 2;
  form.control("grdPoints").grid().cols = 2;
  static orv2_control_info control;
  static orv2_grid_info grid;
  static orv2_control_look look;
  static orv2_grid_font font;
  static std::int32_t alignment = 77;
  static const char* text = nullptr;
  const Misuse rows[] = {
      {"control past the end", 9, [](auto* f) { return orv2_form_control(f, 11, &control); }},
      {"grid past the end", 9, [](auto* f) { return orv2_form_grid(f, 11, &grid); }},
      {"no grid", 438, [](auto* f) { return orv2_form_grid(f, 0, &grid); }},
      {"alignment of no grid", 438,
       [](auto* f) { return orv2_form_alignment(f, 1, 0, &alignment); }},
      {"cell of no grid", 438, [](auto* f) { return orv2_form_cell(f, 1, 0, 0, &text); }},
      {"column -1", 9, [](auto* f) { return orv2_form_alignment(f, 9, -1, &alignment); }},
      {"column 2", 9, [](auto* f) { return orv2_form_alignment(f, 9, 2, &alignment); }},
      {"row -1", 9, [](auto* f) { return orv2_form_cell(f, 9, -1, 0, &text); }},
      {"row 2", 9, [](auto* f) { return orv2_form_cell(f, 9, 2, 0, &text); }},
      {"cell column 2", 9, [](auto* f) { return orv2_form_cell(f, 9, 0, 2, &text); }},
      {"click unknown", 438, [](auto* f) { return orv2_form_click(f, "cmdNada"); }},
      {"select unknown", 438, [](auto* f) { return orv2_form_select(f, ""); }},
      {"focus unknown", 438, [](auto* f) { return orv2_form_set_focus(f, "nada"); }},
      {"null focus", 5, [](auto* f) { return orv2_form_set_focus(f, nullptr); }},
      {"null focus told", 5, [](auto* f) { return orv2_form_focus(f, nullptr); }},
      {"set text unknown", 438, [](auto* f) { return orv2_form_set_text(f, "x", "y"); }},
      {"null info", 5, [](auto* f) { return orv2_form_describe(f, nullptr); }},
      {"null control", 5, [](auto* f) { return orv2_form_control(f, 0, nullptr); }},
      {"null grid", 5, [](auto* f) { return orv2_form_grid(f, 9, nullptr); }},
      {"null alignment", 5, [](auto* f) { return orv2_form_alignment(f, 9, 0, nullptr); }},
      {"look past the end", 9, [](auto* f) { return orv2_form_look(f, 11, &look); }},
      {"font of no grid", 438, [](auto* f) { return orv2_form_font(f, 0, &font); }},
      {"null frame", 5, [](auto* f) { return orv2_form_describe_frame(f, nullptr); }},
      {"null look", 5, [](auto* f) { return orv2_form_look(f, 0, nullptr); }},
      {"null font", 5, [](auto* f) { return orv2_form_font(f, 9, nullptr); }},
      {"null cell", 5, [](auto* f) { return orv2_form_cell(f, 9, 0, 0, nullptr); }},
      {"null click", 5, [](auto* f) { return orv2_form_click(f, nullptr); }},
      {"null select", 5, [](auto* f) { return orv2_form_select(f, nullptr); }},
      {"null name", 5, [](auto* f) { return orv2_form_set_text(f, nullptr, "y"); }},
      {"null text", 5, [](auto* f) { return orv2_form_set_text(f, "txtName", nullptr); }},
  };
  drive([&](orv2_form* shown) {
    for (const Misuse& row : rows) {
      EXPECT_EQ(row.call(shown), row.expected) << row.name;
      EXPECT_EQ(last_failure().number, row.expected) << row.name;
    }
  });
  EXPECT_EQ(alignment, 77);
  EXPECT_EQ(text, nullptr);
}

// ---- The user's actions ----------------------------------------------------

TEST_F(Forms, ClicksRunTheRoutineBehindThem) {
  drive([&](orv2_form* shown) {
    EXPECT_EQ(orv2_form_click(shown, "LBLTITLE"), 0);
    EXPECT_EQ(orv2_form_click(shown, "cmdOk"), 0);
    EXPECT_EQ(orv2_form_click(shown, "lblTitle"), 0);  // no longer open
  });
  EXPECT_EQ(clicks, (Names{"lblTitle", "cmdOk"}));
  EXPECT_FALSE(form.open());
}

TEST_F(Forms, TextGoesIntoTextBoxesOnly) {
  drive([&](orv2_form* shown) {
    EXPECT_EQ(orv2_form_set_text(shown, "txtname", "ca\u00f1a"), 0);
    EXPECT_EQ(orv2_form_set_text(shown, "lblTitle", "other"), 0);
    EXPECT_EQ(orv2_form_set_text(shown, "cmdOk", "other"), 0);
  });
  EXPECT_EQ(form.control("txtName").text().view(), u"ca\u00f1a");
  EXPECT_EQ(form.control("lblTitle").text().view(), u"A\u00f1o");
  EXPECT_TRUE(form.control("cmdOk").text().empty());
}

TEST_F(Forms, ACheckBoxIsTickedAndTickedOff) {
  drive([&](orv2_form* shown) {
    orv2_form_click(shown, "chkDraw");
    EXPECT_EQ(form.control("chkDraw").value(), 1.0);
    orv2_form_click(shown, "chkDraw");
    EXPECT_EQ(form.control("chkDraw").value(), 0.0);
    orv2_form_select(shown, "chkDraw");
    EXPECT_EQ(form.control("chkDraw").value(), 1.0);
  });
  EXPECT_EQ(clicks.front(), "chkDraw");
}

TEST_F(Forms, OneOptionOfAContainerIsOnAtATime) {
  const auto on = [&](const char* name) { return form.control(name).value() != 0.0; };
  drive([&](orv2_form* shown) {
    orv2_form_select(shown, "OptOther");
    orv2_form_select(shown, "Opt3D(0)");
    EXPECT_TRUE(on("Opt3D(0)") && !on("Opt3D(1)") && on("OptOther"));
    orv2_form_click(shown, "opt3d(1)");
    EXPECT_TRUE(!on("Opt3D(0)") && on("Opt3D(1)") && on("OptOther"));
  });
}

TEST_F(Forms, SelectActsOnOptionsAndCheckBoxesOnly) {
  drive([&](orv2_form* shown) {
    for (const char* name : {"lblTitle", "txtName", "cmdOk", "fraKind", "barDone"}) {
      EXPECT_EQ(orv2_form_select(shown, name), 0) << name;
    }
  });
  EXPECT_EQ(clicks, (Names{"cmdCancel"}));  // the form that was left open
}

// Everything a user can try on one control, and what it may not change.
void try_everything(orv2_form* shown, const char* name) {
  EXPECT_EQ(orv2_form_click(shown, name), 0) << name;
  EXPECT_EQ(orv2_form_select(shown, name), 0) << name;
  EXPECT_EQ(orv2_form_set_text(shown, name, "tried"), 0) << name;
}

TEST_F(Forms, NothingActsOnWhatIsInvisibleOrDisabled) {
  for (const ControlDesign& one : designs_) {
    Control& control = form.control(one.name);
    for (const bool hidden : {true, false}) {
      control.set_visible(!hidden);
      control.set_enabled(hidden);
      drive([&](orv2_form* shown) {
        try_everything(shown, std::string(one.name).c_str());
        EXPECT_TRUE(clicks.empty()) << one.name;
        EXPECT_EQ(control.value(), 0.0) << one.name;
        EXPECT_NE(control.text().view(), u"tried") << one.name;
        orv2_form_close(shown);
      });
    }
    control.set_visible(true);
    control.set_enabled(true);
  }
}

TEST_F(Forms, NothingActsInsideAContainerThatIsInvisibleOrDisabled) {
  Control& frame = form.control("fraKind");
  for (const bool hidden : {true, false}) {
    frame.set_visible(!hidden);
    frame.set_enabled(hidden);
    drive([&](orv2_form* shown) {
      try_everything(shown, "Opt3D(1)");
      EXPECT_EQ(form.control("Opt3D(1)").value(), 0.0);
      orv2_form_select(shown, "OptOther");  // beside it all is as usual
      orv2_form_close(shown);
    });
  }
  EXPECT_EQ(clicks, (Names{"OptOther", "OptOther"}));
}

TEST_F(Forms, EnterAndEscapePressTheirButtons) {
  drive([](orv2_form* shown) { EXPECT_EQ(orv2_form_press_enter(shown), 0); });
  EXPECT_EQ(clicks, (Names{"cmdOk"}));
  drive([](orv2_form* shown) { EXPECT_EQ(orv2_form_press_escape(shown), 0); });
  EXPECT_EQ(clicks, (Names{"cmdOk", "cmdCancel"}));
}

TEST_F(Forms, EnterAndEscapeDoNothingWhileTheirButtonsCannotAct) {
  form.control("cmdOk").set_enabled(false);
  form.control("cmdCancel").set_visible(false);
  drive([&](orv2_form* shown) {
    EXPECT_EQ(orv2_form_press_enter(shown), 0);
    EXPECT_EQ(orv2_form_press_escape(shown), 0);
    EXPECT_TRUE(form.open());
  });
  EXPECT_TRUE(clicks.empty());
  EXPECT_FALSE(form.open());
}

std::string focus_of(orv2_form* shown) {
  const char* name = "nothing told";
  EXPECT_EQ(orv2_form_focus(shown, &name), 0);
  return name;
}

TEST_F(Forms, EnterPressesTheButtonInFocusWhereTheDefaultCannotAct) {
  form.control("cmdOk").set_enabled(false);
  drive([&](orv2_form* shown) {
    EXPECT_EQ(focus_of(shown), "txtName");
    EXPECT_EQ(orv2_form_press_enter(shown), 0);
    EXPECT_TRUE(form.open());
    EXPECT_EQ(orv2_form_set_focus(shown, "CMDCANCEL"), 0);
    EXPECT_EQ(orv2_form_set_focus(shown, "fraKind"), 0);  // takes no focus
    EXPECT_EQ(focus_of(shown), "cmdCancel");
    EXPECT_EQ(orv2_form_press_enter(shown), 0);
    EXPECT_FALSE(form.open());
    EXPECT_EQ(focus_of(shown), "");
  });
  EXPECT_EQ(clicks, (Names{"cmdCancel"}));
}

TEST_F(Forms, TheTitleBarClosesWithoutTheCancelButton) {
  drive([&](orv2_form* shown) {
    EXPECT_EQ(orv2_form_close(shown), 0);
    EXPECT_FALSE(form.open());
    EXPECT_EQ(orv2_form_press_escape(shown), 0);
  });
  EXPECT_TRUE(clicks.empty());
}

TEST(OwnerWindow, IsTheOneThatTheHostNames) {
  EXPECT_EQ(orv2_set_owner_window(0x1234'5678'9abc), 0);
  EXPECT_EQ(owner_window(), 0x1234'5678'9abcU);
  EXPECT_EQ(orv2_set_owner_window(0), 0);
  EXPECT_EQ(owner_window(), 0U);
}

TEST_F(Forms, OneLeftOpenIsCancelled) {
  drive([](orv2_form*) {});
  EXPECT_EQ(clicks, (Names{"cmdCancel"}));
  EXPECT_FALSE(form.open());
}

// ---- Failures --------------------------------------------------------------

// Whatever the callback then answers.
TEST_F(Forms, AFailureInARoutineReachesTheHostThatCausedItAndTheOneThatShowedTheForm) {
  const std::function<std::int32_t(orv2_form*)> actions[] = {
      [](orv2_form* shown) { return orv2_form_click(shown, "cmdOk"); },
      [](orv2_form* shown) { return orv2_form_press_enter(shown); },
      [](orv2_form* shown) { return orv2_form_press_escape(shown); },
      [](orv2_form* shown) { return orv2_form_select(shown, "OptOther"); },
  };
  fails_with = 11;
  for (const auto& action : actions) {
    for (const std::int32_t answered : {0, 11, 1234}) {
      status = answered;
      EXPECT_EQ(failure_of([&] {
                  drive([&](orv2_form* shown) {
                    EXPECT_EQ(action(shown), 11);
                    EXPECT_EQ(last_failure().description, failure::description_of(11));
                    EXPECT_FALSE(form.open());
                  });
                }),
                11)
          << answered;
    }
  }
}

// The member's own dialog, its driver keeping the failure to itself.
TEST_F(Forms, AFailureInADialogReachesTheCallOfTheMember) {
  const Owned matrices(new_object("Orv2_Geo.cgeo_Matrices"));
  const Owned x(new_array()), y(new_array()), z(new_array()), codes(new_array(ORV2_STRING_ARRAY)),
      names(new_array(ORV2_STRING_ARRAY)), layers(new_array(ORV2_SHORT_ARRAY)),
      numbers(new_array(ORV2_LONG_ARRAY));
  std::int32_t points = 3;
  double precision = 0.5;
  const orv2_value arguments[] = {
      pointing_at(&points),
      tagged(ORV2_DOUBLE_ARRAY, x),
      tagged(ORV2_DOUBLE_ARRAY, y),
      tagged(ORV2_DOUBLE_ARRAY, z),
      tagged(ORV2_STRING_ARRAY, codes),
      tagged(ORV2_STRING_ARRAY, names),
      tagged(ORV2_SHORT_ARRAY, layers),
      tagged(ORV2_LONG_ARRAY, numbers),
      by_value_of(0.0),
      pointing_at(&precision),
  };
  actions_ = [](orv2_form* shown) {
    EXPECT_EQ(orv2_form_set_text(shown, "TxtPresc", "1e999"), 0);
    EXPECT_EQ(orv2_form_press_enter(shown), 6);
  };
  EXPECT_EQ(
      orv2_call_name(matrices, "Quita_Pts_Repetidos", arguments, std::size(arguments), nullptr), 6);
  EXPECT_EQ(last_failure().source, "Orv2_Geo.cgeo_Matrices");
  EXPECT_EQ(points, 3);
  orv2_array_info info{};
  EXPECT_EQ(orv2_array_describe(x, &info), 0);
  EXPECT_EQ(info.count, 4U);
}

TEST_F(Forms, AFailureOfTheCallbackLeavesShowModal) {
  for (const std::int32_t number : {7, -5, 1234}) {
    status = number;
    EXPECT_EQ(failure_of([&] { drive([](orv2_form*) {}); }), number);
  }
}

TEST_F(Forms, EventsAreHandledByTheHost) {
  yield_to_events();
  yield_to_events();
  EXPECT_EQ(pumped, 2);
}

TEST_F(Forms, TheHostMayPutAnotherUserInterfaceInPlaceMeanwhile) {
  drive([&](orv2_form* shown) {
    EXPECT_EQ(orv2_set_user_interface(nullptr), 0);
    EXPECT_EQ(orv2_set_user_interface(&callbacks_), 0);
    EXPECT_EQ(orv2_form_click(shown, "cmdOk"), 0);
  });
  EXPECT_EQ(clicks, (Names{"cmdOk"}));
}

// ---- Boxes -----------------------------------------------------------------

struct Shown {
  std::string text;
  std::int32_t flags;
  std::string caption;
};

class Boxes : public ::testing::Test {
 protected:
  Boxes() {
    const auto form = [](void*, orv2_form*) { return 0; };
    const orv2_user_interface callbacks{sizeof(callbacks), this, box, form, nullptr};
    EXPECT_EQ(orv2_set_user_interface(&callbacks), 0);
  }
  ~Boxes() override { EXPECT_EQ(orv2_set_user_interface(nullptr), 0); }

  static std::int32_t box(void* context, const char* text, std::int32_t flags,
                          const char* caption) {
    auto& self = *static_cast<Boxes*>(context);
    self.shown = {text, flags, caption != nullptr ? caption : "(default)"};
    orv2_failure failure{};
    self.told = orv2_trapped_failure(&failure) == 0 ? failure.number : 0;
    if (self.inner) std::exchange(self.inner, {})();
    self.told_after = orv2_trapped_failure(&failure) == 0 ? failure.number : 0;
    return self.status;
  }

  void expect_shown(const char* text, std::int32_t flags, const char* caption) {
    EXPECT_EQ(shown.text, text);
    EXPECT_EQ(shown.flags, flags);
    EXPECT_EQ(shown.caption, caption);
  }

  Shown shown{};
  std::int32_t status = 0;
  std::int32_t told = -1;  // the trapped failure, 0 for none
  std::int32_t told_after = -1;
  std::function<void()> inner;  // what the host does while the box is up
};

TEST_F(Boxes, PlainOnesHaveNoIconAndTheDefaultCaption) {
  error_box(u"Ma\u00f1ana");
  expect_shown("Ma\u00f1ana", 0, "(default)");
}

TEST_F(Boxes, CriticalOnesHaveTheIcon) {
  critical_box(u"Mal");
  expect_shown("Mal", 16, "(default)");
}

TEST_F(Boxes, OfAFailureAreCaptionedWithItsSource) {
  RunFailure failure(failure::overflow);
  failure.sign("Orv2_Geo.cgeo_Terreno");
  critical_box(u"Mal", failure);
  expect_shown("Mal", 16, "Orv2_Geo.cgeo_Terreno");
}

TEST_F(Boxes, OfATrappedRoutineShowTitleNumberAndDescription) {
  trapped("Orv2_Geo.cgeo_Terreno", u"Error ", [] { raise(failure::overflow); });
  expect_shown("Error  6:Desbordamiento", 16, "Orv2_Geo.cgeo_Terreno");
}

TEST_F(Boxes, TellOfTheFailureThatARoutineTraps) {
  trapped("", u"Error ", [] { raise(failure::overflow); });
  EXPECT_EQ(told, 6);
  critical_box(u"Mal", RunFailure(failure::division_by_zero));
  EXPECT_EQ(told, 11);
  critical_box(u"Mal");
  EXPECT_EQ(told, 0);
  error_box(u"Mal");
  EXPECT_EQ(told, 0);
}

TEST_F(Boxes, TellOfTheirOwnFailureWhenOthersLieOverThem) {
  inner = [] { error_box(u"Aviso"); };
  trapped("", u"Error ", [] { raise(failure::overflow); });
  EXPECT_EQ(told_after, 6);
}

TEST_F(Boxes, TellOfNoFailureOnceTheyAreGone) {
  trapped("", u"Error ", [] { raise(failure::overflow); });
  orv2_failure failure{77, nullptr, nullptr};
  EXPECT_EQ(orv2_trapped_failure(&failure), 5);
  EXPECT_EQ(orv2_trapped_failure(nullptr), 5);
  EXPECT_EQ(failure.number, 77);
}

TEST_F(Boxes, AFailureOfTheCallbackIsAFailureOfTheRoutine) {
  status = 1234;
  EXPECT_EQ(failure_of([] { error_box(u"Mal"); }), 1234);
  EXPECT_EQ(failure_of([] { trapped("", u"", [] { raise(failure::overflow); }); }), 1234);
}

TEST_F(Boxes, EventsAreLeftAloneWithoutACallbackForThem) {
  EXPECT_EQ(failure_of([] { yield_to_events(); }), 0);
}

TEST_F(Boxes, GoToTheSystemAgainWhenTheCallbacksAreTakenBack) {
  ASSERT_EQ(orv2_set_user_interface(nullptr), 0);
  ::testing::internal::CaptureStderr();
  error_box(u"Mal");
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "Orv2_Geo: Mal\n");
  EXPECT_TRUE(shown.text.empty());
}

TEST_F(Boxes, WithoutACallbackGoToTheSystem) {
  orv2_user_interface callbacks{};
  callbacks.size = sizeof(callbacks);
  ASSERT_EQ(orv2_set_user_interface(&callbacks), 0);
  ::testing::internal::CaptureStderr();
  error_box(u"Mal");
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "Orv2_Geo: Mal\n");
}

TEST_F(Boxes, AreLinesWhereTheConsoleIsInstalled) {
  ASSERT_EQ(orv2_set_console_interface(), 0);
  ::testing::internal::CaptureStderr();
  error_box(u"Mal");
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "Orv2_Geo: Mal\n");
  EXPECT_TRUE(shown.text.empty());
}

// A form without a driver of its own is the system's, and so are boxes over it.
TEST_F(Boxes, OverAFormOfTheSystemAreTheSystems) {
  orv2_user_interface callbacks{};
  callbacks.size = sizeof(callbacks);
  callbacks.context = this;
  callbacks.error_box = box;
  ASSERT_EQ(orv2_set_user_interface(&callbacks), 0);
  auto all = designs();
  Form form("frmTest", u"T", 4000, 3000, all);
  form.on_click("cmdCancel", [&form] {
    error_box(u"Sobre el formulario");
    form.hide();
  });
  ::testing::internal::CaptureStderr();
  form.show_modal();
  EXPECT_EQ(::testing::internal::GetCapturedStderr(),
            "Orv2_Geo: no screen is available for \"T\"; cancelled\n"
            "Orv2_Geo: Sobre el formulario\n");
  EXPECT_TRUE(shown.text.empty());
  error_box(u"Mal");
  EXPECT_EQ(shown.text, "Mal");
}

}  // namespace
}  // namespace orv2_geo::testing_support
