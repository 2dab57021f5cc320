// arrays.h: arrays made of lists, and lists of their elements.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "orv2_geo/frame/bool.h"
#include "orv2_geo/frame/geo_arrays.h"
#include "orv2_geo/frame/run_failure.h"

namespace orv2_geo::testing_support {

/// A host's memory, which stays as it is.
class FixedMemory final : public ArrayOwner {
 public:
  void* resize(std::int32_t, std::uint32_t, bool) override { raise(failure::array_locked); }
};

/// With its elements at the subscripts from `lower` on.
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
inline LongArray longs(std::int32_t lower, const std::vector<std::int32_t>& values) {
  return array_of<std::int32_t>(lower, values);
}
inline StringArray strings(std::int32_t lower, const std::vector<Text>& values) {
  return array_of<Text>(lower, values);
}

/// The numbers from `first` to `last`, at these subscripts.
inline LongArray counting(std::int32_t first, std::int32_t last) {
  LongArray numbers(first, last);
  for (std::int32_t i = first; i <= last; ++i) numbers(i) = i;
  return numbers;
}

template <class T>
std::vector<T> elements(const GeoArray<T>& array) {
  return {array.data(), array.data() + array.count()};
}
inline std::vector<bool> elements(const GeoArray<Bool>& array) {
  return std::vector<bool>(array.data(), array.data() + array.count());
}

inline std::vector<std::string> texts(const StringArray& array) {
  std::vector<std::string> all;
  for (const Text& text : elements(array)) all.push_back(text.to_utf8());
  return all;
}

}  // namespace orv2_geo::testing_support
