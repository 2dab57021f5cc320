#include "survey_report/report.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string_view>

#include "survey_report/extremes.h"
#include "survey_report/layout.h"
#include "survey_report/rounding.h"
#include "survey_report/utf8.h"

namespace survey_report {

namespace {

constexpr int coordinate_decimals = 3;
constexpr int slope_decimals = 2;
constexpr std::string_view no_number = "-";

std::string length_text(double length) { return fixed(length, coordinate_decimals); }

std::string counted(std::size_t count, std::string_view one, std::string_view many) {
  return std::to_string(count) + ' ' + std::string(count == 1 ? one : many);
}

std::string joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : ", ") + word;
  return text;
}

std::string titled(std::string_view title) {
  return std::string(title) + '\n' + std::string(display_width(title), '=') + "\n\n";
}

// A difference has no number past every double.
std::string difference_text(double difference) {
  return std::isfinite(difference) ? length_text(difference) : std::string(no_number);
}

void add_range(Table& table, const std::string& name, const std::vector<SurveyPoint>& points,
               double SurveyPoint::*axis, const Range& range) {
  const auto holder = [&](double value) { return points[holder_of(points, axis, value)].number; };
  table.add({name, length_text(range.min), holder(range.min), length_text(range.max),
             holder(range.max), difference_text(range.max - range.min)});
}

std::string extents_table(const std::vector<SurveyPoint>& points) {
  Table table({{"Axis", Align::left},
               {"Minimum", Align::right},
               {"Point", Align::right},
               {"Maximum", Align::right},
               {"Point", Align::right},
               {"Difference", Align::right}});
  const Extents extents = extents_of(points);
  add_range(table, "X", points, &SurveyPoint::x, extents.x);
  add_range(table, "Y", points, &SurveyPoint::y, extents.y);
  add_range(table, "Z", points, &SurveyPoint::z, extents.z);
  return table.text();
}

// The two cells of a leg; empty after the last point, which leads nowhere.
struct LegCells {
  std::string azimuth;
  std::string distance;
};

LegCells cells_of(const Leg& leg) {
  return {leg.azimuth ? azimuth_text(*leg.azimuth) : std::string(no_number),
          length_text(leg.distance)};
}

std::string place_text(const Place& place) {
  return length_text(place.x) + ", " + length_text(place.y);
}

std::string slope_text(const std::optional<double>& slope) {
  return slope ? fixed(*slope, slope_decimals) : std::string(no_number);
}

// How the boundary was found.
std::string origin_of(const Boundary& boundary) {
  const std::string coded = counted(boundary.coded_points, "point", "points") +
                            " whose code begins with " + without_controls(boundary.code);
  if (!boundary.is_hull) return coded + ", in the order of the file";
  return "convex hull of all points, for want of a boundary: " + coded;
}

std::string vertices_text(const Boundary& boundary) {
  const std::string count = std::to_string(boundary.vertices.size());
  const bool all = boundary.is_hull || boundary.coded_points == boundary.vertices.size();
  if (all) return count;
  const std::size_t again = boundary.coded_points - boundary.vertices.size();
  return count + "; " + counted(again, "point lies", "points lie") +
         " where an earlier one does: measured again";
}

constexpr std::string_view no_area = "None: the points do not enclose an area.\n";

// Why a section has no numbers; empty when it has.
std::string reason_for_none(const Study& study) {
  if (study.boundary.vertices.empty()) return std::string(no_area);
  if (!study.fault.empty()) return "Not computed: " + study.fault + ".\n";
  return {};
}

std::string cuts_table(const Section& section) {
  Table table({{"Cut", Align::right},
               {"X", Align::right},
               {"Y", Align::right},
               {"Distance", Align::right}});
  for (std::size_t i = 0; i < section.cuts.size(); ++i) {
    const Cut& cut = section.cuts[i];
    table.add({std::to_string(i + 1), length_text(cut.place.x), length_text(cut.place.y),
               length_text(cut.distance)});
  }
  return table.text();
}

