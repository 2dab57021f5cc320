#include <algorithm>
#include <array>
#include <optional>
#include <variant>
#include <vector>

#include "orv2_geo/survey/cgeo_Geometria.h"
#include "tests/support/preamble.h"

namespace orv2_geo {
namespace {

const cgeo_Geometria geometry;

// What a member left: the point, and the flag.
struct Left {
  double x = -1.0, y = -2.0;
  Bool flag = Bool::raw(7);
};

using Lines = double[8];

Left engine(const Lines& r) {
  Left left;
  geometry.GR_Intersec_2_Rectas(r[0], r[1], r[2], r[3], r[4], r[5], r[6], r[7], left.x, left.y,
                                left.flag);
  return left;
}

Left segments(const Lines& r) {
  Left left;
  geometry.GR_Se_cortan_2_rectas(r[0], r[1], r[2], r[3], r[4], r[5], r[6], r[7], left.x, left.y,
                                 left.flag);
  return left;
}

struct Row {
  const char* rule;
  Lines lines;
  double x, y;
  bool parallel;
};

constexpr double unset_x = -1.0, unset_y = -2.0;

const Row rows[] = {
    {"general case", {0, 0, 10, 10, 0, 10, 10, 0}, 5, 5, false},
    {"row 1: level meets upright within", {0, 0, 10, 0, 5, -5, 5, 5}, 5, 0, false},
    {"row 1: the other way round", {10, 0, 0, 0, 5, -5, 5, 5}, 5, 0, false},
    {"row 1: the closed end", {0, 0, 10, 0, 10, -5, 10, 5}, 10, 0, false},
    {"row 1: does not ask for the first Y of R2", {0, 0, 10, 0, 5, nan, 5, 5}, 5, 0, false},
    {"row 1: nor for the second", {0, 0, 10, 0, 5, -5, 5, nan}, 5, 0, false},
    {"row 2: upright meets level within", {5, -5, 5, 5, 0, 3, 10, 3}, 5, 3, false},
    {"row 3: the same line", {1, 2, 4, 9, 1, 2, 4, 9}, 1, 2, false},
    {"row 4: the same line reversed", {1, 2, 4, 9, 4, 9, 1, 2}, 1, 2, false},
    {"row 5: first ends shared", {1, 2, 4, 9, 1, 2, 7, 3}, 1, 2, false},
    {"row 6: second ends shared", {1, 2, 4, 9, 7, 3, 4, 9}, 4, 9, false},
    {"row 7: first on second", {1, 2, 4, 9, 7, 3, 1, 2}, 1, 2, false},
    {"row 8: second on first", {1, 2, 4, 9, 4, 9, 7, 3}, 4, 9, false},
    {"row 9: level and upright apart", {0, 0, 10, 0, 20, -5, 20, 5}, 20, 0, false},
    {"row 10: upright and level apart", {20, -5, 20, 5, 0, 1, 10, 1}, 20, 1, false},
    {"row 11: two uprights are never parallel", {0, 0, 0, 1, 3, 5, 3, 6}, 0, 6, false},
    {"row 12: R1 upright", {4, 0, 4, 1, 0, 0, 10, 5}, 4, 2, false},
    {"row 12: R1 of no length", {4, 1, 4, 1, 0, 0, 10, 5}, 4, 2, false},
    {"row 9: R1 of no length, R2 upright", {4, 1, 4, 1, 3, 5, 3, 6}, 3, 1, false},
    {"row 13: R2 of no length", {0, 0, 10, 5, 4, 9, 4, 9}, 4, 2, false},
    {"row 9: both of no length", {4, 1, 4, 1, 3, 5, 3, 5}, 3, 1, false},
    {"row 13: R2 upright", {0, 0, 10, 5, 4, 9, 4, 7}, 4, 2, false},
    {"step 3: two levels leave Y", {0, 0, 1, 0, 0, 2, 1, 2}, unset_x, 2, true},
    {"step 3: parallel diagonals leave both", {0, 0, 1, 1, 0, 1, 1, 2}, unset_x, unset_y, true},
    {"step 5: R1 level", {0, 3, 10, 3, 0, 0, 2, 1}, 6, 3, false},
    {"step 6: R2 level", {0, 0, 2, 1, 0, 3, 10, 3}, 6, 3, false},
    {"step 7: exactly as far as allowed",
     {0, 0, 1, 1, 0, 9999999, 1, 9999999},
     9999999,
     9999999,
     false},
    {"step 7: nearly parallel, too far in both",
     {0, 0, 100, 100, 0, 10, 100, 110.0001},
     100,
     100,
     false},
    {"step 7: nearly parallel, too far in X",
     {0, 0, 1000, 1, 0, 10, 1000, 10.9995},
     1000,
     1,
     false},
    {"step 7: too far in Y", {0, 0, 1, 1, 0, 10000000, 1, 10000000}, 1, 1, false},
    {"rows know no limit", {2e7, 1, 5, 9, 2e7, 1, 6, 3}, 2e7, 1, false},
};

TEST(LineIntersection, EachRowAndEachStep) {
  for (const Row& row : rows) {
    const Left left = engine(row.lines);
    EXPECT_EQ(bits(left.x), bits(row.x)) << row.rule;
    EXPECT_EQ(bits(left.y), bits(row.y)) << row.rule;
    EXPECT_EQ(left.flag.bits, row.parallel ? -1 : 0) << row.rule;
    // The function gives the parallel flag, and the same point.
    double x = unset_x, y = unset_y;
    const Lines& r = row.lines;
    EXPECT_EQ(geometry.GF_Se_cortan_2_rectas(r[0], r[1], r[2], r[3], r[4], r[5], r[6], r[7], x, y),
              row.parallel)
        << row.rule;
    EXPECT_EQ(bits(x), bits(row.x)) << row.rule;
    EXPECT_EQ(bits(y), bits(row.y)) << row.rule;
  }
}

TEST(LineIntersection, NaNFailsInTheFirstRowThatAsksForIt) {
  const struct {
    const char* rule;
    Lines lines;
  } table[] = {
      {"row 1 asks for the Y of R1, before row 2 could answer", {5, nan, 5, 5, 0, 3, 10, 3}},
      {"row 1 asks for the X of R1", {0, 0, nan, 0, 5, -5, 5, 5}},
      {"row 1 asks for the X of R2", {0, 0, 10, 0, nan, -5, 5, 5}},
      {"beyond row 1 the Y of R2 is asked for", {0, 0, 10, 0, 20, nan, 20, 5}},
      {"before shared ends", {1, 2, 4, 9, 1, 2, 7, nan}},
      {"in the general case", {0, 0, 10, 10, 0, 10, 10, nan}},
  };
  for (const auto& row : table) {
    Left left;
    const Lines& r = row.lines;
    EXPECT_EQ(failure_of([&] {
                geometry.GR_Intersec_2_Rectas(r[0], r[1], r[2], r[3], r[4], r[5], r[6], r[7],
                                              left.x, left.y, left.flag);
              }),
              6)
        << row.rule;
    EXPECT_EQ(left.flag.bits, 0) << row.rule;
    EXPECT_EQ(left.x, unset_x) << row.rule;
    EXPECT_EQ(left.y, unset_y) << row.rule;
  }
}

TEST(LineIntersection, TheSingleMemberGivesOnlyItsFlag) {
  const float x = 3.5F, y = 4.5F;
  Bool parallel = Bool::raw(7);
  geometry.GR_Intersec_2_Rectas_S(0, 0, 10, 10, 0, 10, 10, 0, x, y, parallel);
  EXPECT_EQ(parallel.bits, 0);
  EXPECT_EQ(x, 3.5F);
  EXPECT_EQ(y, 4.5F);
  geometry.GR_Intersec_2_Rectas_S(0, 0, 1, 1, 0, 1, 1, 2, x, y, parallel);
  EXPECT_EQ(parallel.bits, -1);
}

struct SegmentRow {
  const char* rule;
  Lines lines;
  double x, y;
  bool cross;
};

TEST(LineIntersection, SegmentsCrossWithinTheirTolerance) {
  const SegmentRow table[] = {
      {"crossing", {0, 0, 10, 10, 0, 10, 10, 0}, 5, 5, true},
      {"off R1: the point stays", {0, 0, 10, 0, 20, -5, 20, 5}, 20, 0, false},
      {"off R2: the point stays", {0, 0, 10, 10, 20, 0, 30, -10}, 10, 10, false},
      {"parallel", {0, 0, 1, 1, 0, 1, 1, 2}, unset_x, unset_y, false},
      {"0.004 beyond an end of R1", {0, 0, 10, 0, 10.004, -5, 10.004, 5}, 10.004, 0, true},
      {"0.006 beyond an end of R1", {0, 0, 10, 0, 10.006, -5, 10.006, 5}, 10.006, 0, false},
      {"0.004 beyond an end of R2", {5, -5, 5, 5, 0, 0, 4.996, 0}, 5, 0, true},
      {"0.006 beyond an end of R2", {5, -5, 5, 5, 0, 0, 4.994, 0}, 5, 0, false},
      // The sum of distances is exactly the length plus 0.01 in binary64.
      {"exactly at R2's tolerance passes", {3.005, -5, 3.005, 5, 0, 0, 3, 0}, 3.005, 0, true},
      {"exactly at R1's tolerance does not", {0, 0, 3, 0, 3.005, -5, 3.005, 5}, 3.005, 0, false},
      {"a far row off R1 is replaced", {0, 0, 1, 0, 2e7, -5, 2e7, 5}, 1, 0, false},
  };
  for (const SegmentRow& row : table) {
    const Left left = segments(row.lines);
    EXPECT_EQ(bits(left.x), bits(row.x)) << row.rule;
    EXPECT_EQ(bits(left.y), bits(row.y)) << row.rule;
    EXPECT_EQ(left.flag.bits, row.cross ? -1 : 0) << row.rule;
  }
}

TEST(LineIntersection, AFailureLeavesWhatWasWritten) {
  Left left;
  EXPECT_EQ(failure_of([&] {
              geometry.GR_Intersec_2_Rectas(1e308, 0, -1e308, 1, 0, 0, 1, 1, left.x, left.y,
                                            left.flag);
            }),
            6);
  EXPECT_EQ(left.flag.bits, 0);
  EXPECT_EQ(left.x, unset_x);
  left = Left();
  EXPECT_EQ(failure_of([&] {
              geometry.GR_Se_cortan_2_rectas(1e308, 0, -1e308, 1, 0, 0, 1, 1, left.x, left.y,
                                             left.flag);
            }),
            6);
  EXPECT_EQ(left.flag.bits, 7);
  left = Left();  // row 12 writes X, then fails in Y
  EXPECT_EQ(failure_of([&] {
              geometry.GR_Intersec_2_Rectas(4, 0, 4, 1, 0, -1e300, 1e200, 1e300, left.x, left.y,
                                            left.flag);
            }),
            6);
  EXPECT_EQ(left.x, 4.0);
  EXPECT_EQ(left.y, unset_y);
}

// The ladder as data, over the variables 0 to 7: R1x1 R1y1 R1x2 R1y2 R2x1 R2y1 R2x2 R2y2.
// Everything is read from the variables where a row names it, so that a point written
// over one of them counts from then on.
struct Rung {
  struct Equal {
    std::size_t a, b;
  };
  struct Within {
    std::size_t v, a, b;  // in the closed interval, either way round
  };
  // (a - b) (c - d) / (e - f) + g
  struct Formula {
    std::size_t a, b, c, d, e, f, g;
  };
  std::vector<Equal> equal;
  std::optional<Within> within;
  std::size_t x;
  std::variant<std::size_t, Formula> y;
};

const std::vector<Rung> ladder = {
    {{{1, 3}, {4, 6}}, Rung::Within{4, 0, 2}, 6, 1U},
    {{{5, 7}, {0, 2}}, Rung::Within{0, 4, 6}, 0, 7U},
    {{{0, 4}, {1, 5}, {2, 6}, {3, 7}}, {}, 0, 1U},
    {{{0, 6}, {1, 7}, {2, 4}, {3, 5}}, {}, 0, 1U},
    {{{0, 4}, {1, 5}}, {}, 0, 1U},
    {{{2, 6}, {3, 7}}, {}, 2, 3U},
    {{{0, 6}, {1, 7}}, {}, 0, 1U},
    {{{2, 4}, {3, 5}}, {}, 2, 3U},
    {{{1, 3}, {4, 6}}, {}, 4, 1U},
    {{{0, 2}, {5, 7}}, {}, 0, 7U},
    {{{0, 2}, {4, 6}}, {}, 0, 7U},
    {{{0, 2}}, {}, 0, Rung::Formula{5, 7, 0, 6, 4, 6, 7}},
    {{{4, 6}}, {}, 4, Rung::Formula{3, 1, 6, 0, 2, 0, 1}},
};

using Variables = std::array<double, 10>;  // 8, 9: a point of its own

bool holds(const Rung& rung, const Variables& v) {
  const auto is_equal = [&](const Rung::Equal& pair) { return v[pair.a] == v[pair.b]; };
  if (!std::all_of(rung.equal.begin(), rung.equal.end(), is_equal)) return false;
  if (!rung.within) return true;
  const auto [value, a, b] = *rung.within;
  return std::min(v[a], v[b]) <= v[value] && v[value] <= std::max(v[a], v[b]);
}

double worked_out(const Rung::Formula& r, const Variables& v) {
  const volatile double product = (v[r.a] - v[r.b]) * (v[r.c] - v[r.d]);
  const volatile double quotient = product / (v[r.e] - v[r.f]);
  return quotient + v[r.g];
}

// Change of X per unit of Y between two points; a level line writes Y.
double inverse_slope(const Variables& v, std::size_t x1, std::size_t x2, double& Y) {
  if (v[x1 + 1] != v[x2 + 1]) return (v[x1] - v[x2]) / (v[x1 + 1] - v[x2 + 1]);
  Y = v[x2 + 1];
  return 0.0;
}

// Beyond the ladder: where lines of two inverse slopes meet. True when they are
// parallel.
bool general_case(Variables& v, std::size_t at_x, std::size_t at_y) {
  const double m1 = inverse_slope(v, 0, 2, v[at_y]);
  const double m2 = inverse_slope(v, 4, 6, v[at_y]);
  if (m1 == m2) return true;
  if (m1 != 0.0 && m2 != 0.0) {
    const volatile double first = m1 * v[1], second = m2 * v[7];
    v[at_y] = (first - second + v[6] - v[0]) / (m1 - m2);
  }
  const bool on_second = m2 != 0.0;
  const std::size_t from = on_second ? 4 : 0;
  const volatile double along = (v[at_y] - v[from + 1]) * (on_second ? m2 : m1);
  v[at_x] = along + v[from];
  if (std::fabs(v[at_x]) <= 9999999 && std::fabs(v[at_y]) <= 9999999) return false;
  v[at_x] = v[2];
  v[at_y] = v[3];
  return false;
}

bool restated(Variables& v, std::size_t at_x, std::size_t at_y) {
  const auto fits = [&](const Rung& one) { return holds(one, v); };
  const auto rung = std::find_if(ladder.begin(), ladder.end(), fits);
  if (rung == ladder.end()) return general_case(v, at_x, at_y);
  v[at_x] = v[rung->x];
  const auto* const formula = std::get_if<Rung::Formula>(&rung->y);
  v[at_y] = formula != nullptr ? worked_out(*formula, v) : v[std::get<std::size_t>(rung->y)];
  return false;
}

double length(double ax, double ay, double bx, double by) {
  return runtime.pow(runtime.pow(ay - by, 2.0) + runtime.pow(ax - bx, 2.0), 0.5);
}

TEST(LineIntersection, RandomLinesAndSharedVariables) {
  Numbers numbers(52);
  for (int i = 0; i < 20000; ++i) {
    Variables v = {};
    for (double& value : v) {
      value = i % 3 == 0   ? numbers.small_half()
              : i % 3 == 1 ? numbers.coordinate()
                           : numbers.between(-100, 100);
    }
    Variables s = v;
    // Every fourth time the point is written over one of the coordinates.
    const std::size_t at_x = i % 4 == 0 ? numbers.below(8) : 8;
    const std::size_t at_y = i % 4 == 0 ? numbers.below(8) : 9;
    Bool flag;
    const std::int32_t number = failure_of([&] {
      geometry.GR_Intersec_2_Rectas(v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7], v[at_x],
                                    v[at_y], flag);
    });
    const bool parallel = restated(s, at_x, at_y);
    // A point written over a divisor's coordinate can leave nothing to divide by.
    const bool fails = !std::isfinite(s[at_y]);
    ASSERT_EQ(number != 0, fails) << i;
    if (fails) continue;
    for (std::size_t k = 0; k < 10; ++k) ASSERT_EQ(bits(v[k]), bits(s[k])) << i << ' ' << k;
    ASSERT_EQ(static_cast<bool>(flag), parallel) << i;
    if (at_x != 8 || parallel) continue;

    const Lines r = {v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7]};
    const Left left = segments(r);
    const double X = s[8], Y = s[9];
    const bool on2 = !(length(X, Y, r[4], r[5]) + length(X, Y, r[6], r[7]) - 0.01 >
                       length(r[4], r[5], r[6], r[7]));
    const bool on1 =
        length(X, Y, r[0], r[1]) + length(X, Y, r[2], r[3]) - 0.01 < length(r[0], r[1], r[2], r[3]);
    ASSERT_EQ(static_cast<bool>(left.flag), on1 && on2) << i;
  }
}

}  // namespace
}  // namespace orv2_geo
