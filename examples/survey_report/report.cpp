#include "survey_report/report.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string_view>

#include "survey_report/extremes.h"
#include "survey_report/layout.h"
#include "survey_report/rounding.h"
#include "survey_report/utf8.h"
#include "survey_report/words.h"

namespace survey_report {

namespace {

constexpr int coordinate_decimals = 3;
constexpr int slope_decimals = 2;
constexpr std::string_view no_number = "-";

std::string length_text(double length) { return fixed(length, coordinate_decimals); }

std::string counted(std::size_t count, const Word& one, const Word& many) {
  return std::to_string(count) + ' ' + (count == 1 ? one : many).text();
}

// Facts, each a line, behind their names.
class Facts {
 public:
  void add(const Word& name, const std::string& fact) { facts_.push_back({&name, fact}); }

  std::string text() const {
    std::size_t widest = 0;
    for (const Fact& fact : facts_) widest = std::max(widest, display_width(fact.name->view()));
    std::string text;
    for (const Fact& fact : facts_) {
      const std::string_view name = fact.name->view();
      text.append(name).append(widest - display_width(name) + 2, ' ') += fact.text + '\n';
    }
    return text;
  }

 private:
  struct Fact {
    const Word* name;
    std::string text;
  };

  std::vector<Fact> facts_;
};

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
  Table table({{words::axis.text(), Align::left},
               {words::minimum.text(), Align::right},
               {words::point_title.text(), Align::right},
               {words::maximum.text(), Align::right},
               {words::point_title.text(), Align::right},
               {words::difference.text(), Align::right}});
  const Extents extents = extents_of(points);
  add_range(table, "X", points, &SurveyPoint::x, extents.x);
  add_range(table, "Y", points, &SurveyPoint::y, extents.y);
  add_range(table, "Z", points, &SurveyPoint::z, extents.z);
  return table.text();
}

std::string place_text(const Place& place) {
  return length_text(place.x) + ", " + length_text(place.y);
}

std::string slope_text(const std::optional<double>& slope) {
  return slope ? fixed(*slope, slope_decimals) : std::string(no_number);
}

// How the boundary was found.
std::string origin_of(const Boundary& boundary) {
  const std::string coded =
      words::points_with_code.with({counted(boundary.coded_points, words::point, words::points),
                                    without_controls(boundary.code)});
  return (boundary.is_hull ? words::hull_for_want : words::in_order_of_file).with({coded});
}

std::string vertices_text(const Boundary& boundary) {
  const std::string count = std::to_string(boundary.vertices.size());
  const bool all = boundary.is_hull || boundary.coded_points == boundary.vertices.size();
  if (all) return count;
  const std::size_t again = boundary.coded_points - boundary.vertices.size();
  return words::measured_again.with({count, counted(again, words::point_lies, words::points_lie)});
}

// Why a section has no numbers; empty when it has.
std::string reason_for_none(const Study& study) {
  if (study.boundary.vertices.empty()) return words::no_area.text();
  if (!study.fault.empty()) return words::not_computed.with({study.fault});
  return {};
}

std::string cuts_table(const Section& section) {
  Table table({{words::cut.text(), Align::right},
               {"X", Align::right},
               {"Y", Align::right},
               {words::distance.text(), Align::right}});
  for (std::size_t i = 0; i < section.cuts.size(); ++i) {
    const Cut& cut = section.cuts[i];
    table.add({std::to_string(i + 1), length_text(cut.place.x), length_text(cut.place.y),
               length_text(cut.distance)});
  }
  return table.text();
}

std::string summary_text(const Relief& relief) {
  const ReliefSummary summary = summary_of(relief);
  return words::relief_summary.with({counted(relief.nodes.size(), words::node, words::nodes),
                                     length_text(summary.lowest), length_text(summary.highest),
                                     length_text(summary.mean), slope_text(summary.mean_slope)}) +
         (summary.mean_slope ? " %\n" : "\n");
}

std::string nodes_table(const Survey& survey, const Relief& relief) {
  Table table({{"X", Align::right},
               {"Y", Align::right},
               {words::elevation.text(), Align::right},
               {words::slope_percent.text(), Align::right},
               {words::triangle.text(), Align::left}});
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
  Table table({{words::station.text(), Align::right},
               {words::distance.text(), Align::right},
               {"X", Align::right},
               {"Y", Align::right},
               {words::elevation.text(), Align::right}});
  for (std::size_t i = 0; i < profile.stations.size(); ++i) {
    const Station& station = profile.stations[i];
    table.add({std::to_string(i + 1), length_text(station.distance), length_text(station.place.x),
               length_text(station.place.y), length_text(station.elevation)});
  }
  return table.text();
}

std::string inside_table(const Survey& survey, const std::vector<std::size_t>& inside) {
  Table table({{words::point_title.text(), Align::right},
               {"X", Align::right},
               {"Y", Align::right},
               {"Z", Align::right},
               {words::code.text(), Align::left}});
  for (const std::size_t i : inside) {
    const SurveyPoint& point = survey.points[i];
    table.add({point.number, length_text(point.x), length_text(point.y), length_text(point.z),
               point.code});
  }
  return table.text();
}

std::string triangles_text(const Survey& survey, const Contours& contours) {
  const std::string text = words::between_spots.with(
      {std::to_string(contours.triangles), std::to_string(contours.points),
       counted(survey.points.size(), words::point, words::points)});
  if (contours.left_out == 0) return text;
  return words::triangles_left_out.with({text, std::to_string(contours.left_out)});
}

std::string inside_text(const Survey& survey, const WorkArea& area) {
  if (!area.fault.empty()) return words::not_computed_inside.with({area.fault});
  return words::so_many_inside.with({std::to_string(area.inside.size()),
                                     counted(survey.points.size(), words::point, words::points)});
}

// ---- Repeated points

std::string pairs_text(const Repeats& repeats) {
  if (repeats.too_many_pairs) return words::too_many_pairs.with({std::to_string(most_pairs)});
  return std::to_string(repeats.pairs.size());
}

// The report goes on with all points, so that none of them is said to be gone.
std::string counts_text(std::size_t all, const Repeats& repeats) {
  if (!repeats.fault.empty()) return words::none_would_be_removed.with({repeats.fault});
  return words::so_many_would_be_removed.with(
      {std::to_string(all - repeats.kept.size()), std::to_string(all)});
}

std::string pairs_table(const std::vector<SurveyPoint>& points, const Repeats& repeats) {
  Table table({{words::point_title.text(), Align::right},
               {words::code.text(), Align::left},
               {words::point_title.text(), Align::right},
               {words::code.text(), Align::left},
               {words::distance.text(), Align::right},
               {words::rise.text(), Align::right},
               {words::would_be_removed.text(), Align::left}});
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
  Table table({{words::kept.text(), Align::right},
               {words::code.text(), Align::left},
               {words::stands_for.text(), Align::left}});
  for (std::size_t i = 0; i < groups.size(); ++i) {
    const SurveyPoint& kept = removal.kept[i];
    if (groups[i].size() > 1) table.add({kept.number, kept.code, joined(groups[i])});
  }
  return table.text();
}

bool has_no_slope(const Node& node) { return !node.slope.has_value(); }

bool stands_still(const Leg& leg) { return !leg.azimuth.has_value(); }

// ---- The traverse

void put(std::string& cell, double length) {
  cell.clear();
  append_fixed(cell, length, coordinate_decimals);
}

// Empty after the last point, which leads nowhere.
void put_leg(std::string& azimuth, std::string& distance, const Leg* leg) {
  azimuth.clear();
  distance.clear();
  if (leg == nullptr) return;
  azimuth = leg->azimuth ? azimuth_text(*leg->azimuth) : std::string(no_number);
  put(distance, leg->distance);
}

// The longest text of a coordinate is that of the smallest or of the largest.
std::size_t width_of(const Range& range) {
  return std::max(length_text(range.min).size(), length_text(range.max).size());
}

void widen(Range& range, double value) {
  range = {std::min(range.min, value), std::max(range.max, value)};
}

std::vector<std::size_t> traverse_widths(const Survey& survey, const Traverse& traverse) {
  std::size_t number = 0;
  std::size_t code = 0;
  const SurveyPoint& first = survey.points.front();
  Extents extents{{first.x, first.x}, {first.y, first.y}, {first.z, first.z}};
  for (const SurveyPoint& point : survey.points) {
    number = std::max(number, display_width(point.number));
    code = std::max(code, display_width(point.code));
    widen(extents.x, point.x);
    widen(extents.y, point.y);
    widen(extents.z, point.z);
  }
  std::size_t azimuth = 0;
  Range distances;
  for (const Leg& leg : traverse.legs) {
    if (leg.azimuth) azimuth = std::max(azimuth, azimuth_text(*leg.azimuth).size());
    distances.max = std::max(distances.max, leg.distance);
  }
  return {number,  width_of(extents.x), width_of(extents.y), width_of(extents.z), code,
          azimuth, width_of(distances)};
}

}  // namespace

