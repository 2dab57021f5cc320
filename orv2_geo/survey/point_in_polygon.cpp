// Point in polygon, on the lattice of hundredths of a unit.
#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <optional>
#include <string_view>

#include "orv2_geo/frame/checked_math.h"
#include "orv2_geo/frame/counted.h"
#include "orv2_geo/platform/error_box.h"
#include "orv2_geo/platform/near_ring.h"
#include "orv2_geo/platform/region.h"
#include "orv2_geo/platform/vertex_block.h"
#include "orv2_geo/survey/cgeo_api.h"

namespace orv2_geo {

namespace {

using vertices::fit;
using vertices::Place;
using vertices::scale;

// Up to so many vertices, the repeated one included, all are walked; of more, blocks that lie
// aside are passed over.
constexpr std::int32_t few_vertices = 48;

constexpr std::u16string_view title = u"Pto en Poligono - Error nº ";

// To the nearest hundredth, ties to the even one.
std::int32_t hundredths(double value) { return to_i32(Checked(value) * scale); }

// Of coordinates that fit.
LatticePoint nearest_point(double x, double y) noexcept {
  return {static_cast<std::int32_t>(std::lrint(scale * x)),
          static_cast<std::int32_t>(std::lrint(scale * y))};
}

// Failure 6 when one does not fit 32 bits, X first.
LatticePoint lattice_point(double x, double y) {
  if (fit(x, y)) [[likely]]
    return nearest_point(x, y);
  const std::int32_t in_x = hundredths(x);
  return {in_x, hundredths(y)};
}

// A bit for each edge that leads to one of the vertices of a block and straddles the row.
std::uint64_t straddling(std::uint64_t below, std::uint64_t below_before,
                         std::size_t count) noexcept {
  const std::uint64_t edges = ~std::uint64_t{0} >> (vertices::block - count);
  return (below ^ (below << 1 | below_before)) & edges;
}

// A ring walked in plain arithmetic, in blocks of vertices. Of most blocks all lie on one side
// of the point's row, and then they neither wind around the point nor need rounding. Of the edges
// that straddle the row those are counted at once that lie beyond the point as a whole; only one
// that straddles its column too is looked at.
class QuickWalk {
 public:
  QuickWalk(LatticePoint point, const double* xs, const double* ys, std::size_t vertices) noexcept
      : point_(point),
        top_of_row_(top_of(point.y)),
        top_of_column_(top_of(point.x)),
        xs_(xs),
        ys_(ys),
        vertices_(vertices) {}

  /// How often the ring winds around the point; nothing when a coordinate may
  /// not fit. At least two vertices.
  std::optional<std::int64_t> winding() const noexcept {
    if (!fit(xs_[vertices_ - 1], ys_[vertices_ - 1])) return std::nullopt;
    std::int64_t winding = 0;
    // The ring is closed: before its first vertex comes its last.
    std::uint64_t below_before = scale * ys_[vertices_ - 1] <= top_of_row_;
    for (std::size_t first = 0; first < vertices_; first += block) {
      const std::size_t count = std::min(block, vertices_ - first);
      const auto [below, fits] = look(xs_ + first, ys_ + first, count, top_of_row_);
      if (!fits) return std::nullopt;
      const std::uint64_t edges = straddling(below, below_before, count);
      if (edges != 0) winding += winding_in(first, count, edges, below);
      below_before = below >> (count - 1);
    }
    return winding;
  }

 private:
  static constexpr std::size_t block = vertices::block;
  static constexpr int few_edges = 8;

  // The highest scaled value that still rounds to a row or column, ties going to even: of an odd
  // one the last below the tie.
  static double top_of(std::int32_t whole) noexcept {
    const std::int64_t below = whole < 0 ? -1 : 1;
    return std::bit_cast<double>(std::bit_cast<std::int64_t>(whole + 0.5) - (whole & 1) * below);
  }

  static vertices::VertexBlock look(const double* other, const double* values, std::size_t count,
                                    double top) noexcept {
    return count == block ? vertices::look_at_block(other, values, top)
                          : vertices::look_at_vertices(other, values, count, top);
  }

