#include "survey_report/symbols.h"

#include <algorithm>
#include <map>
#include <utility>

#include "survey_report/layout.h"
#include "survey_report/svg.h"
#include "survey_report/words.h"

namespace survey_report {

namespace {

constexpr std::size_t most_codes = 10;

std::string dot(const Place& at, double reach) { return circle(at, 0.6 * reach); }

std::string square(const Place& at, double reach) {
  const double r = 0.85 * reach;
  return path_through(
      {{at.x - r, at.y - r}, {at.x + r, at.y - r}, {at.x + r, at.y + r}, {at.x - r, at.y + r}},
      true);
}

std::string triangle(const Place& at, double r) {
  return path_through({{at.x - r, at.y + 0.8 * r}, {at.x, at.y - r}, {at.x + r, at.y + 0.8 * r}},
                      true);
}

std::string diamond(const Place& at, double r) {
  return path_through({{at.x - r, at.y}, {at.x, at.y - r}, {at.x + r, at.y}, {at.x, at.y + r}},
                      true);
}

std::string plus(const Place& at, double r) {
  return path_through({{at.x - r, at.y}, {at.x + r, at.y}}, false) + ' ' +
         path_through({{at.x, at.y - r}, {at.x, at.y + r}}, false);
}

std::string saltire(const Place& at, double reach) {
  const double r = 0.8 * reach;
  return path_through({{at.x - r, at.y - r}, {at.x + r, at.y + r}}, false) + ' ' +
         path_through({{at.x - r, at.y + r}, {at.x + r, at.y - r}}, false);
}

constexpr Symbol symbols[most_codes + 1] = {
    {circle, R"(fill="#1b7837")"},
    {square, R"(fill="#2166ac")"},
    {triangle, R"(fill="#a6611a")"},
    {diamond, R"(fill="#762a83")"},
    {plus, R"(fill="none" stroke="#d95f02" stroke-width="0.35")"},
    {saltire, R"(fill="none" stroke="#01665e" stroke-width="0.35")"},
    {circle, R"(fill="#ffffff" stroke="#2166ac" stroke-width="0.25")"},
    {square, R"(fill="#ffffff" stroke="#a6611a" stroke-width="0.25")"},
    {triangle, R"(fill="#ffffff" stroke="#1b7837" stroke-width="0.25")"},
    {diamond, R"(fill="#ffffff" stroke="#c51b7d" stroke-width="0.25")"},
    {dot, R"(fill="#777777")"},
};

std::vector<CodeGroup> by_code(const std::vector<SurveyPoint>& points) {
  std::map<std::string, std::vector<std::size_t>> codes;
  for (std::size_t i = 0; i < points.size(); ++i) codes[points[i].code].push_back(i);
  std::vector<CodeGroup> groups;
  for (auto& [code, members] : codes) {
    groups.push_back({code.empty() ? words::no_code.text() : code, std::move(members)});
  }
  return groups;
}

}  // namespace

std::string circle(const Place& at, double reach) {
  const std::string r = sheet_number(reach);
  const std::string arc = " a " + r + ' ' + r + " 0 1 0 ";
  return "M " + sheet_number(at.x - reach) + ' ' + sheet_number(at.y) + arc +
         sheet_number(2 * reach) + " 0" + arc + sheet_number(-2 * reach) + " 0 Z";
}

std::map<std::string_view, std::vector<std::size_t>> points_by_code(
    const std::vector<SurveyPoint>& points, const std::vector<std::size_t>& chosen) {
  std::map<std::string_view, std::vector<std::size_t>> codes;
  for (const std::size_t i : chosen) codes[points[i].code].push_back(i);
  return codes;
}

std::string point_title(const SurveyPoint& point) {
  constexpr int decimals = 3;
  std::string title = point.number + (point.code.empty() ? "" : " " + point.code) + ": X ";
  append_fixed(title, point.x, decimals);
  title += ", Y ";
  append_fixed(title, point.y, decimals);
  title += ", Z ";
  append_fixed(title, point.z, decimals);
  return title;
}

std::vector<CodeGroup> code_groups(const std::vector<SurveyPoint>& points) {
  std::vector<CodeGroup> groups = by_code(points);
  std::stable_sort(groups.begin(), groups.end(), [](const CodeGroup& a, const CodeGroup& b) {
    return a.points.size() > b.points.size();
  });
  if (groups.size() <= most_codes) return groups;
  CodeGroup other{words::other_codes.text(), {}};
  for (std::size_t i = most_codes; i < groups.size(); ++i) {
    other.points.insert(other.points.end(), groups[i].points.begin(), groups[i].points.end());
  }
  groups.resize(most_codes);
  std::sort(other.points.begin(), other.points.end());
  groups.push_back(std::move(other));
  return groups;
}

const Symbol& symbol_of_group(std::size_t group) { return symbols[group]; }

}  // namespace survey_report