std::string summary_text(const Relief& relief) {
  const ReliefSummary summary = summary_of(relief);
  return counted(relief.nodes.size(), "node", "nodes") + "; elevation lowest " +
         length_text(summary.lowest) + ", highest " + length_text(summary.highest) + ", mean " +
         length_text(summary.mean) + "; mean of the slopes " + slope_text(summary.mean_slope) +
         (summary.mean_slope ? " %\n" : "\n");
}

std::string nodes_table(const Survey& survey, const Relief& relief) {
  Table table({{"X", Align::right},
               {"Y", Align::right},
               {"Elevation", Align::right},
               {"Slope %", Align::right},
               {"Triangle", Align::left}});
  for (const Node& node : relief.nodes) {
    std::vector<std::string> numbers;
    for (const std::size_t i : node.triangle) numbers.push_back(survey.points[i].number);
    table.add({length_text(node.place.x), length_text(node.place.y), length_text(node.elevation),
               slope_text(node.slope), joined(numbers)});
  }
  return table.text();
}

std::string step_text(double step) { return fixed(step, decimals_for(step)); }

std::string stations_table(const Profile& profile) {
  Table table({{"Station", Align::right},
               {"Distance", Align::right},
               {"X", Align::right},
               {"Y", Align::right},
               {"Elevation", Align::right}});
  for (std::size_t i = 0; i < profile.stations.size(); ++i) {
    const Station& station = profile.stations[i];
    table.add({std::to_string(i + 1), length_text(station.distance), length_text(station.place.x),
               length_text(station.place.y), length_text(station.elevation)});
  }
  return table.text();
}

std::string inside_table(const Survey& survey, const std::vector<std::size_t>& inside) {
  Table table({{"Point", Align::right},
               {"X", Align::right},
               {"Y", Align::right},
               {"Z", Align::right},
               {"Code", Align::left}});
  for (const std::size_t i : inside) {
    const SurveyPoint& point = survey.points[i];
    table.add({point.number, length_text(point.x), length_text(point.y), length_text(point.z),
               point.code});
  }
  return table.text();
}

// ---- Repeated points

std::string pairs_text(const Repeats& repeats) {
  if (repeats.too_many_pairs) return "more than " + std::to_string(most_pairs) + ": not listed";
  return std::to_string(repeats.pairs.size());
}

// The report goes on with all points, so that none of them is said to be gone.
std::string counts_text(std::size_t all, const Repeats& repeats) {
  if (!repeats.fault.empty()) return "none would be removed: " + repeats.fault;
  return std::to_string(all - repeats.kept.size()) + " of " + std::to_string(all) +
         " would be removed";
}

std::string pairs_table(const std::vector<SurveyPoint>& points, const Repeats& repeats) {
  Table table({{"Point", Align::right},
               {"Code", Align::left},
               {"Point", Align::right},
               {"Code", Align::left},
               {"Distance", Align::right},
               {"Rise", Align::right},
               {"Would be removed", Align::left}});
  for (const RepeatedPair& pair : repeats.pairs) {
    std::vector<std::string> leaving;
    for (const std::size_t i : {pair.first, pair.second}) {
      if (repeats.fault.empty() && !repeats.keeps(i)) leaving.push_back(points[i].number);
    }
    const SurveyPoint& first = points[pair.first];
    const SurveyPoint& second = points[pair.second];
    table.add({first.number, first.code, second.number, second.code, length_text(pair.distance),
               difference_text(pair.rise),
               leaving.empty() ? std::string(no_number) : joined(leaving)});
  }
  return table.text();
}

// A row a point that stands for others too.
std::string stand_ins_table(const std::vector<SurveyPoint>& points, const DialogRemoval& removal) {
  std::vector<std::vector<std::string>> groups(removal.kept.size());
  for (std::size_t i = 0; i < points.size(); ++i) {
    groups[removal.stands_for[i]].push_back(points[i].number);
  }
  Table table({{"Kept", Align::right}, {"Code", Align::left}, {"Stands for", Align::left}});
  for (std::size_t i = 0; i < groups.size(); ++i) {
    const SurveyPoint& kept = removal.kept[i];
    if (groups[i].size() > 1) table.add({kept.number, kept.code, joined(groups[i])});
  }
  return table.text();
}

