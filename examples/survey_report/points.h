// points.h: the points of a survey, and reading them from a point file.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace survey_report {

/// Which coordinate a point file gives first.
enum class FieldOrder {
  x_first,        ///< number, X, Y, Z, code
  northing_first  ///< number, Y, X, Z, code
};

/// One measured point. X grows to the east, Y to the north; code says what it
/// is, such as ARBOL, and may be empty.
struct SurveyPoint {
  std::string number;  ///< a name; often, but not always, an integer
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;
  std::string code;
  std::size_t line = 0;  ///< where the point stands in its file, from 1
};

/// A line that is neither a point nor one of the lines without points.
struct BadLine {
  std::size_t line = 0;
  std::string what;
};

struct PointFile {
  std::vector<SurveyPoint> points;
  std::vector<BadLine> bad_lines;
};

/// Reads the text of a point file: one point a line, fields between commas,
/// blanks around fields ignored, decimal sign "." everywhere.
///   - The code may be left out. A field that holds commas stands in quotes, a
///     quote inside it is doubled.
///   - Blank lines and lines that start with # are passed over.
///   - The first other line is a header when it has the fields of a point,
///     and each of X, Y and Z has a text there that does not read as a number.
///   - Lines end in LF or CRLF; a UTF-8 mark at the start is passed over.
/// Every other line that is not a point is listed among the bad ones.
PointFile read_points(std::string_view text, FieldOrder order);

/// The text of a point file that reads back as these points, bit for bit, under
/// a header: coordinates with three decimals or as many more as they need, a
/// field in quotes where it would read as something else without.
std::string point_file(const std::vector<SurveyPoint>& points, FieldOrder order);

/// The names of the fields in the order of the file: "number, X, Y, Z, code".
std::string_view field_names(FieldOrder order);

/// Bad lines as messages, "file:17: what", one a line. After the first twenty
/// the others are counted.
std::string messages(std::string_view file, const std::vector<BadLine>& bad_lines);

/// The smallest and the largest of one coordinate.
struct Range {
  double min = 0.0;
  double max = 0.0;
};

}  // namespace survey_report
