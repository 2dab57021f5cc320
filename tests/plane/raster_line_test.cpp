#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <optional>
#include <vector>

#include "orv2_geo/library/object.h"
#include "tests/plane/restatement.h"
#include "tests/support/refused_memory.h"

namespace orv2_geo::plane_tests {
namespace {

struct Dot {
  double x, y;
  friend bool operator==(const Dot&, const Dot&) = default;
};

// A host's surface: keeps its dots, and does what a test asks at each of them.
class Surface final : public LateBound {
 public:
  Variant call(std::string_view name, std::span<const Argument> arguments) override {
    if (name != "PSet") raise(failure::no_such_member);
    shape_held = shape_held && arguments.size() == 4 && arguments[0].tag == by_value(Type::i16) &&
                 arguments[0].i16 == 0 && arguments[1].variable_of<double>() != nullptr &&
                 arguments[2].variable_of<double>() != nullptr &&
                 arguments[3].tag == by_value(Type::i16) && arguments[3].i16 == 0;
    if (!shape_held) return {};
    double& x = *arguments[1].variable_of<double>();
    double& y = *arguments[2].variable_of<double>();
    ++calls;
    if (at_dot) at_dot(x, y);
    dots.push_back({x, y});
    if (after_dot) after_dot(x, y);
    return Variant(std::int16_t{1});  // an answer nobody asked for
  }
  void set_property(std::string_view, const Variant&) override { raise(failure::no_such_member); }