bool has_no_slope(const Node& node) { return !node.slope.has_value(); }

bool stands_still(const Leg& leg) { return !leg.azimuth.has_value(); }

}  // namespace

std::string heading_section(const Survey& survey, const Traverse& traverse) {
  std::string text = titled("Survey report: " + without_controls(survey.file_name));
  text += "Points    " + std::to_string(survey.points.size()) + ", read as " +
          std::string(field_names(survey.order)) + '\n';
  text += "Traverse  " + length_text(traverse.length) + " in plan, " +
          counted(traverse.legs.size(), "leg", "legs") + "\n\n";
  return text + extents_table(survey.points);
}

std::string repeats_section(const Survey& survey, const Study& study) {
  const Repeats& repeats = study.repeats;
  std::string text = titled("Repeated points");
  text += "Tolerance  " + exact(repeats.tolerance, 0) + ", in X and in Y\n";
  text += "Pairs      " + pairs_text(repeats) + '\n';
  text += "Points     " + counts_text(survey.points.size(), repeats) + '\n';
  if (repeats.pairs.empty()) return text;
  text += "\nA pair is any two points nearer than the tolerance in X and in Y; distance in plan,\n";
  text += "rise from the first. A removal would go once through the points in the order of X,\n";
  text += "take neighbours that near to the first of them for one point, and keep the\n";
  text += "highest. It would not see a pair that another point parts in that order: both may\n";
  text += "stay. This report and its drawings are of all points, none of them removed.\n\n";
  return text + pairs_table(survey.points, repeats);
}

std::string dialog_section(const Survey& survey, const DialogRemoval& removal,
                           const std::string& file) {
  std::string text = titled("Points kept in the dialog");
  if (!removal.confirmed) return text + "Cancelled: no file of kept points was written.\n";
  const std::size_t all = survey.points.size();
  text += "Points  " + std::to_string(removal.kept.size()) + " of " + std::to_string(all) + '\n';
  text += "File    " + without_controls(file) + '\n';
  if (removal.kept.size() == all) return text;
  text += "\nThe others are left out of the file alone: this report and its drawings are of all\n";
  text += "points.\n\n";
  return text + stand_ins_table(survey.points, removal);
}

std::string boundary_section(const Study& study) {
  std::string text = titled("Boundary and section line");
  const std::string reason = reason_for_none(study);
  if (!reason.empty()) return text + reason;
  const Section& section = study.section;
  text += "Boundary   " + origin_of(study.boundary) + '\n';
  text += "Vertices   " + vertices_text(study.boundary) + '\n';
  text += "Perimeter  " + length_text(study.perimeter) + '\n';
  text += "Section    from " + place_text(section.line.from) + " to " +
          place_text(section.line.to) + '\n';
  text += "Bearing    " + azimuth_text(section.bearing) + " gon\n";
  text += "Length     " + length_text(section.length) + "\n\n";
  if (section.cuts.empty()) return text + "The section line does not cut the boundary.\n";
  return text + "Distance from the start of the section line.\n\n" + cuts_table(section);
}

std::string relief_section(const Survey& survey, const Study& study) {
  std::string text = titled("Elevations and slopes");
  const std::string reason = reason_for_none(study);
  if (!reason.empty()) return text + reason;
  const Relief& relief = study.relief;
  const std::string step = step_text(relief.step);
  if (relief.nodes.empty()) {
    return text + "No node of a grid of " + step +
           " lies inside the boundary with three points around it.\n";
  }
  text += "At the nodes of a grid of " + step + ", in the triangle of the three points named.\n";
  text += "Slope, where two of the three are level with each other: from the nearest of the side\n";
  text += "between them to the third. Where all three levels differ it is not the steepest slope\n";
  text +=
      "of the triangle, which may be several times as large, and it changes with how high the\n";
  text +=
      "triangle lies above the lowest point of the survey: read from it which ground is level,\n";
  text += "and no gradient.\n";
  if (std::any_of(relief.nodes.begin(), relief.nodes.end(), has_no_slope)) {
    text += "Slope - where the triangle has none.\n";
  }
  return text + '\n' + nodes_table(survey, relief) + '\n' + summary_text(relief);
}

