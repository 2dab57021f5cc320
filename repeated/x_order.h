// x_order.h: the points in X order.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "frame/geo_arrays.h"
#include "sorting/packed_doubles.h"

namespace orv2_geo::repeated {

/// The order of points by X. It is that of the X at the start, whatever a host does
/// to them before it is asked for, and what can fail of its sort fails then.
class XOrder {
 public:
  /// Of the points 1 to nPtos. Failures of Ordena_Double_Index_Array.
  XOrder(const DoubleArray& X, std::int32_t nPtos);

  /// How many points.
  std::int32_t points() const { return Orden_.upper(); }

  /// The points with their keys, in order, the first point being 0: where X still
  /// has these keys and the order can be told with them. To be asked at most once,
  /// and instead of put_in_order().
  std::span<const std::uint64_t> keyed(const DoubleArray& X) noexcept;
  const sorting::Packing& packing() const noexcept { return packed_->packing(); }

  /// From then on numbers() are in order.
  void put_in_order() noexcept;

  /// Subscripts 0 to points(): the points, or room for as many.
  LongArray& numbers() noexcept { return Orden_; }

 private:
  LongArray Orden_;
  std::optional<sorting::PackedDoubles> packed_;  // until numbers() are in order
};

}  // namespace orv2_geo::repeated
