// points.h: the points of a survey, and reading them from a point file.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "survey_report/bad_line.h"
#include "survey_report/progress.h"
#include "survey_report/writer.h"

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

struct PointFile {
  std::vector<SurveyPoint> points;
  std::vector<BadLine> bad_lines;
};

/// Reads a point file: one point a line.
///   - Fields stand between commas, semicolons, tabs or blanks; which, the lines tell, all
///     alike. Blanks around fields are ignored; between blanks, the code is the rest of a line.
///   - The decimal sign is a point, or a comma where commas part no fields; one in all lines.
///   - The code may be left out. A field that holds separators stands in quotes, a quote
///     inside it is doubled.
///   - Blank lines and lines that start with # are passed over.
///   - The first other line is a header when it has the fields of a point, and each of X, Y
///     and Z has a text there that does not read as a number.
///   - Lines end in LF or CRLF, or all of them in CR.
///   - Alphabets are those of Decoded.
/// Every other line that is not a point is listed among the bad ones.
PointFile read_points(std::string_view bytes, FieldOrder order,
                      Progress& progress = unseen_progress());

/// Writes a point file that reads back as these points, bit for bit, under a header:
/// coordinates with three decimals or as many more as they need, a field in quotes where it
/// would read as something else without.
void write_point_file(Writer& out, const std::vector<SurveyPoint>& points, FieldOrder order);

/// A field as tables between commas have it: in quotes where it would read as something else
/// without.
void write_field(Writer& out, std::string_view field);

/// The names of the fields in the order of the file: "number, X, Y, Z, code".
std::string_view field_names(FieldOrder order);

/// The smallest and the largest of one coordinate.
struct Range {
  double min = 0.0;
  double max = 0.0;
};

}  // namespace survey_report
