#include <gtest/gtest.h>

#include "tests/plane/agree.h"
#include "tests/plane/restated_measures.h"
#include "tests/plane/restatement.h"

namespace orv2_geo::plane_tests {
namespace {

struct WholeRow {
  const char* rule;
  std::int32_t x1, y1, x2, y2;
  std::int32_t failure;
  float expected;
};

TEST(WholePoints, EachRule) {
  const WholeRow rows[] = {
      {"a square root where both axes differ", 0, 0, 3, 4, 0, 5.0F},
      {"one X: no square root", 0, 0, 0, 7, 0, 7.0F},
      {"one X, downwards", 0, 7, 0, 0, 0, 7.0F},
      {"one Y", 3, 1, -6, 1, 0, 9.0F},
      {"one point", 5, 5, 5, 5, 0, 0.0F},
      {"squares beyond 32 bits, though the distance would fit", 0, 0, 50000, 50000, 6, 0},
      {"no square on an axis", 0, 0, 0, 50000, 0, 50000.0F},
      {"46340 is the last side with a square", 0, 0, 46340, 1, 0, 46340.0F},
      {"46341 is the first without", 0, 0, 46341, 1, 6, 0},
      {"46341 in Y", 0, 0, 1, -46341, 6, 0},
      {"two squares that fit and a sum that does not", 0, 0, 40000, 40000, 6, 0},
      {"a difference beyond 32 bits on an axis", 0, lowest_long, 0, 1, 6, 0},
      {"its absolute value alone beyond them", 0, lowest_long, 0, 0, 6, 0},
      {"the same in X", 0, 0, lowest_long, 0, 6, 0},
      {"the largest difference, rounded to f32", 0, 0, 0, highest_long, 0, 2147483648.0F},
      {"16777217 has no f32: to the even neighbour", 0, 0, 16777217, 0, 0, 16777216.0F},
  };
  for (const WholeRow& row : rows) {
    float answer = 0.0F;
    EXPECT_EQ(failure_of([&] {
                answer = algorithms.Distancia_Punto_Punto_l(row.x1, row.y1, row.x2, row.y2);
              }),
              row.failure)
        << row.rule;
    EXPECT_EQ(bits(answer), bits(row.expected)) << row.rule;
  }
}

TEST(WholePoints, RandomPoints) {
  Numbers numbers(50);
  for (int trial = 0; trial < 40000; ++trial) {
    const int reach = trial % 4 == 0 ? 3 : trial % 4 == 1 ? 15 : trial % 4 == 2 ? 17 : 32;
    std::int32_t p[4];
    for (auto& v : p) {
      v = static_cast<std::int32_t>(static_cast<std::int64_t>(numbers.below(1ULL << reach)) -
                                    (1LL << (reach - 1)));
    }
    // One variable for both by-reference parameters now and then.
    const std::int32_t& Y1 = trial % 5 == 0 ? p[0] : p[1];
    ASSERT_EQ(outcome_of([&] { return algorithms.Distancia_Punto_Punto_l(p[0], Y1, p[2], p[3]); }),
              outcome_of([&] { return restated_whole(p[0], Y1, p[2], p[3]); }))
        << p[0] << ' ' << Y1 << ' ' << p[2] << ' ' << p[3];
  }
}

struct SegmentRow {
  const char* rule;
  double px, py, x1, y1, x2, y2, tolerance;
  double distance, touches;
  bool near;
};

const SegmentRow segment_rows[] = {
    {"beside it, at the tolerance: not below, but not above", 5, 1, 0, 0, 10, 0, 1.0, 1, 0.0, true},
    {"beside it, within the tolerance", 5, 1, 0, 0, 10, 0, 1.5, 1, -1.0, true},
    {"beside it, beyond the tolerance", 5, 5, 0, 0, 10, 0, 1.5, 5, 0.0, false},
    {"before the start: to E1", -3, 4, 0, 0, 10, 0, 6, 5, -1.0, true},
    {"past the end: to E2", 13, 4, 0, 0, 10, 0, 5, 5, 0.0, true},
    {"on it, with no tolerance", 5, 0, 0, 0, 10, 0, 0, 0, 0.0, true},
    {"on its start", 0, 0, 0, 0, 10, 0, 0, 0, 0.0, true},
    {"on its end", 10, 0, 0, 0, 10, 0, 0, 0, 0.0, true},
    {"on it, with a negative tolerance", 5, 0, 0, 0, 10, 0, -1, 0, 0.0, false},
    {"a segment that is a point answers with the distance and says true", 5, 6, 2, 2, 2, 2, 0.5, 5,
     5.0, true},
    {"the same on the point", 2, 2, 2, 2, 2, 2, 0.5, 0, 0.0, true},
    {"vertical", 3, 5, 0, 0, 0, 10, 3, 3, 0.0, true},
    {"falling", 5, 5, 0, 10, 10, 0, 0, 0, 0.0, true},
};

TEST(PointAndSegment, EachRule) {
  for (const SegmentRow& r : segment_rows) {
    EXPECT_EQ(bits(algorithms.Distancia_Punto_Linea(r.px, r.py, r.x1, r.y1, r.x2, r.y2)),
              bits(r.distance))
        << r.rule;
    EXPECT_EQ(bits(algorithms.Toca_Punto_Recta(r.px, r.py, r.x1, r.y1, r.x2, r.y2, r.tolerance)),
              bits(r.touches))
        << r.rule;
    EXPECT_EQ(
        plain(algorithms.Toca_Punto_Recta_SN(r.px, r.py, r.x1, r.y1, r.x2, r.y2, r.tolerance)),
        r.near ? -1 : 0)
        << r.rule;
  }
}

// A point at infinity raises nothing on its way to an end, and is far from both.
TEST(PointAndSegment, AnInfinityThatRaisesNothingTravelsOn) {
  const cgeo_Algorismos algorithms;
  for (const double far : {inf, -inf}) {
    EXPECT_EQ(algorithms.Distancia_Punto_Linea(far, 5, 0, 0, 10, 1), inf);
    EXPECT_EQ(algorithms.Distancia_Punto_Linea(far, 5, 2, 2, 2, 2), inf);
    EXPECT_EQ(algorithms.Toca_Punto_Recta(far, 5, 0, 0, 10, 1, 3), 0.0);
    EXPECT_FALSE(algorithms.Toca_Punto_Recta_SN(far, 5, 0, 0, 10, 1, 3));
    EXPECT_EQ(failure_of([&] { (void)algorithms.Distancia_Punto_Linea(5, far, 0, 0, 10, 0); }), 6);
  }
}

TEST(PointAndSegment, TheSingleVariantsOfEachRule) {
  for (const SegmentRow& r : segment_rows) {
    float p[7] = {};
    const double given[7] = {r.px, r.py, r.x1, r.y1, r.x2, r.y2, r.tolerance};
    for (int i = 0; i < 7; ++i) p[i] = static_cast<float>(given[i]);
    EXPECT_EQ(bits(algorithms.Distancia_Punto_Linea_s(p[0], p[1], p[2], p[3], p[4], p[5])),
              bits(static_cast<float>(r.distance)))
        << r.rule;
    EXPECT_EQ(bits(algorithms.Toca_Punto_Recta_s(p[0], p[1], p[2], p[3], p[4], p[5], p[6])),
              bits(static_cast<float>(r.touches)))
        << r.rule;
    // The number form, although its name says yes or no.
    EXPECT_EQ(bits(algorithms.Toca_Punto_Recta_sSN(p[0], p[1], p[2], p[3], p[4], p[5], p[6])),
              bits(r.touches))
        << r.rule;
  }
}

TEST(PointAndSegment, TheYesOrNoOfSinglesIsANumberThatIsNotNarrowed) {
  // The distance of (0,0) to the point segment (1,1): the f64 root of 2.
  const double root = runtime.sqrt(2.0);
  EXPECT_EQ(bits(algorithms.Toca_Punto_Recta_sSN(0, 0, 1, 1, 1, 1, 9)), bits(root));
  EXPECT_EQ(bits(algorithms.Toca_Punto_Recta_s(0, 0, 1, 1, 1, 1, 9)),
            bits(static_cast<float>(root)));
  const double far = runtime.sqrt(2.0 * static_cast<double>(3e38F) * static_cast<double>(3e38F));
  EXPECT_EQ(bits(algorithms.Toca_Punto_Recta_sSN(0, 0, 3e38F, 3e38F, 3e38F, 3e38F, 9)), bits(far));
  EXPECT_EQ(algorithms.Toca_Punto_Recta_s(0, 0, 3e38F, 3e38F, 3e38F, 3e38F, 9), inf_single);
  EXPECT_EQ(algorithms.Distancia_Punto_Linea_s(0, 0, 3e38F, 3e38F, 3e38F, 3e38F), inf_single);
}

TEST(PointAndSegment, Failures) {
  struct Row {
    const char* rule;
    double p[7];
    std::int32_t distance, touches;
  };
  const Row rows[] = {
      {"coordinates beyond a square", {0, 0, 0, 1e300, 1e300, 0, 1}, 6, 6},
      {"a point too far off a point segment", {1e300, 0, 0, 0, 0, 0, 1}, 6, 6},
      {"a difference beyond f64", {0, 0, -1e308, 0, 1e308, 0, 1}, 6, 6},
      {"a length whose square is zero, from off it", {1, 1, 0, 0, 1e-200, 0, 1}, 11, 11},
      {"a length whose square is zero, from its start", {0, 0, 0, 0, 1e-200, 0, 1}, 6, 6},
      {"NaN in the segment", {0, 0, nan, 0, 1, 1, 1}, 6, 6},
      {"NaN in the point", {0, nan, 0, 0, 1, 1, 1}, 6, 6},
      {"NaN as tolerance", {0, 0, 0, 0, 1, 1, nan}, 0, 6},
      {"NaN as tolerance of a point segment is not looked at", {0, 0, 1, 1, 1, 1, nan}, 0, 0},
      {"infinite segment", {0, 0, -inf, 0, inf, 0, 1}, 6, 6},
  };
  for (const Row& row : rows) {
    const auto& p = row.p;
    EXPECT_EQ(failure_of([&] {
                (void)algorithms.Distancia_Punto_Linea(p[0], p[1], p[2], p[3], p[4], p[5]);
              }),
              row.distance)
        << row.rule;
    EXPECT_EQ(failure_of([&] {
                (void)algorithms.Toca_Punto_Recta(p[0], p[1], p[2], p[3], p[4], p[5], p[6]);
              }),
              row.touches)
        << row.rule;
  }
  // The point segment says true before anything can fail.
  EXPECT_EQ(plain(algorithms.Toca_Punto_Recta_SN(1e300, nan, 2, 2, 2, 2, nan)), -1);
  EXPECT_EQ(failure_of([] { (void)algorithms.Toca_Punto_Recta_SN(0, 0, 0, 0, 1, 1, nan); }), 6);
  EXPECT_EQ(failure_of([] { (void)algorithms.Distancia_Punto_Linea_s(0, 0, nan_single, 0, 1, 1); }),
            6);
  EXPECT_EQ(failure_of([] { (void)algorithms.Toca_Punto_Recta_sSN(0, 0, 0, 0, 1, 1, nan_single); }),
            6);
  EXPECT_EQ(failure_of([] { (void)algorithms.Toca_Punto_Recta_s(0, 0, 0, 0, 1, 1, nan_single); }),
            6);
}

TEST(EndlessLine, EachRule) {
  struct Row {
    const char* rule;
    double p[6];
    std::int32_t failure;
    double expected;
  };
  const Row rows[] = {
      {"beside the piece", {5, 5, 0, 0, 10, 0}, 0, 5.0},
      {"past its ends, which do not count", {50, 5, 0, 0, 10, 0}, 0, 5.0},
      {"below a level line", {5, -5, 0, 1, 10, 1}, 0, 6.0},
      {"beside a vertical line", {5, 50, 2, 0, 2, 10}, 0, 3.0},
      {"left of a vertical line", {-5, 50, 2, 0, 2, 10}, 0, 7.0},
      {"two ends in one point count as vertical", {-5, 50, 2, 3, 2, 3}, 0, 7.0},
      {"a slope of 3 to 4", {0, 5, 0, 0, 4, 3}, 0, 4.0},
      {"on the line", {8, 6, 0, 0, 4, 3}, 0, 0.0},
      {"products beyond f64", {1e300, 0, 0, 0, 1e300, 1e300}, 6, 0},
      {"a length whose square is zero", {1e200, 0, 0, 0, 1e-200, 1e-200}, 11, 0},
      {"the same and nothing above", {0, 0, 0, 0, 1e-200, 1e-200}, 6, 0},
      {"NaN", {0, 0, nan, 0, 1, 1}, 6, 0},
      {"NaN in the height", {0, 0, 0, nan, 1, 1}, 6, 0},
      {"a vertical line carries a NaN on", {nan, 0, 1, 0, 1, 5}, 0, nan},
      {"infinite", {0, 0, -inf, 0, inf, 1}, 6, 0},
  };
  for (const Row& row : rows) {
    const auto& p = row.p;
    double answer = 0.0;
    EXPECT_EQ(
        failure_of([&] { answer = algorithms.Longitud_Linea(p[0], p[1], p[2], p[3], p[4], p[5]); }),
        row.failure)
        << row.rule;
    EXPECT_EQ(bits(answer), bits(row.expected)) << row.rule;
  }
}

TEST(EndlessLine, ASingleAnswerBeyondItsRangeIsAnInfinity) {
  EXPECT_EQ(algorithms.Longitud_Linea_s(-3e38F, 0, 3e38F, 0, 3e38F, 1), inf_single);
  EXPECT_EQ(algorithms.Longitud_Linea_s(50, 5, 0, 0, 10, 0), 5.0F);
  EXPECT_EQ(plane::narrowed_answer(1e300), inf_single);
  EXPECT_EQ(plane::narrowed_answer(-1e300), -inf_single);
  EXPECT_EQ(failure_of([] { (void)algorithms.Longitud_Linea_s(0, 0, nan_single, 0, 1, 1); }), 6);
}

struct PositionRow {
  const char* rule;
  double p[6];
  std::int16_t code, single_code;
};

const PositionRow position_rows[] = {
    {"between", {0, 0, 2, 2, 1, 1}, 2, 2},
    {"beyond q", {0, 0, 2, 2, 3, 3}, 3, 3},
    {"beyond P", {0, 0, 2, 2, -1, -1}, 1, 1},
    {"well off the line, above: a code all the same", {0, 0, 2, 2, 1, 5}, 3, 0},
    {"well off the line, below", {0, 0, 2, 2, 1, -5}, 1, 0},
    {"on P", {0, 0, 2, 2, 0, 0}, 2, 2},
    {"on q", {0, 0, 2, 2, 2, 2}, 2, 2},
    {"beyond P, leftwards", {2, 2, 0, 0, 3, 3}, 1, 1},
    {"beyond q, leftwards", {2, 2, 0, 0, -1, -1}, 3, 3},
    {"beyond P, in Y alone", {0, 0, 0, 2, 0, -1}, 1, 1},
    {"beyond P, in Y alone, downwards", {0, 2, 0, 0, 0, 3}, 1, 1},
    {"beyond q, in Y alone", {0, 0, 0, 2, 0, 3}, 3, 3},
    {"beyond q, in Y alone, downwards", {0, 2, 0, 0, 0, -1}, 3, 3},
    {"beyond both: the first case counts", {0, 0, 2, 2, -1, 3}, 1, 0},
    {"P and q in one place: the single test has no width", {1, 1, 1, 1, 1, 1}, 2, 0},
    {"P and q in one place, T elsewhere", {1, 1, 1, 1, 5, 9}, 2, 0},
    {"off by as much as the longer side", {0, 0, 4, 0, 2, 1}, 2, 0},
    {"off by less", {0, 0, 4, 0, 2, 0.5}, 2, 2},
    {"longer in Y", {0, 0, 2, 4, 1, 2}, 2, 2},
};

TEST(PointOnLine, EachRule) {
  for (const PositionRow& row : position_rows) {
    const auto& p = row.p;
    EXPECT_EQ(algorithms.PntOnLine(p[0], p[1], p[2], p[3], p[4], p[5]), row.code) << row.rule;
    float s[6];
    for (int i = 0; i < 6; ++i) s[i] = static_cast<float>(p[i]);
    EXPECT_EQ(algorithms.PntOnLine_s(s[0], s[1], s[2], s[3], s[4], s[5]), row.single_code)
        << row.rule;
  }
}

TEST(PointOnLine, Failures) {
  EXPECT_EQ(failure_of([] { (void)algorithms.PntOnLine(nan, 0, 1, 1, 2, 2); }), 6);
  EXPECT_EQ(failure_of([] { (void)algorithms.PntOnLine(0, 0, 1, 1, 2, nan); }), 6);
  EXPECT_EQ(algorithms.PntOnLine(-inf, 0, 1e300, 0, inf, 0), 3);
  EXPECT_EQ(failure_of([] { (void)algorithms.PntOnLine_s(0, 0, 1, 1, 2, nan_single); }), 6);
  // A side beyond f32, although f64 has room for it.
  EXPECT_EQ(failure_of([] { (void)algorithms.PntOnLine_s(-3e38F, 0, 3e38F, 0, 0, 0); }), 6);
  EXPECT_EQ(failure_of([] { (void)algorithms.PntOnLine_s(0, -3e38F, 0, 3e38F, 0, 0); }), 6);
  // The same with the product of two sides.
  EXPECT_EQ(failure_of([] { (void)algorithms.PntOnLine_s(0, 0, 1e30F, 0, 0, 1e30F); }), 6);
}

constexpr auto point_and_line = parameters(a_point, a_point, a_point);
constexpr auto point_line_and_tolerance = parameters(a_point, a_point, a_point, a_tolerance);

TEST(PointMeasures, RandomPoints) {
  agree(&cgeo_Algorismos::Distancia_Punto_Linea, restated_distance, point_and_line);
  agree(&cgeo_Algorismos::Toca_Punto_Recta, restated_touch, point_line_and_tolerance);
  agree(&cgeo_Algorismos::Toca_Punto_Recta_SN, restated_near, point_line_and_tolerance);
  agree(&cgeo_Algorismos::Longitud_Linea, restated_endless, point_and_line);
  agree(&cgeo_Algorismos::PntOnLine, restated_position<double>, point_and_line);
}

TEST(PointMeasures, RandomSinglePoints) {
  agree_single(&cgeo_Algorismos::Distancia_Punto_Linea_s, restated_distance, point_and_line);
  agree_single(&cgeo_Algorismos::Toca_Punto_Recta_s, restated_touch, point_line_and_tolerance);
  agree_single(&cgeo_Algorismos::Toca_Punto_Recta_sSN, restated_touch, point_line_and_tolerance);
  agree_single(&cgeo_Algorismos::Longitud_Linea_s, restated_endless, point_and_line);
  agree(&cgeo_Algorismos::PntOnLine_s, restated_position_of_singles, point_and_line);
}

}  // namespace
}  // namespace orv2_geo::plane_tests
