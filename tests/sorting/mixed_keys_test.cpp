#include "orv2_geo/sorting/mixed_keys.h"

#include <cmath>
#include <vector>

#include "orv2_geo/platform/text_services.h"
#include "tests/sorting/restated_quicksort.h"
#include "tests/sorting/sort_data.h"
#include "tests/support/preamble.h"
#include "tests/support/refused_memory.h"

namespace orv2_geo {
namespace {

using sorting::MixedKeys;

const double largest = std::numeric_limits<double>::max();

// Coordinates, of which few beyond the span have keys made as texts.
std::vector<double> survey_with(Numbers& numbers, const std::vector<double>& strays,
                                std::size_t n = 2000) {
  std::vector<double> values(n);
  for (double& value : values) value = std::round(numbers.between(435000, 440000) * 1000) / 1000;
  for (const double stray : strays) values[numbers.below(n)] = stray;
  return values;
}

std::vector<std::uint64_t> written(const MixedKeys& keys, const std::vector<double>& values) {
  std::vector<std::uint64_t> all(values.size());
  keys.write(values, all.data());
  return all;
}

// All values with each other by their texts, and the numbers of these.
void expect_the_texts(const std::vector<double>& values) {
  const auto keys = MixedKeys::of(values);
  ASSERT_TRUE(keys);
  const auto numbers = written(*keys, values);
  std::vector<std::pair<std::u32string, std::uint64_t>> all;
  for (std::size_t i = 0; i < values.size(); ++i) {
    ASSERT_GE(numbers[i], keys->lowest());
    ASSERT_LE(numbers[i], keys->highest());
    all.emplace_back(text_services::collation_key(restated_key(values[i]).view()), numbers[i]);
  }
  std::sort(all.begin(), all.end());
  for (std::size_t i = 1; i < all.size(); ++i) {
    ASSERT_EQ(all[i - 1].first < all[i].first, all[i - 1].second < all[i].second);
    ASSERT_EQ(all[i - 1].first == all[i].first, all[i - 1].second == all[i].second);
  }
}

TEST(MixedKeys, InTheOrderOfTheTexts) {
  Numbers numbers(119);
  const std::vector<double> table[] = {
      {},
      {1e14},
      {-1e14},
      {1e15, 1e16, 1e300, -1e300, 5e-324},
      {7e8, 699999999.9999999, 2e9, 9e9, 1e10},
      {-2e8, -250000000.5, -150000000.0, -100000000.5, -3e8},
      {inf, -inf, largest, -largest},
      // One text for both.
      {1e14, 1e14 + 0.015625},
      {-0.0, -5.0, 0.0, 3.25},
      {-5.0, 5.0, 1e14},
  };
  for (const std::vector<double>& strays : table) {
    expect_the_texts(survey_with(numbers, strays));
    if (HasFailure()) FAIL() << (strays.empty() ? 0.0 : strays[0]);
  }
}

TEST(MixedKeys, RandomValuesFarAndNear) {
  Numbers numbers(120);
  for (int round = 0; round < 60; ++round) {
    std::vector<double> strays(numbers.below(8));
    for (double& stray : strays) {
      stray = round % 2 == 0 ? numbers.between(-1e9, 3e9) : numbers.between(-5, 5) * 1e15;
    }
    std::vector<double> values = survey_with(numbers, strays, 2048);
    if (round % 3 == 0) values[5] = -values[5];
    if (MixedKeys::of(values)) expect_the_texts(values);
    if (HasFailure()) FAIL() << round;
  }
}

TEST(MixedKeys, ValuesBeyondTheSpanAlone) {
  expect_the_texts(std::vector<double>(1000, 1e14));
  std::vector<double> values(1000, 1e14);
  values[7] = -1e14;
  expect_the_texts(values);
}

TEST(MixedKeys, NothingWhereTextsMustBeMade) {
  Numbers numbers(121);
  EXPECT_FALSE(MixedKeys::of({}));
  EXPECT_FALSE(MixedKeys::of(survey_with(numbers, {nan})));
  EXPECT_FALSE(MixedKeys::of(survey_with(numbers, {1e14, nan})));
  // A 256th of them, and one more.
  std::vector<double> values = survey_with(numbers, {}, 1024);
  for (std::size_t k = 0; k < 5; ++k) {
    EXPECT_TRUE(MixedKeys::of(values)) << k;
    values[100 * k + 7] = 1e14 + static_cast<double>(k);
  }
  EXPECT_FALSE(MixedKeys::of(values));
  std::vector<double> few(255, 435000.125);
  few[9] = 1e14;
  EXPECT_FALSE(MixedKeys::of(few));
  few.push_back(1.0);
  EXPECT_TRUE(MixedKeys::of(few));
}

// Its text is that of -100000000, whose key is a number.
TEST(MixedKeys, NothingWhereATextBeyondIsOneInTheSpan) {
  std::vector<double> values(300, -100000000.0);
  values[9] = std::nextafter(-100000000.0, -inf);
  ASSERT_EQ(restated_key(values[8]), restated_key(values[9]));
  EXPECT_FALSE(MixedKeys::of(values));
}

TEST(MixedKeys, TheNumbersOfTheTexts) {
  Numbers numbers(122);
  const std::vector<double> values = survey_with(numbers, {1e14, -250000000.5, 7e9});
  const auto keys = MixedKeys::of(values);
  ASSERT_TRUE(keys);
  ASSERT_EQ(keys->texts_beyond(), 3U);
  const auto all = written(*keys, values);
  for (std::size_t i = 0; i < values.size(); ++i) {
    const double expected = text_services::number_from_text(restated_key(values[i]).view());
    std::size_t text = 0;
    while (text < 3 && keys->key_of_text(text) < all[i]) ++text;
    const bool beyond = text < 3 && keys->key_of_text(text) == all[i];
    ASSERT_EQ(beyond, !sorting::has_number_key(values[i]));
    ASSERT_EQ(bits(beyond ? keys->number_of_text(text) : MixedKeys::number_in_span(all[i], text)),
              bits(expected));
  }
}

TEST(MixedKeys, RefusedMemoryLeavesNothingBehind) {
  Numbers numbers(123);
  const std::vector<double> values = survey_with(numbers, {1e14, -1e14});
  ASSERT_TRUE(MixedKeys::of(values));  // what the first text sets up stays
  long n = 0;
  for (bool happened = true; happened; ++n) {
    const long before = allocations_in_use();
    bool made = false;
    {
      const RefusedAllocation refused(n);
      made = MixedKeys::of(values).has_value();
      happened = RefusedAllocation::happened();
    }
    ASSERT_EQ(made, !happened) << n;
    ASSERT_EQ(allocations_in_use(), before) << n;
  }
  EXPECT_GT(n, 100);
}

}  // namespace
}  // namespace orv2_geo