std::string reason_for_no_profile(const Study& study) {
  if (study.boundary.vertices.empty()) return "the points do not enclose an area";
  if (!study.fault.empty()) return study.fault;
  if (!study.profile.stations.empty()) return {};
  if (!study.profile.fault.empty()) return study.profile.fault;
  return "fewer than two points within " + length_text(study.profile.corridor) +
         " of the section line give it an elevation";
}

std::string profile_section(const Study& study) {
  std::string text = titled("Longitudinal profile");
  const std::string reason = reason_for_none(study);
  if (!reason.empty()) return text + reason;
  const Profile& profile = study.profile;
  if (profile.stations.empty()) return text + "None: " + reason_for_no_profile(study) + ".\n";
  text += "Axis      the section line; distances from its start\n";
  text += "Terrain   " + counted(profile.terrain.size(), "point", "points") + " within " +
          length_text(profile.corridor) + " of the axis, at most " +
          length_text(profile.widest_gap) + " apart along it\n";
  text += "Lowest    " + length_text(profile.lowest) + '\n';
  text += "Highest   " + length_text(profile.highest) + '\n';
  text += "Stations  every " + step_text(profile.step) + ", and both ends of the terrain\n\n";
  text += "The terrain has a point where each of these points is beside the axis: with its own\n";
  text += "elevation where it is on the axis, else with that of the triangle of three points\n";
  text += "around the place on the axis. From one to the next it runs straight.\n\n";
  return text + stations_table(profile);
}

std::string area_section(const Survey& survey, const Study& study) {
  std::string text = titled("Work area");
  const WorkArea& area = study.area;
  if (area.vertices.empty()) return text + std::string(no_area);
  const Box box = box_of(area.vertices);
  text += "Area      " + area.origin + '\n';
  text += "Vertices  " + std::to_string(area.vertices.size()) + '\n';
  text += "Box       " + place_text({box.x.min, box.y.min}) + " to " +
          place_text({box.x.max, box.y.max}) + '\n';
  if (!area.fault.empty()) return text + "Inside    not computed: " + area.fault + ".\n";
  text += "Inside    " + std::to_string(area.inside.size()) + " of " +
          counted(survey.points.size(), "point", "points") + ", to a hundredth\n";
  return area.inside.empty() ? text : text + '\n' + inside_table(survey, area.inside);
}

std::string traverse_section(const Survey& survey, const Traverse& traverse) {
  Table table({{"Number", Align::right},
               {"X", Align::right},
               {"Y", Align::right},
               {"Z", Align::right},
               {"Code", Align::left},
               {"Azimuth", Align::right},
               {"Distance", Align::right}});
  for (std::size_t i = 0; i < survey.points.size(); ++i) {
    const SurveyPoint& point = survey.points[i];
    const LegCells leg = i < traverse.legs.size() ? cells_of(traverse.legs[i]) : LegCells{};
    table.add({point.number, length_text(point.x), length_text(point.y), length_text(point.z),
               point.code, leg.azimuth, leg.distance});
  }
  std::string text = titled("Traverse");
  text += "Azimuth and distance lead to the point on the next row, in plan.\n";
  text += "Azimuths in gon: 400 to the circle, 0 along +Y, clockwise.\n";
  if (std::any_of(traverse.legs.begin(), traverse.legs.end(), stands_still)) {
    text += "Azimuth - where the next point has the same X and Y.\n";
  }
  return text + '\n' + table.text();
}

std::string report(const Survey& survey, const Study& study, const std::string& dialog) {
  const Traverse traverse = traverse_through(survey.points);
  return heading_section(survey, traverse) + "\n\n" + repeats_section(survey, study) + "\n\n" +
         dialog + (dialog.empty() ? "" : "\n\n") + boundary_section(study) + "\n\n" +
         relief_section(survey, study) + "\n\n" + profile_section(study) + "\n\n" +
         area_section(survey, study) + "\n\n" + traverse_section(survey, traverse);
}

}  // namespace survey_report
