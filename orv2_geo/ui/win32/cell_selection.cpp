#include "orv2_geo/ui/win32/cell_selection.h"

#include <algorithm>

namespace orv2_geo::win32 {

bool CellSelection::can_be_selected(Cell cell) const noexcept {
  return !is_fixed(cell) && cell.row < size_.row && cell.col < size_.col;
}

void CellSelection::fit(Cell size, Cell fixed) noexcept {
  size_ = size;
  fixed_ = fixed;
  if (!can_be_selected(begun_) || !can_be_selected(current_)) begun_ = current_ = no_cell;
}

bool CellSelection::move_to(Cell cell, bool further) noexcept {
  if (!can_be_selected(cell)) return false;
  current_ = cell;
  if (!further || begun_ == no_cell) begun_ = cell;
  return true;
}

void CellSelection::select_all() noexcept {
  const Cell last = {size_.row - 1, size_.col - 1};
  if (!can_be_selected(last)) return;
  begun_ = fixed_;
  current_ = last;
}

Cell CellSelection::beside(std::int32_t rows, std::int32_t cols) const noexcept {
  if (current_ == no_cell) return fixed_;
  const auto within = [](std::int32_t at, std::int32_t first, std::int32_t end) {
    return std::max(std::min(at, end - 1), first);
  };
  return {within(current_.row + rows, fixed_.row, size_.row),
          within(current_.col + cols, fixed_.col, size_.col)};
}

CellRange CellSelection::range() const noexcept {
  if (current_ == no_cell) return {{0, 0}, no_cell};
  return {{std::min(begun_.row, current_.row), std::min(begun_.col, current_.col)},
          {std::max(begun_.row, current_.row), std::max(begun_.col, current_.col)}};
}

}  // namespace orv2_geo::win32
