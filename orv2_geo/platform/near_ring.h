// near_ring.h: whether a ring winds around a point that is near all its vertices.
#pragma once

#include <cstddef>
#include <cstdint>

namespace orv2_geo::vertices {

enum class Place : std::uint8_t { outside, inside, unknown };

/// Where a point (x, y) lies to a ring of `count` vertices, two or more, on the lattice of whole
/// hundredths. All are walked, several at a time: nothing that is hard to foresee is asked.
///
/// Unknown where the point is 2^30 hundredths or more from zero, and where the ways to a vertex
/// along X and along Y are together 2^26 (671 km) or more. Of those that are nearer a product of
/// two coordinates is below 2^52 and a cross product below 2^53, so that in doubles each is exact.
Place place_near(const double* xs, const double* ys, std::size_t count, double x,
                 double y) noexcept;

/// The same where a processor has no units for four numbers.
Place place_in_pairs(const double* xs, const double* ys, std::size_t count, double x,
                     double y) noexcept;

}  // namespace orv2_geo::vertices
