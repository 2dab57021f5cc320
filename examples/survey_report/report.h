// report.h: the sections of the printed report, each a text of its own.
#pragma once

#include <string>
#include <vector>

#include "survey_report/points.h"
#include "survey_report/study.h"
#include "survey_report/traverse.h"
#include "survey_report/writer.h"

namespace survey_report {

/// What was surveyed, and where it was read.
struct Survey {
  std::string file_name;  ///< without folders
  FieldOrder order = FieldOrder::x_first;
  std::vector<SurveyPoint> points;  ///< at least one
};

/// What the report tells of what was made beside it; empty for what there is not.
struct ReportNotes {
  std::string dialog;  ///< the dialog_section
  std::string plan;    ///< which points a plan leaves out
  std::string dxf;     ///< what of the points a CAD drawing leaves out
};

/// How a report says that a plan shows not all points; empty where it does.
std::string plan_note(std::size_t drawn, std::size_t points);

/// File, number of points, length of the traverse, notes, and the extremes with the
/// points that hold them.
std::string heading_section(const Survey& survey, const Traverse& traverse,
                            const ReportNotes& notes = {});

/// What a section of the report tells before its table.
std::string heading_facts(const Survey& survey, const Traverse& traverse,
                          const ReportNotes& notes = {});
std::string repeats_facts(const Survey& survey, const Study& study);
std::string boundary_facts(const Study& study);
std::string relief_facts(const Study& study);
std::string profile_facts(const Study& study);
std::string area_facts(const Survey& survey, const Study& study);
std::string traverse_facts(const Traverse& traverse);

/// Points measured more than once, a row a pair, and how many the library would remove.
std::string repeats_section(const Survey& survey, const Study& study);

/// What the user kept in the library's dialog, a row a point that stands for
/// several; `file` is where the kept points are written.
std::string dialog_section(const Survey& survey, const DialogRemoval& removal,
                           const std::string& file);

/// The boundary, the section line and a row a cut.
std::string boundary_section(const Study& study);

/// A row a grid node: elevation, slope and the triangle they are taken from.
std::string relief_section(const Survey& survey, const Study& study);

/// The contours: their step, levels and triangles.
std::string contours_section(const Survey& survey, const Study& study);

/// The profile along the section line, a row a station.
std::string profile_section(const Study& study);

/// Why a study has no profile; empty when it has one.
std::string reason_for_no_profile(const Study& study);

/// The work area, a row a point inside it.
std::string area_section(const Survey& survey, const Study& study);

/// A row a point: its coordinates, and the leg to the next point.
void write_traverse_section(Writer& out, const Survey& survey, const Traverse& traverse);

/// All sections, blank lines between each two.
void write_report(Writer& out, const Survey& survey, const Study& study, const Traverse& traverse,
                  const ReportNotes& notes = {});

}  // namespace survey_report
