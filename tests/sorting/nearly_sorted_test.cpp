#include "orv2_geo/sorting/nearly_sorted.h"

#include <algorithm>
#include <functional>
#include <numeric>
#include <vector>

#include "tests/support/preamble.h"

namespace orv2_geo {
namespace {

using Elements = std::vector<std::int32_t>;

Elements ascending(std::size_t n) {
  Elements elements(n);
  std::iota(elements.begin(), elements.end(), 0);
  return elements;
}

// Whether they are sorted; if not they must be as they were.
bool is_sorted_by_merging(Elements elements) {
  const Elements before = elements;
  Elements expected = elements;
  std::sort(expected.begin(), expected.end());
  Elements spare(elements.size());
  const bool sorted = sorting::merge_few_in(std::span(elements), std::span(spare), std::less());
  EXPECT_EQ(elements, sorted ? expected : before);
  return sorted;
}

TEST(NearlySorted, Rules) {
  const struct {
    const char* rule;
    Elements elements;
    bool sorted;
  } table[] = {
      {"none", {}, true},
      {"one", {5}, true},
      {"in order", ascending(100), true},
      {"one out of order among few", {1, 9, 2, 3, 4}, false},
  };
  for (const auto& row : table)
    EXPECT_EQ(is_sorted_by_merging(row.elements), row.sorted) << row.rule;
}

// Two leave for each that stands out of order, and a 64th of all may.
TEST(NearlySorted, AsManyAsA64thMayBeTakenOut) {
  constexpr std::size_t n = 640;
  for (const std::int32_t absurd : {-7, 100000}) {
    Elements elements = ascending(n);
    for (std::size_t k = 1; k <= 6; ++k) {
      elements[100 * k] = absurd;
      EXPECT_EQ(is_sorted_by_merging(elements), k <= 5) << k << " of " << absurd;
    }
  }
}

TEST(NearlySorted, AtTheEnds) {
  for (const std::int32_t absurd : {-7, 100000}) {
    for (const std::size_t at : {0U, 1U, 638U, 639U}) {
      Elements elements = ascending(640);
      elements[at] = absurd;
      EXPECT_TRUE(is_sorted_by_merging(elements)) << absurd << " at " << at;
    }
  }
}

TEST(NearlySorted, DescendingTurnsRound) {
  for (const std::size_t n : {0U, 1U, 2U, 7U, 1000U}) {
    Elements elements = ascending(n);
    if (n > 2) elements[1] = elements[0];
    const Elements expected = elements;
    std::reverse(elements.begin(), elements.end());
    Elements spare(n);
    EXPECT_TRUE(sorting::sort_if_nearly_sorted(std::span(elements), std::span(spare), std::less()));
    EXPECT_EQ(elements, expected);
  }
}

}  // namespace
}  // namespace orv2_geo
