// triangulation.h: the terrain as triangles between surveyed points.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "survey_report/boundary.h"
#include "survey_report/points.h"

namespace survey_report {

/// Of a larger survey so many points make the triangles, spread over its area.
constexpr std::size_t most_triangulated = 40000;

/// Three points of the survey, by their places in it.
using Facet = std::array<std::uint32_t, 3>;

struct Triangulation {
  std::vector<Facet> facets;
  std::vector<Facet> outside;  ///< those with a side outside the boundary
  std::size_t points = 0;      ///< points that make the triangles; those in one spot count once
  std::string fault;           ///< why there are none; else empty
};

/// The Delaunay triangles over the points. Of those in one spot the first of the survey counts.
/// Where the boundary is one of the survey, not the hull, triangles with a side outside it
/// stand apart.
Triangulation triangulation_of(const std::vector<SurveyPoint>& points, const Boundary& boundary,
                               std::size_t most = most_triangulated);

}  // namespace survey_report
