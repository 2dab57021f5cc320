// sweep.h: what the routines of the repeated-point engine share: tolerance, box,
// progress and the sweep over the points in X order.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "frame/checked_math.h"
#include "frame/counted.h"
#include "frame/geo_arrays.h"
#include "frame/progress_sink.h"
#include "platform/event_pump.h"
#include "repeated/x_order.h"

namespace orv2_geo::repeated {

/// What the engine's failures are signed with.
inline constexpr char source[] = "Orv2_Geo.mOrdena";

/// In the unit of the coordinates: what a precision of 0 stands for.
inline constexpr double default_tolerance = 0.0002;

/// Only an exact 0 asks for the default; a negative precision stays.
inline double tolerance(double precision) {
  return Checked(precision) == 0.0 ? default_tolerance : precision;
}

/// The caller's progress indicator, set up for a sweep over so many points.
class Progress {
 public:
  /// Failure 11 for no points, before the indicator is touched.
  Progress(const std::int32_t& points, const ObjectRef& indicator)
      : indicator_(indicator), step_(to_i32(floor(Checked(32000.0) / points) + 1.0)) {
    indicator_.visible(true);
    indicator_.min(0);
    indicator_.max(Checked(points) / step_);
  }

  /// Comes before the i-th point is examined.
  void step(std::int32_t i) const {
    // Where i / 1000 is not whole, the test that follows cannot hold.
    if (i % 1000 == 0) [[unlikely]]
      step_at_thousand(i);
  }

  void visible() const { indicator_.visible(true); }

 private:
  // The test holds for no point at all: on purpose the indicator stays where it
  // was set up.
  [[gnu::noinline]] void step_at_thousand(std::int32_t i) const {
    if (floor(Checked(i) / 100.0) == Checked(i) / 1000.0) show(i);
  }

  void show(std::int32_t i) const {
    yield_to_events();
    indicator_.value(floor(Checked(i) / step_));
  }

  ProgressSink indicator_;
  std::int32_t step_;
};

/// Coordinates that a box compares: X and Y, or all three.
template <std::size_t axes>
using Spot = std::array<double, axes>;

/// The open box about an anchor: per axis strictly less than the tolerance away,
/// so that a point exactly at the tolerance is outside. No distance: diagonally
/// it reaches further.
template <std::size_t axes>
class Box {
 public:
  explicit Box(double tolerance) noexcept : tolerance_(tolerance) {}

  void move_to(const Spot<axes>& anchor) noexcept {
    anchor_ = anchor;
    finite_ = true;
#pragma GCC unroll 3
    for (std::size_t axis = 0; axis < axes; ++axis) {
      low_[axis] = anchor[axis] - tolerance_;
      high_[axis] = anchor[axis] + tolerance_;
      finite_ = finite_ && checked::is_finite(low_[axis]) && checked::is_finite(high_[axis]);
    }
  }

  /// Comes before a comparison: an anchor may have bounds that overflow as long
  /// as nothing is compared with it. Failure 6.
  void check_bounds() const {
    if (!finite_) [[unlikely]]
      check_each_bound();
  }

  /// Failure 6 for NaN.
  bool holds(const Spot<axes>& spot) const {
    bool inside = true;
#pragma GCC unroll 3
    for (std::size_t axis = 0; axis < axes; ++axis) {
      const bool above = Checked(low_[axis]) < spot[axis];
      const bool below = Checked(spot[axis]) < high_[axis];
      inside = inside && above && below;
    }
    return inside;
  }

 private:
  [[gnu::noinline, gnu::cold]] void check_each_bound() const {
    for (const double at : anchor_) {
      static_cast<void>(Checked(Checked(at) - tolerance_));
      static_cast<void>(Checked(Checked(at) + tolerance_));
    }
  }

  double tolerance_;
  Spot<axes> anchor_{};
  Spot<axes> low_{};
  Spot<axes> high_{};
  bool finite_ = true;
};

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

/// A cloud of which every subscript was looked at before. In X order the points
/// stand anywhere in their arrays, so some are asked for ahead of their turn.
template <bool reads_Z>
class SoundCloud {
 public:
  /// Nothing when a subscript may be beyond its array. The order may have more
  /// points than the sweep, and each of them may stand anywhere in it.
  static std::optional<SoundCloud> of(const Cloud& cloud, std::int32_t points) noexcept {
    const std::int32_t all = cloud.Orden.upper();
    const SoundCloud sound(cloud, all);
    if (points > all || sound.order_ == nullptr || sound.x_ == nullptr) return std::nullopt;
    if (sound.y_ == nullptr || (reads_Z && sound.z_ == nullptr)) return std::nullopt;
    return sound;
  }

  std::int32_t point(std::int32_t i) const noexcept { return order_[i - 1]; }
  double x(std::int32_t p) const noexcept { return x_[p - 1]; }
  double y(std::int32_t p) const noexcept { return y_[p - 1]; }
  double z(std::int32_t p) const noexcept { return z_[p - 1]; }

