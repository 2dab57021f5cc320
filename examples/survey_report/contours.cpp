#include "survey_report/contours.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <map>
#include <utility>

#include "survey_report/choice_fault.h"
#include "survey_report/layout.h"
#include "survey_report/rounding.h"
#include "survey_report/words.h"

namespace survey_report {

namespace {

constexpr double about_levels = 14.0;
constexpr double least_rise = 1e-9;  // of the elevations: below it levels have no digits left

// A side of a triangle, the lower point first, so that both its triangles cut it alike.
using Side = std::pair<std::uint32_t, std::uint32_t>;

Side side_between(std::uint32_t a, std::uint32_t b) { return std::minmax(a, b); }

// What a level cuts off a triangle: from one of its sides to another.
using Segment = std::array<Side, 2>;

Place cut_of(const Side& side, double level, const std::vector<SurveyPoint>& points) {
  const SurveyPoint& a = points[side.first];
  const SurveyPoint& b = points[side.second];
  const double part = (level - a.z) / (b.z - a.z);
  return {a.x + part * (b.x - a.x), a.y + part * (b.y - a.y)};
}

// The sides between a point below the level and one that is not: two of them, or none.
std::optional<Segment> segment_in(const Facet& facet, double level,
                                  const std::vector<SurveyPoint>& points) {
  Segment segment;
  std::size_t cuts = 0;
  for (std::size_t i = 0; i < facet.size(); ++i) {
    const std::uint32_t a = facet[i];
    const std::uint32_t b = facet[(i + 1) % facet.size()];
    if ((points[a].z < level) != (points[b].z < level)) segment[cuts++] = side_between(a, b);
  }
  return cuts == segment.size() ? std::optional(segment) : std::nullopt;
}

// Joins the segments of one level to lines.
class Joiner {
 public:
  Joiner(const std::vector<Segment>& segments, double level, const std::vector<SurveyPoint>& points)
      : segments_(segments), level_(level), points_(points), taken_(segments.size()) {
    for (std::size_t i = 0; i < segments.size(); ++i) {
      for (const Side& side : segments[i]) ends_.emplace_back(side, i);
    }
    std::sort(ends_.begin(), ends_.end());
  }

  // Those that begin at the border of the triangles first; what is left then is closed.
  void add_lines(std::vector<Contour>& lines, bool is_index) {
    for (const bool open : {true, false}) {
      for (std::size_t i = 0; i < segments_.size(); ++i) {
        for (const std::size_t end : {0U, 1U}) {
          const Side& side = segments_[i][end];
          if (taken_[i] || (open && beyond(side, i))) continue;
          Contour contour{level_, is_index, !open, line_from(side, i)};
          if (contour.is_closed && contour.line.front() == contour.line.back()) {
            contour.line.pop_back();
          }
          if (contour.line.size() > 1) lines.push_back(std::move(contour));
        }
      }
    }
  }

 private:
  // The segment on the other side, if there is a triangle.
  std::optional<std::size_t> beyond(const Side& side, std::size_t segment) const {
    auto end = std::lower_bound(ends_.begin(), ends_.end(), std::pair(side, std::size_t{0}));
    for (; end != ends_.end() && end->first == side; ++end) {
      if (end->second != segment) return end->second;
    }
    return std::nullopt;
  }

  std::vector<Place> line_from(Side side, std::size_t first) {
    std::vector<Place> line;
    const auto add = [&](const Side& at) {
      const Place place = cut_of(at, level_, points_);
      if (line.empty() || line.back() != place) line.push_back(place);
    };
    add(side);
    for (std::optional<std::size_t> next = first; next && !taken_[*next];) {
      taken_[*next] = true;
      const Segment& segment = segments_[*next];
      side = segment[0] == side ? segment[1] : segment[0];
      add(side);
      next = beyond(side, *next);
    }
    return line;
  }

  const std::vector<Segment>& segments_;
  double level_;
  const std::vector<SurveyPoint>& points_;
  std::vector<bool> taken_;
  std::vector<std::pair<Side, std::size_t>> ends_;
};

Range elevations_of(const std::vector<Facet>& facets, const std::vector<SurveyPoint>& points) {
  const double first = points[facets.front().front()].z;
  Range range{first, first};
  for (const Facet& facet : facets) {
    for (const std::uint32_t i : facet) {
      range = {std::min(range.min, points[i].z), std::max(range.max, points[i].z)};
    }
  }
  return range;
}

double checked_step(const Range& range, const std::optional<double>& step) {
  if (!step) return default_contour_step(range);
  if ((range.max - range.min) / *step <= most_levels) return *step;
  throw ChoiceFault(words::too_many_levels.with({fixed(most_levels, 0)}));
}

}  // namespace

double default_contour_step(const Range& elevations) {
  return round_near((elevations.max - elevations.min) / about_levels);
}

std::vector<Contour> contours_on(const std::vector<Facet>& facets,
                                 const std::vector<SurveyPoint>& points, double step) {
  std::map<double, std::vector<Segment>> levels;  // by how many steps high
  for (const Facet& facet : facets) {
    const auto [low, high] =
        std::minmax({points[facet[0]].z, points[facet[1]].z, points[facet[2]].z});
    for (double level = std::ceil(low / step); level * step <= high; ++level) {
      const std::optional<Segment> segment = segment_in(facet, level * step, points);
      if (segment) levels[level].push_back(*segment);
    }
  }
  std::vector<Contour> lines;
  for (const auto& [level, segments] : levels) {
    const bool is_index = std::fmod(level, levels_an_index) == 0.0;
    Joiner(segments, level * step, points).add_lines(lines, is_index);
  }
  return lines;
}

Contours contours_of(const std::vector<SurveyPoint>& points, const Triangulation& made,
                     const std::optional<double>& step) {
  Contours contours;
  contours.triangles = made.facets.size();
  contours.points = made.points;
  contours.left_out = made.outside.size();
  contours.fault = made.fault;
  if (made.facets.empty()) {
    if (contours.fault.empty()) contours.fault = words::no_triangles.text();
    return contours;
  }
  const Range range = elevations_of(made.facets, points);
  const double height = range.max - range.min;
  const double largest = std::max(std::abs(range.min), std::abs(range.max));
  if (!std::isnormal(height) || height < least_rise * largest) {
    contours.fault = words::level_terrain.text();
    return contours;
  }
  contours.step = checked_step(range, step);
  contours.lines = contours_on(made.facets, points, contours.step);
  return contours;
}

}  // namespace survey_report
