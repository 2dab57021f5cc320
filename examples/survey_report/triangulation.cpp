#include "survey_report/triangulation.h"

#include <geos_c.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <numeric>
#include <optional>
#include <stdexcept>
#include <tuple>

#include "survey_report/thinning.h"
#include "survey_report/words.h"

namespace survey_report {

namespace {

constexpr double largest_side = 1e9;  // within it the triangles' places have digits left
constexpr double smallest_side = 1e-6;
constexpr double on_the_boundary = 0.0002;  // of its larger side: where a vertex was measured again

using Indices = std::vector<std::uint32_t>;

// What the geometry library makes, and gives back.
class Geos {
 public:
  Geos() : context_(GEOS_init_r()) {}
  Geos(const Geos&) = delete;
  Geos& operator=(const Geos&) = delete;
  ~Geos() { GEOS_finish_r(context_); }

  GEOSContextHandle_t get() const { return context_; }

  struct Destroy {
    GEOSContextHandle_t context;
    void operator()(GEOSGeometry* geometry) const { GEOSGeom_destroy_r(context, geometry); }
    void operator()(const GEOSPreparedGeometry* geometry) const {
      GEOSPreparedGeom_destroy_r(context, geometry);
    }
  };
  using Geometry = std::unique_ptr<GEOSGeometry, Destroy>;
  using Prepared = std::unique_ptr<const GEOSPreparedGeometry, Destroy>;

  // Takes what the library gave, which is nothing where it failed.
  Geometry own(GEOSGeometry* geometry) const {
    if (geometry == nullptr) throw std::range_error(words::no_triangles.text());
    return Geometry(geometry, Destroy{context_});
  }

  Geometry ring(const std::vector<Place>& corners) const {
    const auto count = static_cast<unsigned>(corners.size());
    GEOSCoordSequence* const places = GEOSCoordSeq_create_r(context_, count + 1, 2);
    for (unsigned i = 0; i <= count; ++i) {
      const Place& corner = corners[i % count];
      GEOSCoordSeq_setXY_r(context_, places, i, corner.x, corner.y);
    }
    GEOSGeometry* const line = GEOSGeom_createLinearRing_r(context_, places);
    if (line == nullptr) throw std::range_error(words::no_triangles.text());
    return own(GEOSGeom_createPolygon_r(context_, line, nullptr, 0));
  }

  Geometry line(const std::vector<SurveyPoint>& points, const Indices& chosen) const {
    GEOSCoordSequence* const places =
        GEOSCoordSeq_create_r(context_, static_cast<unsigned>(chosen.size()), 2);
    for (unsigned i = 0; i < chosen.size(); ++i) {
      GEOSCoordSeq_setXY_r(context_, places, i, points[chosen[i]].x, points[chosen[i]].y);
    }
    return own(GEOSGeom_createLineString_r(context_, places));
  }

