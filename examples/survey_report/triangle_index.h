// triangle_index.h: the triangles of the terrain by where they lie.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "survey_report/boundary.h"
#include "survey_report/points.h"
#include "survey_report/triangulation.h"

namespace survey_report {

/// Three points of the survey, by their place in it, from 0, in the order of the file.
using Triangle = std::array<std::size_t, 3>;

/// Finds the triangle around a place without a look at all of them.
class TriangleIndex {
 public:
  /// Of the triangles inside the boundary and outside it. The points must outlive this.
  TriangleIndex(const std::vector<SurveyPoint>& points, const Triangulation& triangulation);

  const std::vector<SurveyPoint>& points() const { return points_; }

  /// The triangle around the place that is no sliver; where several meet, the one with the
  /// smallest perimeter.
  std::optional<Triangle> around(const Place& place) const;

 private:
  struct Cells {
    std::size_t first_column, last_column, first_row, last_row;
  };

  void choose_cells();
  std::size_t memberships() const;
  Cells cells_of(const Facet& facet) const;
  template <class Visit>
  void visit_cells(const Facet& facet, Visit&& visit) const;
  std::size_t column_of(double x) const;
  std::size_t row_of(double y) const;

  const std::vector<SurveyPoint>& points_;
  std::vector<Facet> facets_;
  Place corner_;
  double side_ = 0.0;  // of a cell
  std::size_t columns_ = 1;
  std::size_t rows_ = 1;
  std::vector<std::uint32_t> starts_;  // where each cell's triangles start in members_
  std::vector<std::uint32_t> members_;
};

}  // namespace survey_report
