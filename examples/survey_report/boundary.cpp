#include "survey_report/boundary.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <numeric>
#include <tuple>
#include <utility>

#include "orv2_geo/orv2_geo.hpp"

namespace survey_report {

namespace {

constexpr double measured_again = 0.0002;  // of the ring's larger side
constexpr double beyond_the_box = 0.05;    // of its larger side

// ---- Rings

Place place_of(const SurveyPoint& point) { return {point.x, point.y}; }

bool west_of(const Place& a, const Place& b) { return std::tie(a.x, a.y) < std::tie(b.x, b.y); }

// Positive when the way a, b, c turns left.
double turn(const Place& a, const Place& b, const Place& c) {
  return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

// The hull's lower side when the places run eastwards, its upper side when
// they run westwards; without its last corner, where the other side starts.
template <class Iterator>
std::vector<Place> side_of_hull(Iterator first, Iterator last) {
  std::vector<Place> side;
  for (; first != last; ++first) {
    while (side.size() > 1 && !(turn(side[side.size() - 2], side.back(), *first) > 0.0)) {
      side.pop_back();
    }
    side.push_back(*first);
  }
  side.pop_back();
  return side;
}

std::vector<Place> all_places(const std::vector<SurveyPoint>& points) {
  std::vector<Place> places;
  for (const SurveyPoint& point : points) places.push_back(place_of(point));
  return places;
}

// The vertices so far. A place that was measured again is no new one: it would
// lead the ring back across the area.
class Ring {
 public:
  explicit Ring(double tolerance) : tolerance_(tolerance) {}

  void add(const Place& place) {
    if (is_taken(place)) return;
    cells_[cell_of(place)].push_back(place);
    vertices_.push_back(place);
  }

  std::vector<Place> take_vertices() { return std::move(vertices_); }

 private:
  using Cell = std::pair<double, double>;

  Cell cell_of(const Place& place) const {
    if (tolerance_ == 0.0) return {place.x, place.y};
    return {std::floor(place.x / tolerance_), std::floor(place.y / tolerance_)};
  }

  bool is_taken(const Place& place) const {
    const auto [column, row] = cell_of(place);
    for (const double right : {-1.0, 0.0, 1.0}) {
      for (const double up : {-1.0, 0.0, 1.0}) {
        if (is_taken(place, {column + right, row + up})) return true;
      }
    }
    return false;
  }

  bool is_taken(const Place& place, const Cell& cell) const {
    const auto found = cells_.find(cell);
    if (found == cells_.end()) return false;
    return std::any_of(found->second.begin(), found->second.end(), [&](const Place& taken) {
      return std::hypot(taken.x - place.x, taken.y - place.y) <= tolerance_;
    });
  }

  double tolerance_;
  std::map<Cell, std::vector<Place>> cells_;
  std::vector<Place> vertices_;
};

// ---- The library's view of a ring

double distance_between(const Place& from, const Place& to) {
  double bearing = 0.0;
  double distance = 0.0;
  orv2_geo::cgeo_Algorismos().recta_Angulo_y_Dist(from.x, from.y, to.x, to.y, bearing, distance);
  return distance;
}

std::vector<Cut> cuts_of(const Boundary& boundary, const SectionLine& line) {
  const Place origin = line.from;
  const Chain chain(boundary.vertices, origin);
  std::int32_t count = 0;
  orv2_geo::DoubleArray x;
  orv2_geo::DoubleArray y;
  orv2_geo::cgeo_Algorismos().Cortes_R1_con_Pol(0.0, 0.0, line.to.x - origin.x,
                                                line.to.y - origin.y, chain.count, chain.x, chain.y,
                                                count, x, y);
  std::vector<Cut> cuts;
  for (std::int32_t i = 1; i <= count; ++i) {
    const double distance = distance_between({}, {x(i), y(i)});
    cuts.push_back({{x(i) + origin.x, y(i) + origin.y}, distance});
  }
  return cuts;
}

void widen(Range& range, double value) {
  range.min = std::min(range.min, value);
  range.max = std::max(range.max, value);
}

}  // namespace

double larger_side(const Box& box) {
  return std::max(box.x.max - box.x.min, box.y.max - box.y.min);
}

std::vector<Place> ring_through(const std::vector<Place>& places) {
  if (places.empty()) return {};
  Ring ring(measured_again * larger_side(box_of(places)));
  for (const Place& place : places) ring.add(place);
  return ring.take_vertices();
}

std::vector<Place> places_coded(const std::vector<SurveyPoint>& points, std::string_view code) {
  std::vector<Place> coded;
  for (const SurveyPoint& point : points) {
    if (std::string_view(point.code).starts_with(code)) coded.push_back(place_of(point));
  }
  return coded;
}

Chain::Chain(const std::vector<Place>& ring, const Place& origin)
    : count(static_cast<std::int32_t>(ring.size()) + 1), x(1, count), y(1, count) {
  for (std::int32_t i = 1; i <= count; ++i) {
    const Place& vertex = ring[static_cast<std::size_t>(i - 1) % ring.size()];
    x(i) = vertex.x - origin.x;
    y(i) = vertex.y - origin.y;
  }
}

std::vector<Place> convex_hull(std::vector<Place> places) {
  std::sort(places.begin(), places.end(), west_of);
  places.erase(std::unique(places.begin(), places.end()), places.end());
  if (places.size() < fewest_vertices) return {};
  std::vector<Place> hull = side_of_hull(places.begin(), places.end());
  const std::vector<Place> upper = side_of_hull(places.rbegin(), places.rend());
  hull.insert(hull.end(), upper.begin(), upper.end());
  return hull.size() < fewest_vertices ? std::vector<Place>{} : hull;
}

Boundary boundary_of(const std::vector<SurveyPoint>& points, std::string_view code) {
  Boundary boundary;
  boundary.code = code;
  const std::vector<Place> coded = places_coded(points, code);
  boundary.coded_points = coded.size();
  boundary.vertices = ring_through(coded);
  if (boundary.vertices.size() >= fewest_vertices) return boundary;
  boundary.is_hull = true;
  boundary.vertices = convex_hull(all_places(points));
  return boundary;
}

double perimeter_of(const Boundary& boundary) {
  const std::vector<Place>& ring = boundary.vertices;
  double perimeter = 0.0;
  for (std::size_t i = 0; i < ring.size(); ++i) {
    perimeter += distance_between(ring[i], ring[(i + 1) % ring.size()]);
  }
  return perimeter;
}

bool contains(const Boundary& boundary, const Place& place) {
  const std::vector<Place>& ring = boundary.vertices;
  bool inside = false;
  for (std::size_t i = 0; i < ring.size(); ++i) {
    const Place& a = ring[i];
    const Place& b = ring[(i + 1) % ring.size()];
    if ((a.y > place.y) == (b.y > place.y)) continue;
    const double x = a.x + (place.y - a.y) / (b.y - a.y) * (b.x - a.x);
    if (place.x < x) inside = !inside;
  }
  return inside;
}

Box box_of(const std::vector<Place>& places) {
  const Place& first = places.front();
  Box box{{first.x, first.x}, {first.y, first.y}};
  for (const Place& place : places) {
    widen(box.x, place.x);
    widen(box.y, place.y);
  }
  return box;
}

SectionLine default_section(const Box& box) {
  const double y = std::midpoint(box.y.min, box.y.max);
  const double margin = beyond_the_box * larger_side(box);
  return {{box.x.min - margin, y}, {box.x.max + margin, y}};
}

Section section_of(const Boundary& boundary, const SectionLine& line) {
  Section section{line, 0.0, 0.0, {}};
  orv2_geo::cgeo_Algorismos().recta_Angulo_y_Dist(line.from.x, line.from.y, line.to.x, line.to.y,
                                                  section.bearing, section.length);
  section.cuts = cuts_of(boundary, line);
  return section;
}

}  // namespace survey_report