 private:
  GEOSContextHandle_t context_;
};

Place place_of(const SurveyPoint& point) { return {point.x, point.y}; }

bool before(const Place& a, const Place& b) { return std::tie(a.x, a.y) < std::tie(b.x, b.y); }

// ---- Which points

// Those of the boundary first, so that they stay.
std::vector<std::size_t> in_order(const std::vector<SurveyPoint>& points,
                                  const Boundary& boundary) {
  std::vector<std::size_t> order(points.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  if (boundary.is_hull) return order;
  std::stable_partition(order.begin(), order.end(), [&](std::size_t i) {
    return std::string_view(points[i].code).starts_with(boundary.code);
  });
  return order;
}

std::vector<std::size_t> spread(const std::vector<SurveyPoint>& points, const Boundary& boundary,
                                std::size_t most) {
  std::vector<Place> places;
  places.reserve(points.size());
  for (const SurveyPoint& point : points) places.push_back(place_of(point));
  const Box box = box_of(places);
  const double width = box.x.max - box.x.min;
  const double height = box.y.max - box.y.min;
  const auto count = static_cast<double>(most);
  const double side = std::max(std::sqrt(width * height / count), std::max(width, height) / count);
  return thinned(places, in_order(points, boundary), {box.x.min, box.y.min, box.x.max, box.y.max},
                 side, most);
}

// The first of each spot, by where they lie.
Indices different(const std::vector<SurveyPoint>& points, const std::vector<std::size_t>& chosen) {
  Indices indices(chosen.begin(), chosen.end());
  std::stable_sort(indices.begin(), indices.end(), [&](std::uint32_t a, std::uint32_t b) {
    return before(place_of(points[a]), place_of(points[b]));
  });
  const auto same = [&](std::uint32_t a, std::uint32_t b) {
    return place_of(points[a]) == place_of(points[b]);
  };
  indices.erase(std::unique(indices.begin(), indices.end(), same), indices.end());
  return indices;
}

// ---- Triangles

// The corners that the library gives are places: whose, the sorted points tell.
std::optional<std::uint32_t> point_at(const Place& place, const std::vector<SurveyPoint>& points,
                                      const Indices& sorted) {
  const auto at = std::lower_bound(
      sorted.begin(), sorted.end(), place,
      [&](std::uint32_t i, const Place& p) { return before(place_of(points[i]), p); });
  if (at == sorted.end() || place_of(points[*at]) != place) return std::nullopt;
  return *at;
}

std::optional<Facet> facet_of(const Geos& geos, const GEOSGeometry* triangle,
                              const std::vector<SurveyPoint>& points, const Indices& sorted) {
  const GEOSGeometry* const ring = GEOSGetExteriorRing_r(geos.get(), triangle);
  const GEOSCoordSequence* const corners = GEOSGeom_getCoordSeq_r(geos.get(), ring);
  Facet facet{};
  for (unsigned i = 0; i < facet.size(); ++i) {
    Place corner;
    GEOSCoordSeq_getXY_r(geos.get(), corners, i, &corner.x, &corner.y);
    const std::optional<std::uint32_t> point = point_at(corner, points, sorted);
    if (!point) return std::nullopt;
    facet[i] = *point;
  }
  return facet;
}

// What tells whether a triangle is inside the boundary.
class Inside {
 public:
  Inside(const Geos& geos, const Boundary& boundary)
      : geos_(geos), area_(area_of(geos, boundary)), prepared_(prepared(geos, area_.get())) {}

  bool holds(const GEOSGeometry* triangle) const {
    return GEOSPreparedCovers_r(geos_.get(), prepared_.get(), triangle) == 1;
  }

 private:
  // A ring that crosses itself is made an area first.
  static Geos::Geometry area_of(const Geos& geos, const Boundary& boundary) {
    const Geos::Geometry ring = geos.ring(boundary.vertices);
    const Geos::Geometry valid = geos.own(GEOSMakeValid_r(geos.get(), ring.get()));
    const double margin = on_the_boundary * larger_side(box_of(boundary.vertices));
    return geos.own(GEOSBuffer_r(geos.get(), valid.get(), margin, 1));
  }

  static Geos::Prepared prepared(const Geos& geos, const GEOSGeometry* area) {
    return {GEOSPrepare_r(geos.get(), area), Geos::Destroy{geos.get()}};
  }

  const Geos& geos_;
  Geos::Geometry area_;
  Geos::Prepared prepared_;
};

void triangulate(Triangulation& made, const std::vector<SurveyPoint>& points,
                 const Boundary& boundary, std::size_t most) {
  const Indices sorted = different(points, spread(points, boundary, most));
  made.points = sorted.size();
  const Geos geos;
  const Geos::Geometry line = geos.line(points, sorted);
  const Geos::Geometry triangles =
      geos.own(GEOSDelaunayTriangulation_r(geos.get(), line.get(), 0.0, 0));
  std::optional<Inside> inside;
  if (!boundary.is_hull) inside.emplace(geos, boundary);
  const int count = GEOSGetNumGeometries_r(geos.get(), triangles.get());
  for (int i = 0; i < count; ++i) {
    const GEOSGeometry* const triangle = GEOSGetGeometryN_r(geos.get(), triangles.get(), i);
    const std::optional<Facet> facet = facet_of(geos, triangle, points, sorted);
    if (!facet) continue;
    const bool is_outside = inside && !inside->holds(triangle);
    (is_outside ? made.outside : made.facets).push_back(*facet);
  }
}

}  // namespace

Triangulation triangulation_of(const std::vector<SurveyPoint>& points, const Boundary& boundary,
                               std::size_t most) {
  Triangulation made;
  const double side = larger_side(box_of(boundary.vertices));
  if (!(side < largest_side) || !(side > smallest_side)) {
    made.fault = words::no_triangles.text();
    return made;
  }
  try {
    triangulate(made, points, boundary, most);
  } catch (const std::range_error& fault) {
    made = {};
    made.fault = fault.what();
  }
  return made;
}

}  // namespace survey_report
