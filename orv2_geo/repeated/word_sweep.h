// word_sweep.h: the sweep over the words of the X order.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>

#include "orv2_geo/repeated/cluster_sink.h"
#include "orv2_geo/repeated/marks.h"
#include "orv2_geo/repeated/points.h"
#include "orv2_geo/repeated/progress.h"
#include "orv2_geo/sorting/word_layout.h"

namespace orv2_geo::repeated {

/// What the distance of two keys tells of the box in X.
class Reach {
 public:
  Reach(double tolerance, const sorting::WordLayout& layout) noexcept
      : below_key_(layout.mask_below_key()),
        beyond_(words(tolerance * millionths + margin, layout.bits_below_key())),
        within_(words(tolerance * millionths - margin, layout.bits_below_key())) {}

  /// Whether the points are surely a tolerance or more apart. Of words in X order:
  /// their keys never descend, but words of one key may.
  bool is_beyond(std::uint64_t before, std::uint64_t word) const noexcept {
    return (word | below_key_) - before > beyond_;
  }

  /// Whether they are surely less apart.
  bool is_within(std::uint64_t before, std::uint64_t word) const noexcept {
    return (word | below_key_) - before < within_;
  }

 private:
  // Keys are whole millionths. How far a distance of keys may be from 1e6 times the
  // distance that the box compares:
  //
  //   2 x 1/2    each key is rounded to a whole one
  //   2 x 1/16   before, X plus its offset is rounded: below 2^30 by 2^-24 at most
  //   1/16       so is a bound of the box, as X is below 2^30
  //   1          between -0.000001 and 0 lies one key more than millionths
  //   1          the bits below the key of a word, set or not
  //   1          what `words` rounds down
  //   ------
  //   4.2        and 8 is on the safe side
  static constexpr double millionths = 1e6;
  static constexpr double margin = 8.0;

  // So many keys as a difference of words, rounded down to whole ones.
  static std::uint64_t words(double keys, int bits_below_key) noexcept {
    constexpr double most = 1e15;  // keys have 15 digits: no two are so far apart
    const auto whole = static_cast<std::uint64_t>(std::clamp(keys, 0.0, most));
    const bool fits = std::bit_width(whole) + bits_below_key <= 64;
    return fits ? whole << bits_below_key : ~std::uint64_t{0};
  }

  std::uint64_t below_key_;
  std::uint64_t beyond_;
  std::uint64_t within_;
};

/// A sweep over sorted words in which no step can fail: every subscript was checked
/// before, and no coordinate can make a bound overflow. Of a point out of reach of the
/// one before it, and so of that one's anchor too, no coordinate is read; of others no
/// X where the keys tell enough. Marks tell of most points on one X that they are out
/// of reach in Y.
template <class Points>
class WordSweep {
 public:
  WordSweep(std::span<const std::uint64_t> words, const sorting::WordLayout& layout,
            const Marks& marks, const Points& points, double tolerance) noexcept
      : words_(words),
        layout_(layout),
        marks_(marks),
        points_(points),
        reach_(tolerance, layout),
        tolerance_(tolerance) {}

  /// Tells the sink of all points; answers with how many clusters it found. Fails with
  /// what the progress fails with.
  template <class Sink>
  requires HearsOf<Sink, Points> std::int32_t run(const Progress& progress, Sink sink)
  const {
    sink.first(point(0), points_);
    const auto point_at = [this](std::size_t k) { return point(k); };
    std::array<Places, 2> near;
    std::size_t k = 1;  // the first that the sink has not been told of
    std::size_t end = end_of_block(k);
    list_near(k, end, sink, near[0]);
    std::uint64_t anchor = words_[0];
    std::size_t last_joined = 0;
    for (std::size_t turn = 0; k < words_.size(); ++turn) {
      const std::size_t next_end = end_of_block(end);
      list_near(end, next_end, sink, near[(turn + 1) % 2]);
      progress.step(place(k));
      for (const std::size_t n : near[turn % 2].all()) {
        if (n - 1 != last_joined) anchor = words_[n - 1];
        if (!is_in_box<Sink::axes>(anchor, words_[n])) continue;
        sink.opened_each(k, n, point_at);
        sink.joined(point(n), points_);
        sink.placed(place(n), point(n));
        last_joined = n;
        k = n + 1;
      }
      sink.opened_each(k, end, point_at);
      k = end;
      end = next_end;
    }
    return sink.found();
  }

 private:
  // Points are prefetched a block before they are read. Blocks end before the
  // multiples of their length, so that a step of progress that does something, at a
  // thousand, comes at the beginning of one.
  static constexpr std::size_t block = 100;
  static_assert(1000 % block == 0);

  std::size_t end_of_block(std::size_t k) const noexcept {
    const std::size_t next_place = ((k + 1) / block + 1) * block;
    return std::min(next_place - 1, words_.size());
  }

  // Some places of a block, listed without a branch.
  class Places {
   public:
    void clear() noexcept { count_ = 0; }
    void add_if(bool listed, std::size_t k) noexcept {
      at_[count_] = k;  // to stay or to be overwritten
      count_ += static_cast<std::size_t>(listed);
    }
    std::span<const std::size_t> all() const noexcept { return {at_.data(), count_}; }

   private:
    std::array<std::size_t, block> at_;
    std::size_t count_ = 0;
  };

  std::int32_t point(std::size_t k) const noexcept { return point_of(words_[k]); }
  std::int32_t point_of(std::uint64_t word) const noexcept {
    return static_cast<std::int32_t>(layout_.position(word)) + 1;
  }
  // Places in the order count from 1.
  static std::int32_t place(std::size_t k) noexcept { return static_cast<std::int32_t>(k + 1); }

  // The points in reach of the one before, in Y as far as marks tell; prefetches what
  // will be read of them.
  template <class Sink>
  [[gnu::always_inline]] void list_near(std::size_t start, std::size_t end, const Sink& sink,
                                        Places& near) const noexcept {
    near.clear();
    for (std::size_t k = start; k < end; ++k) {
      sink.prefetch_for(point(k));
      const bool in_reach = !reach_.is_beyond(words_[k - 1], words_[k]);
      const bool may_meet = marks_.may_meet(words_[k - 1], words_[k]);
      near.add_if(in_reach & may_meet, k);
    }
    for (const std::size_t k : near.all()) {
      points_.prefetch_yz(point(k - 1));
      points_.prefetch_yz(point(k));
    }
  }

  // Whether the box of one holds another. Nothing can overflow and nothing is NaN, so
  // the comparisons may come in any order.
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
  sorting::WordLayout layout_;
  Marks marks_;
  Points points_;
  Reach reach_;
  double tolerance_;
};

}  // namespace orv2_geo::repeated
