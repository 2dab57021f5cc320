// x_order.h: the points in X order.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "frame/geo_arrays.h"
#include "repeated/marks.h"
#include "sorting/packed_doubles.h"

namespace orv2_geo::repeated {

/// The order of points by X. It is that of the X at the start, whatever a host does
/// to them before it is asked for, and what can fail of its sort fails then.
class XOrder {
 public:
  /// Of the points 1 to nPtos. Failures of Ordena_Double_Index_Array.
  XOrder(const DoubleArray& X, std::int32_t nPtos);

  /// How many points.
  std::int32_t points() const noexcept { return points_; }

  /// Whether the points are words() with their keys, in the order of their numbers.
  bool is_packed() const noexcept { return packed_.has_value(); }
  const sorting::Packing& packing() const noexcept { return packed_->packing(); }

  /// Marks the points where X still has the keys of the words. Of points that are
  /// packed.
  bool mark(const DoubleArray& X, std::span<const double> Y, Marks& marks) noexcept;

  /// Puts the words in X order. False, with the marks lost, where put_in_order()
  /// alone can.
  bool sort_words() noexcept { return packed_->sort(); }

  /// The first point is 0.
  std::span<std::uint64_t> words() noexcept { return packed_->words(); }

  /// From then on numbers() are in order, and no words are left. Failure 7.
  void put_in_order();

  /// Subscripts 0 to points(): the points, or before put_in_order() room for as
  /// many. Failure 7.
  LongArray& numbers();

 private:
  std::int32_t points_;
  std::optional<sorting::PackedDoubles> packed_;  // until numbers() are in order
  LongArray Orden_;                               // made when asked for
};

}  // namespace orv2_geo::repeated
