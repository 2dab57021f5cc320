#include "survey_report/options.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>
#include <system_error>

namespace survey_report {

namespace {

using Words = std::span<const char* const>;

void set_once(std::optional<std::string>& place, std::string_view value, const char* what) {
  if (place) throw UsageFault(std::string("more than one ") + what + " is given");
  if (value.empty()) throw UsageFault(std::string("the ") + what + " has an empty name");
  place = value;
}

// ---- Values

// The whole text as a finite number, whatever the locale.
std::optional<double> number_in(std::string_view text) {
  double value = 0.0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc{} || stop != end || !std::isfinite(value)) return std::nullopt;
  return value;
}

std::string_view take_field(std::string_view& rest) {
  const std::string_view field = rest.substr(0, rest.find(','));
  rest.remove_prefix(std::min(field.size() + 1, rest.size()));
  return field;
}

// Four numbers between commas, and nothing else.
std::optional<std::array<double, 4>> four_numbers(std::string_view text) {
  if (text.ends_with(',')) return std::nullopt;
  std::array<double, 4> values{};
  for (double& value : values) {
    const std::optional<double> number = number_in(take_field(text));
    if (!number) return std::nullopt;
    value = *number;
  }
  if (!text.empty()) return std::nullopt;
  return values;
}

SectionLine section_in(std::string_view text) {
  const std::string quoted = "--section \"" + std::string(text) + '"';
  const auto values = four_numbers(text);
  if (!values) throw UsageFault(quoted + " is not four numbers X1,Y1,X2,Y2");
  const auto [x1, y1, x2, y2] = *values;
  const SectionLine line{{x1, y1}, {x2, y2}};
  if (line.from == line.to) throw UsageFault(quoted + " starts where it ends");
  return line;
}

double step_in(std::string_view text) {
  const std::optional<double> step = number_in(text);
  if (step && *step > 0.0) return *step;
  throw UsageFault("--grid \"" + std::string(text) + "\" is not a positive number");
}

void set_output(Command& command, std::string_view value) {
  set_once(command.output, value, "output file");
}

void set_plan(Command& command, std::string_view value) {
  set_once(command.plan, value, "--plan file");
}

void set_boundary(Command& command, std::string_view value) {
  if (value.empty()) throw UsageFault("--boundary has an empty code");
  command.study.boundary_code = value;
}

void set_section(Command& command, std::string_view value) {
  if (command.study.section) throw UsageFault("more than one --section is given");
  command.study.section = section_in(value);
}

void set_grid(Command& command, std::string_view value) {
  if (command.study.grid_step) throw UsageFault("more than one --grid is given");
  command.study.grid_step = step_in(value);
}

// ---- Options

struct ValueOption {
  std::string_view name;
  const char* needs;
  void (*set)(Command& command, std::string_view value);
};

constexpr ValueOption value_options[] = {
    {"-o", "a file name", set_output},         {"--output", "a file name", set_output},
    {"--plan", "a file name", set_plan},       {"--boundary", "a code", set_boundary},
    {"--section", "X1,Y1,X2,Y2", set_section}, {"--grid", "a step", set_grid},
};

class CommandLine {
 public:
  explicit CommandLine(Words words) : words_(words) {}

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
    if (word == "--") {
      options_possible_ = false;
    } else if (word == "-h" || word == "--help") {
      command_.help = true;
    } else if (word == "--northing-first") {
      command_.order = FieldOrder::northing_first;
    } else if (!value_option(word)) {
      throw UsageFault("unknown option " + std::string(word));
    }
  }

  // The value is the next word, or follows "=" after a long name.
  bool value_option(std::string_view word) {
    for (const ValueOption& option : value_options) {
      if (word == option.name) {
        if (words_.empty()) throw UsageFault(std::string(word) + " needs " + option.needs);
        option.set(command_, take());
        return true;
      }
      if (option.name.starts_with("--") && word.starts_with(std::string(option.name) + '=')) {
        option.set(command_, word.substr(option.name.size() + 1));
        return true;
      }
    }
    return false;
  }

  std::string_view take() {
    const std::string_view word = words_.front();
    words_ = words_.subspan(1);
    return word;
  }

  Words words_;
  bool options_possible_ = true;
  Command command_;
};

}  // namespace

Command command_of(std::span<const char* const> words) { return CommandLine(words).read(); }

}  // namespace survey_report
