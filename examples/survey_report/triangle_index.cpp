#include "survey_report/triangle_index.h"

#include <algorithm>
#include <cmath>

#include "orv2_geo/orv2_geo.hpp"

namespace survey_report {

namespace {

constexpr double thinnest = 0.02;            // height of a triangle over its longest side
constexpr std::size_t most_memberships = 8;  // of a triangle in cells, on average

// A corner of a triangle seen from a place: small numbers keep digits.
struct Near {
  std::size_t index = 0;  // its place in the survey
  double x = 0.0;
  double y = 0.0;
};

// ---- Triangles around the origin, which is the place

double side(const Near& a, const Near& b) { return std::hypot(b.x - a.x, b.y - a.y); }

double perimeter(const Near& a, const Near& b, const Near& c) {
  return side(a, b) + side(b, c) + side(c, a);
}

double cross(const Near& a, const Near& b) { return a.x * b.y - a.y * b.x; }

bool around_origin(const Near& a, const Near& b, const Near& c) {
  const double ab = cross(a, b);
  const double bc = cross(b, c);
  const double ca = cross(c, a);
  return (ab >= 0.0 && bc >= 0.0 && ca >= 0.0) || (ab <= 0.0 && bc <= 0.0 && ca <= 0.0);
}

double height_over(const Near& apex, const Near& from, const Near& to) {
  return orv2_geo::cgeo_Algorismos().Distancia_Punto_Linea(apex.x, apex.y, from.x, from.y, to.x,
                                                           to.y);
}

bool is_sliver(const Near& a, const Near& b, const Near& c) {
  const double longest = std::max({side(a, b), side(b, c), side(c, a)});
  const double height = side(a, b) == longest   ? height_over(c, a, b)
                        : side(b, c) == longest ? height_over(a, b, c)
                                                : height_over(b, c, a);
  return height < thinnest * longest;
}

// The smallest triangle so far.
class Smallest {
 public:
  void offer(const Near& a, const Near& b, const Near& c) {
    if (!around_origin(a, b, c)) return;
    const double length = perimeter(a, b, c);
    if (found_ && length >= length_) return;
    if (is_sliver(a, b, c)) return;
    found_ = Triangle{a.index, b.index, c.index};
    std::sort(found_->begin(), found_->end());
    length_ = length;
  }

  std::optional<Triangle> found() const { return found_; }

 private:
  std::optional<Triangle> found_;
  double length_ = 0.0;
};

Near seen_from(const Place& place, const SurveyPoint& point, std::size_t index) {
  return {index, point.x - place.x, point.y - place.y};
}

}  // namespace

TriangleIndex::TriangleIndex(const std::vector<SurveyPoint>& points,
                             const Triangulation& triangulation)
    : points_(points), facets_(triangulation.facets) {
  facets_.insert(facets_.end(), triangulation.outside.begin(), triangulation.outside.end());
  if (facets_.empty()) return;
  choose_cells();
  starts_.assign(columns_ * rows_ + 1, 0);
  for (const Facet& facet : facets_) {
    visit_cells(facet, [&](std::size_t cell) { ++starts_[cell + 1]; });
  }
  for (std::size_t cell = 1; cell < starts_.size(); ++cell) starts_[cell] += starts_[cell - 1];
  members_.resize(starts_.back());
  std::vector<std::uint32_t> next(starts_.begin(), starts_.end() - 1);
  for (std::uint32_t i = 0; i < facets_.size(); ++i) {
    visit_cells(facets_[i], [&](std::size_t cell) { members_[next[cell]++] = i; });
  }
}

// About one cell a triangle; fewer where triangles are long, such as between the points of a
// circle, and each would be a member of too many.
void TriangleIndex::choose_cells() {
  std::vector<Place> corners;
  for (const Facet& facet : facets_) {
    for (const std::uint32_t i : facet) corners.push_back({points_[i].x, points_[i].y});
  }
  const Box box = box_of(corners);
  const double width = box.x.max - box.x.min;
  const double height = box.y.max - box.y.min;
  const auto count = static_cast<double>(facets_.size());
  corner_ = {box.x.min, box.y.min};
  side_ = std::max(std::sqrt(width) * std::sqrt(height / count), std::max(width, height) / count);
  for (;; side_ *= 2.0) {
    columns_ = static_cast<std::size_t>(width / side_) + 1;
    rows_ = static_cast<std::size_t>(height / side_) + 1;
    if (columns_ * rows_ == 1 || memberships() <= most_memberships * facets_.size()) return;
  }
}

std::size_t TriangleIndex::memberships() const {
  std::size_t sum = 0;
  for (const Facet& facet : facets_) {
    const Cells cells = cells_of(facet);
    sum += (cells.last_column - cells.first_column + 1) * (cells.last_row - cells.first_row + 1);
  }
  return sum;
}

template <class Visit>
void TriangleIndex::visit_cells(const Facet& facet, Visit&& visit) const {
  const Cells cells = cells_of(facet);
  for (std::size_t row = cells.first_row; row <= cells.last_row; ++row) {
    for (std::size_t column = cells.first_column; column <= cells.last_column; ++column) {
      visit(row * columns_ + column);
    }
  }
}

std::optional<Triangle> TriangleIndex::around(const Place& place) const {
  if (facets_.empty()) return std::nullopt;
  const std::size_t cell = row_of(place.y) * columns_ + column_of(place.x);
  Smallest smallest;
  for (std::uint32_t at = starts_[cell]; at < starts_[cell + 1]; ++at) {
    const Facet& facet = facets_[members_[at]];
    smallest.offer(seen_from(place, points_[facet[0]], facet[0]),
                   seen_from(place, points_[facet[1]], facet[1]),
                   seen_from(place, points_[facet[2]], facet[2]));
  }
  return smallest.found();
}

TriangleIndex::Cells TriangleIndex::cells_of(const Facet& facet) const {
  const auto [left, right] =
      std::minmax({points_[facet[0]].x, points_[facet[1]].x, points_[facet[2]].x});
  const auto [low, high] =
      std::minmax({points_[facet[0]].y, points_[facet[1]].y, points_[facet[2]].y});
  return {column_of(left), column_of(right), row_of(low), row_of(high)};
}

// Places beyond the triangles count to the cells at their edge.
std::size_t TriangleIndex::column_of(double x) const {
  const double column = std::clamp((x - corner_.x) / side_, 0.0, static_cast<double>(columns_ - 1));
  return static_cast<std::size_t>(column);
}

std::size_t TriangleIndex::row_of(double y) const {
  const double row = std::clamp((y - corner_.y) / side_, 0.0, static_cast<double>(rows_ - 1));
  return static_cast<std::size_t>(row);
}

}  // namespace survey_report
