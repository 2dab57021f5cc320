// svg.h: the elements of a drawing. Lengths are millimetres on the sheet, from
// its upper left corner.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "survey_report/boundary.h"

namespace survey_report {

/// A text as XML has it between tags or quotes: marks escaped, and what XML
/// does not allow replaced.
std::string xml_escaped(std::string_view text);

/// A length on the sheet: at most three decimals, no zeros at the end.
std::string sheet_number(double value);

enum class Anchor { start, middle, end };

/// How a text is set.
struct Lettering {
  double size = 3.0;
  Anchor anchor = Anchor::start;
  std::string_view colour = "#222222";
  bool bold = false;
  bool halo = false;     ///< white around the letters, to stay legible over lines
  bool upwards = false;  ///< turned to be read from the right
};

/// A drawing as it is put into a file or a page.
struct Drawing {
  std::string svg;               ///< the element
  std::size_t points_drawn = 0;  ///< how many points of the survey it shows
};

/// Elements in the order in which they are drawn.
class Svg {
 public:
  /// `attributes` are written as they are.
  void open_group(std::string_view attributes);
  /// A group of what belongs to the points of a code.
  void open_code(std::string_view code, std::string_view attributes = {});
  void close_group() { text_ += "</g>\n"; }
  void line(const Place& from, const Place& to);
  void rectangle(const Place& corner, double width, double height, std::string_view attributes);
  void path(std::string_view data, std::string_view attributes = {});
  /// A path of which a browser tells the title where the pointer rests.
  void titled_path(std::string_view data, std::string_view title);

  /// What is painted with clip-path="url(#name)" ends at the box.
  void clip(std::string_view name, const Place& corner, double width, double height);
  void text(const Place& at, std::string_view content, const Lettering& lettering);

  /// The whole drawing as an element, on a sheet of that size.
  std::string element(double width, double height, std::string_view title) const;

 private:
  std::string text_;
};

/// What stands before the element in a file of its own.
inline constexpr std::string_view svg_head = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

/// The data of a path: `M 1 2 L 3 4`.
std::string path_through(const std::vector<Place>& places, bool closed);

}  // namespace survey_report
