#include "orv2_geo/repeated/replaced_points.h"

#include <new>
#include <vector>

#include "tests/support/preamble.h"
#include "tests/support/refused_memory.h"

namespace orv2_geo {
namespace {

using repeated::ReplacedPoints;

constexpr std::int32_t unwritten = -5;

// Points replaced one after the other, by any that is still left.
TEST(ReplacedPoints, NumbersAsRestated) {
  Numbers numbers(100);
  for (int round = 0; round < 3000; ++round) {
    const auto n = static_cast<std::int32_t>(1 + numbers.below(round % 50 == 0 ? 2000 : 130));
    const auto size = static_cast<std::size_t>(n) + 1;
    ReplacedPoints replaced(n);
    std::vector<std::int32_t> stands_for(size, 0);
    std::vector<bool> left_out(size, false);
    std::vector<std::int32_t> left;
    for (std::int32_t p = 1; p <= n; ++p) left.push_back(p);
    for (std::uint64_t turns = numbers.below(size); turns > 0; --turns) {
      const std::size_t k = numbers.below(left.size());
      const std::int32_t point = left[k];
      left.erase(left.begin() + static_cast<long>(k));
      if (left.empty() || numbers.below(6) == 0) {
        replaced.leave_out(point);
        left_out[static_cast<std::size_t>(point)] = true;
      } else {
        const std::int32_t survivor = left[numbers.below(left.size())];
        replaced.replace(point, survivor);
        stands_for[static_cast<std::size_t>(point)] = survivor;
      }
    }

    std::vector<std::int32_t> expected_list(size, 0);
    std::vector<std::int32_t> expected(size, 0);
    std::copy(left.begin(), left.end(), expected_list.begin() + 1);
    for (std::size_t k = 0; k < left.size(); ++k) {
      expected[static_cast<std::size_t>(left[k])] = static_cast<std::int32_t>(k + 1);
    }
    for (std::size_t p = 1; p < size; ++p) {
      std::size_t in_the_end = p;
      while (stands_for[in_the_end] != 0) {
        in_the_end = static_cast<std::size_t>(stands_for[in_the_end]);
      }
      expected[p] = left_out[in_the_end] ? 0 : expected[in_the_end];
    }
    expected[0] = unwritten;

    std::vector<std::int32_t> list(size, unwritten);
    std::vector<std::int32_t> given(size, unwritten);
    ASSERT_EQ(replaced.number(list.data(), given.data()), static_cast<std::int32_t>(left.size()));
    ASSERT_EQ(list, expected_list);
    ASSERT_EQ(given, expected);
  }
}

TEST(ReplacedPoints, RefusedMemoryIsTold) {
  for (const long let_pass : {0L, 1L}) {
    const RefusedAllocation refusal(let_pass);
    EXPECT_THROW(ReplacedPoints(100), std::bad_alloc) << let_pass;
  }
}

}  // namespace
}  // namespace orv2_geo
