#include "survey_report/profile_drawing.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <string_view>
#include <vector>

#include "survey_report/layout.h"
#include "survey_report/rounding.h"
#include "survey_report/scale.h"
#include "survey_report/svg.h"
#include "survey_report/symbols.h"
#include "survey_report/words.h"

namespace survey_report {

namespace {

constexpr double padding = 6.0;        // between the frame and the ends of the terrain
constexpr double beside_graph = 30.0;  // what is written at its left
constexpr double above_graph = 9.0;    // the notes
constexpr double above_datum = 6.0;    // at least, below the lowest point
constexpr double above_terrain = 7.0;  // levels are written so far
constexpr double cut_size = 3.6;
constexpr double level_distance = 10.0;  // about, between levels
constexpr double farthest_level = 16.0;  // where that distance is rounded up
constexpr double no_terrain = above_datum + farthest_level + above_terrain + cut_size + 2.0;
constexpr double title_row = 6.0;
constexpr double number_height = 7.0;
constexpr double row_gap = 4.0;  // between texts that are set upwards
constexpr double point_reach = 0.45;
constexpr std::size_t longest_value = 12;
constexpr double slack = 1e-9;  // what rounding may have added to heights that just fit

// A row below the datum.
struct Row {
  std::string_view title;
  double top;
  double bottom;

  double middle() const { return (top + bottom) / 2; }
  double height() const { return bottom - top; }
};

// The parts of the sheet.
struct ProfileLayout {
  /// Texts that are set upwards are so long.
  ProfileLayout(const Sheet& sheet, double texts)
      : border(sheet.border()),
        title_block{border.left, border.bottom - 3 * title_row, border.right, border.bottom},
        station_row{words::station.view(), title_block.top - 3.0 - number_height,
                    title_block.top - 3.0},
        distance_row{words::distance.view(), station_row.top - texts - 4.0, station_row.top},
        elevation_row{words::elevation.view(), distance_row.top - texts - 4.0, distance_row.top},
        graph{border.left + beside_graph, border.top + above_graph, border.right - 5.0,
              elevation_row.top - 2.0} {}

  double room_across() const { return graph.width() - 2 * padding; }
  double room_up() const { return graph.height() - no_terrain; }

  Rect border;
  Rect title_block;
  Row station_row;
  Row distance_row;
  Row elevation_row;
  Rect graph;  ///< its lower edge is the datum
};

constexpr std::string_view thin_black = R"(fill="none" stroke="#222222" stroke-width="0.25")";
constexpr std::string_view thick_black = R"(fill="none" stroke="#222222" stroke-width="0.6")";
constexpr std::string_view ground_paint = R"(fill="#f4efe4")";
constexpr std::string_view terrain_paint =
    R"(fill="none" stroke="#7a4a12" stroke-width="0.5" stroke-linejoin="round")";
constexpr std::string_view datum_paint = R"(fill="none" stroke="#222222" stroke-width="0.6")";
constexpr std::string_view cut_colour = "#c00000";

std::string elevation_text(const Station& station) {
  return sheet_value(station.elevation, 3, longest_value);
}

std::string distance_text(const Station& station) {
  return sheet_value(station.distance, 3, longest_value);
}

double longest_text(const std::vector<Station>& stations) {
  double longest = 0.0;
  for (const Station& station : stations) {
    for (const std::string& text : {elevation_text(station), distance_text(station)}) {
      longest = std::max(longest, text_width(text, least_letters));
    }
  }
  return longest;
}

// A text that is read from the right.
void set_upwards(Svg& svg, double x, const Row& row, const std::string& text) {
  svg.text({x + 0.36 * least_letters, row.middle()}, text,
           {.size = least_letters, .anchor = Anchor::middle, .upwards = true});
}

// The terrain, and the boundary where the section line cuts it.
Range drawn_range(const Study& study) {
  Range range{study.profile.terrain.front().distance, study.profile.terrain.back().distance};
  for (const Cut& cut : study.section.cuts) {
    range.min = std::min(range.min, cut.distance);
    range.max = std::max(range.max, cut.distance);
  }
  return range;
}

// Both ends, and of those between them all that touch no other, where a unit of
// the survey takes so many millimetres.
std::vector<std::size_t> stations_with_text(const std::vector<Station>& stations, double across) {
  const std::size_t last = stations.size() - 1;
  const double gap =
      std::max(row_gap, text_width(std::to_string(stations.size()), least_letters) + 0.8);
  const auto apart = [&](std::size_t i, std::size_t j) {
    return (stations[j].distance - stations[i].distance) * across >= gap;
  };
  std::vector<std::size_t> chosen = {0};
  for (std::size_t i = 1; i < last; ++i) {
    if (apart(chosen.back(), i) && apart(i, last)) chosen.push_back(i);
  }
  if (apart(0, last)) chosen.push_back(last);
  return chosen;
}

class ProfileNeeds final : public SheetNeeds {
 public:
  ProfileNeeds(const Study& study, double millimetres)
      : study_(study), along_(drawn_range(study)), millimetres_(millimetres) {}

