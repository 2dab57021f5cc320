// sweep.h: the sweep over the points in X order, the quickest way.
//
//   way                      | taken where
//   -------------------------|---------------------------------------------------------
//   over words               | X has its words, and no step can fail (word_sweep.h)
//   point by point, known    | every subscript is there (point_sweep.h, KnownPoints)
//   point by point, checked  | else
//
// All tell the same, in the same order. This is the only place that chooses.
#pragma once

#include <cstdint>
#include <limits>
#include <optional>

#include "orv2_geo/frame/geo_arrays.h"
#include "orv2_geo/repeated/marks.h"
#include "orv2_geo/repeated/point_sweep.h"
#include "orv2_geo/repeated/points.h"
#include "orv2_geo/repeated/progress.h"
#include "orv2_geo/repeated/word_sweep.h"
#include "orv2_geo/repeated/x_order.h"

namespace orv2_geo::repeated {

/// What the engine's failures are signed with.
inline constexpr char source[] = "Orv2_Geo.mOrdena";

/// The sweep over the first nPtos points in X order.
template <bool reads_Z>
class Sweep {
 public:
  Sweep(std::int32_t nPtos, const Coordinates& at, XOrder& order, double tolerance) noexcept
      : nPtos_(nPtos), at_(at), order_(order), tolerance_(tolerance), words_(word_sweep()) {}

  /// Whether nothing can fail in it, so that results need no place of their own
  /// until it is done.
  bool cannot_fail() const noexcept { return words_.has_value(); }

  /// Tells the sink of the points in X order (see cluster_sink.h). It is not disturbed
  /// by what is written to order.numbers() up to the place told of. Answers with how
  /// many clusters there are.
  template <class Sink>
  std::int32_t run(const Progress& progress, const Sink& sink) {
    static_assert(Sink::reads_Z == reads_Z);
    if (words_) return words_->run(progress, sink);
    order_.put_in_order();
    const auto known = KnownPointsInOrder<reads_Z>::of(at_, order_.numbers(), nPtos_);
    if (known) return sweep_points(nPtos_, *known, tolerance_, progress, sink);
    const CheckedPoints checked(at_, order_.numbers());
    return sweep_points(nPtos_, checked, tolerance_, progress, sink);
  }

 private:
  // Where no coordinate can make a step fail and X still has its keys.
  std::optional<WordSweep<KnownPoints<reads_Z>>> word_sweep() noexcept {
    if (!order_.has_words() || nPtos_ != order_.points()) return std::nullopt;
    if (nPtos_ == std::numeric_limits<std::int32_t>::max())
      return std::nullopt;  // its counter fails
    const auto points = KnownPoints<reads_Z>::of(at_, nPtos_);
    if (!points || !are_tame({&tolerance_, 1}) || !are_tame(points->all_z())) return std::nullopt;
    Marks marks(tolerance_, order_.layout());
    if (!order_.mark(at_.X, points->all_y(), marks)) return std::nullopt;
    if (!marks.certain() && !are_tame(points->all_y())) return std::nullopt;
    if (!order_.sort_words()) return std::nullopt;
    return WordSweep(order_.words(), order_.layout(), marks, *points, tolerance_);
  }

  std::int32_t nPtos_;
  Coordinates at_;
  XOrder& order_;
  double tolerance_;
  std::optional<WordSweep<KnownPoints<reads_Z>>> words_;
};

}  // namespace orv2_geo::repeated
