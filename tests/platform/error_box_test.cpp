#include "orv2_geo/platform/error_box.h"

#include "orv2_geo/frame/checked_math.h"
#include "orv2_geo/platform/event_pump.h"
#include "tests/platform/recording_interface.h"
#include "tests/support/preamble.h"

namespace orv2_geo {
namespace {

using Box = RecordingInterface::Box;

TEST(ErrorBox, HasThreeForms) {
  RecordingInterface screen;
  error_box(u"obsoleto");
  critical_box(u"cuidado");
  critical_box(u"fallo", RunFailure(6, "", "Orv2_Geo.cgeo_api"));
  EXPECT_EQ(screen.boxes[0], (Box{"obsoleto", 0, std::nullopt}));
  EXPECT_EQ(screen.boxes[1], (Box{"cuidado", 16, std::nullopt}));
  EXPECT_EQ(screen.boxes[2], (Box{"fallo", 16, "Orv2_Geo.cgeo_api"}));
}

TEST(TrappedRoutine, ShowsTitleNumberAndDescriptionAndReturns) {
  RecordingInterface screen;
  double written = 0.0;
  trapped("Orv2_Geo.cgeo_api", u"Pto en Poligono - Error nº ", [&] {
    written = 1.0;
    written = Checked(written) / 0.0;
    written = 2.0;
  });
  EXPECT_EQ(written, 1.0);
  ASSERT_EQ(screen.boxes.size(), 1U);
  EXPECT_EQ(screen.boxes[0],
            (Box{"Pto en Poligono - Error nº  11:División por cero", 16, "Orv2_Geo.cgeo_api"}));
}

TEST(TrappedRoutine, ANegativeNumberBringsNoBlank) {
  RecordingInterface screen;
  trapped("Orv2_Geo.cgeo_api", u"Titulo - Error nº ",
          [] { throw RunFailure(-5, "propio", "Host"); });
  EXPECT_EQ(screen.boxes[0], (Box{"Titulo - Error nº -5:propio", 16, "Host"}));
}

TEST(TrappedRoutine, WithoutAFailureShowsNothing) {
  RecordingInterface screen;
  trapped("Orv2_Geo.cgeo_api", u"Titulo ", [] {});
  EXPECT_TRUE(screen.boxes.empty());
}

TEST(EventPump, AsksTheInterfaceInForce) {
  RecordingInterface screen;
  yield_to_events();
  yield_to_events();
  EXPECT_EQ(screen.yields, 2);
}

// Without a driver the text goes to standard error and the call returns.
TEST(WithoutAScreen, ABoxIsALineOnStandardError) {
  install_user_interface(nullptr);
  ::testing::internal::CaptureStderr();
  error_box(u"obsoleto");
  critical_box(u"fallo", RunFailure(6, "", "Orv2_Geo.cgeo_api"));
  EXPECT_EQ(::testing::internal::GetCapturedStderr(),
            "Orv2_Geo: obsoleto\nOrv2_Geo.cgeo_api: fallo\n");
}

TEST(WithoutAScreen, AFormIsCancelled) {
  install_user_interface(nullptr);
  const ControlDesign controls[] = {
      {.name = "cmdCancelar", .kind = ControlKind::button, .is_cancel = true},
      {.name = "cmdAceptar", .kind = ControlKind::button, .is_default = true},
  };
  Form form("f", u"Quitar puntos repetidos:", 100, 100, controls);
  bool cancelled = false, accepted = false;
  form.on_click("cmdCancelar", [&] { cancelled = true, form.hide(); });
  form.on_click("cmdAceptar", [&] { accepted = true, form.hide(); });
  ::testing::internal::CaptureStderr();
  form.show_modal();
  EXPECT_EQ(::testing::internal::GetCapturedStderr(),
            "Orv2_Geo: no screen is available for \"Quitar puntos repetidos:\"; cancelled\n");
  EXPECT_TRUE(cancelled);
  EXPECT_FALSE(accepted);
  EXPECT_FALSE(form.open());
}

}  // namespace
}  // namespace orv2_geo
