// Point in polygon, on the lattice of hundredths of a unit.
#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <optional>
#include <string_view>

#include "orv2_geo/frame/checked_math.h"
#include "orv2_geo/frame/counted.h"
#include "orv2_geo/frame/number_pairs.h"
#include "orv2_geo/platform/error_box.h"
#include "orv2_geo/platform/region.h"
#include "orv2_geo/survey/cgeo_api.h"

namespace orv2_geo {

namespace {

constexpr std::u16string_view title = u"Pto en Poligono - Error nº ";

constexpr double scale = 100.0;

// To the nearest hundredth, ties to the even one.
std::int32_t hundredths(double value) { return to_i32(Checked(value) * scale); }

// Coordinates this close to zero surely fit 32 bits when scaled and rounded.
constexpr double surely_fits = 21474836.0;

bool fit(double x, double y) noexcept {
  return std::abs(x) < surely_fits && std::abs(y) < surely_fits;
}

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

// A ring walked in plain arithmetic, in blocks of pairs of vertices. Of most
// blocks all lie on one side of the point's row, and then they neither wind
// around the point nor need rounding; only an edge that straddles the row is
// looked at.
class QuickWalk {
 public:
  QuickWalk(LatticePoint point, const double* xs, const double* ys, std::size_t vertices) noexcept
      : point_(point), top_of_row_(top_of_row(point.y)), xs_(xs), ys_(ys), vertices_(vertices) {}

  /// How often the ring winds around the point; nothing when a coordinate may
  /// not fit. At least two vertices.
  std::optional<std::int64_t> winding() const noexcept {
    if (!fits(vertices_ - 1)) return std::nullopt;  // no pair may hold it
    std::int64_t winding = 0;
    if (vertices_ % 2 != 0) winding += winding_between(vertices_ - 2, vertices_ - 1);
    const std::size_t pairs = vertices_ / 2;
    for (std::size_t first = 0; first < pairs; first += block) {
      const Look look = look_at(first, std::min(block, pairs - first));
      if (!look.fits) return std::nullopt;
      if (look.straddling != 0) winding += winding_in(first, look);
    }
    return winding;
  }

 private:
  static constexpr std::size_t block = 32;  // pairs

  // How the edges of a block lie: a bit for each that straddles the point's row.
  // Below are those within its pairs, above those that lead to a pair from the
  // vertex before it, in both halves the lowest for the block's last pair.
  struct Look {
    bool fits;
    std::size_t pairs;
    std::uint64_t straddling;
  };

  // The ring is closed: before its first vertex comes its last.
  std::size_t before(std::size_t i) const noexcept { return (i == 0 ? vertices_ : i) - 1; }

  // The highest scaled value that still rounds to `row`, ties going to even: of an odd row
  // the last one below the tie.
  static double top_of_row(std::int32_t row) noexcept {
    const std::int64_t below = row < 0 ? -1 : 1;
    return std::bit_cast<double>(std::bit_cast<std::int64_t>(row + 0.5) - (row & 1) * below);
  }

  Look look_at(std::size_t first, std::size_t pairs) const noexcept {
    const double* x = xs_ + 2 * first;
    const double* y = ys_ + 2 * first;
    const std::int32_t beyond = size_of(surely_fits);
    UpperHalves unfit = {};  // bits of any coordinate
    PairBits below = {};     // the row's top included: such a vertex is on the row
#pragma GCC unroll 2
    for (std::size_t i = 0; i < 2 * pairs; i += 2) {
      const NumberPair y_pair = pair_at(y + i);
      unfit |= sizes_of(pair_at(x + i), y_pair) >= beyond;
      below = below + below - std::bit_cast<PairBits>(scale * y_pair <= top_of_row_);
    }
    const auto any_unfit = std::bit_cast<PairBits>(unfit);
    const std::uint64_t led_by = !is_above(before(2 * first));
    const std::uint64_t within_pairs = below[0] ^ below[1];
    const std::uint64_t to_pairs = (below[1] >> 1 | led_by << (pairs - 1)) ^ below[0];
    return {(any_unfit[0] | any_unfit[1]) == 0, pairs, within_pairs | to_pairs << block};
  }

  std::int64_t winding_in(std::size_t first, const Look& look) const noexcept {
    std::int64_t winding = 0;
    for (std::uint64_t left = look.straddling; left != 0; left &= left - 1) {
      const auto bit = static_cast<std::size_t>(std::countr_zero(left));
      const std::size_t pair = 2 * (first + look.pairs - 1 - bit % block);
      const std::size_t end = pair + (bit / block ^ 1);  // its second vertex below, its first above
      winding += winding_of_edge(point_, vertex(before(end)), vertex(end));
    }
    return winding;
  }

  bool fits(std::size_t i) const noexcept { return fit(xs_[i], ys_[i]); }

  bool is_above(std::size_t i) const noexcept { return scale * ys_[i] > top_of_row_; }

  LatticePoint vertex(std::size_t i) const noexcept { return nearest_point(xs_[i], ys_[i]); }

  // Of an edge whose ends need not fit; what it adds is then of no account.
  int winding_between(std::size_t a, std::size_t b) const noexcept {
    if (is_above(a) == is_above(b) || !fits(a) || !fits(b)) return 0;
    return winding_of_edge(point_, vertex(a), vertex(b));
  }

  LatticePoint point_;
  double top_of_row_;
  const double* xs_;
  const double* ys_;
  std::size_t vertices_;
};

std::optional<std::int64_t> quick_winding(LatticePoint point, const DoubleArray& XX,
                                          const DoubleArray& YY, std::int32_t vertices) {
  const double* xs = XX.row(1, vertices);
  const double* ys = YY.row(1, vertices);
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
                               std::int16_t& Loc) const try {
  bool inside = false;
  trapped(registered_name, title, [&] {
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
} catch (...) {  // of the box itself
  leave_signed(registered_name);
}

}  // namespace orv2_geo
