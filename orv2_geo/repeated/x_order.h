// x_order.h: the points in X order.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "orv2_geo/frame/geo_arrays.h"
#include "orv2_geo/repeated/marks.h"
#include "orv2_geo/sorting/double_order.h"

namespace orv2_geo::repeated {

/// The order of points by X. Failures of the sort come when it is made. The order is
/// that of the X which the points have then: a host that changes X later, in the
/// middle of a call, does not change it.
class XOrder {
 public:
  /// Of the points 1 to nPtos. Failures of Ordena_Double_Index_Array.
  XOrder(const DoubleArray& X, std::int32_t nPtos);

  /// How many points.
  std::int32_t points() const noexcept { return points_; }

  /// Whether the points are words() with their keys, in the order of their numbers.
  bool has_words() const noexcept { return words_.has_value(); }
  const sorting::WordLayout& layout() const noexcept { return words_->layout(); }

  /// Marks the points where X still has the keys of the words. Of points that have
  /// words.
  bool mark(const DoubleArray& X, std::span<const double> Y, Marks& marks) noexcept;

  /// Puts the words in X order. False, with the marks lost, where put_in_order()
  /// alone can.
  bool sort_words() noexcept { return words_->sort(); }

  /// The first point is 0.
  std::span<std::uint64_t> words() noexcept { return words_->words(); }

  /// From then on numbers() are in order, and no words are left. Failure 7.
  void put_in_order();

  /// Subscripts 0 to points(): the points, or before put_in_order() zeros. Failure 7.
  LongArray& numbers();

 private:
  std::int32_t points_;
  std::optional<sorting::DoubleOrder> words_;  // until numbers() are in order
  LongArray Orden_;                            // made when asked for
};

}  // namespace orv2_geo::repeated
