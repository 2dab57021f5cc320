// area.h: a work area, and the points that lie inside it.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "survey_report/boundary.h"
#include "survey_report/points.h"

namespace survey_report {

/// What the user may choose of it; not both.
struct AreaChoice {
  std::vector<Place> vertices;      ///< three or more places, or none
  std::optional<std::string> code;  ///< how the codes of its vertices begin
};

struct WorkArea {
  std::string origin;           ///< how it was found, in words
  std::vector<Place> vertices;  ///< a ring; none when there is no area
  /// The points inside, by their place in the survey. Places are taken to the
  /// hundredth of a unit, counted from the area's lower left corner; a point on
  /// the left or lower edge is inside, one on the right or upper edge is not.
  /// What the ring goes round more than once is inside too.
  std::vector<std::size_t> inside;
  std::string fault;  ///< why points were not looked at; else empty
};

/// The area of that choice; without one, the rectangle over the middle half of
/// the boundary's box, or none where there is no boundary. Throws ChoiceFault
/// when the code gives fewer than three places.
WorkArea area_of(const std::vector<SurveyPoint>& points, const Boundary& boundary,
                 const AreaChoice& choice);

}  // namespace survey_report
