#include "survey_report/profile_drawing.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <vector>

#include "survey_report/layout.h"
#include "survey_report/rounding.h"
#include "survey_report/svg.h"
#include "survey_report/symbols.h"

namespace survey_report {

namespace {

constexpr double sheet_width = 297.0;
constexpr double sheet_height = 210.0;
constexpr Rect graph{38, 22, 287, 148};  // its lower edge is the datum
constexpr double padding = 6.0;          // between the frame and the ends of the terrain
constexpr double terrain_height = 96.0;  // at most
constexpr double above_datum = 8.0;      // at least, below the lowest point
constexpr double above_terrain = 8.0;    // levels are written so far
constexpr double level_distance = 10.0;  // about, between levels
constexpr double most_exaggeration = 100.0;

// The rows below the datum.
struct Row {
  std::string_view title;
  double top;
  double bottom;

  double middle() const { return (top + bottom) / 2; }
  double height() const { return bottom - top; }
};
constexpr Row elevation_row{"Elevation", 150, 170};
constexpr Row distance_row{"Distance", 170, 190};
constexpr Row station_row{"Station", 190, 197};

constexpr double text_size = 2.5;
constexpr double title_size = 2.8;
constexpr double row_gap = 3.6;  // between texts that are set upwards
constexpr double point_reach = 0.45;

constexpr std::string_view thin_black = R"(fill="none" stroke="#222222" stroke-width="0.25")";
constexpr std::string_view ground_paint = R"(fill="#f4efe4")";
constexpr std::string_view terrain_paint =
    R"(fill="none" stroke="#7a4a12" stroke-width="0.5" stroke-linejoin="round")";
constexpr std::string_view datum_paint = R"(fill="none" stroke="#222222" stroke-width="0.6")";
constexpr std::string_view cut_colour = "#c00000";

// The text in letters as large as the row has room for, read from the right.
void set_upwards(Svg& svg, double x, const Row& row, const std::string& text) {
  const double size = std::min(text_size, (row.height() - 2.0) / text_width(text, 1.0));
  svg.text({x + 0.35 * size, row.middle()}, text,
           {.size = size, .anchor = Anchor::middle, .upwards = true});
}

class ProfileDrawing {
 public:
  ProfileDrawing(const Survey& survey, const Study& study)
      : survey_(survey),
        study_(study),
        profile_(study.profile),
        along_(drawn_range(study)),
        scale_(profile_scale(along_.max - along_.min, {profile_.lowest, profile_.highest})) {}

