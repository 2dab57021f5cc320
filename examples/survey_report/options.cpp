#include "survey_report/options.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <iterator>
#include <string_view>
#include <system_error>
#include <tuple>
#include <vector>

namespace survey_report {

namespace {

using Words = std::span<const char* const>;

constexpr double least_scale = 0.001;
constexpr double most_scale = 1e15;

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

// One or more numbers between commas, and nothing else; none when there is
// anything else.
std::vector<double> numbers_in(std::string_view text) {
  std::vector<double> values;
  for (bool more = true; more;) {
    const std::size_t comma = text.find(',');
    const std::optional<double> number = number_in(text.substr(0, comma));
    if (!number) return {};
    values.push_back(*number);
    more = comma != std::string_view::npos;
    if (more) text.remove_prefix(comma + 1);
  }
  return values;
}

std::string quoted(std::string_view option, std::string_view value) {
  return std::string(option) + " \"" + std::string(value) + '"';
}

SectionLine section_in(std::string_view text) {
  const std::vector<double> values = numbers_in(text);
  if (values.size() != 4) {
    throw UsageFault(quoted("--section", text) + " is not four numbers X1,Y1,X2,Y2");
  }
  const SectionLine line{{values[0], values[1]}, {values[2], values[3]}};
  if (line.from == line.to) throw UsageFault(quoted("--section", text) + " starts where it ends");
  return line;
}

// "1:500", "500" or "20:1".
double scale_in(std::string_view option, std::string_view text) {
  const std::size_t colon = text.find(':');
  const std::string_view before = colon == text.npos ? "1" : text.substr(0, colon);
  const std::string_view after = colon == text.npos ? text : text.substr(colon + 1);
  const std::optional<double> drawn = number_in(before);
  const std::optional<double> surveyed = number_in(after);
  if (drawn && surveyed && *drawn > 0.0 && *surveyed > 0.0) {
    const double scale = *surveyed / *drawn;
    if (scale >= least_scale && scale <= most_scale) return scale;
  }
  throw UsageFault(quoted(option, text) + " is not a scale such as 1:500, from 1000:1 to 1:1e15");
}

template <class Named>
std::string joined_names(const Named& all, std::string_view Named::value_type::*name) {
  std::string text;
  for (std::size_t i = 0; i < all.size(); ++i) {
    if (i > 0) text += i + 1 == all.size() ? " or " : ", ";
    text += all[i].*name;
  }
  return text;
}

// The one of that name.
template <class Named>
typename Named::value_type named_in(std::string_view option, std::string_view text,
                                    const Named& all, std::string_view Named::value_type::*name) {
  for (const auto& one : all) {
    if (one.*name == text) return one;
  }
  throw UsageFault(quoted(option, text) + " is not " + joined_names(all, name));
}

double positive_in(std::string_view option, std::string_view text) {
  const std::optional<double> number = number_in(text);
  if (number && *number > 0.0) return *number;
  throw UsageFault(quoted(option, text) + " is not a positive number");
}

std::size_t different(std::vector<Place> places) {
  std::sort(places.begin(), places.end(),
            [](const Place& a, const Place& b) { return std::tie(a.x, a.y) < std::tie(b.x, b.y); });
  return static_cast<std::size_t>(
      std::distance(places.begin(), std::unique(places.begin(), places.end())));
}

// A ring may be written closed: its first vertex again at its end.
std::vector<Place> area_in(std::string_view text) {
  const std::vector<double> values = numbers_in(text);
  if (values.empty() || values.size() % 2 != 0) {
    throw UsageFault(quoted("--area", text) + " is not pairs of numbers X1,Y1,X2,Y2,X3,Y3,...");
  }
  std::vector<Place> vertices;
  for (std::size_t i = 0; i < values.size(); i += 2) vertices.push_back({values[i], values[i + 1]});
  if (vertices.size() > 1 && vertices.front() == vertices.back()) vertices.pop_back();
  if (different(vertices) >= fewest_vertices) return vertices;
  throw UsageFault(quoted("--area", text) + " has fewer than three vertices");
}

template <class Value>
void require_none(const std::optional<Value>& place, const char* option) {
  if (place) throw UsageFault(std::string("more than one ") + option + " is given");
}

void set_positive(std::optional<double>& place, const char* option, std::string_view value) {
  require_none(place, option);
  place = positive_in(option, value);
}

void set_output(Command& command, std::string_view value) {
  set_once(command.output, value, "output file");
}

void set_plan(Command& command, std::string_view value) {
  set_once(command.plan, value, "--plan file");
}

void set_profile(Command& command, std::string_view value) {
  set_once(command.profile, value, "--profile file");
}

void set_kept(Command& command, std::string_view value) {
  set_once(command.kept, value, "--kept file");
}

void set_sheet(Command& command, std::string_view value) {
  require_none(command.drawings.paper, "--sheet");
  command.drawings.paper = named_in("--sheet", value, papers, &Paper::name);
}

void set_unit(Command& command, std::string_view value) {
  require_none(command.drawings.unit, "--unit");
  command.drawings.unit = named_in("--unit", value, units, &Unit::option);
}

void set_plan_scale(Command& command, std::string_view value) {
  require_none(command.drawings.plan_scale, "--scale");
  command.drawings.plan_scale = scale_in("--scale", value);
}

void set_profile_scale(Command& command, std::string_view value) {
  require_none(command.drawings.profile_scale, "--profile-scale");
  command.drawings.profile_scale = scale_in("--profile-scale", value);
}

void set_repeats(Command& command, std::string_view value) {
  set_positive(command.study.repeats, "--repeats", value);
}

void set_boundary(Command& command, std::string_view value) {
  if (value.empty()) throw UsageFault("--boundary has an empty code");
  command.study.boundary_code = value;
}

void set_section(Command& command, std::string_view value) {
  require_none(command.study.section, "--section");
  command.study.section = section_in(value);
}

void set_grid(Command& command, std::string_view value) {
  set_positive(command.study.grid_step, "--grid", value);
}

void set_corridor(Command& command, std::string_view value) {
  set_positive(command.study.corridor, "--corridor", value);
}

void set_stations(Command& command, std::string_view value) {
  set_positive(command.study.station_step, "--stations", value);
}

void require_no_area(const AreaChoice& area) {
  if (area.vertices.empty() && !area.code) return;
  throw UsageFault("more than one --area or --area-code is given");
}

void set_area(Command& command, std::string_view value) {
  require_no_area(command.study.area);
  command.study.area.vertices = area_in(value);
}

void set_area_code(Command& command, std::string_view value) {
  require_no_area(command.study.area);
  if (value.empty()) throw UsageFault("--area-code has an empty code");
  command.study.area.code = value;
}

// Where the points go that stay after a dialog when the user names no file: into
// the present folder.
std::string kept_file_of(const std::filesystem::path& input) {
  return input.stem().string() + "_kept.csv";
}

// ---- Options

struct ValueOption {
  std::string_view name;
  const char* needs;
  void (*set)(Command& command, std::string_view value);
};

constexpr ValueOption value_options[] = {
    {"-o", "a file name", set_output},
    {"--output", "a file name", set_output},
    {"--plan", "a file name", set_plan},
    {"--boundary", "a code", set_boundary},
    {"--section", "X1,Y1,X2,Y2", set_section},
    {"--grid", "a step", set_grid},
    {"--profile", "a file name", set_profile},
    {"--corridor", "a width", set_corridor},
    {"--stations", "a step", set_stations},
    {"--area", "X1,Y1,X2,Y2,X3,Y3,...", set_area},
    {"--area-code", "a code", set_area_code},
    {"--repeats", "a tolerance", set_repeats},
    {"--kept", "a file name", set_kept},
    {"--sheet", "a format", set_sheet},
    {"--scale", "a scale", set_plan_scale},
    {"--profile-scale", "a scale", set_profile_scale},
    {"--unit", "a unit", set_unit},
};

class CommandLine {
 public:
  explicit CommandLine(Words words) : words_(words) {}

  Command read() {
    while (!words_.empty() && !command_.help) word(take());
    if (!command_.help && !command_.input) throw UsageFault("no point file is given");
    if (!command_.help) require_drawings();
    if (command_.removal_dialog && !command_.kept) command_.kept = kept_file_of(*command_.input);
    return command_;
  }

 private:
  // Options for a drawing that nobody asked for are a mistake.
  void require_drawings() const {
    const DrawingOptions& drawings = command_.drawings;
    const bool any = command_.plan || command_.profile;
    if (drawings.plan_scale && !command_.plan) throw UsageFault("--scale needs --plan");
    if (drawings.profile_scale && !command_.profile) {
      throw UsageFault("--profile-scale needs --profile");
    }
    if (drawings.paper && !any) throw UsageFault("--sheet needs --plan or --profile");
    if (drawings.unit && !any) throw UsageFault("--unit needs --plan or --profile");
  }

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
    } else if (word == "--ver") {
      command_.extremes_dialog = true;
    } else if (word == "--repetidos") {
      command_.removal_dialog = true;
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
