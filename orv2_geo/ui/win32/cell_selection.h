// cell_selection.h: which cells of a grid are selected.
#pragma once

#include <cstdint>

namespace orv2_geo::win32 {

struct Cell {
  std::int32_t row;
  std::int32_t col;
  bool operator==(const Cell&) const = default;
};

inline constexpr Cell no_cell = {-1, -1};

/// The cells from `first` to `last`, both included.
struct CellRange {
  Cell first;
  Cell last;

  bool is_empty() const noexcept { return last.row < first.row || last.col < first.col; }
  bool holds(Cell cell) const noexcept {
    return cell.row >= first.row && cell.row <= last.row && cell.col >= first.col &&
           cell.col <= last.col;
  }
};

/// A rectangle of a grid's cells, from where the person began to where they are now. The
/// fixed cells, which are its headers, are never in it.
class CellSelection {
 public:
  /// The grid has cells up to `size`, the first `fixed` of which are headers. What is
  /// selected and no longer there is so no more.
  void fit(Cell size, Cell fixed) noexcept;

  /// Selects the one cell, or `further` up to it from where the selection began. False
  /// for a header and outside the grid; the selection then stays.
  bool move_to(Cell cell, bool further) noexcept;
  void select_all() noexcept;

  /// The cell so many rows and columns from the current one, in the grid; the first one
  /// where none is selected.
  Cell beside(std::int32_t rows, std::int32_t cols) const noexcept;

  Cell current() const noexcept { return current_; }
  CellRange range() const noexcept;  ///< Empty where none is selected.
  bool holds(Cell cell) const noexcept { return range().holds(cell); }
  bool is_fixed(Cell cell) const noexcept { return cell.row < fixed_.row || cell.col < fixed_.col; }

 private:
  bool can_be_selected(Cell cell) const noexcept;

  Cell size_ = {0, 0};
  Cell fixed_ = {0, 0};
  Cell begun_ = no_cell;
  Cell current_ = no_cell;
};

}  // namespace orv2_geo::win32
