// tables.h: the figures of a survey as tables for spreadsheets and other programs.
#pragma once

#include <array>
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

/// A table in a file of its own: values between commas, under a line of headings.
struct TableFile {
  std::string_view name;
  void (*write)(Writer& out, const Figures& figures);
};

/// All points, each with azimuth and distance to the next.
void write_points_table(Writer& out, const Figures& figures);
/// The pairs of repeated points.
void write_pairs_table(Writer& out, const Figures& figures);
/// The places where the section line cuts the boundary.
void write_cuts_table(Writer& out, const Figures& figures);
/// The nodes of the grid with their elevations and slopes.
void write_nodes_table(Writer& out, const Figures& figures);
/// The stations of the profile.
void write_stations_table(Writer& out, const Figures& figures);
/// The points inside the work area.
void write_inside_table(Writer& out, const Figures& figures);
/// The extremes with the points that hold them.
void write_extremes_table(Writer& out, const Figures& figures);

inline constexpr std::array<TableFile, 7> table_files = {{
    {"points.csv", write_points_table},
    {"repeated_pairs.csv", write_pairs_table},
    {"section_cuts.csv", write_cuts_table},
    {"grid_nodes.csv", write_nodes_table},
    {"profile_stations.csv", write_stations_table},
    {"points_in_area.csv", write_inside_table},
    {"extremes.csv", write_extremes_table},
}};

}  // namespace survey_report
