// arrays_support.h: arrays for the tests of the array toolkit.
#pragma once

#include <vector>

#include "orv2_geo/frame/geo_arrays.h"

namespace orv2_geo::testing_support {

template <class T, class Value>
GeoArray<T> array_of(std::int32_t lower, const std::vector<Value>& values) {
  GeoArray<T> array;
  array.make(lower, static_cast<std::uint32_t>(values.size()));
  for (std::size_t i = 0; i < values.size(); ++i) array.data()[i] = static_cast<T>(values[i]);
  return array;
}

inline DoubleArray doubles(std::int32_t lower, const std::vector<double>& values) {
  return array_of<double>(lower, values);
}

template <class T>
std::vector<T> elements(const GeoArray<T>& array) {
  return {array.data(), array.data() + array.count()};
}

}  // namespace orv2_geo::testing_support
