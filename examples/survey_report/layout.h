// layout.h: numbers and tables for a fixed-pitch font.
#pragma once

#include <deque>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace survey_report {

/// `value`, which is finite, with so many decimals and "." as decimal sign,
/// whatever the locale. What rounds to zero has no sign.
std::string fixed(double value, int decimals);

/// `value`, which is finite, with the decimals that make it read back as it is,
/// and no fewer than `decimals`.
std::string exact(double value, int decimals);

/// An azimuth of 400 to the circle with four decimals; what rounds to the full
/// circle is 0.0000.
std::string azimuth_text(double azimuth);

enum class Align { left, right };

struct Column {
  std::string heading;
  Align align = Align::left;
};

/// A table whose columns are as wide as their widest cell, heading included.
class Table {
 public:
  explicit Table(std::vector<Column> columns) : columns_(std::move(columns)) {}

  /// Adds a row of one cell a column, UTF-8.
  void add(std::vector<std::string> cells);

  /// Headings, a rule, and the rows; lines have no blanks at their end.
  std::string text() const;

 private:
  std::vector<std::size_t> widths() const;

  std::vector<Column> columns_;
  std::deque<std::string> cells_;  // row by row; of a million rows a vector each would be much
};

}  // namespace survey_report
