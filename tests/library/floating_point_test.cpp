// Calls by name and in C++ from hosts that changed their floating-point settings.
#include "tests/support/floating_point.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "orv2_geo/orv2_geo.hpp"
#include "tests/platform/recording_interface.h"

namespace orv2_geo {
namespace {

using testing::odd_units;
using testing::OddUnits;
using testing::Units;
using testing::units;
using testing::WithUnits;
using testing_support::RecordingInterface;

// A surface and a progress indicator that keep the settings in which they are called.
class Witness final : public LateBound {
 public:
  explicit Witness(std::vector<Units>& found) : found_(found) {}

  Variant call(std::string_view, std::span<const Argument>) override {
    found_.push_back(units());
    return {};
  }
  void set_property(std::string_view, const Variant&) override { found_.push_back(units()); }

 private:
  std::vector<Units>& found_;
};

void expect_all(const std::vector<Units>& found, const OddUnits& odd, std::size_t least) {
  EXPECT_GE(found.size(), least) << odd.name;
  for (const Units& one : found) EXPECT_EQ(one, odd.units) << odd.name;
}

TEST(FloatingPointSettings, ALineHasItsDotsAndTheSurfaceFindsTheHostsSettings) {
  for (const OddUnits& odd : odd_units()) {
    std::vector<Units> found;
    ObjectRef surface(new Witness(found));
    const ObjectRef object = create("Orv2_Geo.cgeo_Algorismos");
    double from = 0.0, to = 2.25;
    const Argument arguments[] = {ref(surface), ref(from), ref(from), ref(to), ref(from)};
    Units left;
    {
      const WithUnits of_host(odd.units);
      object->call("Linea_a_puntos", arguments);
      left = units();
    }
    EXPECT_EQ(found.size(), 4U) << odd.name;
    expect_all(found, odd, 4);
    EXPECT_EQ(left, odd.units) << odd.name;
  }
}

TEST(FloatingPointSettings, AScopeAroundCallsInCxxDoesTheSame) {
  for (const OddUnits& odd : odd_units()) {
    std::vector<Units> found;
    const ObjectRef surface(new Witness(found));
    bool cross = true;
    Units left;
    {
      const WithUnits of_host(odd.units);
      {
        const UsualFloatingPoint scope;
        const cgeo_Algorismos algorithms;
        algorithms.Linea_a_puntos(surface, 0.0, 0.0, 2.25, 0.0);
        double x = 0.0, y = 0.0;
        cross =
            algorithms.Intersec_XY_2lineas(0.0, 0.0, 1.0, 1.0, 0.0, 1.0, 1.0, 2.0, x, y).bits != 0;
      }
      left = units();
    }
    EXPECT_FALSE(cross) << odd.name;  // parallel lines
    expect_all(found, odd, 4);
    EXPECT_EQ(left, odd.units) << odd.name;
  }
}

TEST(FloatingPointSettings, AProgressIndicatorFindsTheHostsSettings) {
  for (const OddUnits& odd : odd_units()) {
    std::vector<Units> found;
    ObjectRef indicator(new Witness(found));
    std::int32_t points = 3;
    DoubleArray x(0, 3), y(0, 3), z(0, 3);
    for (std::int32_t i = 1; i <= 3; ++i) x(i) = i;
    LongArray index(0, 3);
    double precision = 0.15;
    Bool aviso;
    const Argument arguments[] = {ref(points), ref(x),         ref(y),         ref(z),
                                  ref(index),  ref(indicator), ref(precision), ref(aviso)};
    const ObjectRef object = create("Orv2_Geo.cgeo_Ordena");
    {
      const WithUnits of_host(odd.units);
      object->call("Quita_Puntos_Repetidos_XY_con_indice1", arguments);
    }
    expect_all(found, odd, 3);  // Visible, Min and max at least
    EXPECT_EQ(points, 3) << odd.name;
  }
}

// The dialog's driver is the host's; the routine behind its button is the library's.
TEST(FloatingPointSettings, AHostsDialogFindsTheHostsSettingsAndItsButtonsTheUsualOnes) {
  for (const OddUnits& odd : odd_units()) {
    std::vector<Units> found;
    RecordingInterface screen;
    screen.user = [&](Form& form) {
      found.push_back(units());
      form.set_text("TxtPresc", Text(u"0.15"));
      form.click("cmdCalcular");
      form.click("cmdEliminar");
      found.push_back(units());
    };
    std::int32_t points = 3;
    DoubleArray x(0, 3), y(0, 3), z(0, 3);
    const double places[] = {1.0, 1.1, 5.0};
    for (std::int32_t i = 1; i <= 3; ++i) x(i) = y(i) = z(i) = places[i - 1];
    StringArray codes(0, 3), names(0, 3);
    ShortArray layers(0, 3);
    LongArray index(0, 3);
    Bool aviso;
    double precision = 0.15;
    const Argument arguments[] = {ref(points), ref(x),      ref(y),     ref(z),     ref(codes),
                                  ref(names),  ref(layers), ref(index), ref(aviso), ref(precision)};
    const ObjectRef object = create("Orv2_Geo.cgeo_Matrices");
    Units left;
    {
      const WithUnits of_host(odd.units);
      object->call("Quita_Pts_Repetidos", arguments);
      left = units();
    }
    expect_all(found, odd, 2);
    EXPECT_EQ(points, 2) << odd.name;
    EXPECT_EQ(left, odd.units) << odd.name;
  }
}

}  // namespace
}  // namespace orv2_geo
