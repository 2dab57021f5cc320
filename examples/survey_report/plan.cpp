#include "survey_report/plan.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>
#include <optional>
#include <string_view>
#include <vector>

#include "survey_report/extremes.h"
#include "survey_report/layout.h"
#include "survey_report/rounding.h"
#include "survey_report/scale.h"
#include "survey_report/svg.h"
#include "survey_report/symbols.h"
#include "survey_report/thinning.h"
#include "survey_report/utf8.h"
#include "survey_report/words.h"

namespace survey_report {

namespace {

constexpr double padding = 6.0;  // between the frame and what is drawn in it
constexpr double longest_bar = 50.0;
constexpr double tick_distance = 36.0;  // about, between coordinates on the frame
constexpr double tick_length = 1.6;
constexpr double beyond_the_points = 0.1;  // of the section line, at most
constexpr double far_off = 1e9;            // on the sheet: no such area is drawn
constexpr std::size_t many_points = 600;
constexpr std::size_t most_of_rare_code = 500;
constexpr std::size_t longest_coordinate = 14;
constexpr std::size_t longest_entry = 19;  // of the legend
constexpr double nearest_nodes = 14.0;     // on the sheet; of a finer grid only some are drawn
constexpr double label_across = 9.0;       // about what a label of a point takes
constexpr double label_up = 4.5;

constexpr double nearest_bends = 0.1;     // of a contour on the sheet
constexpr double label_distance = 120.0;  // between labels of a contour, at least

constexpr std::string_view contour_paint = R"(fill="none" stroke="#a0703c" stroke-width="0.13")";
constexpr std::string_view index_paint = R"(fill="none" stroke="#a0703c" stroke-width="0.35")";
constexpr std::string_view grey = "#777777";
constexpr std::string_view red = "#c00000";
constexpr std::string_view thin_black = R"(fill="none" stroke="#222222" stroke-width="0.25")";
constexpr std::string_view boundary_paint =
    R"(fill="none" stroke="#222222" stroke-width="0.45" stroke-linejoin="round")";
constexpr std::string_view hull_paint =
    R"(fill="none" stroke="#222222" stroke-width="0.35" stroke-dasharray="3 1.2")";
constexpr std::string_view section_paint =
    R"(fill="none" stroke="#c00000" stroke-width="0.35" stroke-dasharray="5 1 1 1")";
constexpr std::string_view cut_paint =
    R"(class="cut" fill="#ffffff" stroke="#c00000" stroke-width="0.4")";
constexpr std::string_view thick_black = R"(fill="none" stroke="#222222" stroke-width="0.6")";
constexpr std::string_view leader_paint =
    R"(class="leader" fill="none" stroke="#555555" stroke-width="0.13")";
constexpr std::string_view node_paint = R"(fill="none" stroke="#777777" stroke-width="0.2")";

constexpr std::string_view area_paint =
    R"(fill="none" stroke="#b8860b" stroke-width="0.5" stroke-dasharray="2.2 1.2")";
constexpr std::string_view inside_paint = R"(fill="#ffd966")";

constexpr Lettering point_letters{.size = least_letters, .halo = true};
constexpr double label_gap = 0.5;  // between labels in a row
constexpr double cut_size = 3.6;
constexpr double cut_reach = 1.1;
constexpr double node_reach = 0.7;
constexpr double inside_gap = 0.5;  // between a point's symbol and the circle around it

// ---- The parts of the sheet

struct PlanLayout {
  Rect border;
  Rect frame;         ///< the plan is inside
  Rect key;           ///< what explains it
  Place north_arrow;  ///< its upper end
  Place scale_bar;    ///< its left end
  Place legend;       ///< the symbol of its first row
  std::size_t rows;   ///< of the legend in one column
  double row_height;
  Rect title_block;
};

constexpr double column_width = 48.0;  // of the legend
constexpr double title_width = 66.0;
constexpr double title_height = 45.0;
constexpr double for_coordinates = 7.0;  // left of the frame and below it

Rect title_block_in(const Rect& border) {
  return {border.right - title_width, border.bottom - title_height, border.right, border.bottom};
}

// The key in a column to the right of the plan.
PlanLayout landscape_layout(const Rect& border) {
  const Rect title = title_block_in(border);
  const double left = title.left;
  const double row_height = 5.0;
  const double first_row = border.top + 52.0;
  const double rows = std::floor((title.top - 2.0 - first_row) / row_height) + 1.0;
  return {border,
          {border.left + for_coordinates, border.top + 3.0, left - 3.0,
           border.bottom - for_coordinates},
          {left, border.top, border.right, border.bottom},
          {left + 33.0, border.top + 4.0},
          {left + 6.0, border.top + 39.0},
          {left + 8.0, first_row},
          static_cast<std::size_t>(rows),
          row_height,
          title};
}

// The key in a strip below it.
PlanLayout portrait_layout(const Rect& border) {
  constexpr double strip = 61.0;
  const Rect title = title_block_in(border);
  const double top = border.bottom - strip;
  return {
      border,
      {border.left + for_coordinates, border.top + 3.0, border.right - 3.0, top - for_coordinates},
      {border.left, top, border.right, border.bottom},
      {title.left - 9.0, top + 4.0},
      {title.left + 7.0, top + 7.0},
      {border.left + 7.0, top + 5.0},
      9,
      6.2,
      title};
}

PlanLayout layout_of(const Sheet& sheet) {
  return sheet.landscape ? landscape_layout(sheet.border()) : portrait_layout(sheet.border());
}

// ---- What is drawn where

void include(Box& box, const Place& place) {
  box.x = {std::min(box.x.min, place.x), std::max(box.x.max, place.x)};
  box.y = {std::min(box.y.min, place.y), std::max(box.y.max, place.y)};
}

double within(double value, const Range& range, double margin) {
  return std::clamp(value, range.min - margin, range.max + margin);
}

// All points; the work area and the ends of the section line unless they are
// far off.
Box drawn_box(const Survey& survey, const Study& study) {
  const Extents extents = extents_of(survey.points);
  const Box points{extents.x, extents.y};
  Box box = points;
  const double margin = beyond_the_points * larger_side(points);
  const auto include_near = [&](const Place& place) {
    include(box, {within(place.x, points.x, margin), within(place.y, points.y, margin)});
  };
  for (const Place& vertex : study.area.vertices) include_near(vertex);
  if (!study.complete()) return box;
  for (const Place& end : {study.section.line.from, study.section.line.to}) {
    include_near(end);
  }
  return box;
}

double size_of(const Range& range) { return range.max - range.min; }

// The sheet is chosen by the points: whether most of their labels may find room.
class PlanNeeds final : public SheetNeeds {
 public:
  PlanNeeds(const Survey& survey, const Box& box, double millimetres)
      : survey_(survey), box_(box), millimetres_(millimetres) {}

