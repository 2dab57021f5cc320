// boundary.h: the boundary of a survey, and a section line across it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "orv2_geo/frame/geo_arrays.h"
#include "survey_report/points.h"

namespace survey_report {

/// A place in plan.
struct Place {
  double x = 0.0;
  double y = 0.0;

  bool operator==(const Place&) const = default;
};

/// A ring: each vertex is joined to the next, the last to the first.
struct Boundary {
  std::vector<Place> vertices;   ///< none when the points enclose nothing
  std::string code;              ///< how the codes of its points begin
  std::size_t coded_points = 0;  ///< the points with such a code
  bool is_hull = false;          ///< not those points, but the hull of all
};

/// A ring of fewer encloses nothing.
constexpr std::size_t fewest_vertices = 3;

/// The places of the points whose code begins with `code`, in their order.
std::vector<Place> places_coded(const std::vector<SurveyPoint>& points, std::string_view code);

/// The places as a ring; one that lies where an earlier one does, to 1/5000 of
/// the ring's larger side, was measured again and is no vertex.
std::vector<Place> ring_through(const std::vector<Place>& places);

/// The library's view of a ring that has vertices: numbered from 1, the last
/// repeating the first, seen from `origin`, as small numbers keep digits.
struct Chain {
  Chain(const std::vector<Place>& ring, const Place& origin);

  std::int32_t count;
  orv2_geo::DoubleArray x;
  orv2_geo::DoubleArray y;
};

/// The corners of the convex hull, counter-clockwise from the westernmost; none
/// when the places lie on one line.
std::vector<Place> convex_hull(std::vector<Place> places);

/// The ring through the points whose code begins with `code`. With fewer than
/// three vertices, the convex hull of all points.
Boundary boundary_of(const std::vector<SurveyPoint>& points, std::string_view code);

/// The length of the ring. Throws RunFailure when the library refuses it.
double perimeter_of(const Boundary& boundary);

/// Whether a place lies inside the ring. On the ring it may count as either.
bool contains(const Boundary& boundary, const Place& place);

/// The box around a ring that has vertices.
struct Box {
  Range x;
  Range y;
};
Box box_of(const std::vector<Place>& places);

double larger_side(const Box& box);

/// A straight way from one place to another.
struct SectionLine {
  Place from;
  Place to;
};

/// From west to east through the centre of the box, and a little beyond it.
SectionLine default_section(const Box& box);

struct Cut {
  Place place;
  double distance = 0.0;  ///< from the start of the section line
};

/// A section line, measured, with its cuts in order from its start.
struct Section {
  SectionLine line;
  double bearing = 0.0;  ///< in gon, 0 along +Y, clockwise
  double length = 0.0;
  std::vector<Cut> cuts;
};

/// Throws RunFailure when the library refuses the line or a cut.
Section section_of(const Boundary& boundary, const SectionLine& line);

}  // namespace survey_report
