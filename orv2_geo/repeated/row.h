// row.h: elements of an array whose subscripts were all checked before.
#pragma once

#include <cstdint>

#include "orv2_geo/frame/geo_arrays.h"

namespace orv2_geo::repeated {

/// The elements 1 to `last` of an array, for a loop in which nobody resizes it: where they
/// are is looked up once, and not again after each write to another array.
template <class T>
class Row {
 public:
  template <class Array>
  Row(Array& array, std::int32_t last) noexcept : elements_(array.row(1, last)) {}

  /// Whether all of them can be reached. Else nothing of it is to be used.
  bool is_there() const noexcept { return elements_ != nullptr; }

  T& operator()(std::int32_t index) const noexcept { return elements_[index - 1]; }

  /// As of the array.
  T* row(std::int32_t first, std::int32_t) const noexcept { return elements_ + (first - 1); }

 private:
  T* elements_;
};

template <class T>
Row(GeoArray<T>&, std::int32_t) -> Row<T>;
template <class T>
Row(const GeoArray<T>&, std::int32_t) -> Row<const T>;

/// Runs the work on rows of those elements where all are there, else on the arrays
/// themselves, which check each access.
template <class Work, class... Arrays>
decltype(auto) on_rows_or_arrays(std::int32_t last, Work&& work, Arrays&... arrays) {
  if ((Row(arrays, last).is_there() && ...)) return work(Row(arrays, last)...);
  return work(arrays...);
}

}  // namespace orv2_geo::repeated
