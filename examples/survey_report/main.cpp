// survey_report: prints what a point file holds.
#include <cstdio>
#include <deque>
#include <exception>
#include <filesystem>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "survey_report/extremes.h"
#include "survey_report/failure_words.h"
#include "survey_report/options.h"
#include "survey_report/output.h"
#include "survey_report/plan.h"
#include "survey_report/points.h"
#include "survey_report/profile_drawing.h"
#include "survey_report/repeats.h"
#include "survey_report/report.h"
#include "survey_report/study.h"
#include "survey_report/traverse.h"

namespace survey_report {
namespace {

constexpr std::string_view help_text = R"(Usage: survey_report [options] FILE

Prints a survey: its extremes, its repeated points, its boundary with a section
line across it, elevations and slopes at the nodes of a grid, a longitudinal
profile along the section line, the points inside a work area, and all points
with azimuth and distance from each to the next. On request it draws a plan and
the profile.

FILE is a point file, one point a line: number, X, Y, Z, code. The code may be
left out. A header line, blank lines and lines that start with # may be there.
The decimal sign is a point. Azimuths are in gon: 400 to the circle, 0 along
+Y, clockwise.

Options:
  --northing-first    the lines of FILE are number, Y, X, Z, code
  -o, --output FILE   write the report to FILE, whole or not at all
  --plan FILE         draw a plan to FILE, in SVG, whole or not at all
  --profile FILE      draw the profile to FILE, in SVG, whole or not at all
  --sheet FORMAT      draw on a sheet of A4, A3, A2 or A1; if not given, on the
                      smallest with room for most labels
  --scale 1:N         the scale of the plan; if not given, the largest round one
                      that the sheet has room for
  --profile-scale 1:N the scale of the profile's distances; if not given, a
                      large round one; elevations are drawn 1, 2, 5, 10, ...
                      times as large, to a round scale that fills the sheet
  --unit UNIT         the unit of lengths, for the scales: m, ft (0.3048 m) or
                      us-ft (1200/3937 m); if not given, m is assumed
  --boundary CODE     the boundary is the points whose code begins with CODE
                      (LINDERO if not given), in their order; where these are
                      fewer than three, the convex hull of all points
  --section X1,Y1,X2,Y2
                      the ends of the section line; if not given, from west to
                      east through the middle of the boundary; it is the axis
                      of the profile
  --grid STEP         the step of the grid; if not given, a round one that
                      makes about 8 x 8 nodes
  --corridor WIDTH    the profile is made at the points that lie as near as
                      WIDTH to the section line, on either side; if not given,
                      half of the step that the grid has by itself
  --stations STEP     the step of the stations along the profile; if not given,
                      a round one that makes 8 to 20 of them
  --area X1,Y1,X2,Y2,X3,Y3,...
                      the vertices of the work area; if not given, a rectangle
                      over the middle half of the boundary
  --area-code CODE    the vertices of the work area are the points whose code
                      begins with CODE, in their order
  --repeats TOLERANCE
                      two points are a pair of repeated points when they are
                      nearer than TOLERANCE in X and in Y (0.02 if not given)
  --kept FILE         write a copy of the survey without its repeated points to
                      FILE, as a point file, whole or not at all; report and
                      drawings are of all points
  --repetidos         choose the points for that copy in the library's dialog,
                      with the tolerance typed there; it goes to the present
                      folder under the name of FILE with _kept.csv if --kept is
                      not given; a dialog that is cancelled, as it is without a
                      screen, writes none
  --ver               show the extremes in the library's dialog, for two points
                      or more
  -h, --help          print this help and stop
  --                  what follows is FILE, even if it starts with -

The status is 0 when the report was written, 1 when the data or a file were at
fault (nothing is printed then but the messages), 2 when the options were.
)";

constexpr int bad_data = 1;
constexpr int bad_usage = 2;

// Data that cannot be reported; the message is complete, with its line ends.
class DataFault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// ---- The report

bool same_file(const std::string& a, const std::string& b) {
  std::error_code not_there;
  if (std::filesystem::exists(a, not_there) && std::filesystem::exists(b, not_there)) {
    return std::filesystem::equivalent(a, b, not_there) &&
           std::filesystem::is_regular_file(a, not_there);
  }
  const auto full = [&](const std::string& name) {
    return std::filesystem::weakly_canonical(std::filesystem::absolute(name), not_there);
  };
  return full(a) == full(b);
}

// What is written must not take the place of the survey or of each other.
void check_apart(const Command& command) {
  struct Named {
    const std::optional<std::string>& file;
    const char* name;   // as another's
    const char* names;  // as the subject
  };
  const Named files[] = {{command.input, "the point file", ""},
                         {command.output, "the output file", "the output file is "},
                         {command.plan, "the --plan file", "--plan names "},
                         {command.profile, "the --profile file", "--profile names "},
                         {command.kept, "", "--kept names "}};
  for (const Named& later : files) {
    for (const Named* earlier = files; earlier != &later; ++earlier) {
      if (!earlier->file || !later.file || !same_file(*earlier->file, *later.file)) continue;
      throw UsageFault(std::string(later.names) + earlier->name);
    }
  }
}

Survey load_survey(const std::string& file, FieldOrder order) {
  PointFile read = read_points(load(file), order);
  if (!read.bad_lines.empty()) throw DataFault(messages(file, read.bad_lines));
  if (read.points.empty()) throw DataFault(file + ": no points\n");
  return {std::filesystem::path(file).filename().string(), order, std::move(read.points)};
}

std::string report_on(const std::string& file, const Survey& survey, const Study& study,
                      const std::string& dialog) try {
  return report(survey, study, dialog);
} catch (const LegFault& fault) {
  throw DataFault(messages(file, {{fault.line(), fault.what()}}));
}

Study study_on(const Survey& survey, const StudyOptions& options) try {
  return study_of(survey.points, options);
} catch (const ChoiceFault& fault) {
  throw UsageFault(fault.what());
}

using Draw = std::string (*)(const Survey& survey, const Study& study,
                             const DrawingOptions& options);

std::string drawing_on(const Command& command, const Survey& survey, const Study& study,
                       Draw draw) try {
  return draw(survey, study, command.drawings);
} catch (const ChoiceFault& fault) {
  throw UsageFault(fault.what());
} catch (const DrawingFault& fault) {
  throw DataFault(*command.input + ": " + fault.what() + '\n');
}

void put_report(const std::optional<std::string>& file, const std::string& text) {
  if (file) {
    save(*file, text);
  } else {
    print(text);
  }
}

// A file that is written beside the report.
struct Beside {
  std::string file;
  std::string text;
};

// These take their names last: where the report fails, there is none.
void put(const Command& command, const std::string& text, const std::vector<Beside>& beside) {
  std::deque<Replacement> files;
  for (const Beside& other : beside) files.emplace_back(other.file, other.text);
  put_report(command.output, text);
  for (Replacement& file : files) file.commit();
}

std::vector<Beside> drawings_of(const Command& command, const Survey& survey, const Study& study) {
  std::vector<Beside> drawings;
  const auto add = [&](const std::optional<std::string>& file, Draw draw) {
    if (file) drawings.push_back({*file, drawing_on(command, survey, study, draw)});
  };
  add(command.plan, plan_of);
  add(command.profile, profile_drawing_of);
  return drawings;
}

DialogRemoval removal_on(const std::string& file, const Survey& survey) try {
  return remove_in_dialog(survey.points);
} catch (const orv2_geo::RunFailure& failure) {
  throw DataFault(file + ": repeated points: " + words_of(failure) + '\n');
}

std::vector<SurveyPoint> kept_on(const std::string& file, const Survey& survey,
                                 const Study& study) {
  const std::string& fault = study.repeats.fault;
  if (!fault.empty()) throw DataFault(file + ": repeated points: " + fault + '\n');
  return kept_points(survey.points, study.repeats);
}

Beside kept_file(const Command& command, const std::vector<SurveyPoint>& kept) {
  return {*command.kept, point_file(kept, command.order)};
}

void run(const Command& command) {
  if (command.help) return print(help_text);
  check_apart(command);
  const std::string& file = *command.input;
  const Survey survey = load_survey(file, command.order);
  const Study study = study_on(survey, command.study);
  std::vector<Beside> beside = drawings_of(command, survey, study);
  if (command.extremes_dialog) show_extremes(survey.points);
  std::string dialog;
  if (command.removal_dialog) {
    const DialogRemoval removal = removal_on(file, survey);
    dialog = dialog_section(survey, removal, *command.kept);
    if (removal.confirmed) beside.push_back(kept_file(command, removal.kept));
  } else if (command.kept) {
    beside.push_back(kept_file(command, kept_on(file, survey, study)));
  }
  put(command, report_on(file, survey, study, dialog), beside);
}

void complain(const std::string& message) { std::fputs(message.c_str(), stderr); }

int status_of(std::span<const char* const> words) try {
  run(command_of(words));
  return 0;
} catch (const UsageFault& fault) {
  complain(std::string("survey_report: ") + fault.what() + "\nTry survey_report --help\n");
  return bad_usage;
} catch (const DataFault& fault) {
  complain(fault.what());
  return bad_data;
} catch (const std::exception& fault) {
  complain(std::string("survey_report: ") + fault.what() + '\n');
  return bad_data;
}

}  // namespace
}  // namespace survey_report

int main(int argc, char** argv) {
  const std::span<const char* const> words(argv, static_cast<std::size_t>(argc));
  return survey_report::status_of(words.subspan(argc > 0 ? 1 : 0));
}
