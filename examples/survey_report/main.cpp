// survey_report: prints what a point file holds.
#include <cstdio>
#include <exception>
#include <filesystem>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <tuple>
#include <utility>

#include "survey_report/options.h"
#include "survey_report/output.h"
#include "survey_report/plan.h"
#include "survey_report/points.h"
#include "survey_report/report.h"
#include "survey_report/study.h"
#include "survey_report/traverse.h"

namespace survey_report {
namespace {

constexpr std::string_view help_text = R"(Usage: survey_report [options] FILE

Prints a survey: its boundary with a section line across it, elevations and
slopes at the nodes of a grid, and its points with azimuth and distance from
each to the next. On request it draws a plan.

FILE is a point file, one point a line: number, X, Y, Z, code. The code may be
left out. A header line, blank lines and lines that start with # may be there.
The decimal sign is a point. Azimuths are in gon: 400 to the circle, 0 along
+Y, clockwise.

Options:
  --northing-first    the lines of FILE are number, Y, X, Z, code
  -o, --output FILE   write the report to FILE, whole or not at all
  --plan FILE         draw a plan to FILE, in SVG, whole or not at all
  --boundary CODE     the boundary is the points whose code begins with CODE
                      (LINDERO if not given), in their order; where these are
                      fewer than three, the convex hull of all points
  --section X1,Y1,X2,Y2
                      the ends of the section line; if not given, from west to
                      east through the middle of the boundary
  --grid STEP         the step of the grid; if not given, a round one that
                      makes about 8 x 8 nodes
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
  const auto& [input, output, plan] = std::tie(*command.input, command.output, command.plan);
  if (output && same_file(input, *output)) throw UsageFault("the output file is the point file");
  if (plan && same_file(input, *plan)) throw UsageFault("--plan names the point file");
  if (plan && output && same_file(*output, *plan)) {
    throw UsageFault("--plan names the output file");
  }
}

Survey load_survey(const std::string& file, FieldOrder order) {
  PointFile read = read_points(load(file), order);
  if (!read.bad_lines.empty()) throw DataFault(messages(file, read.bad_lines));
  if (read.points.empty()) throw DataFault(file + ": no points\n");
  return {std::filesystem::path(file).filename().string(), order, std::move(read.points)};
}

std::string report_on(const std::string& file, const Survey& survey, const Study& study) try {
  return report(survey, study);
} catch (const LegFault& fault) {
  throw DataFault(messages(file, {{fault.line(), fault.what()}}));
}

Study study_on(const Survey& survey, const StudyOptions& options) try {
  return study_of(survey.points, options);
} catch (const GridFault& fault) {
  throw UsageFault(std::string("--grid ") + fault.what());
}

std::string plan_on(const std::string& file, const Survey& survey, const Study& study) try {
  return plan_of(survey, study);
} catch (const PlanFault& fault) {
  throw DataFault(file + ": " + fault.what() + '\n');
}

void put_report(const std::optional<std::string>& file, const std::string& text) {
  if (file) {
    save(*file, text);
  } else {
    print(text);
  }
}

// The plan takes its name last: where the report fails, there is none.
void put(const Command& command, const std::string& text, const std::string& drawing) {
  std::optional<Replacement> plan;
  if (command.plan) plan.emplace(*command.plan, drawing);
  put_report(command.output, text);
  if (plan) plan->commit();
}

void run(const Command& command) {
  if (command.help) return print(help_text);
  check_apart(command);
  const std::string& file = *command.input;
  const Survey survey = load_survey(file, command.order);
  const Study study = study_on(survey, command.study);
  const std::string text = report_on(file, survey, study);
  put(command, text, command.plan ? plan_on(file, survey, study) : std::string());
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
