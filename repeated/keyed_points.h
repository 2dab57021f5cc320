// keyed_points.h: points in X order with the keys of that order.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>

#include "repeated/marks.h"
#include "repeated/progress.h"
#include "sorting/packed_sort.h"

namespace orv2_geo::repeated {

/// What the distance of two keys tells of the box in X.
class Reach {
 public:
  Reach(double tolerance, const sorting::Packing& packing) noexcept
      : below_(packing.mask_below_number()),
        beyond_(words(tolerance * millionths + margin, packing.below_number())),
        within_(words(tolerance * millionths - margin, packing.below_number())) {}

  /// Whether the points are surely a tolerance or more apart. Of words in X order:
  /// their keys never descend, but words of one key may.
  bool is_beyond(std::uint64_t before, std::uint64_t word) const noexcept {
    return (word | below_) - before > beyond_;
  }

  /// Whether they are surely less apart.
  bool is_within(std::uint64_t before, std::uint64_t word) const noexcept {
    return (word | below_) - before < within_;
  }

 private:
  // Keys are whole millionths, half a millionth and a rounding from X. The margin
  // makes up for that twice, for the rounding of the bounds, for the millionth that
  // is left out at zero and for the positions below the keys.
  static constexpr double millionths = 1e6;
  static constexpr double margin = 8.0;

  // So many keys as words, rounded down to whole ones; no more than the most.
  static std::uint64_t words(double keys, int bits_below) noexcept {
    constexpr double most = 1e15;
    const auto whole = static_cast<std::uint64_t>(std::clamp(keys, 0.0, most));
    const bool fits = std::bit_width(whole) + bits_below <= 64;
    return fits ? whole << bits_below : ~std::uint64_t{0};
  }

  std::uint64_t below_;
  std::uint64_t beyond_;
  std::uint64_t within_;
};

/// Points that come with their keys, in X order, of coordinates with which nothing
/// can fail. Of a point out of reach of the one before, and so of that one's anchor
/// too, nothing is read, and of others no X where the keys tell enough. Marks tell of
/// most points on one X that they are out of reach in Y.
template <class Points>
class KeyedPoints {
 public:
  KeyedPoints(std::span<const std::uint64_t> words, const sorting::Packing& packing,
              const Marks& marks, const Points& points, double tolerance) noexcept
      : words_(words),
        packing_(packing),
        marks_(marks),
        points_(points),
        reach_(tolerance, packing),
        tolerance_(tolerance) {}

  /// Tells the clusters of each point, see Sweep. As many of the words, from the first
  /// on, as points have joined are not read again.
  template <class Clusters>
  std::int32_t walk(const Progress& progress, Clusters clusters) const {
    clusters.first(point(0), points_);
    const auto point_at = [this](std::size_t k) { return point(k); };
    std::array<Places, 2> near;
    std::size_t k = 1;  // the first that the clusters have not been told of
    std::size_t end = end_of_stretch(k);
    list_near(k, end, clusters, near[0]);
    std::uint64_t anchor = words_[0];
    std::size_t last_joined = 0;
    for (std::size_t turn = 0; k < words_.size(); ++turn) {
      const std::size_t next_end = end_of_stretch(end);
      list_near(end, next_end, clusters, near[(turn + 1) % 2]);
      progress.step(place(k));
      for (const std::size_t n : near[turn % 2].all()) {
        if (n - 1 != last_joined) anchor = words_[n - 1];
        if (!is_in_box<Clusters::axes>(anchor, words_[n])) continue;
        clusters.opened_each(k, n, point_at);
        clusters.joined(point(n), points_);
        clusters.placed(place(n), point(n));
        last_joined = n;
        k = n + 1;
      }
      clusters.opened_each(k, end, point_at);
      k = end;
      end = next_end;
    }
    return clusters.found();
  }

 private:
  // Points are asked for a stretch ahead of their turn. Stretches end before the
  // multiples of their length, so that a step of progress that does something, at a
  // thousand, comes at the beginning of one.
  static constexpr std::size_t stretch = 100;
  static_assert(1000 % stretch == 0);

  std::size_t end_of_stretch(std::size_t k) const noexcept {
    const std::size_t next_place = ((k + 1) / stretch + 1) * stretch;
    return std::min(next_place - 1, words_.size());
  }

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

  std::int32_t point(std::size_t k) const noexcept { return point_of(words_[k]); }
  std::int32_t point_of(std::uint64_t word) const noexcept {
    return static_cast<std::int32_t>(packing_.position(word)) + 1;
  }
  // Places in the order count from 1.
  static std::int32_t place(std::size_t k) noexcept { return static_cast<std::int32_t>(k + 1); }

  // The points in reach of the one before, in Y as far as marks tell; asks for what
  // will be read of them.
  template <class Clusters>
  [[gnu::always_inline]] void list_near(std::size_t start, std::size_t end,
                                        const Clusters& clusters, Places& near) const noexcept {
    near.clear();
    for (std::size_t k = start; k < end; ++k) {
      clusters.ahead(point(k));
      const bool in_reach = !reach_.is_beyond(words_[k - 1], words_[k]);
      const bool may_meet = marks_.may_meet(words_[k - 1], words_[k]);
      near.add_if(in_reach & may_meet, k);
    }
    for (const std::size_t k : near.all()) {
      points_.ask_beside_x(point(k - 1));
      points_.ask_beside_x(point(k));
    }
  }

  // Whether the box of one holds another. Nothing can overflow and nothing is NaN, so
  // the order of the comparisons is no one's business.
  template <std::size_t axes>
  bool is_in_box(std::uint64_t anchor, std::uint64_t word) const noexcept {
    const std::int32_t a = point_of(anchor);
    const std::int32_t p = point_of(word);
    bool inside = is_between(points_.y(a), points_.y(p));
    if constexpr (axes == 3) inside &= is_between(points_.z(a), points_.z(p));
    if (reach_.is_within(anchor, word)) return inside;
    return inside && is_between(points_.x(a), points_.x(p));
  }
  bool is_between(double anchor, double at) const noexcept {
    const bool above = anchor - tolerance_ < at;
    const bool below = at < anchor + tolerance_;
    return above & below;
  }

  std::span<const std::uint64_t> words_;
  sorting::Packing packing_;
  Marks marks_;
  Points points_;
  Reach reach_;
  double tolerance_;
};

}  // namespace orv2_geo::repeated