  std::string drawn() {
    svg_.rectangle({0, 0}, sheet_width, sheet_height, R"(fill="#ffffff")");
    headings();
    levels();
    terrain();
    ordinates();
    cuts();
    datum();
    rows();
    return svg_.document(sheet_width, sheet_height, "Longitudinal profile: " + survey_.file_name);
  }

 private:
  // The terrain, and the boundary where the section line cuts it.
  static Range drawn_range(const Study& study) {
    Range range{study.profile.terrain.front().distance, study.profile.terrain.back().distance};
    for (const Cut& cut : study.section.cuts) {
      range.min = std::min(range.min, cut.distance);
      range.max = std::max(range.max, cut.distance);
    }
    return range;
  }

  // What is shorter than the frame is in its middle.
  double across(double distance) const {
    const double middle = (graph.left + graph.right) / 2;
    return middle + (distance - (along_.min + along_.max) / 2) * scale_.across;
  }

  double up(double elevation) const {
    return graph.bottom - (elevation - scale_.datum) * scale_.up();
  }

  int level_decimals() const { return decimals_for(scale_.level_step); }

  void headings() {
    const std::string exaggeration = fixed(scale_.exaggeration, 0);
    draw_headings(svg_, graph, "Longitudinal profile: " + survey_.file_name,
                  "Vertical exaggeration " + exaggeration + ": elevations are drawn " +
                      (scale_.exaggeration == 1.0 ? "to the scale of the distances"
                                                  : exaggeration + " times as large as distances"));
    svg_.text(
        {graph.left, 204},
        std::string("Distances from the start of the section line; lengths as in the file. "
                    "Dots: points of the terrain.") +
            (study_.section.cuts.empty() ? "" : " Red: cuts of the boundary, by their numbers."),
        {.size = 2.6, .colour = "#777777"});
  }

  // ---- The graph

  void levels() {
    // The datum is one of them, but has its own line.
    const Range seen{scale_.datum, profile_.highest + above_terrain / scale_.up()};
    std::vector<double> levels = multiples(seen, scale_.level_step);
    std::erase_if(levels, [&](double level) { return up(level) > graph.bottom - 1.0; });
    svg_.open_group(R"(id="levels" stroke="#cccccc" stroke-width="0.2")");
    for (const double level : levels) {
      svg_.line({graph.left, up(level)}, {graph.right, up(level)});
    }
    svg_.close_group();
    for (const double level : levels) side_text(up(level), fixed(level, level_decimals()), false);
  }

  void side_text(double y, const std::string& text, bool bold) {
    const double size = std::min(text_size, (graph.left - 4.0) / text_width(text, 1.0));
    svg_.text({graph.left - 1.5, y + 0.35 * size}, text,
              {.size = size, .anchor = Anchor::end, .bold = bold});
  }

  void terrain() {
    std::vector<Place> line;
    for (const ProfilePoint& point : profile_.terrain) {
      line.push_back({across(point.distance), up(point.elevation)});
    }
    std::vector<Place> ground = line;
    ground.push_back({line.back().x, graph.bottom});
    ground.push_back({line.front().x, graph.bottom});
    svg_.path(path_through(ground, true), ground_paint);
    svg_.open_group(R"(id="terrain")");
    svg_.path(path_through(line, false), terrain_paint);
    svg_.close_group();
    svg_.open_group(R"(id="terrain-points" fill="#7a4a12")");
    for (const Place& place : line) svg_.path(circle(place, point_reach));
    svg_.close_group();
  }

  void ordinates() {
    svg_.open_group(R"(id="ordinates" stroke="#777777" stroke-width="0.2")");
    for (const Station& station : profile_.stations) {
      const double x = across(station.distance);
      svg_.line({x, up(station.elevation)}, {x, elevation_row.top});
    }
    svg_.close_group();
  }

  void cuts() {
    const double top = up(profile_.highest) - above_terrain;
    svg_.open_group(R"(id="cuts" stroke="#c00000" stroke-width="0.3" stroke-dasharray="3 1.2")");
    for (const Cut& cut : study_.section.cuts) {
      svg_.line({across(cut.distance), top}, {across(cut.distance), graph.bottom});
    }
    svg_.close_group();
    double free_from = graph.left;
    for (std::size_t i = 0; i < study_.section.cuts.size(); ++i) {
      const std::string number = std::to_string(i + 1);
      const double x = across(study_.section.cuts[i].distance);
      const double half = text_width(number, 3.2) / 2 + 0.3;
      if (x - half < free_from) continue;  // its neighbour stands there
      free_from = x + half;
      svg_.text({x, top - 0.9}, number,
                {.size = 3.2, .anchor = Anchor::middle, .colour = cut_colour, .bold = true});
    }
  }

  void datum() {
    svg_.open_group(R"(id="datum")");
    svg_.path(path_through({{graph.left, graph.bottom}, {graph.right, graph.bottom}}, false),
              datum_paint);
    side_text(graph.bottom, "Datum " + fixed(scale_.datum, level_decimals()), true);
    svg_.close_group();
  }

  // ---- The rows below it

  void rows() {
    for (const Row& row : {elevation_row, distance_row, station_row}) {
      svg_.rectangle({graph.left, row.top}, graph.width(), row.height(), thin_black);
      svg_.text({graph.left - 1.5, row.middle() + 1.0}, row.title,
                {.size = title_size, .anchor = Anchor::end});
    }
    svg_.open_group(R"(id="stations")");
    for (const std::size_t i : stations_with_text()) {
      const Station& station = profile_.stations[i];
      const double x = across(station.distance);
      set_upwards(svg_, x, elevation_row, fixed(station.elevation, 3));
      set_upwards(svg_, x, distance_row, fixed(station.distance, 3));
      svg_.text({x, station_row.middle() + 0.9}, std::to_string(i + 1),
                {.size = text_size, .anchor = Anchor::middle});
    }
    svg_.close_group();
  }

  // Both ends, and of those between them all that touch no other.
  std::vector<std::size_t> stations_with_text() const {
    const std::size_t last = profile_.stations.size() - 1;
    const double gap = std::max(row_gap, text_width(std::to_string(last), text_size) + 0.8);
    const auto x_of = [&](std::size_t i) { return across(profile_.stations[i].distance); };
    std::vector<std::size_t> chosen = {0};
    for (std::size_t i = 1; i < last; ++i) {
      if (x_of(i) - x_of(chosen.back()) >= gap && x_of(last) - x_of(i) >= gap) chosen.push_back(i);
    }
    if (x_of(last) - x_of(0) >= gap) chosen.push_back(last);
    return chosen;
  }

  const Survey& survey_;
  const Study& study_;
  const Profile& profile_;
  Range along_;
  ProfileScale scale_;
  Svg svg_;
};

}  // namespace

ProfileScale profile_scale(double length, const Range& elevations) {
  const double height = elevations.max - elevations.min;
  ProfileScale scale;
  scale.across = (graph.width() - 2 * padding) / length;
  if (height > 0.0) scale.across = std::min(scale.across, terrain_height / height);
  if (!std::isfinite(height) || !std::isfinite(scale.across) || !(scale.across > 0.0)) {
    throw DrawingFault("the terrain has no scale for a profile");
  }
  const double room = terrain_height / (height * scale.across);
  if (height > 0.0) {
    scale.exaggeration = round_down(std::clamp(room, 1.0, most_exaggeration));
  }
  scale.level_step = round_near(level_distance / scale.up());
  const double below = elevations.min - above_datum / scale.up();
  scale.datum = std::floor(below / scale.level_step) * scale.level_step;
  return scale;
}

std::string profile_drawing_of(const Survey& survey, const Study& study) {
  if (!study.complete() || study.profile.stations.empty()) {
    throw DrawingFault("no profile: " + reason_for_no_profile(study));
  }
  return ProfileDrawing(survey, study).drawn();
}

}  // namespace survey_report