  double least_scale(const Sheet& sheet) const override {
    const ProfileLayout layout(sheet, longest_text(study_.profile.stations));
    const double length = along_.max - along_.min;
    const double height = study_.profile.highest - study_.profile.lowest;
    const double scale = std::max(length / layout.room_across() * millimetres_,
                                  height / layout.room_up() * millimetres_);
    const bool finite = std::isfinite(scale) && std::isfinite(millimetres_ / scale);
    if (!finite) throw DrawingFault(words::no_scale_for_profile.text());
    return scale;
  }

  double labelled(const ScaledSheet& scaled) const override {
    const std::vector<Station>& stations = study_.profile.stations;
    const auto texts = stations_with_text(stations, millimetres_ / scaled.scale).size();
    return static_cast<double>(texts) / static_cast<double>(stations.size());
  }

  bool prefers_landscape() const override { return true; }

 private:
  const Study& study_;
  Range along_;
  double millimetres_;
};

// How large the terrain becomes.
double enlargement(const ScaledSheet& scaled, const Study& study, double millimetres) {
  const ProfileLayout layout(scaled.sheet, longest_text(study.profile.stations));
  const Range elevations{study.profile.lowest, study.profile.highest};
  const double exaggeration =
      profile_heights(scaled.scale, elevations, layout.room_up(), millimetres).exaggeration;
  return exaggeration / scaled.scale / scaled.scale;
}

// Not every round scale has a round one for the elevations that fills the sheet:
// where the next one does so better, it is taken.
ScaledSheet profile_sheet(const Study& study, const DrawingOptions& options) {
  const double millimetres = options.millimetres();
  const ScaledSheet scaled = sheet_for(ProfileNeeds(study, millimetres), options.paper,
                                       options.profile_scale, "--profile-scale");
  if (options.profile_scale) return scaled;
  const ScaledSheet next{scaled.sheet, round_scale(1.01 * scaled.scale)};
  const bool larger =
      enlargement(next, study, millimetres) > enlargement(scaled, study, millimetres);
  return larger ? next : scaled;
}

class ProfileDrawing {
 public:
  ProfileDrawing(const Survey& survey, const Study& study, const DrawingOptions& options)
      : survey_(survey),
        study_(study),
        options_(options),
        profile_(study.profile),
        along_(drawn_range(study)),
        scaled_(profile_sheet(study, options)),
        layout_(scaled_.sheet, longest_text(profile_.stations)),
        graph_(layout_.graph),
        heights_(profile_heights(scaled_.scale, {profile_.lowest, profile_.highest},
                                 layout_.room_up(), options.millimetres())),
        across_(options.millimetres() / scaled_.scale),
        up_(across_ * heights_.exaggeration) {}