std::string plan_note(std::size_t drawn, std::size_t points) {
  if (drawn == points) return {};
  return words::points_drawn_note.with({std::to_string(drawn), std::to_string(points)});
}

std::string heading_facts(const Survey& survey, const Traverse& traverse,
                          const ReportNotes& notes) {
  Facts facts;
  facts.add(words::points_title,
            words::read_as.with({std::to_string(survey.points.size()), field_names(survey.order)}));
  facts.add(words::traverse,
            words::in_plan.with({length_text(traverse.length),
                                 counted(traverse.legs.size(), words::leg, words::legs)}));
  if (!notes.plan.empty()) facts.add(words::plan_title, notes.plan);
  if (!notes.dxf.empty()) facts.add(words::dxf_title, notes.dxf);
  return facts.text();
}

std::string heading_section(const Survey& survey, const Traverse& traverse,
                            const ReportNotes& notes) {
  return titled(words::survey_report.with({without_controls(survey.file_name)})) +
         heading_facts(survey, traverse, notes) + '\n' + extents_table(survey.points);
}

std::string repeats_facts(const Survey& survey, const Study& study) {
  const Repeats& repeats = study.repeats;
  Facts facts;
  facts.add(words::tolerance, words::in_x_and_y.with({exact(repeats.tolerance, 0)}));
  facts.add(words::pairs, pairs_text(repeats));
  facts.add(words::points_title, counts_text(survey.points.size(), repeats));
  return facts.text() + (repeats.pairs.empty() ? "" : '\n' + words::about_pairs.text());
}