  template <class Clusters>
  [[gnu::always_inline]] void ahead(std::int32_t i, const Clusters& clusters) const noexcept {
    if (last_ - i < steps_ahead) return;
    const std::int32_t p = point(i + steps_ahead);
    __builtin_prefetch(x_ + (p - 1));
    ask_beside_x(p);
    clusters.ahead(p);
  }
  [[gnu::always_inline]] void ask_beside_x(std::int32_t p) const noexcept {
    __builtin_prefetch(y_ + (p - 1));
    if constexpr (reads_Z) __builtin_prefetch(z_ + (p - 1));
  }

  /// Whether no bound of a box can overflow and nothing is NaN. X has its keys.
  bool is_tame(double tolerance) const noexcept {
    if (!are_tame({&tolerance, 1}) || !are_tame({y_, points()})) return false;
    return !reads_Z || are_tame({z_, points()});
  }

 private:
  // Some at a time, which is a loop without a branch.
  static bool are_tame(std::span<const double> values) noexcept {
    constexpr std::size_t some = 16;
    bool all = true;
    for (; values.size() >= some; values = values.subspan(some)) {
      std::uint64_t over = 0;
      for (std::size_t k = 0; k < some; ++k) over |= is_over(values[k]);
      if (over != 0) return false;
    }
    for (const double value : values) all &= is_over(value) == 0;
    return all;
  }
  // Not 0 for NaN too: a double's size compares like its bits.
  static std::uint64_t is_over(double value) noexcept {
    return (std::bit_cast<std::uint64_t>(1e300) - std::bit_cast<std::uint64_t>(std::abs(value))) >> 63;
  }
  std::size_t points() const noexcept { return static_cast<std::size_t>(last_); }

  SoundCloud(const Cloud& cloud, std::int32_t last) noexcept
      : order_(cloud.Orden.row(1, last)),
        x_(cloud.X.row(1, last)),
        y_(cloud.Y.row(1, last)),
        z_(cloud.Z.row(1, last)),
        last_(last) {}

  const std::int32_t* order_;
  const double* x_;
  const double* y_;
  const double* z_;
  std::int32_t last_;
};

/// What a box over so many axes compares of a point.
template <std::size_t axes, class Points>
Spot<axes> spot(const Points& points, std::int32_t p) {
  const double x = points.x(p);
  const double y = points.y(p);
  if constexpr (axes == 2) {
    return {x, y};
  } else {
    return {x, y, points.z(p)};
  }
}

template <class Points, class Clusters>
std::int32_t walk(std::int32_t nPtos, const Points& points, double tolerance,
                  const Progress& progress, Clusters clusters) {
  constexpr std::size_t axes = Clusters::axes;
  Box<axes> box(tolerance);
  const std::int32_t first = points.point(1);
  clusters.first(first, points);
  box.move_to(spot<axes>(points, first));
  for (const std::int32_t i : counted(2, nPtos)) {
    const std::int32_t p = points.point(i);
    points.ahead(i, clusters);
    progress.step(i);
    box.check_bounds();
    const Spot<axes> at = spot<axes>(points, p);
    if (box.holds(at)) {
      clusters.joined(p, points);
    } else {
      clusters.opened(p, points);
      box.move_to(at);
    }
    clusters.placed(i, p);
  }
  return clusters.found();
}

/// What of two keys' distance tells that their points are out of each other's box.
class Reach {
 public:
  Reach(double tolerance, const sorting::Packing& packing) noexcept
      : positions_(packing.position_mask()),
        beyond_(words(tolerance * millionths + margin, packing.position_bits)),
        within_(words(tolerance * millionths - margin, packing.position_bits)) {}

  /// Of words in X order. Their keys never descend, but words of one key may.
  bool is_beyond(std::uint64_t before, std::uint64_t word) const noexcept {
    return (word | positions_) - before > beyond_;
  }

  /// Whether the points are surely within the tolerance in X.
  bool is_within(std::uint64_t before, std::uint64_t word) const noexcept {
    return (word | positions_) - before < within_;
  }

 private:
  // Keys are whole millionths, half a millionth from X at most. Some more makes up
  // for the rounding of the bounds, for the millionth that is left out at zero and
  // for positions below the keys.
  static constexpr double millionths = 1e6;
  static constexpr double margin = 8.0;

  // So many keys as words, rounded down to whole ones; no more than the most.
  static std::uint64_t words(double keys, int position_bits) noexcept {
    constexpr double most = 1e15;
    const auto whole = static_cast<std::uint64_t>(std::clamp(keys, 0.0, most));
    const bool fits = std::bit_width(whole) + position_bits <= 64;
    return fits ? whole << position_bits : ~std::uint64_t{0};
  }

  std::uint64_t positions_;
  std::uint64_t beyond_;
  std::uint64_t within_;
};

/// Points that come with their keys, in X order, of coordinates with which nothing
/// can fail. Of a point out of reach of the one before, and so of that one's anchor
/// too, nothing is read, and of others no X where the keys tell enough.
template <class Points>
class KeyedPoints {
 public:
  KeyedPoints(std::span<const std::uint64_t> words, const sorting::Packing& packing,
              const Points& points, double tolerance) noexcept
      : words_(words),
        packing_(packing),
        points_(points),
        reach_(tolerance, packing),
        tolerance_(tolerance) {}