  Drawing drawn() {
    const Sheet& sheet = scaled_.sheet;
    svg_.rectangle({0, 0}, sheet.width(), sheet.height(), R"(fill="#ffffff")");
    const Rect& b = layout_.border;
    svg_.rectangle({b.left, b.top}, b.width(), b.height(), thick_black);
    notes();
    levels();
    terrain();
    ordinates();
    cuts();
    datum();
    rows();
    title_block();
    return {
        svg_.element(sheet.width(), sheet.height(), words::profile_title.with({survey_.file_name})),
        profile_.terrain.size()};
  }

 private:
  // What is shorter than the frame is in its middle.
  double across(double distance) const {
    const double middle = (graph_.left + graph_.right) / 2;
    return middle + (distance - (along_.min + along_.max) / 2) * across_;
  }

  double up(double elevation) const { return graph_.bottom - (elevation - heights_.datum) * up_; }

  std::string level_text(double level) const {
    return sheet_value(level, decimals_for(heights_.level_step));
  }

  void notes() {
    std::string text = words::profile_notes.text();
    if (!study_.section.cuts.empty()) text += words::profile_cuts_note.view();
    svg_.text({layout_.border.left + 3.0, layout_.border.top + 5.0}, text,
              {.size = least_letters, .colour = "#555555"});
  }

  // ---- The graph

  void levels() {
    // The datum is one of them, but has its own line.
    const Range seen{heights_.datum, profile_.highest + above_terrain / up_};
    std::vector<double> levels = multiples(seen, heights_.level_step);
    std::erase_if(levels, [&](double level) { return up(level) > graph_.bottom - 1.0; });
    svg_.open_group(R"(id="levels" stroke="#cccccc" stroke-width="0.2")");
    for (const double level : levels) {
      svg_.line({graph_.left, up(level)}, {graph_.right, up(level)});
    }
    svg_.close_group();
    for (const double level : levels) side_text(up(level), level_text(level), false);
  }

  void side_text(double y, const std::string& text, bool bold) {
    svg_.text({graph_.left - 1.5, y + 0.36 * least_letters}, text,
              {.size = least_letters, .anchor = Anchor::end, .bold = bold});
  }

  void terrain() {
    std::vector<Place> line;
    for (const ProfilePoint& point : profile_.terrain) {
      line.push_back({across(point.distance), up(point.elevation)});
    }
    std::vector<Place> ground = line;
    ground.push_back({line.back().x, graph_.bottom});
    ground.push_back({line.front().x, graph_.bottom});
    svg_.path(path_through(ground, true), ground_paint);
    svg_.open_group(R"(id="terrain")");
    svg_.path(path_through(line, false), terrain_paint);
    svg_.close_group();
    svg_.open_group(R"(id="terrain-points" fill="#7a4a12")");
    terrain_points(line);
    svg_.close_group();
  }

  void terrain_points(const std::vector<Place>& line) {
    std::map<std::string_view, std::vector<std::size_t>> codes;
    for (std::size_t i = 0; i < line.size(); ++i) {
      codes[survey_.points[profile_.terrain[i].point].code].push_back(i);
    }
    for (const auto& [code, members] : codes) {
      svg_.open_code(code);
      for (const std::size_t i : members) {
        svg_.titled_path(circle(line[i], point_reach),
                         point_title(survey_.points[profile_.terrain[i].point]));
      }
      svg_.close_group();
    }
  }

  void ordinates() {
    svg_.open_group(R"(id="ordinates" stroke="#777777" stroke-width="0.2")");
    for (const Station& station : profile_.stations) {
      const double x = across(station.distance);
      svg_.line({x, up(station.elevation)}, {x, layout_.elevation_row.top});
    }
    svg_.close_group();
  }

  void cuts() {
    const double top = up(profile_.highest) - above_terrain;
    svg_.open_group(R"(id="cuts" stroke="#c00000" stroke-width="0.3" stroke-dasharray="3 1.2")");
    for (const Cut& cut : study_.section.cuts) {
      svg_.line({across(cut.distance), top}, {across(cut.distance), graph_.bottom});
    }
    svg_.close_group();
    double free_from = graph_.left;
    for (std::size_t i = 0; i < study_.section.cuts.size(); ++i) {
      const std::string number = std::to_string(i + 1);
      const double x = across(study_.section.cuts[i].distance);
      const double half = 1.1 * text_width(number, cut_size) / 2 + 0.3;
      if (x - half < free_from) {  // its neighbour stands there
        ++labels_left_out_;
        continue;
      }
      free_from = x + half;
      svg_.text({x, top - 0.9}, number,
                {.size = cut_size, .anchor = Anchor::middle, .colour = cut_colour, .bold = true});
    }
  }

  void datum() {
    svg_.open_group(R"(id="datum")");
    svg_.path(path_through({{graph_.left, graph_.bottom}, {graph_.right, graph_.bottom}}, false),
              datum_paint);
    side_text(graph_.bottom, words::datum.with({level_text(heights_.datum)}), true);
    svg_.close_group();
  }

  // ---- The rows below it

  void rows() {
    for (const Row& row : {layout_.elevation_row, layout_.distance_row, layout_.station_row}) {
      svg_.rectangle({graph_.left, row.top}, graph_.width(), row.height(), thin_black);
      svg_.text({graph_.left - 1.5, row.middle() + 0.36 * least_letters}, row.title,
                {.size = least_letters, .anchor = Anchor::end});
    }
    const std::vector<Station>& stations = profile_.stations;
    const std::vector<std::size_t> chosen = stations_with_text(stations, across_);
    labels_left_out_ += stations.size() - chosen.size();
    svg_.open_group(R"(id="stations")");
    for (const std::size_t i : chosen) {
      const Station& station = stations[i];
      const double x = across(station.distance);
      set_upwards(svg_, x, layout_.elevation_row, elevation_text(station));
      set_upwards(svg_, x, layout_.distance_row, distance_text(station));
      svg_.text({x, layout_.station_row.middle() + 0.36 * least_letters}, std::to_string(i + 1),
                {.size = least_letters, .anchor = Anchor::middle});
    }
    svg_.close_group();
  }

  // ---- The title block: three columns below everything

  void title_block() {
    const Rect& block = layout_.title_block;
    const double second = block.left + 0.34 * block.width();
    const double third = block.left + 0.74 * block.width();
    const auto cell = [&](double left, double right, int row, int rows) {
      return Rect{left, block.top + row * title_row, right, block.top + (row + rows) * title_row};
    };
    svg_.open_group(R"(id="profile-title-block")");
    draw_cell(svg_, cell(block.left, second, 0, 2), survey_.file_name, 4.5, true);
    draw_cell(svg_, cell(block.left, second, 2, 1), words::longitudinal_profile.view(),
              least_letters);
    draw_cell(svg_, cell(second, third, 0, 1), scales_text(), 3.4, true);
    draw_cell(svg_, cell(second, third, 1, 1),
              words::exaggeration.with({fixed(heights_.exaggeration, 0), unit_text(options_)}),
              least_letters);
    draw_cell(svg_, cell(second, third, 2, 1), left_out_text(labels_left_out_), least_letters);
    draw_cell(svg_, cell(third, block.right, 0, 1), words::sheet.with({scaled_.sheet.text()}),
              least_letters);
    draw_cell(svg_, cell(third, block.right, 1, 1), words::date.view(), least_letters);
    draw_cell(svg_, cell(third, block.right, 2, 1), words::drawn.view(), least_letters);
    svg_.rectangle({block.left, block.top}, block.width(), block.height(), thick_black);
    svg_.close_group();
  }

  std::string scales_text() const {
    return words::profile_scales.with(
        {scale_text(scaled_.scale), scale_text(scaled_.scale / heights_.exaggeration)});
  }

  const Survey& survey_;
  const Study& study_;
  const DrawingOptions& options_;
  const Profile& profile_;
  Range along_;
  ScaledSheet scaled_;
  ProfileLayout layout_;
  const Rect& graph_;
  ProfileHeights heights_;
  double across_;  // millimetres on the sheet for one unit of distance
  double up_;      // and of elevation
  std::size_t labels_left_out_ = 0;
  Svg svg_;
};

}  // namespace

ProfileHeights profile_heights(double scale, const Range& elevations, double room,
                               double millimetres) {
  const double level = elevations.max - elevations.min;
  const double natural = level * millimetres / scale;
  ProfileHeights heights;
  for (const double factor : {2.0, 5.0, 10.0, 20.0, 50.0, 100.0}) {
    const bool round = is_round_scale(scale / factor) || !is_round_scale(scale);
    const bool fits = natural > 0.0 && natural * factor <= room * (1.0 + slack);
    if (round && fits) heights.exaggeration = factor;
  }
  const double up = millimetres / scale * heights.exaggeration;
  heights.level_step = round_near(level_distance / up);
  const double below = elevations.min - above_datum / up;
  heights.datum = std::floor(below / heights.level_step) * heights.level_step;
  return heights;
}

Drawing profile_drawing_of(const Survey& survey, const Study& study,
                           const DrawingOptions& options) {
  if (!study.complete() || study.profile.stations.empty()) {
    throw DrawingFault(words::no_profile.with({reason_for_no_profile(study)}));
  }
  return ProfileDrawing(survey, study, options).drawn();
}

}  // namespace survey_report