  double least_scale(const Sheet& sheet) const override {
    const Rect frame = layout_of(sheet).frame;
    const double across = size_of(box_.x) / (frame.width() - 2 * padding) * millimetres_;
    const double up = size_of(box_.y) / (frame.height() - 2 * padding) * millimetres_;
    const double scale = std::max(across, up);
    if (!std::isfinite(scale)) throw DrawingFault(words::points_too_far_apart.text());
    return std::isfinite(millimetres_ / scale) ? scale : 0.0;  // next to nothing is no size
  }

  // Points that share the room of one label have one.
  double labelled(const ScaledSheet& scaled) const override {
    const Rect frame = layout_of(scaled.sheet).frame;
    const Mapping mapping(box_, frame, millimetres_ / scaled.scale);
    const auto columns = static_cast<std::size_t>(frame.width() / label_across) + 1;
    const auto rows = static_cast<std::size_t>(frame.height() / label_up) + 1;
    std::vector<bool> taken(columns * rows);
    for (const SurveyPoint& point : survey_.points) {
      const Place at = mapping.on_sheet({point.x, point.y});
      const auto column = static_cast<std::size_t>((at.x - frame.left) / label_across);
      const auto row = static_cast<std::size_t>((at.y - frame.top) / label_up);
      taken[std::min(row, rows - 1) * columns + std::min(column, columns - 1)] = true;
    }
    const auto labels = std::count(taken.begin(), taken.end(), true);
    return static_cast<double>(labels) / static_cast<double>(survey_.points.size());
  }

