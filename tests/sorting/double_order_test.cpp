#include "orv2_geo/sorting/double_order.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "orv2_geo/sorting/double_keys.h"
#include "tests/support/preamble.h"

namespace orv2_geo {
namespace {

using sorting::DoubleOrder;
using sorting::WordLayout;

// With six decimals, with fewer, with more, with a half at the seventh.
double any_value(Numbers& numbers, std::uint64_t kind) {
  const double whole = std::floor(numbers.between(0, 7e8 - 1));
  switch (kind) {
    case 0: return whole / 1000.0;
    case 1: return whole / 1000000.0;
    case 2: return numbers.between(0, 6.9e8);
    case 3: return whole + (2.0 * std::floor(numbers.between(0, 64)) + 1.0) / 128.0;
    case 4: return std::floor(numbers.between(-1e8, 6.9e8)) + 0.25;
    case 5: return -0.0;
    default: return whole + std::floor(numbers.between(0, 1e6)) / 1e6 + numbers.between(0, 1e-6);
  }
}

std::vector<double> any_values(Numbers& numbers) {
  std::vector<double> values(1 + numbers.below(200));
  const std::uint64_t usual = numbers.below(7);
  const bool mixed = numbers.below(3) == 0;
  for (double& value : values) {
    value = any_value(numbers, mixed && numbers.below(20) == 0 ? numbers.below(7) : usual);
  }
  return values;
}

TEST(DoubleOrder, EachWordHoldsTheKeyOfItsValue) {
  Numbers numbers(95);
  for (int round = 0; round < 20000; ++round) {
    const std::vector<double> values = any_values(numbers);
    auto packed = DoubleOrder::of(values);
    ASSERT_TRUE(packed);
    for (std::size_t p = 0; p < values.size(); ++p) {
      const std::uint64_t word = packed->words()[p];
      ASSERT_EQ(packed->layout().key(word), sorting::closed_up(sorting::key_in_span(values[p])))
          << std::hexfloat << values[p];
      ASSERT_EQ(packed->layout().position(word), p);
    }
    ASSERT_TRUE(packed->are_of(values));
  }
}

TEST(DoubleOrder, ValuesBesideTheSpanHaveNoWords) {
  const double beside[] = {700000000.0,
                           std::nextafter(700000000.0, 0.0),  // its key has ten digits
                           std::nextafter(-100000000.0, -inf),
                           nan,
                           inf,
                           -inf,
                           1e12};
  for (const double value : beside) {
    for (const std::size_t at : {0U, 70U, 99U}) {
      std::vector<double> values(100, 435000.125);
      auto packed = DoubleOrder::of(values);
      values[at] = value;
      EXPECT_FALSE(DoubleOrder::of(values)) << value;
      EXPECT_FALSE(packed->are_of(values)) << value;
    }
  }
  EXPECT_FALSE(DoubleOrder::of({}));
  // Keys of 49 bits and positions of 17: too long for a word.
  std::vector<double> wide(100000, -99999999.0);
  wide[5] = 699999999.0;
  EXPECT_FALSE(DoubleOrder::of(wide));
}

// Far beyond the span there are values whose product, as bits, is the key's with
// 64 added to the exponent, which a word has no room for.
TEST(DoubleOrder, AValueFarBeyondIsNotTakenForTheOneItsBitsLookLike) {
  int tried = 0;
  for (int k = 0; k < 1000; ++k) {
    std::vector<double> values(64, 435000.125 + k);
    auto packed = DoubleOrder::of(values);
    const double whole = (values[5] + 300000000.0) * 1e6 + 0x1p52;
    const double far = whole * 0x1p64 / 1e6;
    if ((far + 300000000.0) * 1e6 != whole * 0x1p64) continue;  // not every product occurs
    values[5] = far;
    ASSERT_FALSE(packed->are_of(values)) << k;
    ++tried;
  }
  EXPECT_GT(tried, 100);
}

TEST(DoubleOrder, AreOfValuesWithTheSameKeysAlone) {
  std::vector<double> values(150, 435000.125);
  auto packed = DoubleOrder::of(values);
  for (const std::size_t at : {0U, 63U, 64U, 149U}) {
    for (const double changed : {435000.125001, 435000.124999, 435000.0, -435000.125, 1e300}) {
      std::vector<double> other = values;
      other[at] = changed;
      EXPECT_FALSE(packed->are_of(other)) << at << ' ' << changed;
    }
    std::vector<double> same = values;
    same[at] = 435000.1250001;
    EXPECT_TRUE(packed->are_of(same)) << at;
  }
  EXPECT_TRUE(packed->are_of(std::span(values).last(70), 80)) << "a part, where it stands";
  EXPECT_FALSE(packed->are_of(std::span(values).last(70), 81)) << "beyond the words";
  values.push_back(435000.125);
  EXPECT_FALSE(packed->are_of(values));
}

// Any marks, of which the order takes no notice; enough values that they are looked
// at before, with ties (sorted as words) and without (not sorted here).
TEST(DoubleOrder, MarksTravelWithTheirWords) {
  Numbers numbers(97);
  for (const std::uint64_t different : {std::uint64_t{3000}, std::uint64_t{1000000000}}) {
    for (const int most_bits : {0, 1, 20}) {
      std::vector<double> values(6000);
      for (double& value : values) value = static_cast<double>(numbers.below(different)) / 1000.0;
      auto plain = DoubleOrder::of(values);
      auto marked = DoubleOrder::of(values, most_bits);
      const WordLayout layout = marked->layout();
      ASSERT_EQ(layout.mark_bits(), std::min(most_bits, different == 3000 ? 20 : 10))
          << "what is left";
      ASSERT_EQ(layout.mark_mask() >> layout.position_bits(),
                (std::uint64_t{1} << layout.mark_bits()) - 1);
      EXPECT_TRUE(marked->are_of(values));
      std::vector<std::uint64_t> marks(values.size());
      for (std::size_t p = 0; p < marks.size(); ++p) {
        marks[p] = numbers.below(~std::uint64_t{0}) & layout.mark_mask();
        marked->words()[p] |= marks[p];
      }
      std::vector<std::int32_t> order(values.size());
      plain->write_numbers(order);
      const bool sorted = marked->sort();
      EXPECT_EQ(sorted, different == 3000);
      for (std::size_t k = 0; sorted && k < order.size(); ++k) {
        const std::uint64_t word = marked->words()[k];
        const std::uint32_t position = layout.position(word);
        ASSERT_EQ(position + 1, static_cast<std::uint32_t>(order[k]));
        ASSERT_EQ(word & layout.mark_mask(), marks[position]);
        ASSERT_EQ(layout.key(word), sorting::closed_up(sorting::key_in_span(values[position])));
      }
      if (sorted) continue;
      std::vector<std::int32_t> again(values.size());
      marked->write_numbers(again);
      EXPECT_EQ(again, order);
    }
  }
}

}  // namespace
}  // namespace orv2_geo
