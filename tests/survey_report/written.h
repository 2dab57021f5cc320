// written.h: what is written to files, as texts.
#pragma once

#include <string>
#include <vector>

#include "survey_report/report.h"

namespace survey_report {

/// The point file of these points.
inline std::string point_file(const std::vector<SurveyPoint>& points, FieldOrder order) {
  return text_of([&](Writer& out) { write_point_file(out, points, order); });
}

/// All sections of the report.
inline std::string report(const Survey& survey, const Study& study,
                          const std::string& dialog = {}) {
  ReportNotes notes;
  notes.dialog = dialog;
  return text_of([&](Writer& out) {
    write_report(out, survey, study, traverse_through(survey.points), notes);
  });
}

}  // namespace survey_report