  bool prefers_landscape() const override { return size_of(box_.x) >= size_of(box_.y); }

 private:
  const Survey& survey_;
  Box box_;
  double millimetres_;
};

std::string entry_text(const CodeGroup& group) {
  const std::string count = " (" + std::to_string(group.points.size()) + ')';
  return shortened(group.name, longest_entry - count.size()) + count;
}

// Of a fine grid, every second, third, ... node in both directions.
std::vector<Node> nodes_to_draw(const Relief& relief, double scale) {
  std::vector<Node> nodes;
  const double every = std::max(1.0, std::ceil(nearest_nodes / (relief.step * scale)));
  const auto is_drawn = [&](double coordinate) {
    return std::fmod(std::round(coordinate / relief.step), every) == 0.0;
  };
  for (const Node& node : relief.nodes) {
    if (is_drawn(node.place.x) && is_drawn(node.place.y)) nodes.push_back(node);
  }
  return nodes;
}

// The distance of the coordinates on the frame, none of which may touch the next.
double tick_step(const Box& visible, double scale) {
  const double step = round_near(tick_distance / scale);
  const double largest = std::max({std::abs(visible.x.min), std::abs(visible.x.max),
                                   std::abs(visible.y.min), std::abs(visible.y.max)});
  const double width = text_width(fixed(-largest, decimals_for(step)), least_letters);
  return step * scale >= width ? step : round_near(2.1 * step);
}

// Inside a rectangle, off its sides.
Rect inset(const Rect& rect, double by) {
  return {rect.left + by, rect.top + by, rect.right - by, rect.bottom - by};
}

std::string outline_of(const Rect& r) {
  return path_through({{r.left, r.top}, {r.right, r.top}, {r.right, r.bottom}, {r.left, r.bottom}},
                      true);
}

Rect around(const Place& at, double reach) {
  return {at.x - reach, at.y - reach, at.x + reach, at.y + reach};
}

// ---- The drawing

class Plan {
 public:
  Plan(const Survey& survey, const Study& study, const DrawingOptions& options)
      : survey_(survey),
        study_(study),
        options_(options),
        box_(drawn_box(survey, study)),
        scaled_(sheet_for(PlanNeeds(survey, box_, options.millimetres()), options.paper,
                          options.plan_scale, "--scale")),
        layout_(layout_of(scaled_.sheet)),
        mapping_(box_, layout_.frame, options.millimetres() / scaled_.scale),
        board_(inset(layout_.frame, 0.5)),
        groups_(code_groups(survey.points)),
        nodes_(nodes_to_draw(study.relief, mapping_.scale())),
        reach_(survey.points.size() > many_points ? 0.6 : 0.9),
        drawn_(points_to_draw()),
        area_is_drawn_(can_draw_area()),
        is_drawn_(survey.points.size()),
        is_inside_(survey.points.size()) {
    for (const std::size_t point : drawn_) is_drawn_[point] = true;
    if (!area_is_drawn_) return;
    for (const std::size_t point : study.area.inside) is_inside_[point] = true;
  }

