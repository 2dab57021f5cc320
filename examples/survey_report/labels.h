// labels.h: labels that do not cover each other.
#pragma once

#include <cstddef>
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

/// Whether two rectangles share more than an edge.
bool overlap(const Rect& a, const Rect& b);

/// About how wide a text is in letters of that size.
double text_width(std::string_view utf8, double size);

/// What is taken of a part of the sheet. First come, first served.
class LabelBoard {
 public:
  explicit LabelBoard(const Rect& area);

  bool is_free(const Rect& rect) const;
  void occupy(const Rect& rect);

  /// Occupies a strip along a straight line.
  void occupy_line(const Place& from, const Place& to);

  /// Finds room for a label beside a symbol that reaches `reach` around `at`,
  /// and occupies it. Nothing when there is none within the area.
  std::optional<Rect> place(const Place& at, double reach, double width, double height);

 private:
  template <class Visit>
  void visit_cells(const Rect& rect, Visit visit) const;

  Rect area_;
  std::size_t columns_;
  std::size_t rows_;
  std::vector<std::vector<Rect>> cells_;
};

}  // namespace survey_report
