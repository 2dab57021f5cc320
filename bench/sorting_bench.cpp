// Sorts of survey coordinates and point codes beside what a C++ user would
// write, beside ICU, and beside the same rules carried out literally.
#include <benchmark/benchmark.h>
#include <unicode/coll.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <functional>
#include <locale>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "bench/sizes.h"
#include "orv2_geo/orv2_geo.hpp"

namespace {

using orv2_geo::DoubleArray;
using orv2_geo::LongArray;
using orv2_geo::StringArray;
using orv2_geo::Text;

const orv2_geo::cgeo_Ordena sorts;
constexpr std::int32_t from_array = -2147483647 - 1;

std::int32_t size_of(const benchmark::State& state) {
  return static_cast<std::int32_t>(state.range(0));
}

// Coordinates of a survey 5 km wide, with 3 decimals: some occur again.
DoubleArray survey(std::int32_t n) {
  std::mt19937_64 engine(31);
  std::uniform_int_distribution<std::int64_t> along(435000000, 440000000);
  DoubleArray values(1, n);
  for (std::int32_t i = 1; i <= n; ++i) values(i) = static_cast<double>(along(engine)) / 1000.0;
  return values;
}

// All different.
DoubleArray distinct(std::int32_t n) {
  std::vector<std::int64_t> steps(static_cast<std::size_t>(n));
  std::iota(steps.begin(), steps.end(), 0);
  std::shuffle(steps.begin(), steps.end(), std::mt19937_64(32));
  DoubleArray values(1, n);
  for (std::int32_t i = 1; i <= n; ++i) {
    values(i) = 435000.0 + static_cast<double>(steps[static_cast<std::size_t>(i - 1)] * 3) / 1000.0;
  }
  return values;
}

// On which the median of three is always one of the smallest.
std::vector<std::int32_t> killer_ranks(std::int32_t n) {
  std::vector<std::int32_t> ranks(static_cast<std::size_t>(n)), place(ranks.size());
  std::iota(place.begin(), place.end(), 0);
  std::size_t lo = 0;
  std::int32_t next = 0;
  for (; lo + 9 <= ranks.size(); lo += 2) {
    std::swap(place[(lo + ranks.size() + 1) / 2 - 1], place[lo + 1]);
    ranks[static_cast<std::size_t>(place[lo])] = next++;
    ranks[static_cast<std::size_t>(place[lo + 1])] = next++;
  }
  for (; lo < ranks.size(); ++lo) ranks[static_cast<std::size_t>(place[lo])] = next++;
  return ranks;
}
DoubleArray killer(std::int32_t n) {
  const std::vector<std::int32_t> ranks = killer_ranks(n);
  DoubleArray values(1, n);
  for (std::int32_t i = 1; i <= n; ++i) values(i) = ranks[static_cast<std::size_t>(i - 1)];
  return values;
}

using Values = DoubleArray (*)(std::int32_t);

template <Values values_of>
void double_index(benchmark::State& state) {
  const DoubleArray values = values_of(size_of(state));
  LongArray index;
  for (auto _ : state) {
    sorts.Ordena_Double_Index_Array(values, index, from_array, from_array);
    benchmark::DoNotOptimize(index.data());
  }
}

template <Values values_of>
void double_index_std_sort(benchmark::State& state) {
  const DoubleArray values = values_of(size_of(state));
  for (auto _ : state) {
    std::vector<std::int32_t> index(static_cast<std::size_t>(values.count()));
    std::iota(index.begin(), index.end(), 0);
    const double* v = values.data();
    std::sort(index.begin(), index.end(),
              [v](std::int32_t a, std::int32_t b) { return v[a] < v[b]; });
    benchmark::DoNotOptimize(index.data());
  }
}

template <Values values_of>
void double_index_std_sort_pairs(benchmark::State& state) {
  const DoubleArray values = values_of(size_of(state));
  for (auto _ : state) {
    std::vector<std::pair<double, std::int32_t>> pairs(values.count());
    for (std::size_t i = 0; i < pairs.size(); ++i) {
      pairs[i] = {values.data()[i], static_cast<std::int32_t>(i)};
    }
    std::sort(pairs.begin(), pairs.end());
    std::vector<std::int32_t> index(pairs.size());
    for (std::size_t i = 0; i < pairs.size(); ++i) index[i] = pairs[i].second;
    benchmark::DoNotOptimize(index.data());
  }
}

// The keys as texts, sorted as texts.
void double_index_texts(benchmark::State& state) {
  const DoubleArray values = survey(size_of(state));
  for (auto _ : state) {
    std::vector<std::pair<std::string, std::int32_t>> keys(values.count());
    char buffer[32];
    for (std::size_t i = 0; i < keys.size(); ++i) {
      std::snprintf(buffer, sizeof buffer, "%.15G", values.data()[i] + 300000000.0);
      keys[i] = {buffer, static_cast<std::int32_t>(i)};
    }
    const std::locale users("");
    const auto& collate = std::use_facet<std::collate<char>>(users);
    std::sort(keys.begin(), keys.end(), [&](const auto& a, const auto& b) {
      return collate.compare(a.first.data(), a.first.data() + a.first.size(), b.first.data(),
                             b.first.data() + b.first.size()) < 0;
    });
    benchmark::DoNotOptimize(keys.data());
  }
}

std::vector<std::string> codes(std::int32_t n) {
  std::mt19937_64 engine(33);
  std::vector<std::string> all(static_cast<std::size_t>(n));
  const char* const prefixes[] = {"P", "BORDE", "Cl", "ARQ", "lindero-"};
  for (std::string& code : all) code = prefixes[engine() % 5] + std::to_string(engine() % 2000000);
  return all;
}

StringArray texts_of(const std::vector<std::string>& codes) {
  StringArray texts(1, static_cast<std::int32_t>(codes.size()));
  for (std::int32_t i = 1; i <= texts.upper(); ++i) {
    texts(i) = Text::from_utf8(codes[static_cast<std::size_t>(i - 1)]);
  }
  return texts;
}

template <class Names>
void string_index(benchmark::State& state, Names names_of) {
  const StringArray texts = texts_of(names_of(size_of(state)));
  LongArray index(1, size_of(state));
  for (auto _ : state) {
    for (std::int32_t i = 1; i <= size_of(state); ++i) index(i) = i;
    sorts.Ordena_StringIndexArray(texts, index, from_array, from_array);
    benchmark::DoNotOptimize(index.data());
  }
}
std::vector<std::string> numbered(const std::vector<std::int32_t>& ranks) {
  std::vector<std::string> all;
  for (const std::int32_t rank : ranks) all.push_back(std::to_string(1000000 + rank));
  return all;
}
void killer_texts(benchmark::State& state) {
  string_index(state, [](std::int32_t n) { return numbered(killer_ranks(n)); });
}
void shuffled_texts(benchmark::State& state) {
  string_index(state, [](std::int32_t n) {
    std::vector<std::int32_t> ranks = killer_ranks(n);
    std::shuffle(ranks.begin(), ranks.end(), std::mt19937_64(34));
    return numbered(ranks);
  });
}
DoubleArray shuffled(std::int32_t n) {
  DoubleArray values = killer(n);
  std::shuffle(values.data(), values.data() + values.count(), std::mt19937_64(34));
  return values;
}

std::unique_ptr<icu::Collator> spanish_collator() {
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::Collator> collator(
      icu::Collator::createInstance(icu::Locale("es", "ES"), status));
  if (U_FAILURE(status)) return nullptr;
  collator->setStrength(icu::Collator::SECONDARY);
  return collator;
}

void icu_sort_keys(benchmark::State& state, const std::vector<std::string>& codes) {
  std::vector<icu::UnicodeString> texts;
  for (const std::string& code : codes) texts.push_back(icu::UnicodeString::fromUTF8(code));
  const auto collator = spanish_collator();
  if (!collator) return state.SkipWithError("no collator");
  for (auto _ : state) {
    std::vector<std::pair<std::vector<std::uint8_t>, std::size_t>> keys(texts.size());
    std::uint8_t buffer[256];
    for (std::size_t i = 0; i < texts.size(); ++i) {
      const std::int32_t length = collator->getSortKey(texts[i], buffer, sizeof buffer);
      keys[i] = {std::vector<std::uint8_t>(buffer, buffer + length), i};
    }
    std::sort(keys.begin(), keys.end(), [](const auto& a, const auto& b) {
      const std::size_t both = std::min(a.first.size(), b.first.size());
      return std::memcmp(a.first.data(), b.first.data(), both) < 0;
    });
    benchmark::DoNotOptimize(keys.data());
  }
}
void strings_icu(benchmark::State& state) { icu_sort_keys(state, codes(size_of(state))); }

// Whether the texts that `text(p)` gives are in ICU's order of the language.
template <class TextAt>
bool is_icu_order(std::int32_t count, TextAt text) {
  const auto collator = spanish_collator();
  if (!collator) return false;
  icu::UnicodeString before;
  for (std::int32_t p = 1; p <= count; ++p) {
    icu::UnicodeString here = icu::UnicodeString::fromUTF8(text(p).to_utf8());
    UErrorCode status = U_ZERO_ERROR;
    if (collator->compare(before, here, status) > 0) return false;
    before = std::move(here);
  }
  return true;
}

// Put out of order again between the rounds, by handles alone.
void strings(benchmark::State& state) {
  StringArray texts = texts_of(codes(size_of(state)));
  std::mt19937_64 engine(35);
  for (auto _ : state) {
    sorts.Ordena_StringArray(texts, from_array, from_array);
    state.PauseTiming();
    for (std::uint32_t i = texts.count() - 1; i > 0; --i) {
      texts.data()[i].swap(texts.data()[engine() % (i + 1)]);
    }
    state.ResumeTiming();
  }
  sorts.Ordena_StringArray(texts, from_array, from_array);
  if (!is_icu_order(texts.upper(), [&](std::int32_t p) { return texts(p); })) {
    state.SkipWithError("not in the order of the language");
  }
}

void strings_collate(benchmark::State& state) {
  const std::vector<std::string> texts = codes(size_of(state));
  const std::locale users("");
  const auto& collate = std::use_facet<std::collate<char>>(users);
  for (auto _ : state) {
    std::vector<std::string> sorted = texts;
    std::sort(sorted.begin(), sorted.end(), [&](const std::string& a, const std::string& b) {
      return collate.compare(a.data(), a.data() + a.size(), b.data(), b.data() + b.size()) < 0;
    });
    benchmark::DoNotOptimize(sorted.data());
  }
}

// The same work on data of every shape, good and bad. Numbers are up to 5,000,000; one
// that is absurd is 2,000,000,000.
using Numbers = std::vector<std::int32_t>;
constexpr std::int32_t absurd = 2000000000;

Numbers numbers_below(std::uint64_t end, std::int32_t n) {
  std::mt19937_64 engine(36);
  Numbers numbers(static_cast<std::size_t>(n));
  for (std::int32_t& number : numbers) number = static_cast<std::int32_t>(engine() % end);
  return numbers;
}
Numbers random_numbers(std::int32_t n) { return numbers_below(5000000, n); }
Numbers sorted_numbers(std::int32_t n) {
  Numbers numbers = random_numbers(n);
  std::sort(numbers.begin(), numbers.end());
  return numbers;
}
Numbers reversed_numbers(std::int32_t n) {
  Numbers numbers = sorted_numbers(n);
  std::reverse(numbers.begin(), numbers.end());
  return numbers;
}
Numbers equal_numbers(std::int32_t n) { return Numbers(static_cast<std::size_t>(n), 1234567); }
Numbers few_numbers(std::int32_t n) {
  Numbers numbers = random_numbers(n);
  for (std::int32_t& number : numbers) number %= 7;
  return numbers;
}
Numbers organ_pipe(std::int32_t n) {
  Numbers numbers = equal_numbers(n);
  for (std::int32_t i = 0; i < n; ++i) numbers[static_cast<std::size_t>(i)] = std::min(i, n - i);
  return numbers;
}
Numbers random_and_absurd(std::int32_t n) {
  Numbers numbers = random_numbers(n);
  numbers[numbers.size() / 2] = absurd;
  return numbers;
}
Numbers sorted_and_absurd(std::int32_t n) {
  Numbers numbers = sorted_numbers(n);
  numbers[numbers.size() / 2] = absurd;
  return numbers;
}

// As large a part of any count of them occurs again as of 100,000 numbers below 5,000,000.
Numbers sorted_as_often_tied(std::int32_t n) {
  Numbers numbers = numbers_below(50 * static_cast<std::uint64_t>(n), n);
  std::sort(numbers.begin(), numbers.end());
  return numbers;
}
Numbers reversed_as_often_tied(std::int32_t n) {
  Numbers numbers = sorted_as_often_tied(n);
  std::reverse(numbers.begin(), numbers.end());
  return numbers;
}
Numbers sorted_as_often_tied_and_absurd(std::int32_t n) {
  Numbers numbers = sorted_as_often_tied(n);
  numbers[numbers.size() / 2] = absurd;
  return numbers;
}

struct Shape {
  const char* name;
  Numbers (*numbers)(std::int32_t n);
};
constexpr Shape shapes[] = {
    {"random", random_numbers},
    {"sorted", sorted_numbers},
    {"reversed", reversed_numbers},
    {"equal", equal_numbers},
    {"few", few_numbers},
    {"organ_pipe", organ_pipe},
    {"random_absurd", random_and_absurd},
    {"sorted_absurd", sorted_and_absurd},
};
constexpr Shape as_often_tied[] = {
    {"sorted_tied", sorted_as_often_tied},
    {"reversed_tied", reversed_as_often_tied},
    {"sorted_absurd_tied", sorted_as_often_tied_and_absurd},
};

// Coordinates with three decimals.
double coordinate(std::int32_t number) {
  return number == absurd ? 1e14 : 435000.0 + static_cast<double>(number) / 1000.0;
}
std::vector<double> coordinates(const Numbers& numbers) {
  std::vector<double> values(numbers.size());
  std::transform(numbers.begin(), numbers.end(), values.begin(), coordinate);
  return values;
}
bool is_absurd(const Numbers& numbers) {
  return std::find(numbers.begin(), numbers.end(), absurd) != numbers.end();
}

LongArray array_of(const Numbers& numbers) {
  LongArray array(1, static_cast<std::int32_t>(numbers.size()));
  std::copy(numbers.begin(), numbers.end(), array.data());
  return array;
}
DoubleArray array_of(const std::vector<double>& values) {
  DoubleArray array(1, static_cast<std::int32_t>(values.size()));
  std::copy(values.begin(), values.end(), array.data());
  return array;
}

// Sorts the elements in place, put back as they were before each round.
template <class T, class Sort>
void in_place(benchmark::State& state, const std::vector<T>& before, T* elements, Sort sort) {
  for (auto _ : state) {
    state.PauseTiming();
    std::copy(before.begin(), before.end(), elements);
    state.ResumeTiming();
    sort();
    benchmark::DoNotOptimize(elements);
    benchmark::ClobberMemory();
  }
}
template <class T>
void in_place_std_sort(benchmark::State& state, const std::vector<T>& before) {
  std::vector<T> elements(before.size());
  in_place(state, before, elements.data(), [&] { std::sort(elements.begin(), elements.end()); });
}

void longs(benchmark::State& state, const Numbers& numbers) {
  LongArray array = array_of(numbers);
  in_place(state, numbers, array.data(),
           [&] { sorts.Ordena_LongArray(array, from_array, from_array); });
  Numbers expected = numbers;
  std::sort(expected.begin(), expected.end());
  if (!std::equal(expected.begin(), expected.end(), array.data())) {
    state.SkipWithError("not the numbers in ascending order");
  }
}
void longs_peer(benchmark::State& state, const Numbers& numbers) {
  in_place_std_sort(state, numbers);
}

// By texts an absurd value comes elsewhere than by number: all are there, whatever
// their order.
void doubles(benchmark::State& state, const Numbers& numbers) {
  std::vector<double> expected = coordinates(numbers);
  DoubleArray array = array_of(expected);
  in_place(state, expected, array.data(),
           [&] { sorts.Ordena_Double_Array(array, from_array, from_array); });
  std::sort(expected.begin(), expected.end());
  if (is_absurd(numbers)) std::sort(array.data(), array.data() + array.count());
  const auto near = [](double a, double b) { return std::abs(a - b) < 1e-6; };
  if (!std::equal(expected.begin(), expected.end(), array.data(), near)) {
    state.SkipWithError("not the values in ascending order");
  }
}
void doubles_peer(benchmark::State& state, const Numbers& numbers) {
  in_place_std_sort(state, coordinates(numbers));
}

// Whether the entries number each value once, in ascending order where they should.
template <class T>
bool is_index_of(const LongArray& index, std::int32_t first, std::vector<T> values,
                 bool ascending) {
  std::vector<T> in_order;
  for (std::size_t p = 0; p < values.size(); ++p) {
    const std::int32_t entry = index(first + static_cast<std::int32_t>(p));
    in_order.push_back(values[static_cast<std::size_t>(entry - 1)]);
  }
  if (!ascending) std::sort(in_order.begin(), in_order.end());
  std::sort(values.begin(), values.end());
  return in_order == values;
}

void long_index(benchmark::State& state, const Numbers& numbers) {
  const LongArray array = array_of(numbers);
  Numbers counting(numbers.size());
  std::iota(counting.begin(), counting.end(), 1);
  LongArray index(1, array.upper());
  in_place(state, counting, index.data(),
           [&] { sorts.Ordena_LongIndexArray(array, index, from_array, from_array); });
  if (!is_index_of(index, 1, numbers, true)) state.SkipWithError("not in ascending order");
}
void double_shape_index(benchmark::State& state, const Numbers& numbers) {
  const std::vector<double> values = coordinates(numbers);
  const DoubleArray array = array_of(values);
  LongArray index;
  for (auto _ : state) {
    sorts.Ordena_Double_Index_Array(array, index, from_array, from_array);
    benchmark::DoNotOptimize(index.data());
  }
  if (!is_index_of(index, 1, values, !is_absurd(numbers))) {
    state.SkipWithError("not in ascending order");
  }
}

template <class T>
void index_by_pairs(benchmark::State& state, const std::vector<T>& values) {
  for (auto _ : state) {
    std::vector<std::pair<T, std::int32_t>> pairs(values.size());
    for (std::size_t i = 0; i < pairs.size(); ++i) {
      pairs[i] = {values[i], static_cast<std::int32_t>(i)};
    }
    std::sort(pairs.begin(), pairs.end());
    std::vector<std::int32_t> index(pairs.size());
    for (std::size_t i = 0; i < pairs.size(); ++i) index[i] = pairs[i].second;
    benchmark::DoNotOptimize(index.data());
  }
}
void long_index_peer(benchmark::State& state, const Numbers& numbers) {
  index_by_pairs(state, numbers);
}
void double_shape_index_peer(benchmark::State& state, const Numbers& numbers) {
  index_by_pairs(state, coordinates(numbers));
}

// In the order of their numbers; the absurd one is no character of one weight.
std::vector<std::string> codes_of(const Numbers& numbers) {
  std::vector<std::string> all;
  for (const std::int32_t number : numbers) {
    all.push_back(number == absurd ? "\xf0\x9f\x98\x80" : "P" + std::to_string(1000000 + number));
  }
  return all;
}
void text_index(benchmark::State& state, const Numbers& numbers) {
  const StringArray texts = texts_of(codes_of(numbers));
  Numbers counting(numbers.size());
  std::iota(counting.begin(), counting.end(), 1);
  LongArray index(1, texts.upper());
  in_place(state, counting, index.data(),
           [&] { sorts.Ordena_StringIndexArray(texts, index, from_array, from_array); });
  if (!is_icu_order(texts.upper(), [&](std::int32_t p) { return texts(index(p)); })) {
    state.SkipWithError("not in the order of the language");
  }
}
void text_index_peer(benchmark::State& state, const Numbers& numbers) {
  icu_sort_keys(state, codes_of(numbers));
}

constexpr auto milliseconds = benchmark::kMillisecond;

using OfShape = void (*)(benchmark::State&, const Numbers&);

template <std::size_t count>
void register_shapes(const Shape (&of)[count], const std::string& sort, OfShape subject,
                     OfShape peer, std::int64_t most_of_peer = bench::most_elements) {
  for (const Shape& shape : of) {
    const auto add = [&](const std::string& name, OfShape work, std::int64_t most) {
      const auto run = [=](benchmark::State& state) { work(state, shape.numbers(size_of(state))); };
      auto* const made = benchmark::RegisterBenchmark((sort + "_" + name).c_str(), run);
      bench::sizes_to(made->Unit(milliseconds), most);
    };
    add(shape.name, subject, bench::most_elements);
    add(std::string(shape.name) + "_peer", peer, most_of_peer);
  }
}
[[maybe_unused]] const bool registered = [] {
  register_shapes(shapes, "longs", longs, longs_peer);
  register_shapes(shapes, "long_index", long_index, long_index_peer);
  register_shapes(shapes, "doubles", doubles, doubles_peer);
  register_shapes(shapes, "doubles_index", double_shape_index, double_shape_index_peer);
  register_shapes(as_often_tied, "long_index", long_index, long_index_peer);
  register_shapes(as_often_tied, "doubles_index", double_shape_index, double_shape_index_peer);
  register_shapes(shapes, "text_index", text_index, text_index_peer, 100000);
  return true;
}();

BENCHMARK(double_index<survey>)->Name("double_index")->Apply(bench::sizes)->Unit(milliseconds);
BENCHMARK(double_index_std_sort<survey>)
    ->Name("double_index_std_sort")
    ->Apply(bench::sizes)
    ->Unit(milliseconds);
BENCHMARK(double_index_std_sort_pairs<survey>)
    ->Name("double_index_pairs")
    ->Apply(bench::sizes)
    ->Unit(milliseconds);
BENCHMARK(double_index_texts)->Apply(bench::sizes<1'000'000>)->Unit(milliseconds);
BENCHMARK(double_index<distinct>)->Name("distinct_index")->Apply(bench::sizes)->Unit(milliseconds);
BENCHMARK(double_index_std_sort_pairs<distinct>)
    ->Name("distinct_index_pairs")
    ->Apply(bench::sizes)
    ->Unit(milliseconds);
BENCHMARK(double_index<killer>)->Name("killer_index")->Arg(200000)->Unit(milliseconds);
BENCHMARK(double_index<shuffled>)->Name("shuffled_index")->Arg(200000)->Unit(milliseconds);
BENCHMARK(killer_texts)->Arg(200000)->Unit(milliseconds);
BENCHMARK(shuffled_texts)->Arg(200000)->Unit(milliseconds);
BENCHMARK(strings)->Apply(bench::sizes)->Unit(milliseconds);
BENCHMARK(strings_icu)->Apply(bench::sizes)->Unit(milliseconds);
BENCHMARK(strings_collate)->Apply(bench::sizes<1'000'000>)->Unit(milliseconds);

}  // namespace
