#include "orv2_geo/frame/checked_integer.h"

#include <vector>

#include "orv2_geo/frame/counted.h"
#include "tests/support/preamble.h"

namespace orv2_geo {
namespace {

TEST(CheckedInteger, BothEndsOfEachRange) {
  EXPECT_EQ((Checked32(highest_long - 1) + Checked32(1)).value(), highest_long);
  EXPECT_EQ(failure_of([] { return Checked32(highest_long) + Checked32(1); }), 6);
  EXPECT_EQ(failure_of([] { return Checked32(lowest_long) - Checked32(1); }), 6);
  EXPECT_EQ(failure_of([] { return Checked32(46341) * Checked32(46341); }), 6);
  EXPECT_EQ((Checked32(46340) * Checked32(46340)).value(), 2147395600);
  EXPECT_EQ(failure_of([] { return -Checked32(lowest_long); }), 6);
  EXPECT_EQ(failure_of([] { return abs(Checked32(lowest_long)); }), 6);
  EXPECT_EQ(abs(Checked32(lowest_long + 1)).value(), highest_long);
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
              for (const std::int32_t i : counted(highest_long - 1, highest_long))
                seen.push_back(i);
            }),
            6);
  EXPECT_EQ(seen, (std::vector<std::int32_t>{highest_long - 1, highest_long}));
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
