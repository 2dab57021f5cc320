// One member with ten by-reference parameters (two vertical lines: it looks at
// four coordinates and answers false), so that the call is what is measured.
#include <benchmark/benchmark.h>

#include "orv2_geo/orv2_geo.h"
#include "orv2_geo/orv2_geo.hpp"

namespace {

struct Variables {
  double v[10] = {1.0, 0.0, 1.0, 5.0, 2.0, 0.0, 2.0, 5.0, 0.0, 0.0};
};

void call_direct(benchmark::State& state) {
  const orv2_geo::cgeo_Algorismos algorithms;
  Variables a;
  for (auto _ : state) {
    benchmark::DoNotOptimize(a);
    benchmark::DoNotOptimize(algorithms.Intersec_XY_2lineas(
        a.v[0], a.v[1], a.v[2], a.v[3], a.v[4], a.v[5], a.v[6], a.v[7], a.v[8], a.v[9]));
  }
}

// The argument array is built for each call, as a host's glue would.
template <class Call>
void call_through_c(benchmark::State& state, Call call) {
  orv2_handle object = 0;
  if (orv2_create("Orv2_Geo.cgeo_Algorismos", &object) != 0) return state.SkipWithError("create");
  Variables a;
  for (auto _ : state) {
    benchmark::DoNotOptimize(a);
    orv2_value arguments[10];
    for (int i = 0; i < 10; ++i) {
      arguments[i].tag = ORV2_F64 | ORV2_BYREF;
      arguments[i].as.pointer = &a.v[i];
    }
    orv2_value result;
    if (call(object, arguments, &result) != 0) return state.SkipWithError("call");
    benchmark::DoNotOptimize(result);
  }
  orv2_release(object);
}

void call_by_position(benchmark::State& state) {
  size_t position = 3;
  call_through_c(state, [&](orv2_handle object, orv2_value* arguments, orv2_value* result) {
    return orv2_call(object, position, arguments, 10, result);
  });
}

void call_by_name(benchmark::State& state) {
  call_through_c(state, [](orv2_handle object, orv2_value* arguments, orv2_value* result) {
    return orv2_call_name(object, "Intersec_XY_2lineas", arguments, 10, result);
  });
}

void call_by_name_in_capitals(benchmark::State& state) {
  call_through_c(state, [](orv2_handle object, orv2_value* arguments, orv2_value* result) {
    return orv2_call_name(object, "INTERSEC_XY_2LINEAS", arguments, 10, result);
  });
}

BENCHMARK(call_direct);
BENCHMARK(call_by_position);
BENCHMARK(call_by_name);
BENCHMARK(call_by_name_in_capitals);

}  // namespace