  template <class Clusters>
  std::int32_t walk(const Progress& progress, Clusters clusters) const {
    std::size_t anchor = 0;
    clusters.first(point(anchor), points_);
    const auto open_at = [&](std::size_t k) {
      anchor = k;
      clusters.opened(point(k), points_);
      clusters.placed(place(k), point(k));
    };
    const auto open = [&](std::size_t k) {
      progress.step(place(k));
      open_at(k);
    };
    const auto join = [&](std::size_t k) {
      clusters.joined(point(k), points_);
      clusters.placed(place(k), point(k));
    };
    std::array<Places, 2> near;
    list_near(1, clusters, near[0]);
    std::size_t k = 1;
    for (std::size_t turn = 0; k < words_.size(); ++turn) {
      const std::size_t end = std::min(k + stretch, words_.size());
      list_near(end, clusters, near[(turn + 1) % 2]);
      for (const std::size_t n : near[turn % 2].all()) {
        while (k < n) open(k++);
        progress.step(place(k));
        if (is_in_box<Clusters::axes>(anchor, k)) {
          join(k++);
        } else {
          open_at(k++);
        }
      }
      while (k < end) open(k++);
    }
    return clusters.found();
  }

 private:
  // Points are asked for a stretch ahead of their turn.
  static constexpr std::size_t stretch = 64;

  // Some places of a stretch, listed without a branch.
  class Places {
   public:
    void clear() noexcept { count_ = 0; }
    void add_if(bool listed, std::size_t k) noexcept {
      at_[count_] = k;
      count_ += static_cast<std::size_t>(listed);
    }
    std::span<const std::size_t> all() const noexcept { return {at_.data(), count_}; }

   private:
    std::array<std::size_t, stretch> at_;
    std::size_t count_ = 0;
  };

  std::int32_t point(std::size_t k) const noexcept {
    return static_cast<std::int32_t>(packing_.position(words_[k])) + 1;
  }
  // Places in the order count from 1.
  static std::int32_t place(std::size_t k) noexcept { return static_cast<std::int32_t>(k + 1); }

  // The points in reach of the one before; asks for what will be read of them.
  template <class Clusters>
  [[gnu::always_inline]] void list_near(std::size_t start, const Clusters& clusters,
                                        Places& near) const noexcept {
    near.clear();
    const std::size_t end = std::min(start + stretch, words_.size());
    for (std::size_t k = start; k < end; ++k) {
      clusters.ahead(point(k));
      near.add_if(!reach_.is_beyond(words_[k - 1], words_[k]), k);
    }
    for (const std::size_t k : near.all()) {
      points_.ask_beside_x(point(k - 1));
      points_.ask_beside_x(point(k));
      clusters.ahead_near(point(k));
    }
  }

  // Whether the box of one holds another. Nothing can fail, and there is no branch:
  // it is a matter of chance.
  template <std::size_t axes>
  bool is_in_box(std::size_t anchor, std::size_t k) const noexcept {
    const std::int32_t a = point(anchor);
    const std::int32_t p = point(k);
    bool inside = is_between(points_.y(a), points_.y(p));
    if constexpr (axes == 3) inside &= is_between(points_.z(a), points_.z(p));
    if (reach_.is_within(words_[anchor], words_[k])) return inside;
    return inside && is_between(points_.x(a), points_.x(p));
  }
  bool is_between(double anchor, double at) const noexcept {
    const bool above = anchor - tolerance_ < at;
    const bool below = at < anchor + tolerance_;
    return above & below;
  }

  std::span<const std::uint64_t> words_;
  const sorting::Packing& packing_;
  const Points& points_;
  Reach reach_;
  double tolerance_;
};

struct Coordinates {
  const DoubleArray& X;
  const DoubleArray& Y;
  const DoubleArray& Z;
};

/// Walks the points in X order and tells `clusters` of each: first(p) of the
/// very first, opened(p) of one outside the box of the cluster at hand, which
/// becomes the anchor of the next, joined(p) of one inside, and after either
/// placed(i, p), i being its place in the order; ahead(p) may come some points
/// before. What they write to order.numbers() does not disturb it up to place i.
/// Answers with how many clusters there are.
template <class Clusters>
std::int32_t sweep(std::int32_t nPtos, const Coordinates& at, XOrder& order, double tolerance,
                   const Progress& progress, const Clusters& clusters) {
  const Cloud cloud = {at.X, at.Y, at.Z, order.numbers()};
  const auto sound = SoundCloud<Clusters::reads_Z>::of(cloud, nPtos);
  if (sound && nPtos == order.points() && sound->is_tame(tolerance)) {
    if (const auto words = order.keyed(at.X); !words.empty()) {
      const KeyedPoints keyed(words, order.packing(), *sound, tolerance);
      return keyed.walk(progress, clusters);
    }
  }
  order.put_in_order();
  if (sound) return walk(nPtos, *sound, tolerance, progress, clusters);
  return walk(nPtos, cloud, tolerance, progress, clusters);
}

}  // namespace orv2_geo::repeated
