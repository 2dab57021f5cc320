#include "survey_report/labels.h"

#include <algorithm>
#include <cmath>

#include "survey_report/utf8.h"

namespace survey_report {

namespace {

constexpr double cell = 5.0;          // the sheet is looked through in squares of that side
constexpr double letter_width = 0.6;  // of its size, a digit and a little more
constexpr double line_step = 0.8;     // a line is taken as a row of squares
constexpr double line_reach = 0.25;

std::size_t cells_for(double length) {
  return static_cast<std::size_t>(std::max(1.0, std::ceil(length / cell)));
}

std::size_t cell_at(double offset, std::size_t count) {
  const double index = std::clamp(std::floor(offset / cell), 0.0, static_cast<double>(count - 1));
  return static_cast<std::size_t>(index);
}

bool inside(const Rect& rect, const Rect& area) {
  return rect.left >= area.left && rect.right <= area.right && rect.top >= area.top &&
         rect.bottom <= area.bottom;
}

// Where a label may stand, the best first.
struct Position {
  double x;  // -1: left of the symbol, 0: centred, 1: right of it
  double y;  // -1: above, 0: centred, 1: below
};

constexpr Position positions[] = {{1, 0},   {1, -1}, {1, 1},  {-1, 0},
                                  {-1, -1}, {-1, 1}, {0, -1}, {0, 1}};

Rect box_at(const Position& position, const Place& at, double reach, double width, double height) {
  // Beside the symbol a label needs to be raised or lowered by half its height
  // only; it is then off a level line through the symbol.
  const bool beside = position.x != 0.0;
  const double off_y = beside ? line_reach + 0.1 : reach;
  const double x = at.x + position.x * (reach + width / 2) - width / 2;
  const double y = at.y + position.y * (off_y + height / 2) - height / 2;
  return {x, y, x + width, y + height};
}

}  // namespace

bool overlap(const Rect& a, const Rect& b) {
  return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

double text_width(std::string_view utf8, double size) {
  return letter_width * size * static_cast<double>(display_width(utf8));
}

LabelBoard::LabelBoard(const Rect& area)
    : area_(area),
      columns_(cells_for(area.width())),
      rows_(cells_for(area.height())),
      cells_(columns_ * rows_) {}

template <class Visit>
void LabelBoard::visit_cells(const Rect& rect, Visit visit) const {
  const std::size_t last_row = cell_at(rect.bottom - area_.top, rows_);
  const std::size_t last_column = cell_at(rect.right - area_.left, columns_);
  for (std::size_t row = cell_at(rect.top - area_.top, rows_); row <= last_row; ++row) {
    for (std::size_t column = cell_at(rect.left - area_.left, columns_); column <= last_column;
         ++column) {
      visit(row * columns_ + column);
    }
  }
}

bool LabelBoard::is_free(const Rect& rect) const {
  bool free = true;
  const auto touches = [&](const Rect& taken) { return overlap(taken, rect); };
  visit_cells(rect, [&](std::size_t i) {
    free = free && std::none_of(cells_[i].begin(), cells_[i].end(), touches);
  });
  return free;
}

void LabelBoard::occupy(const Rect& rect) {
  visit_cells(rect, [&](std::size_t i) { cells_[i].push_back(rect); });
}

void LabelBoard::occupy_line(const Place& from, const Place& to) {
  const double length = std::hypot(to.x - from.x, to.y - from.y);
  const double steps = std::max(1.0, std::ceil(length / line_step));
  for (double i = 0.0; i <= steps; ++i) {
    const double x = std::lerp(from.x, to.x, i / steps);
    const double y = std::lerp(from.y, to.y, i / steps);
    occupy({x - line_reach, y - line_reach, x + line_reach, y + line_reach});
  }
}

std::optional<Rect> LabelBoard::place(const Place& at, double reach, double width, double height) {
  for (const Position& position : positions) {
    const Rect box = box_at(position, at, reach, width, height);
    if (!inside(box, area_) || !is_free(box)) continue;
    occupy(box);
    return box;
  }
  return std::nullopt;
}

}  // namespace survey_report
