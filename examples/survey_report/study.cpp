#include "survey_report/study.h"

#include <cmath>

#include "orv2_geo/frame/run_failure.h"
#include "survey_report/failure_words.h"
#include "survey_report/layout.h"
#include "survey_report/stages.h"
#include "survey_report/words.h"

namespace survey_report {

namespace {

bool has_size(const Box& box) {
  const double width = box.x.max - box.x.min;
  const double height = box.y.max - box.y.min;
  return std::isfinite(width) && std::isfinite(height) && (width > 0.0 || height > 0.0);
}

double checked_step(const Box& box, double step) {
  if (node_count(box, step) <= most_nodes) return step;
  throw ChoiceFault(words::grid_too_fine.with({fixed(most_nodes, 0)}));
}

void work_out(Study& study, const std::vector<SurveyPoint>& points, const StudyOptions& options,
              Progress& progress) {
  const Box box = box_of(study.boundary.vertices);
  if (!has_size(box)) throw std::range_error(words::boundary_too_large.text());
  study.perimeter = perimeter_of(study.boundary);
  study.section = section_of(study.boundary, options.section.value_or(default_section(box)));
  progress.begin(stages::contours);
  const Triangulation triangulation = triangulation_of(points, study.boundary);
  study.contours = contours_of(points, triangulation, options.contour_step);
  const TriangleIndex triangles(points, triangulation);
  progress.begin(stages::relief);
  const double step = options.grid_step.value_or(default_step(box));
  study.relief = relief_of(triangles, study.boundary, checked_step(box, step));
  progress.begin(stages::profile);
  study.profile =
      profile_of(triangles, study.boundary, study.section,
                 options.corridor.value_or(default_corridor(box)), options.station_step);
}

}  // namespace

Study study_of(const std::vector<SurveyPoint>& points, const StudyOptions& options,
               Progress& progress) {
  progress.begin(stages::boundary);
  Study only_boundary;
  only_boundary.boundary = boundary_of(points, options.boundary_code);
  progress.begin(stages::repeats);
  only_boundary.repeats = repeats_of(points, options.repeats.value_or(default_tolerance), progress);
  progress.begin(stages::area);
  only_boundary.area = area_of(points, only_boundary.boundary, options.area);
  if (only_boundary.boundary.vertices.empty()) return only_boundary;
  try {
    Study study = only_boundary;
    work_out(study, points, options, progress);
    return study;
  } catch (const orv2_geo::RunFailure& failure) {
    only_boundary.fault = words_of(failure);
  } catch (const std::range_error& fault) {
    only_boundary.fault = fault.what();
  }
  return only_boundary;
}

}  // namespace survey_report
