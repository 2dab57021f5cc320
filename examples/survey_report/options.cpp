#include "survey_report/options.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <string_view>
#include <system_error>
#include <tuple>
#include <vector>

#include <CLI/CLI.hpp>

#include "orv2_geo/version.h"
#include "survey_report/exit_code.h"
#include "survey_report/utf8.h"
#include "survey_report/words.h"

namespace survey_report {

namespace {

using Words = std::span<const char* const>;

constexpr double least_scale = 0.001;
constexpr double most_scale = 1e15;

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
    throw UsageFault(words::not_four_numbers.with({quoted("--section", text)}));
  }
  const SectionLine line{{values[0], values[1]}, {values[2], values[3]}};
  if (line.from != line.to) return line;
  throw UsageFault(words::starts_where_it_ends.with({quoted("--section", text)}));
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
  throw UsageFault(words::not_a_scale.with({quoted(option, text)}));
}

template <class Named>
std::string joined_names(const Named& all, std::string_view Named::value_type::*name) {
  std::string text;
  for (std::size_t i = 0; i < all.size(); ++i) {
    if (i > 0) text += i + 1 == all.size() ? words::and_or.view() : ", ";
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
  throw UsageFault(words::is_not_one_of.with({quoted(option, text), joined_names(all, name)}));
}

double positive_in(std::string_view option, std::string_view text) {
  const std::optional<double> number = number_in(text);
  if (number && *number > 0.0) return *number;
  throw UsageFault(words::not_positive.with({quoted(option, text)}));
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
    throw UsageFault(words::not_pairs.with({quoted("--area", text)}));
  }
  std::vector<Place> vertices;
  for (std::size_t i = 0; i < values.size(); i += 2) vertices.push_back({values[i], values[i + 1]});
  if (vertices.size() > 1 && vertices.front() == vertices.back()) vertices.pop_back();
  if (different(vertices) >= fewest_vertices) return vertices;
  throw UsageFault(words::too_few_vertices.with({quoted("--area", text)}));
}

// Where the points go that stay after a dialog when the user names no file: into
// the present folder.
std::string kept_file_of(const std::filesystem::path& input) {
  return input.stem().string() + "_kept.csv";
}

// ---- What each option sets

std::string named(std::string_view value, const std::string& what) {
  if (value.empty()) throw UsageFault(words::empty_name.with({what}));
  return std::string(value);
}

std::string named_file(std::string_view value, std::string_view option) {
  return named(value, words::option_file.with({option}));
}

std::string coded(std::string_view value, std::string_view option) {
  if (value.empty()) throw UsageFault(words::empty_code.with({option}));
  return std::string(value);
}

void set_output(Command& command, std::string_view value) {
  command.output = named(value, words::output_folder.text());
}

void set_plan(Command& command, std::string_view value) {
  command.plan = named_file(value, "--plan");
}

void set_profile(Command& command, std::string_view value) {
  command.profile = named_file(value, "--profile");
}

void set_kept(Command& command, std::string_view value) {
  command.kept = named_file(value, "--kept");
}

void set_sheet(Command& command, std::string_view value) {
  command.drawings.paper = named_in("--sheet", value, papers, &Paper::name);
}

void set_unit(Command& command, std::string_view value) {
  command.drawings.unit = named_in("--unit", value, units, &Unit::option);
}

void set_plan_scale(Command& command, std::string_view value) {
  command.drawings.plan_scale = scale_in("--scale", value);
}

void set_profile_scale(Command& command, std::string_view value) {
  command.drawings.profile_scale = scale_in("--profile-scale", value);
}

void set_repeats(Command& command, std::string_view value) {
  command.study.repeats = positive_in("--repeats", value);
}

void set_boundary(Command& command, std::string_view value) {
  command.study.boundary_code = coded(value, "--boundary");
}

void set_section(Command& command, std::string_view value) {
  command.study.section = section_in(value);
}

void set_grid(Command& command, std::string_view value) {
  command.study.grid_step = positive_in("--grid", value);
}

void set_corridor(Command& command, std::string_view value) {
  command.study.corridor = positive_in("--corridor", value);
}

void set_stations(Command& command, std::string_view value) {
  command.study.station_step = positive_in("--stations", value);
}

void set_contours(Command& command, std::string_view value) {
  command.study.contour_step = positive_in("--contours", value);
}

void set_area(Command& command, std::string_view value) {
  command.study.area.vertices = area_in(value);
}

void set_area_code(Command& command, std::string_view value) {
  command.study.area.code = coded(value, "--area-code");
}

// The language is in use already.
void set_language_option(Command&, std::string_view value) {
  if (language_named(value)) return;
  throw UsageFault(
      words::is_not_one_of.with({quoted("--language", value), "en" + words::and_or.text() + "es"}));
}

// ---- Options