std::string repeats_section(const Survey& survey, const Study& study) {
  const Repeats& repeats = study.repeats;
  const std::string text = titled(words::repeated_points.view()) + repeats_facts(survey, study);
  if (repeats.pairs.empty()) return text;
  return text + '\n' + pairs_table(survey.points, repeats);
}

std::string dialog_section(const Survey& survey, const DialogRemoval& removal,
                           const std::string& file) {
  std::string text = titled(words::kept_in_dialog.view());
  if (!removal.confirmed) return text + words::dialog_cancelled.text();
  const std::size_t all = survey.points.size();
  Facts facts;
  facts.add(words::points_title,
            words::so_many_of.with({std::to_string(removal.kept.size()), std::to_string(all)}));
  facts.add(words::file, without_controls(file));
  text += facts.text();
  if (removal.kept.size() == all) return text;
  return text + '\n' + words::others_left_out.text() + '\n' +
         stand_ins_table(survey.points, removal);
}

std::string boundary_facts(const Study& study) {
  const std::string reason = reason_for_none(study);
  if (!reason.empty()) return reason;
  const Section& section = study.section;
  Facts facts;
  facts.add(words::boundary, origin_of(study.boundary));
  facts.add(words::vertices, vertices_text(study.boundary));
  facts.add(words::perimeter, length_text(study.perimeter));
  facts.add(words::section,
            words::from_to.with({place_text(section.line.from), place_text(section.line.to)}));
  facts.add(words::bearing, words::gon.with({azimuth_text(section.bearing)}));
  facts.add(words::length, length_text(section.length));
  return facts.text() + '\n' +
         (section.cuts.empty() ? words::no_cut : words::distance_from_start).text();
}

std::string boundary_section(const Study& study) {
  const std::string text = titled(words::boundary_and_section.view()) + boundary_facts(study);
  if (!study.complete() || study.section.cuts.empty()) return text;
  return text + '\n' + cuts_table(study.section);
}

std::string relief_facts(const Study& study) {
  const std::string reason = reason_for_none(study);
  if (!reason.empty()) return reason;
  const Relief& relief = study.relief;
  const std::string step = step_text(relief.step);
  if (relief.nodes.empty()) return words::no_node.with({step});
  const bool some_level = std::any_of(relief.nodes.begin(), relief.nodes.end(), has_no_slope);
  return words::about_nodes.with({step}) + (some_level ? words::slope_dash.text() : "");
}

std::string relief_section(const Survey& survey, const Study& study) {
  const std::string text = titled(words::elevations_and_slopes.view()) + relief_facts(study);
  const Relief& relief = study.relief;
  if (!study.complete() || relief.nodes.empty()) return text;
  return text + '\n' + nodes_table(survey, relief) + '\n' + summary_text(relief);
}

std::string contours_section(const Survey& survey, const Study& study) {
  const std::string text = titled(words::contours.view());
  const std::string reason = reason_for_none(study);
  if (!reason.empty()) return text + reason;
  const Contours& contours = study.contours;
  if (!contours.fault.empty()) return text + words::no_profile_reason.with({contours.fault});
  Facts facts;
  const std::size_t lines = contours.lines.size();
  const Word& line = lines == 1 ? words::contour_line : words::contour_lines;
  facts.add(words::contour_step, words::contour_levels.with({step_text(contours.step),
                                                             line.with({std::to_string(lines)})}));
  if (lines > 0) {
    facts.add(words::lowest, length_text(contours.lines.front().level));
    facts.add(words::highest, length_text(contours.lines.back().level));
  }
  facts.add(words::triangles, triangles_text(survey, contours));
  const bool all = survey.points.size() <= most_triangulated;
  return text + facts.text() + (all ? "" : words::thinned_triangles.text());
}