  Drawing drawn() {
    const Sheet& sheet = scaled_.sheet;
    svg_.rectangle({0, 0}, sheet.width(), sheet.height(), R"(fill="#ffffff")");
    svg_.path(outline_of(layout_.border), thick_black);
    svg_.path(outline_of(layout_.key), thin_black);
    frame();
    svg_.open_group(R"~(clip-path="url(#frame)")~");
    take_room();
    lines();
    area();
    points();
    labels();
    svg_.close_group();
    legend();
    scale_bar();
    north_arrow();
    title_block();
    return {svg_.element(sheet.width(), sheet.height(), survey_.file_name), drawn_.size()};
  }

 private:
  Place on_sheet(const SurveyPoint& point) const { return mapping_.on_sheet({point.x, point.y}); }

  // Of a crowd the points of rare codes come first.
  std::vector<std::size_t> points_to_draw() const {
    std::vector<Place> places;
    places.reserve(survey_.points.size());
    for (const SurveyPoint& point : survey_.points) places.push_back(on_sheet(point));
    std::vector<std::size_t> order(places.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    const std::vector<bool> rare = points_of_rare_codes();
    std::stable_partition(order.begin(), order.end(), [&](std::size_t i) { return rare[i]; });
    return thinned(places, order, layout_.frame, 2 * reach_, most_symbols);
  }

  std::vector<bool> points_of_rare_codes() const {
    std::vector<bool> rare(survey_.points.size());
    for (const CodeGroup& group : groups_) {
      for (const auto& [code, members] : points_by_code(survey_.points, group.points)) {
        if (members.size() > most_of_rare_code) continue;
        for (const std::size_t i : members) rare[i] = true;
      }
    }
    return rare;
  }

  bool can_draw_area() const {
    const std::vector<Place> ring = on_sheet(study_.area.vertices);
    return study_.area.fault.empty() && !ring.empty() &&
           std::all_of(ring.begin(), ring.end(), [](const Place& place) {
             return std::abs(place.x) < far_off && std::abs(place.y) < far_off;
           });
  }

  // The circle that marks a point inside the work area is part of its symbol.
  double reach_of(std::size_t point) const {
    return is_inside_[point] ? reach_ + inside_gap : reach_;
  }

  std::vector<Place> on_sheet(const std::vector<Place>& vertices) const {
    std::vector<Place> ring;
    ring.reserve(vertices.size());
    for (const Place& vertex : vertices) ring.push_back(mapping_.on_sheet(vertex));
    return ring;
  }

  // ---- Frame

  void frame() {
    const Rect& f = layout_.frame;
    svg_.path(outline_of(f), thin_black);
    svg_.clip("frame", {f.left, f.top}, f.width(), f.height());
    const Box visible = mapping_.visible();
    const double step = tick_step(visible, mapping_.scale());
    const std::vector<double> columns = multiples(visible.x, step);
    const std::vector<double> rows = multiples(visible.y, step);
    crosses(columns, rows);
    svg_.open_group(R"(id="coordinates" stroke-width="0.25")");
    for (const double x : columns) column_tick(x, decimals_for(step));
    for (const double y : rows) row_tick(y, decimals_for(step));
    svg_.close_group();
  }

  void crosses(const std::vector<double>& columns, const std::vector<double>& rows) {
    svg_.open_group(R"(id="crosses" fill="none" stroke="#cccccc" stroke-width="0.2")");
    for (const double y : rows) {
      for (const double x : columns) {
        const Place at = mapping_.on_sheet({x, y});
        svg_.line({at.x - 1.5, at.y}, {at.x + 1.5, at.y});
        svg_.line({at.x, at.y - 1.5}, {at.x, at.y + 1.5});
      }
    }
    svg_.close_group();
  }

  void column_tick(double x, int decimals) {
    const Rect& f = layout_.frame;
    const double at = mapping_.on_sheet({x, box_.y.min}).x;
    tick({at, f.top}, {at, f.top + tick_length});
    tick({at, f.bottom}, {at, f.bottom - tick_length});
    coordinate({at, f.bottom + 4.2}, fixed(x, decimals), false, {f.left, f.right}, at);
  }

  void row_tick(double y, int decimals) {
    const Rect& f = layout_.frame;
    const double at = mapping_.on_sheet({box_.x.min, y}).y;
    tick({f.left, at}, {f.left + tick_length, at});
    tick({f.right, at}, {f.right - tick_length, at});
    coordinate({f.left - 2.0, at}, fixed(y, decimals), true, {f.top, f.bottom}, at);
  }

  void tick(const Place& from, const Place& to) {
    board_.occupy_line(from, to);
    svg_.path(path_through({from, to}, false), R"(stroke="#222222")");
  }

  // One of many digits is left out: its neighbours would touch it; and so is one
  // that would pass an end of its side.
  void coordinate(const Place& at, const std::string& text, bool upwards, const Range& side,
                  double middle) {
    const double half = text_width(text, least_letters) / 2;
    if (text.size() > longest_coordinate) return;
    if (middle - half < side.min || middle + half > side.max) return;
    svg_.text(at, text, {.size = least_letters, .anchor = Anchor::middle, .upwards = upwards});
  }

  // ---- Inside the frame

  // Symbols and lines come before every label.
  void take_room() {
    for (const std::size_t i : drawn_) {
      board_.occupy(around(on_sheet(survey_.points[i]), reach_of(i)));
    }
    if (area_is_drawn_ && study_.area.vertices == pulled_in(study_.area.vertices)) {
      occupy_ring(study_.area.vertices);
    }
    if (!study_.complete()) return;
    occupy_ring(study_.boundary.vertices);
    occupy_section();
    for (const Cut& cut : study_.section.cuts) {
      board_.occupy(around(mapping_.on_sheet(cut.place), cut_reach));
    }
    for (const Node& node : nodes_) {
      board_.occupy(around(mapping_.on_sheet(node.place), node_reach));
    }
  }

  void occupy_ring(const std::vector<Place>& vertices) {
    const std::vector<Place> ring = on_sheet(vertices);
    for (std::size_t i = 0; i < ring.size(); ++i) {
      board_.occupy_line(ring[i], ring[(i + 1) % ring.size()]);
    }
  }

  // The places, or where they are outside the drawing the next ones inside.
  std::vector<Place> pulled_in(std::vector<Place> places) const {
    for (Place& place : places) {
      place = {within(place.x, box_.x, 0.0), within(place.y, box_.y, 0.0)};
    }
    return places;
  }

  // A line that leaves the drawing takes no room.
  void occupy_section() {
    const std::vector<Place> ends = {study_.section.line.from, study_.section.line.to};
    if (ends != pulled_in(ends)) return;
    board_.occupy_line(mapping_.on_sheet(ends[0]), mapping_.on_sheet(ends[1]));
  }

  void lines() {
    if (!study_.complete()) return;
    contours();
    svg_.open_group(R"(id="boundary")");
    svg_.path(path_through(on_sheet(study_.boundary.vertices), true), ring_paint());
    svg_.close_group();
    svg_.open_group(R"(id="section")");
    const SectionLine& line = study_.section.line;
    svg_.path(path_through({mapping_.on_sheet(line.from), mapping_.on_sheet(line.to)}, false),
              section_paint);
    svg_.close_group();
    nodes();
  }

  void contours() {
    svg_.open_group(R"(id="contours" fill="none" stroke="#a0703c" stroke-linejoin="round")");
    for (const bool is_index : {false, true}) {
      svg_.open_group(is_index ? R"(id="index-contours" stroke-width="0.35")"
                               : R"(id="plain-contours" stroke-width="0.13")");
      for (const Contour& contour : study_.contours.lines) {
        if (contour.is_index == is_index) svg_.path(contour_path(contour));
      }
      svg_.close_group();
    }
    svg_.close_group();
    contour_labels();
  }

  // Without what is too near to its neighbour to be seen.
  std::string contour_path(const Contour& contour) const {
    std::vector<Place> line = on_sheet(contour.line);
    const Place last = line.back();
    Place kept = line.front();
    const auto too_near = [&](const Place& place) {
      if (place == line.front() || std::hypot(place.x - kept.x, place.y - kept.y) > nearest_bends) {
        kept = place;
        return false;
      }
      return true;
    };
    std::erase_if(line, too_near);
    if (line.back() != last) line.push_back(last);
    return path_through(line, contour.is_closed);
  }

  // The elevation stands on the line, once or more where it is long.
  void contour_labels() {
    svg_.open_group(R"(id="contour-labels")");
    const int decimals = decimals_for(study_.contours.step);
    for (const Contour& contour : study_.contours.lines) {
      if (contour.is_index) contour_label(contour, sheet_value(contour.level, decimals));
    }
    svg_.close_group();
  }

  void contour_label(const Contour& contour, const std::string& text) {
    const double half = text_width(text, least_letters) / 2 + label_gap;
    double since = label_distance / 2;  // along the line
    std::optional<Place> before;
    for (const Place& at : on_sheet(contour.line)) {
      if (before) since += std::hypot(at.x - before->x, at.y - before->y);
      before = at;
      const Rect box{at.x - half, at.y - least_letters / 2, at.x + half, at.y + least_letters / 2};
      const Rect& f = layout_.frame;
      const bool inside = box.left > f.left + 1 && box.right < f.right - 1 && box.top > f.top + 1 &&
                          box.bottom < f.bottom - 1;
      if (since < label_distance || !inside || !board_.is_free(box)) continue;
      since = 0.0;
      board_.occupy(box);
      svg_.text(
          {at.x, at.y + 0.36 * least_letters}, text,
          {.size = least_letters, .anchor = Anchor::middle, .colour = "#a0703c", .halo = true});
    }
  }

  std::string_view ring_paint() const {
    return study_.boundary.is_hull ? hull_paint : boundary_paint;
  }

  void nodes() {
    svg_.open_group(R"(id="nodes" fill="none" stroke="#777777" stroke-width="0.2")");
    for (const Node& node : nodes_) {
      svg_.path(node_mark(mapping_.on_sheet(node.place)));
    }
    svg_.close_group();
  }

  static std::string node_mark(const Place& at) {
    return path_through({{at.x - node_reach, at.y}, {at.x + node_reach, at.y}}, false) + ' ' +
           path_through({{at.x, at.y - node_reach}, {at.x, at.y + node_reach}}, false);
  }

  void area() {
    if (!area_is_drawn_) return;
    svg_.open_group(R"(id="area")");
    svg_.path(path_through(on_sheet(study_.area.vertices), true), area_paint);
    svg_.close_group();
    svg_.open_group(R"(id="inside" fill="#ffd966")");
    std::vector<std::size_t> drawn = study_.area.inside;
    std::erase_if(drawn, [&](std::size_t point) { return !is_drawn_[point]; });
    for (const auto& [code, members] : points_by_code(survey_.points, drawn)) {
      svg_.open_code(code);
      for (const std::size_t point : members) {
        svg_.path(circle(on_sheet(survey_.points[point]), reach_of(point)));
      }
      svg_.close_group();
    }
    svg_.close_group();
  }

  // The frequent codes below the rare ones.
  void points() {
    svg_.open_group(R"(id="points")");
    for (std::size_t i = 0; i < groups_.size(); ++i) {
      const Symbol& symbol = symbol_of_group(i);
      std::vector<std::size_t> drawn = groups_[i].points;
      std::erase_if(drawn, [&](std::size_t point) { return !is_drawn_[point]; });
      for (const auto& [code, members] : points_by_code(survey_.points, drawn)) {
        svg_.open_code(code, symbol.paint);
        for (const std::size_t point : members) {
          svg_.titled_path(symbol.outline(on_sheet(survey_.points[point]), reach_),
                           point_title(survey_.points[point]));
        }
        svg_.close_group();
      }
    }
    svg_.close_group();
  }

  // ---- Labels: the most important find room first, and are drawn last

  void labels() {
    svg_.open_group(R"(id="labels")");
    cuts();
    for (const Node& node : nodes_) {
      label(mapping_.on_sheet(node.place), node_reach, sheet_value(node.elevation, 2),
            {.size = least_letters, .colour = grey, .halo = true});
    }
    point_labels();
    svg_.close_group();
  }

  // In the order of the survey they find room, by their codes they are drawn.
  void point_labels() {
    std::map<std::size_t, LabelRoom> rooms;
    std::vector<std::size_t> labelled;
    for (const std::size_t i : drawn_) {
      const SurveyPoint& point = survey_.points[i];
      const std::optional<LabelRoom> room =
          room_for(on_sheet(point), reach_of(i), point.number, point_letters);
      if (!room) continue;
      rooms.emplace(i, *room);
      labelled.push_back(i);
    }
    labels_left_out_ += survey_.points.size() - labelled.size();
    for (const auto& [code, members] : points_by_code(survey_.points, labelled)) {
      svg_.open_code(code);
      for (const std::size_t i : members) {
        draw_label(rooms.at(i), survey_.points[i].number, point_letters);
      }
      svg_.close_group();
    }
  }

  void cuts() {
    for (std::size_t i = 0; i < study_.section.cuts.size(); ++i) {
      const Place at = mapping_.on_sheet(study_.section.cuts[i].place);
      svg_.path(symbol_of_group(0).outline(at, cut_reach), cut_paint);
      label(at, cut_reach, std::to_string(i + 1),
            {.size = cut_size, .colour = red, .bold = true, .halo = true});
    }
  }

  // Draws nothing where there is no room, and counts it.
  void label(const Place& at, double reach, std::string_view text, const Lettering& lettering) {
    const std::optional<LabelRoom> room = room_for(at, reach, text, lettering);
    if (!room) {
      ++labels_left_out_;
      return;
    }
    draw_label(*room, text, lettering);
  }

  void draw_label(const LabelRoom& room, std::string_view text, const Lettering& lettering) {
    if (room.leader) {
      svg_.path(path_through({room.leader->from, room.leader->to}, false), leader_paint);
    }
    Lettering centred = lettering;
    centred.anchor = Anchor::middle;
    const double below = letter_reach(text, lettering.size).below;
    svg_.text({(room.box.left + room.box.right) / 2, room.box.bottom - label_gap / 2 - below}, text,
              centred);
  }

  std::optional<LabelRoom> room_for(const Place& at, double reach, std::string_view text,
                                    const Lettering& lettering) {
    if (board_.is_given_up(at)) return std::nullopt;  // before the text is measured
    const LetterReach letters = letter_reach(text, lettering.size);
    const double bolder = lettering.bold ? 1.1 : 1.0;
    return board_.place(at, reach + 0.2, bolder * text_width(text, lettering.size) + label_gap,
                        letters.above + letters.below + label_gap);
  }

  // ---- Beside the frame

  Place legend_row() {
    const std::size_t column = rows_used_ / layout_.rows;
    const std::size_t row = rows_used_ % layout_.rows;
    ++rows_used_;
    return {layout_.legend.x + static_cast<double>(column) * column_width,
            layout_.legend.y + static_cast<double>(row) * layout_.row_height};
  }

  void legend_entry(const std::string& outline, std::string_view paint, const Place& at,
                    const std::string& text) {
    svg_.path(outline, paint);
    svg_.text({at.x + 6, at.y + 1.1}, text, {.size = least_letters});
  }

  void legend() {
    svg_.open_group(R"(id="legend")");
    for (std::size_t i = 0; i < groups_.size(); ++i) {
      const Place at = legend_row();
      const Symbol& symbol = symbol_of_group(i);
      legend_entry(symbol.outline(at, 1.1), symbol.paint, at, entry_text(groups_[i]));
    }
    if (study_.complete()) study_legend();
    if (!study_.contours.lines.empty()) contour_legend();
    if (area_is_drawn_) area_legend();
    svg_.close_group();
  }

  void study_legend() {
    const Word& ring = study_.boundary.is_hull ? words::convex_hull : words::boundary;
    legend_line(ring_paint(), ring.text());
    legend_line(section_paint, words::section_line.text());
    Place at = legend_row();
    legend_entry(symbol_of_group(0).outline(at, cut_reach),
                 R"(fill="#ffffff" stroke="#c00000" stroke-width="0.4")", at,
                 words::cut_by_number.text());
    at = legend_row();
    legend_entry(node_mark(at), node_paint, at, words::node_entry.text());
  }

  void contour_legend() {
    const double step = study_.contours.step;
    legend_line(contour_paint, words::contour_entry.with({fixed(step, decimals_for(step))}));
    legend_line(index_paint, words::index_entry.text());
  }

  void area_legend() {
    legend_line(area_paint, words::work_area.text());
    const Place at = legend_row();
    legend_entry(circle(at, 1.1 + inside_gap), inside_paint, at, words::inside_entry.text());
  }

  void legend_line(std::string_view paint, const std::string& text) {
    const Place at = legend_row();
    legend_entry(path_through({{at.x - 4, at.y}, {at.x + 4, at.y}}, false), paint, at, text);
  }

  void scale_bar() {
    const double length = scale_bar_length(mapping_.scale());
    const double half = length * mapping_.scale() / 2;
    const Place& at = layout_.scale_bar;
    svg_.open_group(R"(id="scale-bar" stroke="#222222" stroke-width="0.25")");
    svg_.rectangle(at, half, 1.8, R"(fill="#222222")");
    svg_.rectangle({at.x + half, at.y}, half, 1.8, R"(fill="#ffffff")");
    svg_.close_group();
    const int decimals = decimals_for(length / 2);
    const Lettering lettering{.size = least_letters, .anchor = Anchor::middle};
    svg_.text({at.x, at.y - 1.4}, "0", lettering);
    const std::string middle = sheet_value(length / 2, decimals);
    if (text_width(middle, least_letters) + 1.5 < half) {
      svg_.text({at.x + half, at.y - 1.4}, middle, lettering);
    }
    svg_.text({at.x + 2 * half, at.y - 1.4}, sheet_value(length, decimals), lettering);
  }

  // ---- The title block

  void title_block() {
    const Rect& block = layout_.title_block;
    const double middle = (block.left + block.right) / 2;
    double top = block.top;
    const auto row = [&](double height) {
      top += height;
      return Rect{block.left, top - height, block.right, top};
    };
    svg_.open_group(R"(id="title-block")");
    draw_cell(svg_, row(9), survey_.file_name, 4.0, true);
    draw_cell(svg_, row(8), words::plan_scale.with({scale_text(scaled_.scale)}), 4.0, true);
    for (const std::string& text :
         {words::sheet.with({scaled_.sheet.text()}), words::x_east.with({unit_text(options_)}),
          points_text(), left_out_text(labels_left_out_)}) {
      draw_cell(svg_, row(5.5), text, least_letters);
    }
    const Rect last = row(6);
    draw_cell(svg_, {last.left, last.top, middle, last.bottom}, words::date.view(), least_letters);
    draw_cell(svg_, {middle, last.top, last.right, last.bottom}, words::drawn.view(),
              least_letters);
    svg_.path(outline_of(block), thick_black);
    svg_.close_group();
  }

  std::string points_text() const {
    const std::size_t count = survey_.points.size();
    if (drawn_.size() < count) {
      return words::points_drawn.with({std::to_string(drawn_.size()), std::to_string(count)});
    }
    return std::to_string(count) + ' ' + (count == 1 ? words::point : words::points).text();
  }

  void north_arrow() {
    const Place& tip = layout_.north_arrow;
    svg_.open_group(R"(id="north-arrow" stroke="#222222" stroke-width="0.3")");
    svg_.path(path_through({tip, {tip.x - 4, tip.y + 16}, {tip.x, tip.y + 12.5}}, true),
              R"(fill="#222222")");
    svg_.path(path_through({tip, {tip.x + 4, tip.y + 16}, {tip.x, tip.y + 12.5}}, true),
              R"(fill="#ffffff")");
    svg_.close_group();
    svg_.text({tip.x, tip.y + 22}, "N", {.size = 5.0, .anchor = Anchor::middle, .bold = true});
  }

  const Survey& survey_;
  const Study& study_;
  const DrawingOptions& options_;
  Box box_;
  ScaledSheet scaled_;
  PlanLayout layout_;
  Mapping mapping_;
  LabelBoard board_;
  std::vector<CodeGroup> groups_;
  std::vector<Node> nodes_;
  double reach_;
  std::vector<std::size_t> drawn_;  // points, by their places in the survey
  bool area_is_drawn_;
  std::vector<bool> is_drawn_;
  std::vector<bool> is_inside_;
  std::size_t rows_used_ = 0;
  std::size_t labels_left_out_ = 0;
  Svg svg_;
};

}  // namespace

double scale_bar_length(double scale) {
  return round_down((1.0 + 1e-9) * longest_bar / scale);  // 50 mm are not lost to rounding
}

Drawing plan_of(const Survey& survey, const Study& study, const DrawingOptions& options) {
  return Plan(survey, study, options).drawn();
}

}  // namespace survey_report