std::string version_text() {
  const std::string point(".");
  return "survey_report " + std::to_string(ORV2_VERSION_MAJOR) + point +
         std::to_string(ORV2_VERSION_MINOR) + point + std::to_string(ORV2_VERSION_PATCH);
}

struct ValueOption {
  const char* names;
  Word value;  // as the help writes it
  Word needs;
  Word help;
  void (*set)(Command& command, std::string_view value);

  // The long one, behind the last comma.
  std::string_view name() const {
    const std::string_view all = names;
    return all.substr(all.rfind(',') + 1);
  }
};

constexpr ValueOption value_options[] = {
    {"-o,--output", words::folder_value, words::a_folder_name, words::help_output, set_output},
    {"--plan", words::file_value, words::a_file_name, words::help_plan, set_plan},
    {"--profile", words::file_value, words::a_file_name, words::help_profile, set_profile},
    {"--sheet", words::format_value, words::a_format, words::help_sheet, set_sheet},
    {"--scale", words::scale_value, words::a_scale, words::help_scale, set_plan_scale},
    {"--profile-scale", words::scale_value, words::a_scale, words::help_profile_scale,
     set_profile_scale},
    {"--unit", words::unit_value, words::a_unit, words::help_unit, set_unit},
    {"--boundary", words::code_value, words::a_code, words::help_boundary, set_boundary},
    {"--section", words::section_form, words::section_form, words::help_section, set_section},
    {"--grid", words::step_value, words::a_step, words::help_grid, set_grid},
    {"--corridor", words::width_value, words::a_width, words::help_corridor, set_corridor},
    {"--stations", words::step_value, words::a_step, words::help_stations, set_stations},
    {"--contours", words::step_value, words::a_step, words::help_contours, set_contours},
    {"--area", words::area_form, words::area_form, words::help_area, set_area},
    {"--area-code", words::code_value, words::a_code, words::help_area_code, set_area_code},
    {"--repeats", words::tolerance_value, words::a_tolerance, words::help_repeats, set_repeats},
    {"--kept", words::file_value, words::a_file_name, words::help_kept, set_kept},
    {"--language", words::language_value, words::a_language, words::help_language,
     set_language_option},
};

// Helps in the present language, in columns of characters, not of bytes.
class HelpFormat final : public CLI::Formatter {
 public:
  std::string make_usage(const CLI::App*, std::string) const override {
    return words::usage.text() + '\n';
  }
  std::string make_description(const CLI::App*) const override { return {}; }
  std::string make_positionals(const CLI::App*) const override {
    return words::about_program.text() + '\n';
  }
  std::string make_footer(const CLI::App*) const override {
    std::string text = words::help_dashes.text() + '\n' + words::help_status.text();
    for (const ExitMeaning& meaning : exit_meanings) {
      const std::string number = std::to_string(static_cast<int>(meaning.code));
      text += row(std::string(4 - number.size(), ' ') + number, 6, meaning.meaning.view());
    }
    return text;
  }
  std::string make_group(std::string, bool,
                         std::vector<const CLI::Option*> options) const override {
    std::string text = '\n' + words::options_title.text() + ":\n";
    for (const CLI::Option* option : options) text += make_option(option, false);
    return text;
  }
  std::string make_option(const CLI::Option* option, bool) const override {
    const std::string value = option->get_option_text();
    std::string names = option->get_name(false, true);
    if (const std::size_t comma = names.find(','); comma != names.npos)
      names.insert(comma + 1, 1, ' ');
    return row("  " + names + (value.empty() ? "" : " ") + value, 28, option->get_description());
  }

 private:
  // A name, and a text in lines beside it, or below it where it is wide.
  static std::string row(const std::string& name, std::size_t column, std::string_view text) {
    const std::size_t width = display_width(name);
    std::string row = name;
    row += width + 2 <= column ? std::string(column - width, ' ') : '\n' + std::string(column, ' ');
    for (const char letter : text) {
      row += letter;
      if (letter == '\n') row.append(column, ' ');
    }
    return row + '\n';
  }
};

// One word for one option: neither lists in brackets nor a word more.
CLI::Option* add_value(CLI::App& app, const std::string& names, const std::string& value,
                       const std::string& help) {
  CLI::Option* const option = app.add_option(names);
  option->description(help)->option_text(value);
  option->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  return option->expected(1)->allow_extra_args(false);
}

class CommandLine {
 public:
  CommandLine() : app_("", "survey_report") {
    app_.formatter(std::make_shared<HelpFormat>());
    app_.set_help_flag("-h,--help", words::help_help.text());
    app_.set_version_flag("--version", version_text(), words::help_version.text());
    app_.add_flag("--northing-first")->description(words::help_northing.text());
    for (const ValueOption& option : value_options) {
      add_value(app_, option.names, option.value.text(), option.help.text());
    }
    app_.add_flag("--ver")->description(words::help_ver.text());
    app_.add_flag("--repetidos")->description(words::help_repetidos.text());
    add_value(app_, "FILE", words::file_value.text(), "");
  }