std::string reason_for_no_profile(const Study& study) {
  if (study.boundary.vertices.empty()) return words::no_enclosed_area.text();
  if (!study.fault.empty()) return study.fault;
  if (!study.profile.stations.empty()) return {};
  if (!study.profile.fault.empty()) return study.profile.fault;
  return words::too_few_points_near.with({length_text(study.profile.corridor)});
}

std::string profile_facts(const Study& study) {
  const std::string reason = reason_for_none(study);
  if (!reason.empty()) return reason;
  const Profile& profile = study.profile;
  if (profile.stations.empty()) {
    return words::no_profile_reason.with({reason_for_no_profile(study)});
  }
  Facts facts;
  facts.add(words::axis, words::section_line_axis.text());
  facts.add(words::terrain, words::terrain_points.with(
                                {counted(profile.terrain.size(), words::point, words::points),
                                 length_text(profile.corridor), length_text(profile.widest_gap)}));
  facts.add(words::lowest, length_text(profile.lowest));
  facts.add(words::highest, length_text(profile.highest));
  facts.add(words::stations, words::every_and_ends.with({step_text(profile.step)}));
  return facts.text() + '\n' + words::about_profile.text();
}

std::string profile_section(const Study& study) {
  const std::string text = titled(words::longitudinal_profile.view()) + profile_facts(study);
  if (!study.complete() || study.profile.stations.empty()) return text;
  return text + '\n' + stations_table(study.profile);
}

std::string area_facts(const Survey& survey, const Study& study) {
  const WorkArea& area = study.area;
  if (area.vertices.empty()) return words::no_area.text();
  const Box box = box_of(area.vertices);
  Facts facts;
  facts.add(words::area, area.origin);
  facts.add(words::vertices, std::to_string(area.vertices.size()));
  facts.add(words::box, words::box_from_to.with({place_text({box.x.min, box.y.min}),
                                                 place_text({box.x.max, box.y.max})}));
  facts.add(words::inside, inside_text(survey, area));
  return facts.text();
}

std::string area_section(const Survey& survey, const Study& study) {
  const std::string text = titled(words::work_area.view()) + area_facts(survey, study);
  const WorkArea& area = study.area;
  const bool no_rows = !area.fault.empty() || area.inside.empty();
  return text + (no_rows ? "" : '\n' + inside_table(survey, area.inside));
}

std::string traverse_facts(const Traverse& traverse) {
  const bool some_still = std::any_of(traverse.legs.begin(), traverse.legs.end(), stands_still);
  return words::about_traverse.text() + (some_still ? words::azimuth_dash.text() : "");
}

void write_traverse_section(Writer& out, const Survey& survey, const Traverse& traverse) {
  out << titled(words::traverse.view()) << traverse_facts(traverse) << '\n';
  const TableRows table({{words::number.text(), Align::right},
                         {"X", Align::right},
                         {"Y", Align::right},
                         {"Z", Align::right},
                         {words::code.text(), Align::left},
                         {words::azimuth.text(), Align::right},
                         {words::distance.text(), Align::right}},
                        traverse_widths(survey, traverse));
  table.head(out);
  std::array<std::string, 5> cells;
  for (std::size_t i = 0; i < survey.points.size(); ++i) {
    const SurveyPoint& point = survey.points[i];
    put(cells[0], point.x);
    put(cells[1], point.y);
    put(cells[2], point.z);
    put_leg(cells[3], cells[4], i < traverse.legs.size() ? &traverse.legs[i] : nullptr);
    table.row(out, std::array<std::string_view, 7>{point.number, cells[0], cells[1], cells[2],
                                                   point.code, cells[3], cells[4]});
  }
}

void write_report(Writer& out, const Survey& survey, const Study& study, const Traverse& traverse,
                  const ReportNotes& notes) {
  constexpr std::string_view apart = "\n\n";
  out << heading_section(survey, traverse, notes) << apart << repeats_section(survey, study)
      << apart;
  if (!notes.dialog.empty()) out << notes.dialog << apart;
  out << boundary_section(study) << apart << relief_section(survey, study) << apart
      << contours_section(survey, study) << apart << profile_section(study) << apart
      << area_section(survey, study) << apart;
  write_traverse_section(out, survey, traverse);
}

}  // namespace survey_report
