// points.h: the points of a sweep.
#pragma once

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "orv2_geo/frame/geo_arrays.h"
#include "orv2_geo/platform/prefetch.h"
#include "orv2_geo/repeated/box.h"

namespace orv2_geo::repeated {

template <class Array>
[[gnu::always_inline]] inline void prefetch_element(const Array& array,
                                                    std::int32_t index) noexcept {
  prefetch(array.row(index, index));
}

/// How many points ahead: some hundred nanoseconds of work, as long as memory takes.
inline constexpr std::int32_t prefetch_distance = 64;

/// Of elements that are read in the order of `numbers`: prefetches those of a place
/// some steps after i.
template <class Numbers, class... Arrays>
[[gnu::always_inline]] inline void prefetch_after(const Numbers& numbers, std::int32_t i,
                                                  std::int32_t last,
                                                  const Arrays&... arrays) noexcept {
  if (last - i < prefetch_distance) return;
  const std::int32_t* const number = numbers.row(i + prefetch_distance, i + prefetch_distance);
  if (number != nullptr) (prefetch_element(arrays, *number), ...);
}

struct Coordinates {
  const DoubleArray& X;
  const DoubleArray& Y;
  const DoubleArray& Z;
};

/// Points in X order. Every subscript is checked.
class CheckedPoints {
 public:
  CheckedPoints(const Coordinates& at, const LongArray& Orden) noexcept : at_(at), Orden_(Orden) {}

  std::int32_t point(std::int32_t i) const { return Orden_(i); }
  double x(std::int32_t p) const { return at_.X(p); }
  double y(std::int32_t p) const { return at_.Y(p); }
  double z(std::int32_t p) const { return at_.Z(p); }

  template <class Sink>
  void prefetch_after(std::int32_t, const Sink&) const noexcept {}

 private:
  Coordinates at_;
  const LongArray& Orden_;
};

/// The coordinates of points whose subscripts were all checked before.
template <bool reads_Z>
class KnownPoints {
 public:
  /// Nothing when one of the points 1 to `last` may be beyond its array.
  static std::optional<KnownPoints> of(const Coordinates& at, std::int32_t last) noexcept {
    const KnownPoints known(at, last);
    if (known.x_ == nullptr || known.y_ == nullptr) return std::nullopt;
    if (reads_Z && known.z_ == nullptr) return std::nullopt;
    return known;
  }

  double x(std::int32_t p) const noexcept { return x_[p - 1]; }
  double y(std::int32_t p) const noexcept { return y_[p - 1]; }
  double z(std::int32_t p) const noexcept { return z_[p - 1]; }

  [[gnu::always_inline]] void prefetch_x(std::int32_t p) const noexcept { prefetch(x_ + (p - 1)); }
  [[gnu::always_inline]] void prefetch_yz(std::int32_t p) const noexcept {
    prefetch(y_ + (p - 1));
    if constexpr (reads_Z) prefetch(z_ + (p - 1));
  }

  std::span<const double> all_y() const noexcept { return {y_, count_}; }
  std::span<const double> all_z() const noexcept { return {z_, reads_Z ? count_ : 0}; }

 private:
  KnownPoints(const Coordinates& at, std::int32_t last) noexcept
      : x_(at.X.row(1, last)),
        y_(at.Y.row(1, last)),
        z_(at.Z.row(1, last)),
        count_(static_cast<std::size_t>(last)) {}

  const double* x_;
  const double* y_;
  const double* z_;
  std::size_t count_;
};

/// Points in X order whose subscripts were all checked before. In that order they
/// stand anywhere in their arrays, so they are prefetched.
template <bool reads_Z>
class KnownPointsInOrder : public KnownPoints<reads_Z> {
 public:
  /// Nothing when a subscript may be beyond its array. The order may have more
  /// points than the sweep, and each of them may stand anywhere in it.
  static std::optional<KnownPointsInOrder> of(const Coordinates& at, const LongArray& Orden,
                                              std::int32_t points) noexcept {
    const std::int32_t all = Orden.upper();
    const std::int32_t* const order = Orden.row(1, all);
    const auto known = KnownPoints<reads_Z>::of(at, all);
    if (points > all || order == nullptr || !known) return std::nullopt;
    return KnownPointsInOrder(*known, order, all);
  }

  std::int32_t point(std::int32_t i) const noexcept { return order_[i - 1]; }

  template <class Sink>
  [[gnu::always_inline]] void prefetch_after(std::int32_t i, const Sink& sink) const noexcept {
    if (last_ - i < prefetch_distance) return;
    const std::int32_t p = point(i + prefetch_distance);
    this->prefetch_x(p);
    this->prefetch_yz(p);
    sink.prefetch_for(p);
  }

 private:
  KnownPointsInOrder(const KnownPoints<reads_Z>& known, const std::int32_t* order,
                     std::int32_t last) noexcept
      : KnownPoints<reads_Z>(known), order_(order), last_(last) {}

  const std::int32_t* order_;
  std::int32_t last_;
};

/// Whether none is NaN or further from 0 than `tame`.
inline bool are_tame(std::span<const double> values) noexcept {
  // The bits of a double without its sign grow with its size, and those of NaN are
  // beyond all: the difference is negative, its highest bit 1, for what is not tame.
  const auto is_over = [](double value) {
    return (std::bit_cast<std::uint64_t>(tame) - std::bit_cast<std::uint64_t>(std::abs(value))) >>
           63;
  };
  constexpr std::size_t block = 16;  // a loop without a branch
  bool all = true;
  for (; values.size() >= block; values = values.subspan(block)) {
    std::uint64_t over = 0;
    for (std::size_t k = 0; k < block; ++k) over |= is_over(values[k]);
    if (over != 0) return false;
  }
  for (const double value : values) all &= is_over(value) == 0;
  return all;
}

/// X, Y or Z of a point; only that one is read.
template <class Points>
double coordinate(const Points& points, std::int32_t p, std::size_t axis) {
  return axis == 0 ? points.x(p) : axis == 1 ? points.y(p) : points.z(p);
}

/// What a box over so many axes compares of a point.
template <std::size_t axes, class Points>
Spot<axes> spot(const Points& points, std::int32_t p) {
  Spot<axes> at;
  for (std::size_t axis = 0; axis < axes; ++axis) at[axis] = coordinate(points, p, axis);
  return at;
}

}  // namespace orv2_geo::repeated
