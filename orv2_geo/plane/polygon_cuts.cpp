// Cuts of a segment with a chain of vertices, and the retired polygon tests.
#include <cstddef>
#include <numeric>
#include <utility>
#include <vector>

#include "orv2_geo/angles/cgeo_Algorismos.h"
#include "orv2_geo/frame/checked_integer.h"
#include "orv2_geo/frame/checked_math.h"
#include "orv2_geo/frame/counted.h"
#include "orv2_geo/plane/sides_of_line.h"
#include "orv2_geo/platform/error_box.h"

namespace orv2_geo {

namespace {

// The cuts in the order found.
struct Cuts {
  std::vector<double> x;
  std::vector<double> y;
  std::size_t count() const { return x.size(); }
};

std::vector<double> distances_from(const double& x, const double& y, const Cuts& cuts) {
  std::vector<double> distances(cuts.count());
  for (std::size_t i = 0; i < cuts.count(); ++i) {
    distances[i] = sqrt(power(x - Checked(cuts.x[i]), 2.0) + power(y - Checked(cuts.y[i]), 2.0));
  }
  return distances;
}

// The places of the cuts by distance. Neighbours change places at equality too:
// that decides which of two cuts at one distance is met first.
std::vector<std::size_t> Ordena_Cortes(std::vector<double> distances) {
  std::vector<std::size_t> order(distances.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  for (std::size_t end = distances.size(); end > 1; --end) {
    for (std::size_t j = 0; j + 1 < end; ++j) {
      if (Checked(distances[j]) >= Checked(distances[j + 1])) {
        std::swap(distances[j], distances[j + 1]);
        std::swap(order[j], order[j + 1]);
      }
    }
  }
  return order;
}

// Whether a cut lies at or outside the box of 0.001 around the last kept one,
// in X or in Y. A box, not a distance.
bool off_the_last(Checked last_x, Checked last_y, Checked x, Checked y) {
  return last_x - 0.001 >= x || last_x + 0.001 <= x || last_y - 0.001 >= y || last_y + 0.001 <= y;
}

}  // namespace

Bool cgeo_Algorismos::Pto_en_Poligono_d(const DoubleArray&, const DoubleArray&, const std::int32_t&,
                                        const double&, const double&, std::int16_t&) const try {
  error_box(u"obsoleto");
  return false;
} catch (...) {
  leave_signed(registered_name);
}

Bool cgeo_Algorismos::Pto_en_Poligono(const SingleArray&, const SingleArray&, const std::int32_t&,
                                      const float&, const float&, std::int16_t&) const try {
  error_box(u"obsoleto");
  return false;
} catch (...) {
  leave_signed(registered_name);
}

void cgeo_Algorismos::Cortes_R1_con_Pol(const double& XR1, const double& YR1, const double& XR2,
                                        const double& YR2, const std::int32_t& Nv,
                                        const DoubleArray& Vx, const DoubleArray& Vy,
                                        std::int32_t& Pc, DoubleArray& Xc, DoubleArray& Yc) const
    try {
  Pc = 0;
  const std::int32_t vertices = Nv;
  Cuts cuts;
  for (const std::int32_t i : counted(2, vertices)) {
    // Most edges are far off: only one that may be met is gone into.
    const auto may_be_met = [](const auto&...) { return true; };
    if (!plane::quick_crossing_or(may_be_met, XR1, YR1, XR2, YR2, Vx(i - 1), Vy(i - 1), Vx(i),
                                  Vy(i))) {
      continue;
    }
    double x = 0.0;
    double y = 0.0;
    if (!Cruce_XY_2lineas(XR1, YR1, XR2, YR2, Vx(i - 1), Vy(i - 1), Vx(i), Vy(i), x, y)) continue;
    Pc = (Checked32(Pc) + 1).value();
    cuts.x.push_back(x);
    cuts.y.push_back(y);
  }
  if (Pc == 0) return;

  const std::vector<std::size_t> order = Ordena_Cortes(distances_from(XR1, YR1, cuts));
  Xc.size(0, Pc);
  Yc.size(0, Pc);
  std::int32_t k = 0;
  for (const std::size_t j : order) {
    // The first cut is always kept: element 0 is no cut to compare with.
    const bool first = j == order.front();
    if (!first && !off_the_last(Xc(k), Yc(k), cuts.x[j], cuts.y[j])) continue;
    ++k;
    Xc(k) = cuts.x[j];
    Yc(k) = cuts.y[j];
  }
  Xc.size_keeping(0, k);
  Yc.size_keeping(0, k);
  Pc = k;
} catch (...) {
  leave_signed(registered_name);
}

}  // namespace orv2_geo
