// What a call writes where the host wants its answer.
#include <gtest/gtest.h>

#include <bit>
#include <thread>
#include <vector>

#include "tests/c_api/boundary.h"

namespace orv2_geo::testing_support {
namespace {

struct Answer {
  std::uint16_t tag;
  std::uint64_t bits;
};

struct Row {
  const char* rule;
  const char* registered_name;
  const char* member;
  std::vector<orv2_value> arguments;
  Answer expected;
};

orv2_value full_of_ones() {
  orv2_value value;
  std::memset(&value, 0xff, sizeof(value));
  return value;
}

Answer in(const orv2_value& value) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value.as, sizeof(bits));
  return {value.tag, bits};
}

// Vertical lines side by side, written as numbers so that nothing comes back.
double zero = 0.0;
double two = 2.0;
double five = 5.0;
double east = 0.0;
double north = 0.0;
const std::vector<orv2_value> parallel_lines{
    pointing_at(&zero), pointing_at(&zero), pointing_at(&zero), pointing_at(&five),
    pointing_at(&two),  pointing_at(&zero), pointing_at(&two),  pointing_at(&five),
    pointing_at(&east), pointing_at(&north)};
double azimuth = 0.0;

const Row rows[] = {
    {"a flag has two bytes, and nothing stays beside them",
     algorismos,
     "Se_cruzan_2lineas",
     {by_value_of(0.0), by_value_of(0.0), by_value_of(2.0), by_value_of(0.0), by_value_of(1.0),
      by_value_of(1.0), by_value_of(1.0), by_value_of(-1.0)},
     {ORV2_BOOL, 0xffff}},
    {"a flag that is not set is zero throughout",
     algorismos,
     "Intersec_XY_2lineas",
     parallel_lines,
     {ORV2_BOOL, 0}},
    {"a single has four bytes",
     algorismos,
     "Distancia_Punto_Punto_l",
     {by_value_of(0.0), by_value_of(0.0), by_value_of(4.0), by_value_of(0.0)},
     {ORV2_F32, std::bit_cast<std::uint32_t>(4.0F)}},
    {"a double has all eight",
     func_deriv,
     "F_Log10",
     {by_value_of(100.0)},
     {ORV2_F64, std::bit_cast<std::uint64_t>(2.0)}},
    {"a property's value", func_deriv, "Pi", {}, {ORV2_F64, 0}},
    {"a member without an answer leaves no bytes of what stood there",
     algorismos,
     "Azimut",
     {by_value_of(1.0), by_value_of(0.0), pointing_at(&azimuth)},
     {ORV2_NONE, 0}},
};

TEST(Answers, HaveTheirTypesBytesAndNothingElse) {
  for (const Row& row : rows) {
    SCOPED_TRACE(row.rule);
    const Owned object(new_object(row.registered_name));
    orv2_value by_name = full_of_ones();
    ASSERT_EQ(
        orv2_call_name(object, row.member, row.arguments.data(), row.arguments.size(), &by_name),
        0);
    EXPECT_EQ(in(by_name).tag, row.expected.tag);
    EXPECT_EQ(in(by_name).bits, row.expected.bits);
    orv2_value by_position = full_of_ones();
    ASSERT_EQ(orv2_call(object, position_of(object, row.member), row.arguments.data(),
                        row.arguments.size(), &by_position),
              0);
    EXPECT_EQ(in(by_position).tag, row.expected.tag);
    EXPECT_EQ(in(by_position).bits, row.expected.bits);
  }
}

TEST(Answers, MayGoWhereAnArgumentStood) {
  const Owned object(new_object(func_deriv));
  orv2_value both = by_value_of(100.0);
  ASSERT_EQ(orv2_call_name(object, "F_Log10", &both, 1, &both), 0);
  EXPECT_EQ(both.as.f64, 2.0);
}

TEST(Answers, AreRefusedOnAThreadThatHasCalledNothingYet) {
  const Owned object(new_object(func_deriv));
  orv2_value answer = full_of_ones();
  std::int32_t by_position = 0;
  std::int32_t by_name = 0;
  const orv2_value hundred = by_value_of(100.0);
  const std::size_t position = position_of(object, "F_Log10");
  std::thread([&] { by_position = orv2_call(object, position, &hundred, 1, &answer); }).join();
  std::thread([&] { by_name = orv2_call_name(object, "F_Log10", &hundred, 1, &answer); }).join();
  EXPECT_EQ(by_position, 5);
  EXPECT_EQ(by_name, 5);
  EXPECT_EQ(in(answer).tag, 0xffff);
}

}  // namespace
}  // namespace orv2_geo::testing_support
