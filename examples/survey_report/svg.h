// svg.h: the elements of a drawing. Lengths are millimetres on the sheet, from
// its upper left corner.
#pragma once

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

/// Elements in the order in which they are drawn.
class Svg {
 public:
  /// `attributes` are written as they are.
  void open_group(std::string_view attributes);
  void close_group() { text_ += "</g>\n"; }
  void line(const Place& from, const Place& to);
  void rectangle(const Place& corner, double width, double height, std::string_view attributes);
  void path(std::string_view data, std::string_view attributes = {});

  /// What is painted with clip-path="url(#name)" ends at the box.
  void clip(std::string_view name, const Place& corner, double width, double height);
  void text(const Place& at, std::string_view content, const Lettering& lettering);

  /// The whole document, on a sheet of that size.
  std::string document(double width, double height, std::string_view title) const;

 private:
  std::string text_;
};

/// The data of a path: `M 1 2 L 3 4`.
std::string path_through(const std::vector<Place>& places, bool closed);

}  // namespace survey_report
