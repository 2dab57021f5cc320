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
#include <utility>

#include "survey_report/output.h"
#include "survey_report/points.h"
#include "survey_report/report.h"
#include "survey_report/traverse.h"

namespace survey_report {
namespace {

constexpr std::string_view help_text = R"(Usage: survey_report [options] FILE

Prints a survey: its points, and azimuth and distance from each to the next.

FILE is a point file, one point a line: number, X, Y, Z, code. The code may be
left out. A header line, blank lines and lines that start with # may be there.
The decimal sign is a point. Azimuths are in gon: 400 to the circle, 0 along
+Y, clockwise.

Options:
  --northing-first    the lines of FILE are number, Y, X, Z, code
  -o, --output FILE   write the report to FILE, whole or not at all
  -h, --help          print this help and stop
  --                  what follows is FILE, even if it starts with -

The status is 0 when the report was written, 1 when the data or a file were at
fault (nothing is printed then but the messages), 2 when the options were.
)";

constexpr int bad_data = 1;
constexpr int bad_usage = 2;

// Options that cannot be followed.
class UsageFault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Data that cannot be reported; the message is complete, with its line ends.
class DataFault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct Command {
  bool help = false;
  FieldOrder order = FieldOrder::x_first;
  std::optional<std::string> input;
  std::optional<std::string> output;
};

// ---- Options

void set_once(std::optional<std::string>& place, std::string_view value, const char* what) {
  if (place) throw UsageFault(std::string("more than one ") + what + " is given");
  if (value.empty()) throw UsageFault(std::string("the ") + what + " has an empty name");
  place = value;
}

// Reads the command line from left to right.
class CommandLine {
 public:
  explicit CommandLine(std::span<const char* const> words) : words_(words) {}

  Command read() {
    while (!words_.empty() && !command_.help) word(take());
    if (!command_.help && !command_.input) throw UsageFault("no point file is given");
    return command_;
  }

 private:
  void word(std::string_view word) {
    const bool is_option = options_possible_ && word.starts_with('-');
    if (is_option) {
      option(word);
    } else {
      set_once(command_.input, word, "point file");
    }
  }

  void option(std::string_view word) {
    constexpr std::string_view output_is = "--output=";
    if (word == "--") {
      options_possible_ = false;
    } else if (word == "-h" || word == "--help") {
      command_.help = true;
    } else if (word == "--northing-first") {
      command_.order = FieldOrder::northing_first;
    } else if (word == "-o" || word == "--output") {
      if (words_.empty()) throw UsageFault(std::string(word) + " needs a file name");
      set_once(command_.output, take(), "output file");
    } else if (word.starts_with(output_is)) {
      set_once(command_.output, word.substr(output_is.size()), "output file");
    } else {
      throw UsageFault("unknown option " + std::string(word));
    }
  }

  std::string_view take() {
    const std::string_view word = words_.front();
    words_ = words_.subspan(1);
    return word;
  }

  std::span<const char* const> words_;
  bool options_possible_ = true;
  Command command_;
};

// ---- The report

// The report must not take the place of the survey.
void check_apart(const std::string& input, const std::string& output) {
  std::error_code not_there;
  const bool same = std::filesystem::equivalent(input, output, not_there);
  if (same && std::filesystem::is_regular_file(input, not_there)) {
    throw UsageFault("the output file is the point file");
  }
}

Survey load_survey(const std::string& file, FieldOrder order) {
  PointFile read = read_points(load(file), order);
  if (!read.bad_lines.empty()) throw DataFault(messages(file, read.bad_lines));
  if (read.points.empty()) throw DataFault(file + ": no points\n");
  return {std::filesystem::path(file).filename().string(), order, std::move(read.points)};
}

std::string report_on(const std::string& file, FieldOrder order) try {
  return report(load_survey(file, order));
} catch (const LegFault& fault) {
  throw DataFault(messages(file, {{fault.line(), fault.what()}}));
}

void run(const Command& command) {
  if (command.help) return print(help_text);
  if (command.output) check_apart(*command.input, *command.output);
  const std::string text = report_on(*command.input, command.order);
  if (command.output) {
    save(*command.output, text);
  } else {
    print(text);
  }
}

void complain(const std::string& message) { std::fputs(message.c_str(), stderr); }

int status_of(std::span<const char* const> words) try {
  run(CommandLine(words).read());
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
