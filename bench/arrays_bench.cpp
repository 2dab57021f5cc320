// The array toolkit beside the standard library and plain loops, on arrays too
// long for any cache.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <vector>

#include "orv2_geo/orv2_geo.hpp"

namespace {

using orv2_geo::DoubleArray;
using orv2_geo::LongArray;

const orv2_geo::cgeo_Matrices matrices;
constexpr std::int32_t points = 10000000;

const DoubleArray& coordinates(int axis) {
  static const std::vector<DoubleArray> all = [] {
    std::vector<DoubleArray> made(3);
    std::mt19937_64 engine(41);
    std::uniform_real_distribution<double> along(430000.0, 440000.0);
    for (DoubleArray& array : made) {
      array.size(1, points);
      for (std::int32_t i = 1; i <= points; ++i) array(i) = along(engine);
    }
    return made;
  }();
  return all[static_cast<std::size_t>(axis)];
}

void extremes(benchmark::State& state) {
  for (auto _ : state) {
    double box[6] = {};
    matrices.MaxMin_3Matriz(coordinates(0), coordinates(1), coordinates(2), box[0], box[1], box[2],
                            box[3], box[4], box[5], false);
    benchmark::DoNotOptimize(box);
  }
}
void extremes_minmax_element(benchmark::State& state) {
  for (auto _ : state) {
    for (int axis = 0; axis < 3; ++axis) {
      const double* values = coordinates(axis).data();
      benchmark::DoNotOptimize(std::minmax_element(values, values + points));
    }
  }
}
void extremes_plain_loop(benchmark::State& state) {
  for (auto _ : state) {
    for (int axis = 0; axis < 3; ++axis) {
      const double* values = coordinates(axis).data();
      double max = values[0];
      double min = values[0];
      for (std::int32_t i = 1; i < points; ++i) {
        if (max < values[i]) max = values[i];
        if (min > values[i]) min = values[i];
      }
      benchmark::DoNotOptimize(max);
      benchmark::DoNotOptimize(min);
    }
  }
}

// There and back, so that the numbers stay what they are.
void sum_of_arrays(benchmark::State& state) {
  DoubleArray own = coordinates(0);
  for (auto _ : state) {
    matrices.Sumar_a_1Matriz_otra(own, coordinates(1));
    matrices.Restar_a_1Matriz_otra(own, coordinates(1));
    benchmark::DoNotOptimize(own.data());
  }
}
void sum_of_arrays_plain_loop(benchmark::State& state) {
  DoubleArray own = coordinates(0);
  const double* other = coordinates(1).data();
  for (auto _ : state) {
    double* values = own.data();
    for (std::int32_t i = 0; i < points; ++i) values[i] = other[i] + values[i];
    benchmark::ClobberMemory();
    for (std::int32_t i = 0; i < points; ++i) values[i] = values[i] - other[i];
    benchmark::ClobberMemory();
  }
}

constexpr std::int32_t most_filtered = 32766;

DoubleArray first_coordinates(int axis) {
  DoubleArray array(0, most_filtered);
  for (std::int32_t i = 1; i <= most_filtered; ++i) array(i) = coordinates(axis)(i);
  return array;
}

// Half of the points stay.
void elevation_filter(benchmark::State& state) {
  const DoubleArray x = first_coordinates(0), y = first_coordinates(1), z = first_coordinates(2);
  const LongArray numbers(0, most_filtered);
  for (auto _ : state) {
    DoubleArray X = x, Y = y, Z = z;
    LongArray index = numbers;
    std::int32_t count = most_filtered;
    matrices.Quita_Puntos_fuera_interv_de_Cotas_con_indice(count, X, Y, Z, index, 435000.0, 0.0);
    benchmark::DoNotOptimize(count);
    state.counters["answers"] = count;
  }
}
void elevation_filter_plain_loop(benchmark::State& state) {
  const DoubleArray x = first_coordinates(0), y = first_coordinates(1), z = first_coordinates(2);
  const LongArray numbers(0, most_filtered);
  for (auto _ : state) {
    DoubleArray X = x, Y = y, Z = z;
    LongArray index = numbers;
    std::int32_t kept = 0;
    for (std::int32_t i = 1; i <= most_filtered; ++i) {
      const double level = Z.data()[i];
      if (level > 435000.0 || level < 0.0) continue;
      ++kept;
      X.data()[kept] = X.data()[i];
      Y.data()[kept] = Y.data()[i];
      Z.data()[kept] = level;
      index.data()[kept] = index.data()[i];
    }
    benchmark::DoNotOptimize(kept);
    state.counters["answers"] = kept;
    for (DoubleArray* array : {&X, &Y, &Z}) array->size_keeping(0, kept);
    index.size_keeping(0, kept);
  }
}

constexpr auto milliseconds = benchmark::kMillisecond;
BENCHMARK(extremes)->Unit(milliseconds);
BENCHMARK(extremes_minmax_element)->Unit(milliseconds);
BENCHMARK(extremes_plain_loop)->Unit(milliseconds);
BENCHMARK(sum_of_arrays)->Unit(milliseconds);
BENCHMARK(sum_of_arrays_plain_loop)->Unit(milliseconds);
BENCHMARK(elevation_filter);
BENCHMARK(elevation_filter_plain_loop);

}  // namespace
