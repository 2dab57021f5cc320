#include "survey_report/point_index.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace survey_report {

namespace {

constexpr double points_a_cell = 4.0;
constexpr double most_cells_a_side = 4096.0;
constexpr double whole = 0.999999;  // of a cell's side, whatever rounding does at its edge

bool nearer(const Near& a, const Near& b) {
  return std::pair(a.squared, a.index) < std::pair(b.squared, b.index);
}

void put_in_order(std::vector<Near>& nearest, const Near& near, std::size_t count) {
  nearest.insert(std::upper_bound(nearest.begin(), nearest.end(), near, nearer), near);
  if (nearest.size() > count) nearest.pop_back();
}

void add_if_nearer(std::vector<Near>& nearest, const Near& near, std::size_t count) {
  if (nearest.size() == count && !nearer(near, nearest.back())) return;
  const auto same = std::find_if(nearest.begin(), nearest.end(), [&](const Near& other) {
    return other.x == near.x && other.y == near.y;
  });
  if (same != nearest.end()) {
    if (same->index < near.index) return;
    nearest.erase(same);
  }
  put_in_order(nearest, near, count);
}

Box box_around(const std::vector<SurveyPoint>& points) {
  Box box{{points.front().x, points.front().x}, {points.front().y, points.front().y}};
  for (const SurveyPoint& point : points) {
    box.x = {std::min(box.x.min, point.x), std::max(box.x.max, point.x)};
    box.y = {std::min(box.y.min, point.y), std::max(box.y.max, point.y)};
  }
  return box;
}

std::size_t cells_on(const Range& range, double side) {
  return static_cast<std::size_t>(std::floor((range.max - range.min) / side)) + 1;
}

std::size_t clamped(double cell, std::size_t cells) {
  return static_cast<std::size_t>(std::clamp(cell, 0.0, static_cast<double>(cells - 1)));
}

}  // namespace

PointIndex::PointIndex(const std::vector<SurveyPoint>& points) : points_(points) {
  const Box box = box_around(points);
  const double width = box.x.max - box.x.min;
  const double height = box.y.max - box.y.min;
  corner_ = {box.x.min, box.y.min};
  const double about =
      std::sqrt(width) * std::sqrt(height * points_a_cell / static_cast<double>(points.size()));
  side_ = std::max(about, std::max(width, height) / most_cells_a_side);
  const bool parted = std::isfinite(side_) && std::isnormal(side_);
  if (parted) {
    columns_ = cells_on(box.x, side_);
    rows_ = cells_on(box.y, side_);
  } else {
    side_ = 0.0;
  }
  std::vector<std::uint32_t> cells(points.size());
  starts_.resize(columns_ * rows_ + 1);
  for (std::size_t i = 0; i < points.size(); ++i) {
    cells[i] = static_cast<std::uint32_t>(row_of(points[i].y) * columns_ + column_of(points[i].x));
    ++starts_[cells[i] + 1];
  }
  for (std::size_t i = 1; i < starts_.size(); ++i) starts_[i] += starts_[i - 1];
  members_.resize(points.size());
  std::vector<std::uint32_t> next(starts_.begin(), starts_.end() - 1);
  for (std::size_t i = 0; i < points.size(); ++i) {
    members_[next[cells[i]]++] = static_cast<std::uint32_t>(i);
  }
}

std::size_t PointIndex::column_of(double x) const {
  return side_ > 0.0 ? clamped((x - corner_.x) / side_, columns_) : 0;
}

std::size_t PointIndex::row_of(double y) const {
  return side_ > 0.0 ? clamped((y - corner_.y) / side_, rows_) : 0;
}

// Square by square around the place's own cell: what is farther out is farther away.
std::vector<Near> PointIndex::nearest(const Place& place, std::size_t count) const {
  std::vector<Near> nearest;
  const auto visit = [&](std::size_t cell) {
    for (std::uint32_t i = starts_[cell]; i < starts_[cell + 1]; ++i) {
      const SurveyPoint& point = points_[members_[i]];
      const double x = point.x - place.x;
      const double y = point.y - place.y;
      add_if_nearer(nearest, {members_[i], x, y, x * x + y * y}, count);
    }
  };
  const std::size_t column = column_of(place.x);
  const std::size_t row = row_of(place.y);
  const std::size_t last = std::max(columns_, rows_);
  for (std::size_t ring = 0; ring <= last; ++ring) {
    const double off = whole * side_ * (static_cast<double>(ring) - 1.0);
    const bool enough = nearest.size() == count && ring > 0 && nearest.back().squared < off * off;
    if (enough) break;
    const std::size_t top = std::min(row + ring, rows_ - 1);
    const std::size_t right = std::min(column + ring, columns_ - 1);
    const std::size_t left = column - std::min(ring, column);
    for (std::size_t r = row - std::min(ring, row); r <= top; ++r) {
      if (r + ring == row || r == row + ring) {
        for (std::size_t c = left; c <= right; ++c) visit(r * columns_ + c);
        continue;
      }
      if (left + ring == column) visit(r * columns_ + left);
      if (right == column + ring) visit(r * columns_ + right);
    }
  }
  return nearest;
}

}  // namespace survey_report
