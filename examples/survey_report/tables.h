// tables.h: the figures of a survey as tables for spreadsheets and other programs.
#pragma once

#include <array>
#include <span>
#include <string_view>

#include "survey_report/report.h"
#include "survey_report/traverse.h"
#include "survey_report/writer.h"

namespace survey_report {

/// What the tables are made of.
struct Figures {
  const Survey& survey;
  const Study& study;
  const Traverse& traverse;
};

/// A heading, and whether its column holds numbers.
struct Heading {
  std::string_view text;
  bool is_number = true;
};

/// Takes a table: its headings, then its rows cell by cell.
class TableSink {
 public:
  virtual ~TableSink() = default;

  virtual void headings(std::span<const Heading> names) = 0;
  /// Whether the cells of the next row are wanted too.
  virtual bool begin_row() = 0;
  virtual void end_row() = 0;
  virtual void text(std::string_view cell) = 0;
  /// With the decimals that make it read back as it is, and no fewer than three.
  virtual void exactly(double value) = 0;
  /// Empty for what has no number.
  virtual void rounded(double value, int digits) = 0;
  virtual void flag(bool is_so) = 0;

  void empty() { text({}); }
};

/// A table of the figures: its file among those that go with a report, and its rows.
struct TableOfFigures {
  std::string_view file;
  void (*write)(TableSink& table, const Figures& figures);
};

/// All points, each with azimuth and distance to the next.
void write_points_table(TableSink& table, const Figures& figures);
/// The pairs of repeated points.
void write_pairs_table(TableSink& table, const Figures& figures);
/// The places where the section line cuts the boundary.
void write_cuts_table(TableSink& table, const Figures& figures);
/// The nodes of the grid with their elevations and slopes.
void write_nodes_table(TableSink& table, const Figures& figures);
/// The stations of the profile.
void write_stations_table(TableSink& table, const Figures& figures);
/// The points inside the work area.
void write_inside_table(TableSink& table, const Figures& figures);
/// The extremes with the points that hold them.
void write_extremes_table(TableSink& table, const Figures& figures);

inline constexpr std::array<TableOfFigures, 7> tables_of_figures = {{
    {"points.csv", write_points_table},
    {"repeated_pairs.csv", write_pairs_table},
    {"section_cuts.csv", write_cuts_table},
    {"grid_nodes.csv", write_nodes_table},
    {"profile_stations.csv", write_stations_table},
    {"points_in_area.csv", write_inside_table},
    {"extremes.csv", write_extremes_table},
}};

/// That table as values between commas, under a line of headings.
void write_csv(Writer& out, const TableOfFigures& table, const Figures& figures);

}  // namespace survey_report