  Command read(Words words) {
    parse(words);
    if (command_.information) return command_;
    flags();
    for (const ValueOption& option : value_options) value(option);
    point_file();
    require_drawings();
    if (command_.removal_dialog && !command_.kept) command_.kept = kept_file_of(*command_.input);
    return command_;
  }

 private:
  void parse(Words words) try {
    // The parser reads from the end.
    std::vector<std::string> reversed(words.rbegin(), words.rend());
    for (const std::string& word : reversed) refuse_no_value(word);
    app_.parse(std::move(reversed));
  } catch (const CLI::CallForHelp&) {
    command_.information = app_.help();
  } catch (const CLI::CallForVersion&) {
    command_.information = version_text() + '\n';
  } catch (const CLI::ArgumentMismatch&) {  // the last word is an option without its value
    throw UsageFault(words::option_needs.with({words.back(), needed_by(words.back())}));
  } catch (const CLI::ExtrasError&) {
    const std::vector<std::string> unknown = app_.remaining();
    const bool is_option = unknown.front().starts_with('-');
    throw UsageFault(is_option ? words::unknown_option.with({unknown.front()})
                               : words::more_than_one.with({words::point_file.view()}));
  } catch (const CLI::ParseError&) {  // such as a flag with a value
    throw UsageFault(words::unknown_option.with({words.back()}));
  }

  // The parser would take the next word for the value of "--name=".
  void refuse_no_value(std::string_view word) {
    for (const ValueOption& option : value_options) {
      if (word != std::string(option.name()) + '=') continue;
      option.set(command_, "");
    }
  }

  static std::string needed_by(std::string_view word) {
    for (const ValueOption& option : value_options) {
      const std::string_view names = option.names;
      if (word == option.name() || word == names.substr(0, names.find(','))) {
        return option.needs.text();
      }
    }
    return words::file_value.text();
  }

  void flags() {
    if (app_.count("--northing-first") > 0) command_.order = FieldOrder::northing_first;
    command_.extremes_dialog = app_.count("--ver") > 0;
    command_.removal_dialog = app_.count("--repetidos") > 0;
  }

  void value(const ValueOption& option) {
    const std::string name(option.name());
    const std::vector<std::string>& given = app_[name]->results();
    if (given.size() > 1) throw UsageFault(words::more_than_one.with({name}));
    if (given.empty()) return;
    const bool both = name == "--area-code" && app_.count("--area") > 0;
    if (both) throw UsageFault(words::more_than_one.with({"--area" + words::and_or.text() + name}));
    option.set(command_, given.front());
  }

  void point_file() {
    const std::vector<std::string>& given = app_["FILE"]->results();
    if (given.empty()) throw UsageFault(words::no_point_file.text());
    if (given.size() > 1) throw UsageFault(words::more_than_one.with({words::point_file.view()}));
    if (given.front() == "-") throw UsageFault(words::unknown_option.with({"-"}));
    command_.input = named(given.front(), words::point_file.text());
  }

  // Options for a drawing that nobody asked for are a mistake.
  void require_drawings() const {
    if (command_.output) return;
    const DrawingOptions& drawings = command_.drawings;
    const auto need = [](bool given, std::string_view option, const std::string& what) {
      if (given) throw UsageFault(words::needs_other.with({option, what}));
    };
    const std::string plan = "--plan" + words::and_or.text() + "--output";
    const std::string profile = "--profile" + words::and_or.text() + "--output";
    const std::string any = "--plan, --profile" + words::and_or.text() + "--output";
    need(drawings.plan_scale && !command_.plan, "--scale", plan);
    need(drawings.profile_scale && !command_.profile, "--profile-scale", profile);
    const bool none = !command_.plan && !command_.profile;
    need(drawings.paper && none, "--sheet", any);
    need(drawings.unit && none, "--unit", any);
  }

  CLI::App app_;
  Command command_;
};

}  // namespace

void choose_language(Words words) {
  set_language(language_of_locale(std::getenv));
  constexpr std::string_view option = "--language";
  for (std::size_t i = 0; i < words.size() && words[i] != std::string_view("--"); ++i) {
    std::string_view word = words[i];
    if (word == option && i + 1 < words.size()) {
      word = words[i + 1];
    } else if (word.starts_with(option) && word.substr(option.size()).starts_with('=')) {
      word.remove_prefix(option.size() + 1);
    } else {
      continue;
    }
    if (const std::optional<Language> language = language_named(word)) set_language(*language);
  }
}

Command command_of(Words words) { return CommandLine().read(words); }

}  // namespace survey_report
