// Sorts of survey coordinates and point codes beside what a C++ user would
// write, beside ICU, and beside the same rules carried out literally.
#include <benchmark/benchmark.h>
#include <unicode/coll.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <locale>
#include <numeric>
#include <random>
#include <string>
#include <vector>

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

void strings_icu(benchmark::State& state) {
  std::vector<icu::UnicodeString> texts;
  for (const std::string& code : codes(size_of(state))) {
    texts.push_back(icu::UnicodeString::fromUTF8(code));
  }
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::Collator> collator(
      icu::Collator::createInstance(icu::Locale("es", "ES"), status));
  collator->setStrength(icu::Collator::SECONDARY);
  if (U_FAILURE(status)) return state.SkipWithError("no collator");
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

constexpr auto milliseconds = benchmark::kMillisecond;
BENCHMARK(double_index<survey>)
    ->Name("double_index")
    ->Arg(100000)
    ->Arg(1000000)
    ->Unit(milliseconds);
BENCHMARK(double_index_std_sort<survey>)
    ->Name("double_index_std_sort")
    ->Arg(100000)
    ->Arg(1000000)
    ->Unit(milliseconds);
BENCHMARK(double_index_std_sort_pairs<survey>)
    ->Name("double_index_pairs")
    ->Arg(100000)
    ->Arg(1000000)
    ->Unit(milliseconds);
BENCHMARK(double_index_texts)->Arg(100000)->Arg(1000000)->Unit(milliseconds);
BENCHMARK(double_index<distinct>)
    ->Name("distinct_index")
    ->Arg(100000)
    ->Arg(1000000)
    ->Unit(milliseconds);
BENCHMARK(double_index_std_sort_pairs<distinct>)
    ->Name("distinct_index_pairs")
    ->Arg(100000)
    ->Arg(1000000)
    ->Unit(milliseconds);
BENCHMARK(double_index<killer>)->Name("killer_index")->Arg(200000)->Unit(milliseconds);
BENCHMARK(double_index<shuffled>)->Name("shuffled_index")->Arg(200000)->Unit(milliseconds);
BENCHMARK(killer_texts)->Arg(200000)->Unit(milliseconds);
BENCHMARK(shuffled_texts)->Arg(200000)->Unit(milliseconds);
BENCHMARK(strings)->Arg(100000)->Arg(1000000)->Unit(milliseconds);
BENCHMARK(strings_icu)->Arg(100000)->Arg(1000000)->Unit(milliseconds);
BENCHMARK(strings_collate)->Arg(100000)->Arg(1000000)->Unit(milliseconds);

}  // namespace
