// The same calls in C++, by position through C and by name through C: the same
// bits in the answer and in every variable, and the same failures.
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "orv2_geo/angles/cgeo_Algorismos.h"
#include "orv2_geo/angles/cgeo_FuncDeriv.h"
#include "orv2_geo/survey/cgeo_Geometria.h"
#include "tests/c_api/boundary.h"
#include "tests/support/expect_failure.h"

namespace orv2_geo::testing_support {
namespace {

constexpr int inputs_a_row = 2000;
constexpr double centesimal = 0.01570796327;

// The host's variables of one call.
struct Variables {
  std::array<double, 4> d{};
  std::array<float, 6> f{};

  friend bool operator==(const Variables& a, const Variables& b) {
    return a.bits_of() == b.bits_of();
  }
  std::vector<std::uint64_t> bits_of() const {
    std::vector<std::uint64_t> all;
    for (const double one : d) all.push_back(bits(one));
    for (const float one : f) all.push_back(bits(one));
    return all;
  }
};

// What a call came to.
struct Outcome {
  std::int32_t failure = 0;
  std::uint16_t tag = ORV2_NONE;
  std::uint64_t answer = 0;
  Variables variables;
  friend bool operator==(const Outcome&, const Outcome&) = default;
};

std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
  out << "failure " << outcome.failure << ", tag " << outcome.tag << ", bits " << outcome.answer;
  for (const std::uint64_t one : outcome.variables.bits_of()) out << ' ' << one;
  return out;
}

void put(Outcome& outcome, double answer) {
  outcome.tag = ORV2_F64;
  outcome.answer = bits(answer);
}
void put(Outcome& outcome, const double* answer) {
  ASSERT_NE(answer, nullptr) << "another type than a double";
  put(outcome, *answer);
}
void put(Outcome& outcome, float answer) {
  outcome.tag = ORV2_F32;
  outcome.answer = bits(answer);
}

// How an argument is handed in, and which variable it is.
enum class By { reference64, value64, reference32, value32 };
struct Given {
  By by;
  std::size_t place;
};
constexpr Given D(std::size_t place) { return {By::reference64, place}; }
constexpr Given d(std::size_t place) { return {By::value64, place}; }
constexpr Given F(std::size_t place) { return {By::reference32, place}; }
constexpr Given f(std::size_t place) { return {By::value32, place}; }

orv2_value handed_in(const Given& given, Variables& variables) {
  switch (given.by) {
    case By::reference64: return pointing_at(&variables.d[given.place]);
    case By::value64: return by_value_of(variables.d[given.place]);
    case By::reference32: return pointing_at(&variables.f[given.place]);
    default: return by_value_of(variables.f[given.place]);
  }
}

struct Row {
  const char* class_name;
  const char* member;
  std::vector<Given> arguments;
  std::function<void(Outcome&)> direct;
};

// ---- The rows --------------------------------------------------------------

cgeo_FuncDeriv functions() {
  cgeo_FuncDeriv all;
  all.RPi = centesimal;
  return all;
}

Row function_row(const char* member, double (cgeo_FuncDeriv::*function)(double) const) {
  return {func_deriv, member, {d(0)}, [=](Outcome& o) {
            put(o, (functions().*function)(o.variables.d[0]));
          }};
}

std::vector<Row> function_rows() {
  using C = cgeo_FuncDeriv;
  return {
      function_row("F_Log10", &C::F_Log10),   function_row("F_LogN", &C::F_LogN),
      function_row("F_SenH", &C::F_SenH),     function_row("F_CosH", &C::F_CosH),
      function_row("F_TanH", &C::F_TanH),     function_row("F_ArcSen", &C::F_ArcSen),
      function_row("F_ArcCos", &C::F_ArcCos), function_row("F_Sen", &C::F_Sen),
      function_row("F_Cos", &C::F_Cos),       function_row("F_Tan", &C::F_Tan),
  };
}

const cgeo_Algorismos plane;

std::vector<Row> angle_rows() {
  return {
      {algorismos,
       "Azimut",
       {D(0), D(1), D(2)},
       [](Outcome& o) { plane.Azimut(o.variables.d[0], o.variables.d[1], o.variables.d[2]); }},
      {algorismos,
       "Azimut",
       {D(0), D(1), D(0)},
       [](Outcome& o) { plane.Azimut(o.variables.d[0], o.variables.d[1], o.variables.d[0]); }},
      {algorismos,
       "Azimut",
       {D(0), D(1), D(1)},
       [](Outcome& o) { plane.Azimut(o.variables.d[0], o.variables.d[1], o.variables.d[1]); }},
      {algorismos,
       "Azimut",
       {d(0), d(1), D(2)},
       [](Outcome& o) { plane.Azimut(o.variables.d[0], o.variables.d[1], o.variables.d[2]); }},
      {algorismos,
       "Azimut_s",
       {F(0), F(1), F(2)},
       [](Outcome& o) { plane.Azimut_s(o.variables.f[0], o.variables.f[1], o.variables.f[2]); }},
      {algorismos,
       "Atan2",
       {D(0), D(1)},
       [](Outcome& o) { put(o, plane.Atan2(o.variables.d[0], o.variables.d[1])); }},
      {algorismos,
       "Atn2",
       {D(0), D(1)},
       [](Outcome& o) { put(o, plane.Atn2(o.variables.d[0], o.variables.d[1])); }},
      {algorismos,
       "Atn2",
       {D(0), D(0)},
       [](Outcome& o) { put(o, plane.Atn2(o.variables.d[0], o.variables.d[0])); }},
      {algorismos, "Arccos", {f(0)}, [](Outcome& o) { put(o, plane.Arccos(o.variables.f[0])); }},
      {algorismos, "Arccos", {F(0)}, [](Outcome& o) { put(o, plane.Arccos(o.variables.f[0])); }},
      {algorismos, "An360", {F(0)}, [](Outcome& o) { put(o, plane.An360(o.variables.f[0])); }},
      {algorismos, "An400", {F(0)}, [](Outcome& o) { put(o, plane.An400(o.variables.f[0])); }},
      {algorismos,
       "GetAngle3P",
       {F(0), F(1), F(2), F(3), F(4), F(5)},
       [](Outcome& o) {
         const auto& v = o.variables.f;
         put(o, plane.GetAngle3P(v[0], v[1], v[2], v[3], v[4], v[5]));
       }},
  };
}

// Members that answer with a variant, which holds a double.
std::vector<Row> variant_rows() {
  static constexpr char geometria[] = "Orv2_Geo.cgeo_Geometria";
  const auto distance = [](Outcome& o, std::size_t x1, std::size_t y1, std::size_t x2,
                           std::size_t y2) {
    const auto& v = o.variables.d;
    put(o, cgeo_Geometria().GF_Distancia(v[x1], v[y1], v[x2], v[y2]).get<double>());
  };
  return {
      {geometria,
       "GF_Distancia",
       {D(0), D(1), D(2), D(3)},
       [=](Outcome& o) { distance(o, 0, 1, 2, 3); }},
      {geometria,
       "GF_Distancia",
       {d(0), D(1), d(2), D(3)},
       [=](Outcome& o) { distance(o, 0, 1, 2, 3); }},
      {geometria,
       "GF_Distancia",
       {D(0), D(1), D(0), D(2)},
       [=](Outcome& o) { distance(o, 0, 1, 0, 2); }},
      {geometria,
       "GF_Distancia_S",
       {F(0), F(1), F(2), F(3)},
       [](Outcome& o) {
         const auto& v = o.variables.f;
         put(o, cgeo_Geometria().GF_Distancia_S(v[0], v[1], v[2], v[3]).get<double>());
       }},
  };
}

// ---- The three ways --------------------------------------------------------

Outcome directly(const Row& row, const Variables& variables) {
  Outcome outcome;
  outcome.variables = variables;
  outcome.failure = failure_of([&] { row.direct(outcome); });
  return outcome;
}

using Calling = std::function<std::int32_t(const orv2_value*, std::size_t, orv2_value*)>;

Outcome through_c(const Row& row, const Variables& variables, const Calling& call) {
  Outcome outcome;
  outcome.variables = variables;
  std::vector<orv2_value> arguments;
  for (const Given& one : row.arguments) arguments.push_back(handed_in(one, outcome.variables));
  orv2_value result = tagged(ORV2_NONE);
  outcome.failure = call(arguments.data(), arguments.size(), &result);
  if (result.tag == ORV2_F64) put(outcome, result.as.f64);
  if (result.tag == ORV2_F32) put(outcome, result.as.f32);
  return outcome;
}

// Numbers of every size, and among them those that angles and ratios are made
// of, so that the members also get to their ends.
double likely(Numbers& numbers) {
  switch (numbers.below(4)) {
    case 0: return numbers.between(-1.0, 1.0);
    case 1: return numbers.any_bits();
    default: return numbers.any();
  }
}

float single(double number) {
  const double limit = 3e38;
  return static_cast<float>(std::abs(number) < limit ? number : std::copysign(limit, number));
}

Variables random_variables(Numbers& numbers) {
  Variables variables;
  for (double& one : variables.d) one = likely(numbers);
  for (float& one : variables.f) one = single(likely(numbers));
  return variables;
}

orv2_handle object_for(const Row& row) {
  const orv2_handle object = new_object(row.class_name);
  const orv2_value factor = by_value_of(centesimal);
  if (row.class_name == func_deriv) orv2_call_name(object, "RPi", &factor, 1, nullptr);
  return object;
}

void expect_same_everywhere(const Row& row, std::uint64_t seed) {
  const Owned object(object_for(row));
  const std::size_t position = position_of(object, row.member);
  Numbers numbers(seed);
  int successes = 0;
  for (int i = 0; i < inputs_a_row; ++i) {
    const Variables variables = random_variables(numbers);
    const Outcome expected = directly(row, variables);
    const Outcome by_position = through_c(
        row, variables, [&](auto... rest) { return orv2_call(object, position, rest...); });
    const Outcome by_name = through_c(
        row, variables, [&](auto... rest) { return orv2_call_name(object, row.member, rest...); });
    ASSERT_EQ(by_position, expected) << row.member << ", input " << i;
    ASSERT_EQ(by_name, expected) << row.member << ", input " << i;
    successes += expected.failure == 0 ? 1 : 0;
  }
  EXPECT_GT(successes, inputs_a_row / 20) << row.member << " hardly ever succeeds";
}

TEST(SameRows, FunctionsAnswerAlikeThroughEveryBoundary) {
  std::uint64_t seed = 1;
  for (const Row& row : function_rows()) expect_same_everywhere(row, seed++);
}

TEST(SameRows, AnglesAnswerAlikeThroughEveryBoundary) {
  std::uint64_t seed = 100;
  for (const Row& row : angle_rows()) expect_same_everywhere(row, seed++);
}

TEST(SameRows, VariantsAnswerAlikeThroughEveryBoundary) {
  std::uint64_t seed = 200;
  for (const Row& row : variant_rows()) expect_same_everywhere(row, seed++);
}

TEST(SameRows, PropertiesKeepEveryBitThroughEveryBoundary) {
  const Owned object(new_object(func_deriv));
  Numbers numbers(7);
  for (int i = 0; i < inputs_a_row; ++i) {
    for (const char* name : {"Pi", "RPi"}) {
      const double number = numbers.any_bits();
      const orv2_value given = by_value_of(number);
      orv2_value by_name = tagged(ORV2_NONE);
      orv2_value by_position = tagged(ORV2_NONE);
      ASSERT_EQ(orv2_call_name(object, name, &given, 1, nullptr), 0);
      ASSERT_EQ(orv2_call_name(object, name, nullptr, 0, &by_name), 0);
      ASSERT_EQ(orv2_call(object, position_of(object, name), nullptr, 0, &by_position), 0);
      ASSERT_EQ(bits(by_name.as.f64), bits(number));
      ASSERT_EQ(bits(by_position.as.f64), bits(number));
    }
  }
}

TEST(SameRows, FailuresComeFromTheClassThatWasCalled) {
  const Owned object(new_object(func_deriv));
  const orv2_value zero = by_value_of(0.0);
  for (const char* name : {"F_LogN", "F_Log10"}) {
    EXPECT_EQ(orv2_call_name(object, name, &zero, 1, nullptr), 5);
    EXPECT_EQ(last_failure().source, func_deriv);
    EXPECT_EQ(last_failure().description, failure::description_of(5));
  }
}

}  // namespace
}  // namespace orv2_geo::testing_support
