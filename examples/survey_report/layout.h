// layout.h: numbers and tables for a fixed-pitch font.
#pragma once

#include <cstddef>
#include <deque>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "survey_report/writer.h"

namespace survey_report {

/// `value`, which is finite, with so many decimals and "." as decimal sign,
/// whatever the locale. What rounds to zero has no sign.
std::string fixed(double value, int decimals);
void append_fixed(std::string& text, double value, int decimals);

/// `value`, which is finite, with the decimals that make it read back as it is,
/// and no fewer than `decimals`.
std::string exact(double value, int decimals);
void append_exact(std::string& text, double value, int decimals);

/// An azimuth of 400 to the circle with four decimals; what rounds to the full
/// circle is 0.0000.
std::string azimuth_text(double azimuth);

enum class Align { left, right };

struct Column {
  std::string heading;
  Align align = Align::left;
};

/// The rows of a table whose widths are known before its cells.
class TableRows {
 public:
  /// A column is at least as wide as its heading, and at most 60.
  TableRows(std::vector<Column> columns, std::vector<std::size_t> widths);

  /// Headings and a rule; lines have no blanks at their end.
  void head(Writer& out) const;

  /// A row of one cell a column, UTF-8.
  void row(Writer& out, std::span<const std::string_view> cells) const;

 private:
  std::vector<Column> columns_;
  std::vector<std::size_t> widths_;
};

/// A table whose columns are as wide as their widest cell, heading included, and at most 60
/// characters: a longer cell runs over its column.
class Table {
 public:
  explicit Table(std::vector<Column> columns) : columns_(std::move(columns)) {}

  /// Adds a row of one cell a column, UTF-8.
  void add(std::vector<std::string> cells);

  /// Headings, a rule, and the rows.
  std::string text() const;

 private:
  std::vector<std::size_t> widths() const;

  std::vector<Column> columns_;
  std::deque<std::string> cells_;  // row by row
};

}  // namespace survey_report
