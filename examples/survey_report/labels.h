// labels.h: labels that do not touch each other, beside their points or led to them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "survey_report/boundary.h"

namespace survey_report {

/// A rectangle on the sheet; y grows downwards.
struct Rect {
  double left = 0.0;
  double top = 0.0;
  double right = 0.0;
  double bottom = 0.0;

  double width() const { return right - left; }
  double height() const { return bottom - top; }
};

/// How wide a text is at most in letters of that size, in the fonts that
/// drawings are looked at with.
double text_width(std::string_view utf8, double size);

/// How far the letters of a text reach below and above the line they stand on.
struct LetterReach {
  double below = 0.0;
  double above = 0.0;
};
LetterReach letter_reach(std::string_view utf8, double size);

/// A thin line from a point to its label.
struct Leader {
  Place from;
  Place to;
};

/// Room for a label.
struct LabelRoom {
  Rect box;
  std::optional<Leader> leader;  ///< where it stands off its point
};

/// What is taken of a part of the sheet, to a quarter of a millimetre. First
/// come, first served.
class LabelBoard {
 public:
  explicit LabelBoard(const Rect& area);

  /// Whether nothing that was occupied shares more than an edge with it.
  bool is_free(const Rect& rect) const;
  void occupy(const Rect& rect);

  /// Occupies a strip along a straight line.
  void occupy_line(const Place& from, const Place& to);

  /// Whether so many labels found no room around there that none is looked for any
  /// more: a crowd of points costs no more than a look each.
  bool is_given_up(const Place& at) const;

  /// Finds room for a label beside a symbol that reaches `reach` around `at`, or
  /// off it with a leader that meets nothing, and occupies both. Nothing when
  /// there is none within the area, or is_given_up.
  std::optional<LabelRoom> place(const Place& at, double reach, double width, double height);

 private:
  struct Cells;

  Cells cells_of(const Rect& rect) const;
  bool is_clear(const Place& from, const Place& to) const;
  std::size_t block_of(const Place& at) const;
  std::optional<LabelRoom> beside(const Place& at, double reach, double width, double height) const;
  std::optional<LabelRoom> led(const Place& at, double reach, double width, double height) const;

  Rect area_;
  std::size_t columns_;
  std::size_t rows_;
  std::size_t words_in_row_;
  std::vector<std::uint64_t> taken_;  // a bit a cell
  std::size_t block_columns_;
  std::size_t block_rows_;
  std::vector<std::uint8_t> failures_;  // a block of cells: labels of points there without room
};

}  // namespace survey_report
