// One member called for every row of some columns.
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "tests/c_api/boundary.h"
#include "tests/support/expect_failure.h"

namespace orv2_geo::testing_support {
namespace {

constexpr char geometria[] = "Orv2_Geo.cgeo_Geometria";

template <class T>
orv2_column column(std::vector<T>& values) {
  return {values.data(), sizeof(T)};
}

struct Rows : ::testing::Test {
  std::int32_t call(orv2_handle object, const char* member, std::size_t rows,
                    std::vector<orv2_value> values, const std::vector<orv2_column>& columns,
                    void* results = nullptr, std::int32_t* failures = nullptr) {
    values.resize(columns.size());
    return orv2_call_rows(object, position_of(object, member), values.data(), columns.data(),
                          columns.size(), rows, results, failures, &done);
  }

  Owned plane{new_object(algorismos)};
  Owned functions{new_object(func_deriv)};
  Owned survey{new_object(geometria)};
  std::size_t done = 77;
};

TEST_F(Rows, AreTheSameBitsAsTheLoop) {
  std::mt19937_64 random(20261122);
  std::uniform_real_distribution<double> any(-1000.0, 1000.0);
  std::vector<double> dx(5000);
  std::vector<double> dy(5000);
  for (double& one : dx) one = any(random);
  for (double& one : dy) one = any(random);
  std::vector<double> azimuths(dx.size(), -1.0);
  ASSERT_EQ(call(plane, "Azimut", dx.size(), {}, {column(dx), column(dy), column(azimuths)}), 0);
  EXPECT_EQ(done, dx.size());
  for (std::size_t i = 0; i < dx.size(); ++i) {
    double azimuth = -1.0;
    const orv2_value values[] = {pointing_at(&dx[i]), pointing_at(&dy[i]), pointing_at(&azimuth)};
    ASSERT_EQ(orv2_call_name(plane, "Azimut", values, 3, nullptr), 0);
    ASSERT_EQ(bits(azimuths[i]), bits(azimuth)) << i;
  }
}

TEST_F(Rows, TakeArgumentsThatAreTheSameInEach) {
  std::vector<double> dx{1.0, -1.0};
  std::vector<double> azimuths(2);
  ASSERT_EQ(call(plane, "Azimut", 2, {{}, by_value_of(0.0)}, {column(dx), {}, column(azimuths)}),
            0);
  EXPECT_EQ(azimuths[1], 300.0);
  ASSERT_EQ(call(plane, "Azimut", 2, {{}, utf8("0")}, {column(dx), {}, column(azimuths)}), 0);
  EXPECT_EQ(azimuths[1], 300.0);
}

TEST_F(Rows, AnswerInTheMembersOwnType) {
  std::vector<double> far{3.0, 6.0};
  double zero = 0.0;
  const orv2_column at_zero{&zero, 0};
  std::vector<double> lengths(2);  // of a member that answers with a variant
  ASSERT_EQ(
      call(survey, "GF_Distancia", 2, {}, {at_zero, at_zero, column(far), at_zero}, lengths.data()),
      0);
  EXPECT_EQ(lengths, far);
  std::vector<std::int32_t> steps{4, 12};
  std::int32_t none = 0;
  std::vector<float> whole(2);
  ASSERT_EQ(call(plane, "Distancia_Punto_Punto_l", 2, {},
                 {{&none, 0}, {&none, 0}, column(steps), {&none, 0}}, whole.data()),
            0);
  EXPECT_EQ(whole, (std::vector<float>{4.0F, 12.0F}));
  std::vector<double> x2{2.0, -2.0};
  double one = 1.0;
  const orv2_column at_one{&one, 0};
  std::vector<std::int16_t> crossing(2);
  ASSERT_EQ(call(plane, "Se_cruzan_2lineas", 2, {},
                 {at_zero, at_zero, column(x2), at_zero, at_one, {&one, 0}, at_one, at_zero},
                 crossing.data()),
            0);
  EXPECT_EQ(crossing[0], -1);
  EXPECT_EQ(crossing[1], 0);
}

TEST_F(Rows, GoWithAnyStep) {
  struct Point {
    float code;
    double dx, dy, azimuth;
  };
  Point points[] = {{1.0F, -1.0, 0.0, 7.0}, {2.0F, 0.0, 1.0, 7.0}};
  const std::size_t step = sizeof(Point);
  ASSERT_EQ(call(plane, "Azimut", 2, {},
                 {{&points[0].dx, step}, {&points[0].dy, step}, {&points[0].azimuth, step}}),
            0);
  EXPECT_EQ(points[0].azimuth, 300.0);
  EXPECT_EQ(points[1].azimuth, 0.0);
}

TEST_F(Rows, OneColumnForTwoParametersIsOneVariableARow) {
  std::vector<double> both{-1.0, 1.0};
  std::vector<double> zeros(2);
  ASSERT_EQ(call(plane, "Azimut", 2, {}, {column(both), column(zeros), column(both)}), 0);
  EXPECT_EQ(both[0], 300.0);
}

TEST_F(Rows, EndAtTheFirstThatFails) {
  std::vector<double> numbers{1.0, std::exp(1.0), 0.0, 1.0};
  std::vector<double> results(4, 7.0);
  EXPECT_EQ(call(functions, "F_LogN", 4, {}, {column(numbers)}, results.data()), 5);
  EXPECT_EQ(last_failure().source, func_deriv);
  EXPECT_EQ(done, 2U);
  EXPECT_EQ(results, (std::vector<double>{0.0, 1.0, 7.0, 7.0}));
}

TEST_F(Rows, GoOnBehindOnesThatFailWhereTheirNumbersAreNoted) {
  std::vector<double> numbers{-1.0, 1.0, 0.0, 1.0, -2.0};
  std::vector<double> results(5, 7.0);
  std::vector<std::int32_t> failures(5, 77);
  EXPECT_EQ(call(functions, "F_LogN", 5, {}, {column(numbers)}, results.data(), failures.data()),
            0);
  EXPECT_EQ(done, 5U);
  EXPECT_EQ(failures, (std::vector<std::int32_t>{5, 0, 5, 0, 5}));
  EXPECT_EQ(results, (std::vector<double>(5, 0.0)));
}

TEST_F(Rows, NoneAreNone) {
  std::vector<double> numbers{1.0};
  EXPECT_EQ(call(functions, "F_LogN", 0, {}, {column(numbers)}), 0);
  EXPECT_EQ(done, 0U);
}

TEST_F(Rows, ThatCannotBeCalledAreRefusedBeforeTheFirst) {
  double number = 7.0;
  const orv2_column given{&number, 0};
  const orv2_value values[17] = {};
  const orv2_column columns[17] = {given};
  std::int32_t results[2] = {};
  const std::size_t logarithm = position_of(functions, "F_LogN");
  std::size_t functions_class = 0;
  orv2_class_info info = {};
  ASSERT_EQ(orv2_class_of(functions, &functions_class), 0);
  ASSERT_EQ(orv2_class_at(functions_class, &info), 0);
  const std::size_t past_the_last = info.member_count;
  const std::size_t azimut = position_of(plane, "Azimut");
  const Owned ordena(new_object("Orv2_Geo.cgeo_Ordena"));
  const std::size_t sort = position_of(ordena, "Ordena_Double_Array");
  const struct {
    const char* what;
    std::int32_t number;
    std::int32_t status;
  } rows[] = {
      {"no object", 91, orv2_call_rows(0, 0, values, columns, 1, 1, nullptr, nullptr, &done)},
      {"a wrong handle", 5,
       orv2_call_rows(12345, 0, values, columns, 1, 1, nullptr, nullptr, &done)},
      {"no member", 438,
       orv2_call_rows(functions, 99, values, columns, 1, 1, nullptr, nullptr, &done)},
      {"the first position past the members", 438,
       orv2_call_rows(functions, past_the_last, values, columns, 1, 1, nullptr, nullptr, &done)},
      {"too many arguments", 450,
       orv2_call_rows(functions, logarithm, values, columns, 17, 1, nullptr, nullptr, &done)},
      {"too many for a member that is none", 450,
       orv2_call_rows(functions, 99, values, columns, 17, 1, nullptr, nullptr, &done)},
      {"one too many", 450,
       orv2_call_rows(functions, logarithm, values, columns, 2, 1, nullptr, nullptr, &done)},
      {"no arguments where there are some", 5,
       orv2_call_rows(functions, logarithm, nullptr, columns, 1, 1, nullptr, nullptr, &done)},
      {"one left out", 449,
       orv2_call_rows(functions, logarithm, nullptr, nullptr, 0, 1, nullptr, nullptr, &done)},
      {"a column of arrays", 13,
       orv2_call_rows(ordena, sort, values, columns, 1, 1, nullptr, nullptr, &done)},
      {"results of a member that has none", 13,
       orv2_call_rows(plane, azimut, values, columns, 3, 1, results, nullptr, &done)},
  };
  for (const auto& row : rows) EXPECT_EQ(row.status, row.number) << row.what;
  EXPECT_EQ(done, 0U);
  EXPECT_EQ(number, 7.0);
}

}  // namespace
}  // namespace orv2_geo::testing_support
