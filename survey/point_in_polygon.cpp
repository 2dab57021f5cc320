// Point in polygon, on the lattice of hundredths of a unit.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>

#include "frame/checked_math.h"
#include "frame/counted.h"
#include "platform/error_box.h"
#include "platform/region.h"
#include "survey/cgeo_api.h"

namespace orv2_geo {

namespace {

constexpr double scale = 100.0;

// To the nearest hundredth, ties to the even one.
std::int32_t hundredths(double value) { return to_i32(Checked(value) * scale); }

LatticePoint lattice_point(double x, double y) {
  const std::int32_t in_x = hundredths(x);
  return {in_x, hundredths(y)};
}

// Scaled values this far from zero surely fit 32 bits when rounded.
constexpr double surely_fits = 2147483647.0;

// How a run of vertices lies to a row.
struct Run {
  std::size_t out_of_range = 0;
  std::size_t above = 0;
};

// A ring walked in blocks in plain arithmetic. Most blocks lie wholly on one
// side of the point's row, and then neither wind around the point nor need
// rounding; only an edge that straddles the row is looked at.
class QuickWalk {
 public:
  QuickWalk(LatticePoint point, const double* xs, const double* ys, std::size_t vertices) noexcept
      : point_(point), top_of_row_(top_of_row(point.y)), xs_(xs), ys_(ys), vertices_(vertices) {}

  /// How often the ring winds around the point; nothing when a coordinate may
  /// not fit. At least two vertices.
  std::optional<std::int64_t> winding() const noexcept {
    std::int64_t winding = 0;
    std::size_t before = 0;
    for (std::size_t start = 0; start < vertices_; start += block) {
      const std::size_t end = std::min(start + block, vertices_);
      const Run run = end - start == block ? look_at(start, start + block) : look_at(start, end);
      if (run.out_of_range != 0) return std::nullopt;
      const std::size_t all_alike = is_above(before) ? end - start : 0;
      if (run.above != all_alike) {
        for (std::size_t i = start; i < end; before = i++) winding += winding_between(before, i);
      }
      before = end - 1;
    }
    return winding + winding_between(before, 0);
  }

 private:
  static constexpr std::size_t block = 64;

  // The highest scaled value that still rounds to `row`, ties going to even.
  static double top_of_row(std::int32_t row) noexcept {
    const double tie = row + 0.5;
    return row % 2 == 0 ? tie : std::nextafter(tie, -std::numeric_limits<double>::infinity());
  }

  [[gnu::always_inline]] Run look_at(std::size_t start, std::size_t end) const noexcept {
    const double top = top_of_row_;
    std::int64_t fits = 0;
    std::int64_t above = 0;
    for (std::size_t i = start; i < end; ++i) {
      const double x = scale * xs_[i];
      const double y = scale * ys_[i];
      fits += std::abs(x) < surely_fits;  // NaN does not
      fits += std::abs(y) < surely_fits;
      above += y > top;
    }
    return {2 * (end - start) - static_cast<std::size_t>(fits), static_cast<std::size_t>(above)};
  }

  bool is_above(std::size_t i) const noexcept { return scale * ys_[i] > top_of_row_; }

  LatticePoint vertex(std::size_t i) const noexcept {
    return {static_cast<std::int32_t>(std::lrint(scale * xs_[i])),
            static_cast<std::int32_t>(std::lrint(scale * ys_[i]))};
  }

  int winding_between(std::size_t a, std::size_t b) const noexcept {
    return is_above(a) == is_above(b) ? 0 : winding_of_edge(point_, vertex(a), vertex(b));
  }

  LatticePoint point_;
  double top_of_row_;
  const double* xs_;
  const double* ys_;
  std::size_t vertices_;
};

// The elements 1 to `last`, when the array has them all.
const double* elements_from_1(const DoubleArray& array, std::int32_t last) {
  if (array.legal_count() == 0 || array.lower() > 1 || array.upper() < last) return nullptr;
  return &array(1);
}

std::optional<std::int64_t> quick_winding(LatticePoint point, const DoubleArray& XX,
                                          const DoubleArray& YY, std::int32_t vertices) {
  const double* xs = elements_from_1(XX, vertices);
  const double* ys = elements_from_1(YY, vertices);
  if (vertices < 2 || xs == nullptr || ys == nullptr) return std::nullopt;
  return QuickWalk(point, xs, ys, static_cast<std::size_t>(vertices)).winding();
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

}  // namespace

Bool cgeo_api::Pto_in_Poligono(const DoubleArray& XX, const DoubleArray& YY,
                               const std::int32_t& nVer, const double& xp, const double& yp,
                               std::int16_t& Loc) const {
  bool inside = false;
  trapped(registered_name, u"Pto en Poligono - Error nº ", [&] {
    const LatticePoint point = lattice_point(xp, yp);
    if (nVer < 1) raise(failure::subscript_out_of_range);  // room for no vertex at all
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

}  // namespace orv2_geo
