// A host's variable that holds an object: it is looked at anew at each use, as a
// reference is in C++.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/c_api/boundary.h"

namespace orv2_geo::testing_support {
namespace {

// A surface and a progress indicator in one: writes down what it is told, and does
// afterwards what a test asks.
struct Host {
  std::vector<std::string> told;
  std::function<void()> then;
  orv2_handle handle = 0;

  Host() {
    const orv2_host_object callbacks{sizeof(callbacks), set, call, nullptr};
    orv2_host_object_new(&callbacks, this, &handle);
  }
  ~Host() { orv2_release(handle); }
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  void tell(const char* name) {
    told.emplace_back(name);
    if (then) then();
  }
  static std::int32_t set(void* context, const char* name, const orv2_value*) {
    static_cast<Host*>(context)->tell(name);
    return 0;
  }
  static std::int32_t call(void* context, const char* name, const orv2_value*, std::size_t,
                           orv2_value*) {
    static_cast<Host*>(context)->tell(name);
    return 0;
  }
};

using Told = std::vector<std::string>;

// A line of four dots and the last one.
std::int32_t line(orv2_handle* surface) {
  const Owned object(new_object());
  double x1 = 0, y1 = 0, x2 = 3, y2 = 0;
  const orv2_value arguments[] = {pointing_at(surface), pointing_at(&x1), pointing_at(&y1),
                                  pointing_at(&x2), pointing_at(&y2)};
  return orv2_call_name(object, "Linea_a_puntos", arguments, std::size(arguments), nullptr);
}

// The same through the single member.
std::int32_t single_line(orv2_handle* surface) {
  const Owned object(new_object());
  float x1 = 0, y1 = 0, x2 = 3, y2 = 0;
  const orv2_value arguments[] = {pointing_at(surface), pointing_at(&x1), pointing_at(&y1),
                                  pointing_at(&x2), pointing_at(&y2)};
  return orv2_call_name(object, "Linea_a_puntos_s", arguments, std::size(arguments), nullptr);
}

constexpr std::int32_t (*lines[])(orv2_handle*) = {line, single_line};

TEST(ObjectVariables, AnotherSurfaceTakesTheRestOfTheDots) {
  for (const auto draw : lines) {
    Host first, second;
    orv2_handle variable = first.handle;
    first.then = [&] { variable = second.handle; };
    EXPECT_EQ(draw(&variable), 0);
    EXPECT_EQ(first.told.size(), 1U);
    EXPECT_EQ(second.told.size(), 4U);
  }
}

TEST(ObjectVariables, NoSurfaceAnyMoreIs91) {
  for (const auto draw : lines) {
    Host surface;
    orv2_handle variable = surface.handle;
    surface.then = [&] { variable = 0; };
    EXPECT_EQ(draw(&variable), 91);
    EXPECT_EQ(surface.told.size(), 1U);
    EXPECT_EQ(last_failure().source, algorismos);
  }
}

TEST(ObjectVariables, AWrongHandleIs5AtItsFirstUse) {
  const Owned text(new_text());
  for (const orv2_handle wrong : {orv2_handle{0xdeadbeef00000001U}, orv2_handle(text)}) {
    Host surface;
    orv2_handle variable = surface.handle;
    surface.then = [&] { variable = wrong; };
    EXPECT_EQ(line(&variable), 5);
    EXPECT_EQ(surface.told.size(), 1U);
  }
}

TEST(ObjectVariables, AWrongHandleToBeginWithIs5BeforeAnythingRuns) {
  orv2_handle variable = 0xdeadbeef00000001U;
  EXPECT_EQ(line(&variable), 5);
}

TEST(ObjectVariables, AnObjectThatIsReleasedAtItsUseLivesThroughIt) {
  Host first;
  orv2_handle variable = first.handle;
  Host second;
  first.then = [&] {
    variable = second.handle;
    orv2_release(std::exchange(first.handle, 0));
  };
  EXPECT_EQ(line(&variable), 0);
  EXPECT_EQ(second.told.size(), 4U);
}

// Four points apart, with an indicator in a variable.
struct Removal {
  std::int32_t points = 3;
  Owned X{new_array()}, Y{new_array()}, Z{new_array()}, index{new_array(ORV2_LONG_ARRAY)};

  Removal() {
    void* data = nullptr;
    orv2_array_data(X, &data);
    for (int i = 0; i < 4; ++i) static_cast<double*>(data)[i] = i;
  }
  std::int32_t run(orv2_handle* indicator) {
    const Owned sorts(new_object("Orv2_Geo.cgeo_Ordena"));
    const orv2_value arguments[] = {pointing_at(&points),           tagged(ORV2_DOUBLE_ARRAY, X),
                                    tagged(ORV2_DOUBLE_ARRAY, Y),   tagged(ORV2_DOUBLE_ARRAY, Z),
                                    tagged(ORV2_LONG_ARRAY, index), pointing_at(indicator)};
    return orv2_call_name(sorts, "Quita_Puntos_Repetidos_XY_con_indice1", arguments,
                          std::size(arguments), nullptr);
  }
};

TEST(ObjectVariables, AnotherIndicatorIsToldTheRest) {
  Host first, second;
  orv2_handle variable = first.handle;
  first.then = [&] {
    if (first.told.size() == 2) variable = second.handle;
  };
  Removal removal;
  EXPECT_EQ(removal.run(&variable), 0);
  EXPECT_EQ(first.told, (Told{"Visible", "Min"}));
  EXPECT_EQ(second.told, (Told{"max", "Visible"}));
  EXPECT_EQ(removal.points, 3);
}

TEST(ObjectVariables, NoIndicatorAnyMoreIsShownByTheTrappedRoutine) {
  struct Boxes {
    std::string last;
    static std::int32_t box(void* context, const char* text, std::int32_t, const char*) {
      static_cast<Boxes*>(context)->last = text;
      return 0;
    }
    static std::int32_t form(void*, orv2_form*) { return 0; }
  } boxes;
  const orv2_user_interface screen{sizeof(screen), &boxes, Boxes::box, Boxes::form, nullptr};
  ASSERT_EQ(orv2_set_user_interface(&screen), 0);
  Host indicator;
  orv2_handle variable = indicator.handle;
  indicator.then = [&] { variable = 0; };
  Removal removal;
  EXPECT_EQ(removal.run(&variable), 0);
  orv2_set_user_interface(nullptr);
  EXPECT_EQ(indicator.told, (Told{"Visible"}));
  EXPECT_EQ(boxes.last,
            "m_Indice_de_Puntos_sin_Repetir_2 - Error n\u00ba  91:"
            "Variable de objeto no establecida");
  EXPECT_EQ(removal.points, 0);
}

}  // namespace
}  // namespace orv2_geo::testing_support
