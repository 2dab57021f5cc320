// vertex_block.h: how the vertices of a ring lie to the row of a point, a block at a time.
#pragma once

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "orv2_geo/frame/number_pairs.h"

namespace orv2_geo::vertices {

/// Coordinates are looked at in hundredths of a unit.
inline constexpr double scale = 100.0;

/// Coordinates this close to zero surely fit 32 bits when scaled and rounded.
inline constexpr double surely_fits = 21474836.0;

inline bool fit(double x, double y) noexcept {
  return std::abs(x) < surely_fits && std::abs(y) < surely_fits;
}

/// How many vertices make a block: a bit each in a word.
inline constexpr std::size_t block = 64;

struct VertexBlock {
  /// Those on the row or below it, the lowest bit being the first's; where all fit.
  std::uint64_t below;
  bool fits;  // whether all coordinates surely do
};

/// Of a whole block. `top_of_row` is the highest scaled value that rounds to the row.
VertexBlock look_at_block(const double* x, const double* y, double top_of_row) noexcept;

/// Of up to a block, in pairs.
inline VertexBlock look_at_vertices(const double* x, const double* y, std::size_t count,
                                    double top_of_row) noexcept {
  const std::int32_t beyond = size_of(surely_fits);
  UpperHalves unfit = {};  // bits of any coordinate
  PairBits below = {};     // of the even vertices and of the odd ones
  PairBits bit{1, 2};
  std::size_t i = 0;
  for (; i + 2 <= count; i += 2) {
    const NumberPair y_pair = pair_at(y + i);
    unfit |= sizes_of(pair_at(x + i), y_pair) >= beyond;
    below |= where(scale * y_pair <= top_of_row) & bit;
    bit <<= 2;
  }
  VertexBlock found{below[0] | below[1], true};
  if (i < count) found.below |= std::uint64_t{scale * y[i] <= top_of_row} << i;
  const auto any_unfit = std::bit_cast<PairBits>(unfit);
  found.fits = (any_unfit[0] | any_unfit[1]) == 0 && (i == count || fit(x[i], y[i]));
  return found;
}

}  // namespace orv2_geo::vertices
