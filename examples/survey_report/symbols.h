// symbols.h: which symbol stands for a point's code.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "survey_report/boundary.h"
#include "survey_report/points.h"

namespace survey_report {

/// The points that are drawn alike.
struct CodeGroup {
  std::string name;                 ///< the code; "no code", "other"
  std::vector<std::size_t> points;  ///< by their place in the survey
};

/// The points of each code among these, by their places in the survey, codes in order.
std::map<std::string_view, std::vector<std::size_t>> points_by_code(
    const std::vector<SurveyPoint>& points, const std::vector<std::size_t>& chosen);

/// A point as a text: its number, code and coordinates.
std::string point_title(const SurveyPoint& point);

/// The most frequent codes, up to ten, each a group, the most frequent first;
/// then all others as one, if there are others.
std::vector<CodeGroup> code_groups(const std::vector<SurveyPoint>& points);

/// A symbol: its outline, and how it is painted.
struct Symbol {
  std::string (*outline)(const Place& at, double reach);
  const char* paint;  ///< attributes
};

/// The outline of a circle.
std::string circle(const Place& at, double reach);

/// The symbol of the group in that place of the list; the eleventh is for others.
const Symbol& symbol_of_group(std::size_t group);

}  // namespace survey_report
