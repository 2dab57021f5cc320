// cloud.h: the points of a sweep.
#pragma once

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "frame/geo_arrays.h"
#include "repeated/box.h"

namespace orv2_geo::repeated {

/// Asks for an element that is needed soon; harmless where there is none.
/// Inlined by force, as everything that does no more than this: as a call without
/// effects it would be left out.
template <class T>
[[gnu::always_inline]] inline void ask_for(const GeoArray<T>& array, std::int32_t index) noexcept {
  __builtin_prefetch(array.row(index, index));
}

/// How many points ahead.
inline constexpr std::int32_t steps_ahead = 64;

/// Of elements that are met in the order of `numbers`: asks for that of a place
/// some steps after i.
template <class... Arrays>
[[gnu::always_inline]] inline void ask_ahead(const LongArray& numbers, std::int32_t i,
                                             std::int32_t last, const Arrays&... arrays) noexcept {
  if (last - i < steps_ahead) return;
  const std::int32_t* const number = numbers.row(i + steps_ahead, i + steps_ahead);
  if (number != nullptr) (ask_for(arrays, *number), ...);
}

/// The coordinates of the points, and the points in X order. Every subscript is
/// checked.
struct Cloud {
  const DoubleArray& X;
  const DoubleArray& Y;
  const DoubleArray& Z;
  const LongArray& Orden;

  std::int32_t point(std::int32_t i) const { return Orden(i); }
  double x(std::int32_t p) const { return X(p); }
  double y(std::int32_t p) const { return Y(p); }
  double z(std::int32_t p) const { return Z(p); }

  template <class Clusters>
  void ahead(std::int32_t, const Clusters&) const noexcept {}
};

/// The coordinates of points of which every subscript was looked at before.
template <bool reads_Z>
class SoundPoints {
 public:
  /// Nothing when one of the points 1 to `last` may be beyond its array.
  static std::optional<SoundPoints> of(const DoubleArray& X, const DoubleArray& Y,
                                       const DoubleArray& Z, std::int32_t last) noexcept {
    const SoundPoints sound(X, Y, Z, last);
    if (sound.x_ == nullptr || sound.y_ == nullptr) return std::nullopt;
    if (reads_Z && sound.z_ == nullptr) return std::nullopt;
    return sound;
  }

  double x(std::int32_t p) const noexcept { return x_[p - 1]; }
  double y(std::int32_t p) const noexcept { return y_[p - 1]; }
  double z(std::int32_t p) const noexcept { return z_[p - 1]; }

  [[gnu::always_inline]] void ask_for_x(std::int32_t p) const noexcept {
    __builtin_prefetch(x_ + (p - 1));
  }
  [[gnu::always_inline]] void ask_beside_x(std::int32_t p) const noexcept {
    __builtin_prefetch(y_ + (p - 1));
    if constexpr (reads_Z) __builtin_prefetch(z_ + (p - 1));
  }

  std::span<const double> all_y() const noexcept { return {y_, points_}; }
  std::span<const double> all_z() const noexcept { return {z_, reads_Z ? points_ : 0}; }

 private:
  SoundPoints(const DoubleArray& X, const DoubleArray& Y, const DoubleArray& Z,
              std::int32_t last) noexcept
      : x_(X.row(1, last)),
        y_(Y.row(1, last)),
        z_(Z.row(1, last)),
        points_(static_cast<std::size_t>(last)) {}

  const double* x_;
  const double* y_;
  const double* z_;
  std::size_t points_;
};

/// Whether none is NaN or further from 0 than that.
inline bool are_tame(std::span<const double> values) noexcept {
  // Not 0 for NaN too: a double's size compares like its bits.
  const auto is_over = [](double value) {
    return (std::bit_cast<std::uint64_t>(tame) - std::bit_cast<std::uint64_t>(std::abs(value))) >>
           63;
  };
  constexpr std::size_t some = 16;  // at a time, which is a loop without a branch
  bool all = true;
  for (; values.size() >= some; values = values.subspan(some)) {
    std::uint64_t over = 0;
    for (std::size_t k = 0; k < some; ++k) over |= is_over(values[k]);
    if (over != 0) return false;
  }
  for (const double value : values) all &= is_over(value) == 0;
  return all;
}

/// A cloud of which every subscript was looked at before. In X order the points
/// stand anywhere in their arrays, so some are asked for ahead of their turn.
template <bool reads_Z>
class SoundCloud : public SoundPoints<reads_Z> {
 public:
  /// Nothing when a subscript may be beyond its array. The order may have more
  /// points than the sweep, and each of them may stand anywhere in it.
  static std::optional<SoundCloud> of(const Cloud& cloud, std::int32_t points) noexcept {
    const std::int32_t all = cloud.Orden.upper();
    const std::int32_t* const order = cloud.Orden.row(1, all);
    const auto sound = SoundPoints<reads_Z>::of(cloud.X, cloud.Y, cloud.Z, all);
    if (points > all || order == nullptr || !sound) return std::nullopt;
    return SoundCloud(*sound, order, all);
  }

  std::int32_t point(std::int32_t i) const noexcept { return order_[i - 1]; }

  template <class Clusters>
  [[gnu::always_inline]] void ahead(std::int32_t i, const Clusters& clusters) const noexcept {
    if (last_ - i < steps_ahead) return;
    const std::int32_t p = point(i + steps_ahead);
    this->ask_for_x(p);
    this->ask_beside_x(p);
    clusters.ahead(p);
  }

 private:
  SoundCloud(const SoundPoints<reads_Z>& sound, const std::int32_t* order,
             std::int32_t last) noexcept
      : SoundPoints<reads_Z>(sound), order_(order), last_(last) {}

  const std::int32_t* order_;
  std::int32_t last_;
};

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
