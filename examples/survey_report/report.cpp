#include "survey_report/report.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "survey_report/layout.h"
#include "survey_report/utf8.h"

namespace survey_report {

namespace {

constexpr int coordinate_decimals = 3;
constexpr std::string_view no_number = "-";

std::string length_text(double length) { return fixed(length, coordinate_decimals); }

std::string counted(std::size_t count, std::string_view one, std::string_view many) {
  return std::to_string(count) + ' ' + std::string(count == 1 ? one : many);
}

std::string titled(std::string_view title) {
  return std::string(title) + '\n' + std::string(display_width(title), '=') + "\n\n";
}

void add_range(Table& table, const std::string& name, const Range& range) {
  const double difference = range.max - range.min;
  table.add({name, length_text(range.min), length_text(range.max),
             std::isfinite(difference) ? length_text(difference) : std::string(no_number)});
}

std::string extents_table(const Extents& extents) {
  Table table({{"Axis", Align::left},
               {"Minimum", Align::right},
               {"Maximum", Align::right},
               {"Difference", Align::right}});
  add_range(table, "X", extents.x);
  add_range(table, "Y", extents.y);
  add_range(table, "Z", extents.z);
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

bool stands_still(const Leg& leg) { return !leg.azimuth.has_value(); }

}  // namespace

std::string heading_section(const Survey& survey, const Traverse& traverse) {
  std::string text = titled("Survey report: " + without_controls(survey.file_name));
  text += "Points    " + std::to_string(survey.points.size()) + ", read as " +
          std::string(field_names(survey.order)) + '\n';
  text += "Traverse  " + length_text(traverse.length) + " in plan, " +
          counted(traverse.legs.size(), "leg", "legs") + "\n\n";
  return text + extents_table(extents_of(survey.points));
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

std::string report(const Survey& survey) {
  const Traverse traverse = traverse_through(survey.points);
  return heading_section(survey, traverse) + "\n\n" + traverse_section(survey, traverse);
}

}  // namespace survey_report
