#include "orv2_geo/frame/checked_integer.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "orv2_geo/frame/counted.h"
#include "tests/support/expect_failure.h"

namespace orv2_geo {
namespace {

using testing_support::failure_of;

constexpr std::int32_t top = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t bottom = std::numeric_limits<std::int32_t>::min();

TEST(CheckedInteger, BothEndsOfEachRange) {
  EXPECT_EQ((Checked32(top - 1) + Checked32(1)).value(), top);
  EXPECT_EQ(failure_of([] { return Checked32(top) + Checked32(1); }), 6);
  EXPECT_EQ(failure_of([] { return Checked32(bottom) - Checked32(1); }), 6);
  EXPECT_EQ(failure_of([] { return Checked32(46341) * Checked32(46341); }), 6);
  EXPECT_EQ((Checked32(46340) * Checked32(46340)).value(), 2147395600);
  EXPECT_EQ(failure_of([] { return -Checked32(bottom); }), 6);
  EXPECT_EQ(failure_of([] { return abs(Checked32(bottom)); }), 6);
  EXPECT_EQ(abs(Checked32(bottom + 1)).value(), top);
  EXPECT_EQ(failure_of([] { return Checked16(32767) + Checked16(1); }), 6);
  EXPECT_EQ(failure_of([] { return abs(Checked16(-32768)); }), 6);
  EXPECT_EQ(abs(Checked16(-32767)).value(), 32767);
}

TEST(Counted, GoesFromFirstToLast) {
  std::vector<std::int32_t> seen;
  for (const std::int32_t i : counted(2, 4)) seen.push_back(i);
  for (const std::int32_t i : counted(5, 4)) seen.push_back(i);
  for (const std::int32_t i : counted(7, 7)) seen.push_back(i);
  EXPECT_EQ(seen, (std::vector<std::int32_t>{2, 3, 4, 7}));
}

TEST(Counted, FailsPastTheHighestNumberOfAll) {
  std::vector<std::int32_t> seen;
  EXPECT_EQ(failure_of([&] {
              for (const std::int32_t i : counted(top - 1, top)) seen.push_back(i);
            }),
            6);
  EXPECT_EQ(seen, (std::vector<std::int32_t>{top - 1, top}));
}

TEST(CheckedInteger, CounterFailsAtItsEnd) {
  Checked16 counter = 32766;
  ++counter;
  EXPECT_EQ(counter.value(), 32767);
  EXPECT_EQ(failure_of([&] { ++counter; }), 6);
  EXPECT_EQ(counter.value(), 32767);
}

}  // namespace
}  // namespace orv2_geo
