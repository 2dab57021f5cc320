// sheet.h: where things go on a sheet of A4, and where a place falls on it.
#pragma once

#include <stdexcept>
#include <string_view>
#include <vector>

#include "survey_report/boundary.h"
#include "survey_report/labels.h"
#include "survey_report/svg.h"

namespace survey_report {

/// A drawing that cannot be made.
class DrawingFault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The parts of the sheet, in millimetres.
struct SheetLayout {
  double width;
  double height;
  Rect frame;         ///< the drawing is inside
  Place north_arrow;  ///< its upper end
  Place scale_bar;    ///< its left end
  Place legend;       ///< the symbol of its first row
  std::size_t rows;   ///< of the legend in one column
  double row_height;
  double column_width;
};

/// Two lines above a frame: the title, cut to the frame's width, and what is below.
void draw_headings(Svg& svg, const Rect& frame, std::string_view title, std::string_view below);

/// Landscape for what is wider than high, else portrait.
const SheetLayout& layout_for(const Box& box);

/// Puts a box of the survey into the middle of a frame, as large as it fits.
class Mapping {
 public:
  /// Throws DrawingFault when the box has no finite size.
  Mapping(const Box& box, const Rect& frame);

  /// Millimetres on the sheet for one unit of the survey.
  double scale() const { return scale_; }
  Place on_sheet(const Place& place) const;

  /// What of the survey's plane is inside the frame.
  Box visible() const;

 private:
  Rect frame_;
  Place centre_;
  double scale_;
};

}  // namespace survey_report
