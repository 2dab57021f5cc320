// Numbers sorted the quick ways, beside the algorithm's own steps.
#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "fuzz/harness.h"
#include "fuzz/source.h"
#include "orv2_geo/arrays/cgeo_Matrices.h"
#include "orv2_geo/platform/text_services.h"
#include "orv2_geo/sorting/cgeo_Ordena.h"
#include "orv2_geo/terrain/cgeo_Terreno.h"
#include "tests/sorting/packed_words.h"
#include "tests/sorting/restated_quicksort.h"
#include "tests/sorting/sort_data.h"
#include "tests/support/arrays.h"
#include "tests/support/exchange_by_passes.h"
#include "tests/support/preamble.h"

namespace orv2_geo {
namespace {

using fuzzing::Source;
const cgeo_Ordena sorts;

// ---- Whole numbers ---------------------------------------------------------

// From the bytes one by one, or very many from a few of them.
std::vector<std::int64_t> whole_numbers(Source& source) {
  if (source.one_in(16)) {
    Numbers numbers(source.any<std::uint64_t>());
    return pattern(numbers, source.below(source.one_in(16) ? 600 : 80));
  }
  std::vector<std::int64_t> all(source.below(40));
  const bool wide = source.one_in(4);
  for (std::int64_t& one : all) one = wide ? source.any<std::int32_t>() : source.between(-4, 4);
  return all;
}

Place place_of(Source& source, std::size_t count) {
  Place place = {source.between(-20, 20), bound_from_array, bound_from_array};
  const auto last = place.lower + static_cast<std::int32_t>(count) - 1;
  if (source.one_in(2)) place.from = place.lower + source.between(-1, 3);
  if (source.one_in(2)) place.to = last + source.between(-3, 1);
  return place;
}

void sort_long_array(Source& source) {
  const std::vector<std::int64_t> values = whole_numbers(source);
  const Place place = place_of(source, values.size());
  LongArray array = array_of<std::int32_t>(place.lower, values);
  Elements restated{place.lower, values};
  const bool sorted = sort_by_restated_steps(restated, compare_numbers, from_of(place),
                                             to_of(place, values.size()));
  ASSERT_EQ(failure_of([&] { sorts.Ordena_LongArray(array, place.from, place.to); }),
            sorted ? 0 : 9);
  ASSERT_EQ(elements(array), restated.as_longs());
}

void sort_long_index(Source& source) {
  const std::vector<std::int64_t> values = whole_numbers(source);
  const std::int32_t first = source.between(-20, 20);
  const auto count = static_cast<std::int32_t>(values.size());
  const std::int32_t lower = source.between(-3, 1);
  std::vector<std::int64_t> entries(static_cast<std::size_t>(count) + source.below(5));
  const bool in_order = source.one_in(2);
  for (std::size_t i = 0; i < entries.size(); ++i) {
    entries[i] = in_order ? first + static_cast<std::int64_t>(i) + lower - 1
                          : first + source.between(0, count);
  }
  const std::int32_t last = lower + static_cast<std::int32_t>(entries.size()) - 1;
  const std::int32_t to = source.one_in(2) ? bound_from_array : last + source.between(-3, 1);
  const LongArray array = array_of<std::int32_t>(first, values);
  LongArray index = array_of<std::int32_t>(lower, entries);
  Elements restated{lower, entries};
  const bool sorted = sort_by_restated_steps(restated, by_numbers(values, first), 1,
                                             to == bound_from_array ? last : to);
  ASSERT_EQ(failure_of([&] { sorts.Ordena_LongIndexArray(array, index, source.whole(), to); }),
            sorted ? 0 : 9);
  ASSERT_EQ(elements(index), restated.as_longs());
}

// The words themselves, which the sorts above take for many elements only.
void sort_words(Source& source) {
  std::vector<std::uint64_t> keys;
  const std::int64_t first = source.between(-20, 20);
  if (source.one_in(8)) {
    Numbers numbers(source.any<std::uint64_t>());
    keys = random_keys(numbers, 1 + source.below(source.one_in(64) ? 4000 : 100),
                       1 + source.below(2000));
  } else if (source.one_in(8)) {
    keys = killer_of(10 + source.below(100), source.below(10));
  } else {
    keys.resize(1 + source.below(60));
    const int bits = source.between(1, 40);
    for (std::uint64_t& key : keys) key = source.any<std::uint64_t>() >> (64 - bits);
  }
  ASSERT_EQ(order_of(keys, first), restated_order(keys, first));
}

// ---- Doubles ---------------------------------------------------------------

std::vector<double> values_of(Source& source) {
  std::vector<double> values(1 + source.below(40));
  const bool mixed = source.one_in(4);
  const std::size_t kind = source.below(mixed ? Source::kinds : Source::kinds_without_edges);
  for (double& value : values) value = mixed ? source.number() : source.number(kind);
  return values;
}

void expect_same(const DoubleArray& array, const std::vector<double>& expected) {
  ASSERT_EQ(array.count(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    ASSERT_EQ(bits(array.data()[i]), bits(expected[i]));
  }
}

// Over the values themselves, one by one: a key that is no number stops them.
void write_sorted(const Elements& order, const std::vector<Text>& keys,
                  std::vector<double>& values) {
  for (std::size_t i = 1; i < values.size(); ++i) {
    const Text& text = keys[static_cast<std::size_t>(order.values[i])];
    const double key = text_services::number_from_text(text.view());
    values[i] = values[i] > 0 ? key - 300000000.0 : -key - 200000000.0;
  }
}

void sort_doubles(Source& source) {
  const std::vector<double> values = values_of(source);
  const auto last = static_cast<std::int64_t>(values.size()) - 1;
  const auto is_nan = [](double value) { return std::isnan(value); };
  DoubleArray array = doubles(0, values);
  LongArray index;
  if (std::any_of(values.begin() + 1, values.end(), is_nan)) {
    ASSERT_EQ(failure_of([&] {
                sorts.Ordena_Double_Index_Array(array, index, bound_from_array, bound_from_array);
              }),
              6);
    ASSERT_EQ(failure_of([&] { sorts.Ordena_Double_Array(array, 1, bound_from_array); }), 6);
    expect_same(array, values);
    return;
  }
  std::vector<Text> keys;
  std::vector<std::u32string> collated;
  for (const double value : values) {
    keys.push_back(restated_key(value));
    collated.push_back(text_services::collation_key(keys.back().view()));
  }
  Elements restated = numbering(0, values.size(), 0);
  sort_by_restated_steps(
      restated,
      [&](std::int64_t a, std::int64_t b) {
        return collated[static_cast<std::size_t>(a)].compare(collated[static_cast<std::size_t>(b)]);
      },
      1, last);
  sorts.Ordena_Double_Index_Array(array, index, bound_from_array, bound_from_array);
  ASSERT_EQ(elements(index), restated.as_longs());
  std::vector<double> left = values;
  const std::int32_t number = failure_of([&] { write_sorted(restated, keys, left); });
  ASSERT_EQ(
      failure_of([&] { sorts.Ordena_Double_Array(array, bound_from_array, bound_from_array); }),
      number);
  expect_same(array, left);
}

// ---- Exchanges -------------------------------------------------------------

std::vector<double> keys_of(Source& source, std::size_t count) {
  std::vector<double> keys(count);
  const std::size_t kind = source.below(Source::kinds);
  for (double& key : keys) {
    key = source.number(kind);
    if (std::isnan(key)) key = -0.0;
  }
  return keys;
}

std::vector<double> numbered(std::size_t count) {
  std::vector<double> values(count);
  for (std::size_t i = 0; i < count; ++i) values[i] = static_cast<double>(i);
  return values;
}

void exchange(Source& source) {
  const std::size_t count = 1 + source.below(40);
  std::vector<double> x = keys_of(source, count), y = numbered(count), z = keys_of(source, count);
  DoubleArray X = doubles(1, x), Y = doubles(1, y), Z = doubles(1, z);
  cgeo_Matrices().Ordena_en_X_3_Matrices(static_cast<std::int32_t>(count), X, Y, Z);
  exchange_by_passes(0, x, y, z);
  expect_same(X, x);
  expect_same(Y, y);
  expect_same(Z, z);
}

void clean_up(Source& source) {
  const std::size_t count = 2 + source.below(40);
  std::vector<double> d = keys_of(source, count + 1), z = keys_of(source, count + 1);
  DoubleArray D = doubles(0, d), Z = doubles(0, z);
  auto points = static_cast<std::int32_t>(count);
  cgeo_Terreno().Ordena_terreno_y_quita_repetidos(points, D, Z);
  exchange_by_passes(1, d, z);
  std::vector<double> kept_d = {0, d[1]}, kept_z = {0, z[1]};
  for (std::size_t i = 2; i <= count; ++i) {
    if (d[i] == kept_d.back() && z[i] == kept_z.back()) continue;
    kept_d.push_back(d[i]);
    kept_z.push_back(z[i]);
  }
  ASSERT_EQ(points, static_cast<std::int32_t>(kept_d.size() - 1));
  ASSERT_EQ(elements(D), kept_d);
  ASSERT_EQ(elements(Z), kept_z);
}

}  // namespace
}  // namespace orv2_geo

void orv2_geo::fuzzing::try_input(const std::uint8_t* data, std::size_t size) {
  constexpr void (*sortings[])(Source&) = {sort_long_array, sort_long_index, sort_words,
                                           sort_doubles,    exchange,        clean_up};
  Source source(data, size);
  source.one_of(sortings)(source);
}