  bool shape_held = true;
  int calls = 0;
  std::vector<Dot> dots;
  std::function<void(double&, double&)> at_dot;
  std::function<void(double&, double&)> after_dot;
};

// A surface and the reference by which a host holds it.
struct Held {
  Surface* surface = new Surface;
  ObjectRef reference{surface};
};

TEST(RasterLine, EachRule) {
  struct Row {
    const char* rule;
    double p[4];
    std::vector<Dot> dots;
  };
  const Row rows[] = {
      {"no length: two dots in one place", {7, 9, 7, 9}, {{7.5, 9.5}, {7.5, 9.5}}},
      {"eastwards", {0, 0, 3, 0}, {{0.5, 0.5}, {1.25, 0.5}, {2.0, 0.5}, {2.75, 0.5}, {3.5, 0.5}}},
      {"downwards",
       {0, 0, 0, -3},
       {{0.5, 0.5}, {0.5, -0.25}, {0.5, -1.0}, {0.5, -1.75}, {0.5, -2.5}}},
      {"the longer side decides, here Y",
       {0, 0, -1, 3},
       {{0.5, 0.5}, {0.25, 1.25}, {0.0, 2.0}, {-0.25, 2.75}, {-0.5, 3.5}}},
      {"2.5 rounds to 2: the last dot falls short",
       {0, 0, 2.5, 0},
       {{0.5, 0.5}, {0.5 + 2.0 / 3, 0.5}, {0.5 + 2.0 / 3 + 2.0 / 3, 0.5}, {2.5, 0.5}}},
      {"3.5 rounds to 4: the last dot goes beyond",
       {0, 0, 3.5, 0},
       {{0.5, 0.5}, {1.3, 0.5}, {2.1, 0.5}, {2.9, 0.5}, {3.7, 0.5}, {4.5, 0.5}}},
      {"half a unit rounds to none", {0, 0, 0.5, -0.5}, {{0.5, 0.5}, {0.5, 0.5}}},
      {"fractions of the start stay",
       {0.25, 0.125, 1.25, 0.125},
       {{0.75, 0.625}, {1.25, 0.625}, {1.75, 0.625}}},
  };
  for (const Row& row : rows) {
    const Held held;
    algorithms.Linea_a_puntos(held.reference, row.p[0], row.p[1], row.p[2], row.p[3]);
    EXPECT_TRUE(held.surface->shape_held) << row.rule;
    ASSERT_EQ(held.surface->dots.size(), row.dots.size()) << row.rule;
    for (std::size_t i = 0; i < row.dots.size(); ++i) {
      EXPECT_DOUBLE_EQ(held.surface->dots[i].x, row.dots[i].x) << row.rule << ", dot " << i;
      EXPECT_DOUBLE_EQ(held.surface->dots[i].y, row.dots[i].y) << row.rule << ", dot " << i;
    }
  }
}

TEST(RasterLine, ItsLengthIsBoundedBy16Bits) {
  struct Row {
    const char* rule;
    double p[4];
    std::int32_t failure;
    std::size_t dots;
  };
  const Row rows[] = {
      {"the longest", {0, 0, 32766, 0}, 0, 32768},
      {"the longest downwards", {0, 0, 0, -32766}, 0, 32768},
      {"one step more than 16 bits count", {0, 0, 32767, 0}, 6, 0},
      {"the same in Y", {0, 0, 0, 32767}, 6, 0},
      {"a side of 16 bits whose absolute value is not", {0, 0, -32768, 0}, 6, 0},
      {"the same in Y", {0, 0, 0, -32768}, 6, 0},
      {"a side beyond 16 bits", {0, 0, 40000, 0}, 6, 0},
      {"32767.5 rounds to 32768", {0, 0, 32767.5, 0}, 6, 0},
      {"32766.5 rounds to the even 32766", {0, 0, 32766.5, 0}, 0, 32768},
      {"far from the origin but short", {4473000.456, 0, 4473003.456, 0}, 0, 5},
      {"huge coordinates without length", {1e300, 1e300, 1e300, 1e300}, 0, 2},
      {"huge length", {0, 0, 1e300, 0}, 6, 0},
      {"a length beyond f64", {-1e308, 0, 1e308, 0}, 6, 0},
      {"NaN", {nan, 0, 1, 0}, 6, 0},
      {"NaN in Y", {0, 0, 1, nan}, 6, 0},
      {"infinite", {0, 0, 0, inf}, 6, 0},
      {"infinite at both ends", {inf, 0, inf, 0}, 6, 0},
  };
  for (const Row& row : rows) {
    const Held held;
    EXPECT_EQ(failure_of([&] {
                algorithms.Linea_a_puntos(held.reference, row.p[0], row.p[1], row.p[2], row.p[3]);
              }),
              row.failure)
        << row.rule;
    EXPECT_EQ(held.surface->dots.size(), row.dots) << row.rule;
  }
}

TEST(RasterLine, ASurfaceThatFailsEndsTheLine) {
  for (int k = 1; k <= 5; ++k) {
    const Held held;
    held.surface->at_dot = [&](double&, double&) {
      if (held.surface->calls == k) throw RunFailure(1234, "sin tinta", "Host.Papel");
    };
    try {
      algorithms.Linea_a_puntos(held.reference, 0, 0, 3, 0);
      FAIL() << k;
    } catch (const RunFailure& failure) {
      EXPECT_EQ(failure.number(), 1234);
      EXPECT_EQ(failure.description(), "sin tinta");
      EXPECT_EQ(failure.source(), "Host.Papel");
    }
    EXPECT_EQ(held.surface->dots.size(), static_cast<std::size_t>(k - 1));
    held.surface->at_dot = nullptr;  // it refers to `held`
  }
}

TEST(RasterLine, ObjectsThatAreNoSurface) {
  const ObjectRef no_pset = create("Orv2_Geo.cgeo_FuncDeriv");
  EXPECT_EQ(failure_of([&] { algorithms.Linea_a_puntos(no_pset, 0, 0, 3, 0); }), 438);
  EXPECT_EQ(failure_of([&] { algorithms.Linea_a_puntos_s(no_pset, 0, 0, 3, 0); }), 438);
  const ObjectRef none;
  EXPECT_EQ(failure_of([&] { algorithms.Linea_a_puntos(none, 0, 0, 3, 0); }), 91);
  EXPECT_EQ(failure_of([&] { algorithms.Linea_a_puntos_s(none, 0, 0, 3, 0); }), 91);
  // The length is looked at first.
  EXPECT_EQ(failure_of([&] { algorithms.Linea_a_puntos(none, 0, 0, 40000, 0); }), 6);
}

TEST(RasterLine, TheSurfaceMayMoveThePen) {
  const Held held;
  held.surface->after_dot = [](double& x, double& y) {
    x = x + 10.0;
    y = -y;
  };
  algorithms.Linea_a_puntos(held.reference, 0, 0, 1, 0);
  EXPECT_EQ(held.surface->dots, (std::vector<Dot>{{0.5, 0.5}, {11.0, -0.5}, {21.5, 0.5}}));
}

TEST(RasterLine, AMovedPenIsCheckedLikeAnyOther) {
  const Held held;
  held.surface->after_dot = [](double& x, double&) { x = inf; };
  algorithms.Linea_a_puntos(held.reference, 0, 0, 1, 0);  // an infinity raises nothing by itself
  EXPECT_EQ(held.surface->dots.back(), (Dot{inf, 0.5}));
  const Held other;
  other.surface->after_dot = [](double& x, double&) { x = std::numeric_limits<double>::max(); };
  algorithms.Linea_a_puntos(other.reference, 0, 0, 1, 0);  // the sum is the same number again
  EXPECT_EQ(other.surface->dots.size(), 3U);
}

TEST(RasterLine, TheCoordinatesAreReadBeforeTheFirstDot) {
  const Held held;
  double x1 = 0, y1 = 0, x2 = 2, y2 = 0;
  held.surface->after_dot = [&](double&, double&) { x1 = y1 = x2 = y2 = 99.0; };
  algorithms.Linea_a_puntos(held.reference, x1, y1, x2, y2);
  EXPECT_EQ(held.surface->dots.size(), 4U);
  EXPECT_EQ(held.surface->dots.back(), (Dot{0.5 + 2.0 / 3 + 2.0 / 3 + 2.0 / 3, 0.5}));
}

// The line by the double or by the single member.
using Line = void (*)(const ObjectRef& f);
constexpr Line lines[] = {
    [](const ObjectRef& f) { algorithms.Linea_a_puntos(f, 0, 0, 3, 0); },
    [](const ObjectRef& f) { algorithms.Linea_a_puntos_s(f, 0, 0, 3, 0); },
};

TEST(RasterLine, TheCallersVariableIsLookedAtAtEachDot) {
  for (const Line line : lines) {
    Held first;
    Held second;
    ObjectRef variable = first.reference;
    first.surface->after_dot = [&](double&, double&) { variable = second.reference; };
    line(variable);
    EXPECT_EQ(first.surface->dots, (std::vector<Dot>{{0.5, 0.5}}));
    EXPECT_EQ(second.surface->dots,
              (std::vector<Dot>{{1.25, 0.5}, {2.0, 0.5}, {2.75, 0.5}, {3.5, 0.5}}));
  }
}

TEST(RasterLine, ASurfaceMayDropItsOwnLastReference) {
  const long before = allocations_in_use();
  for (const Line line : lines) {
    ObjectRef variable(new Surface);
    auto& surface = static_cast<Surface&>(*variable.get());
    int dots = 0;
    surface.after_dot = [&](double&, double&) {
      ++dots;
      variable = nullptr;
    };
    EXPECT_EQ(failure_of([&] { line(variable); }), 91);  // no object at the second dot
    EXPECT_EQ(dots, 1);
  }
  EXPECT_EQ(allocations_in_use(), before);
}

TEST(RasterLine, TheCallingObjectLivesUntilTheLineEnds) {
  for (const char* member : {"Linea_a_puntos", "Linea_a_puntos_s"}) {
    const bool doubles = std::string_view(member) == "Linea_a_puntos";
    const long before = allocations_in_use();
    {
      std::optional<ObjectRef> caller = create("Orv2_Geo.cgeo_Algorismos");
      LateBound& object = *caller->get();
      Held held;
      held.surface->after_dot = [&](double&, double&) { caller.reset(); };
      double x1 = 0, y1 = 0, x2 = 3, y2 = 0;
      float x1s = 0, y1s = 0, x2s = 3, y2s = 0;
      const Argument wide[] = {ref(held.reference), ref(x1), ref(y1), ref(x2), ref(y2)};
      const Argument single[] = {Argument::of_value(held.reference), ref(x1s), ref(y1s), ref(x2s),
                                 ref(y2s)};
      if (doubles) {
        object.call(member, wide);
      } else {
        object.call(member, single);
      }
      EXPECT_FALSE(caller.has_value());
      EXPECT_EQ(held.surface->dots.size(), 5U);
      EXPECT_EQ(held.surface->dots.back(), (Dot{3.5, 0.5}));
    }
    EXPECT_EQ(allocations_in_use(), before);
  }
}

// Every dot of a line, or the failure that it ends with.
std::int32_t restated_line(double X1, double Y1, double X2, double Y2, std::vector<Dot>& dots) {
  const auto whole = [](double v) {  // to the nearest, ties to the even one
    const double below = std::floor(v);
    const double rest = v - below;
    const bool up = rest > 0.5 || (rest == 0.5 && std::fmod(below, 2.0) != 0.0);
    return up ? below + 1.0 : below;
  };
  Number dx = whole(X2 - X1);
  Number dy = whole(Y2 - Y1);
  if (std::fabs(dx) > 32766.0 || std::fabs(dy) > 32766.0) return 6;
  const double m = std::fabs(dx) < std::fabs(dy) ? std::fabs(dy) : std::fabs(dx);
  Number n = m + 1.0;
  Number sx = dx / n;
  Number sy = dy / n;
  volatile double px = X1 + 0.5;
  volatile double py = Y1 + 0.5;
  for (int i = 1; i <= n; ++i) {
    dots.push_back({px, py});
    px = px + sx;
    py = py + sy;
  }
  dots.push_back({px, py});
  return 0;
}

TEST(RasterLine, RandomLines) {
  Numbers numbers(61);
  for (int trial = 0; trial < 10000; ++trial) {
    double p[4];
    for (double& v : p) {
      v = trial % 3 == 0   ? numbers.small_whole() * 0.5
          : trial % 3 == 1 ? std::round((435000.123 + numbers.between(-40, 40)) * 1000.0) / 1000.0
                           : numbers.between(-120, 120);
    }
    if (trial % 500 == 2) p[2] = numbers.between(-40000, 40000);
    std::vector<Dot> expected;
    const std::int32_t failure = restated_line(p[0], p[1], p[2], p[3], expected);
    const Held held;
    ASSERT_EQ(
        failure_of([&] { algorithms.Linea_a_puntos(held.reference, p[0], p[1], p[2], p[3]); }),
        failure);
    ASSERT_EQ(held.surface->dots, expected) << p[0] << ' ' << p[1] << ' ' << p[2] << ' ' << p[3];

    float s[4];
    for (int i = 0; i < 4; ++i) s[i] = static_cast<float>(p[i]);
    std::vector<Dot> of_singles;
    const std::int32_t single_failure = restated_line(s[0], s[1], s[2], s[3], of_singles);
    const Held other;
    ASSERT_EQ(
        failure_of([&] { algorithms.Linea_a_puntos_s(other.reference, s[0], s[1], s[2], s[3]); }),
        single_failure);
    ASSERT_EQ(other.surface->dots, of_singles) << s[0] << ' ' << s[1] << ' ' << s[2] << ' ' << s[3];
  }
}

TEST(RasterLine, OneVariableForSeveralCoordinates) {
  const Held held;
  const double x = 2.0, y = 0.0;
  algorithms.Linea_a_puntos(held.reference, x, x, x, y);
  EXPECT_EQ(held.surface->dots.size(), 4U);
  EXPECT_EQ(held.surface->dots.front(), (Dot{2.5, 2.5}));
}

}  // namespace
}  // namespace orv2_geo::plane_tests