  // Of the edges of a block that straddle the row. Where they are few the block's X need no look.
  std::int64_t winding_in(std::size_t first, std::size_t count, std::uint64_t edges,
                          std::uint64_t below) const noexcept {
    if (std::popcount(edges) <= few_edges) return winding_of(first, edges);
    const std::size_t before = (first == 0 ? vertices_ : first) - 1;
    const std::uint64_t ends = look(ys_ + first, xs_ + first, count, top_of_column_).below;
    const std::uint64_t starts = ends << 1 | std::uint64_t{scale * xs_[before] <= top_of_column_};
    const std::uint64_t beyond = edges & ~(ends | starts);
    return winding_of(first, edges & (ends ^ starts)) + std::popcount(beyond & ~below) -
           std::popcount(beyond & below);
  }

  // Of these edges of a block, one by one.
  std::int64_t winding_of(std::size_t first, std::uint64_t edges) const noexcept {
    std::int64_t winding = 0;
    for (std::uint64_t left = edges; left != 0; left &= left - 1) {
      const std::size_t end = first + static_cast<std::size_t>(std::countr_zero(left));
      const std::size_t start = (end == 0 ? vertices_ : end) - 1;
      winding += winding_of_edge(point_, vertex(start), vertex(end));
    }
    return winding;
  }

  LatticePoint vertex(std::size_t i) const noexcept { return nearest_point(xs_[i], ys_[i]); }

  LatticePoint point_;
  double top_of_row_;
  double top_of_column_;
  const double* xs_;
  const double* ys_;
  std::size_t vertices_;
};

std::optional<std::int64_t> quick_winding(LatticePoint point, const DoubleArray& XX,
                                          const DoubleArray& YY, std::int32_t vertices) {
  const double* xs = XX.row(1, vertices);
  const double* ys = YY.row(1, vertices);
  if (vertices < 2 || xs == nullptr || ys == nullptr) return std::nullopt;
  const auto count = static_cast<std::size_t>(vertices);
  return QuickWalk(point, xs, ys, count).winding();
}

// Of a ring of few vertices nearby. Unknown also where anything is wrong: nothing fails here.
Place place_nearby(const DoubleArray& XX, const DoubleArray& YY, std::int32_t nVer, double xp,
                   double yp) noexcept {
  if (nVer < 3 || nVer > few_vertices) return Place::unknown;
  const double* xs = XX.row(1, nVer - 1);
  const double* ys = YY.row(1, nVer - 1);
  if (xs == nullptr || ys == nullptr) return Place::unknown;
  return vertices::place_near(xs, ys, static_cast<std::size_t>(nVer - 1), xp, yp);
}

// Vertex by vertex: the first that has no element or does not fit fails.
RegionAtPoint region_at(LatticePoint point, const DoubleArray& XX, const DoubleArray& YY,
                        std::int32_t vertices) {
  RegionAtPoint region(point);
  for (const std::int32_t i : counted(1, vertices)) {
    const std::int32_t x = hundredths(XX(i));
    region.add({x, hundredths(YY(i))});
  }
  return region;
}

// Any ring. Apart, so that a quick answer need not set up what this one keeps in registers.
[[gnu::noinline]] bool holds(const DoubleArray& XX, const DoubleArray& YY, std::int32_t nVer,
                             double xp, double yp, std::int16_t& Loc) {
  bool inside = false;
  trapped(cgeo_api::registered_name, title, [&] {
    const LatticePoint point = lattice_point(xp, yp);
    if (nVer < 1) raise(failure::subscript_out_of_range);  // no vertex at all
    const std::int32_t vertices = nVer - 1;                // the last repeats the first: never read
    if (const auto winding = quick_winding(point, XX, YY, vertices)) {
      inside = *winding != 0;
      return;
    }
    const RegionAtPoint region = region_at(point, XX, YY, vertices);
    if (!region.exists()) Loc = -1;
    inside = region.holds_point();
  });
  return inside;
}

}  // namespace

Bool cgeo_api::Pto_in_Poligono(const DoubleArray& XX, const DoubleArray& YY,
                               const std::int32_t& nVer, const double& xp, const double& yp,
                               std::int16_t& Loc) const try {
  const Place place = place_nearby(XX, YY, nVer, xp, yp);
  if (place != Place::unknown) [[likely]]
    return place == Place::inside;
  return holds(XX, YY, nVer, xp, yp, Loc);
} catch (...) {  // of the box itself
  leave_signed(registered_name);
}

}  // namespace orv2_geo
