// survey_report: tells, draws and tabulates what a point file holds.
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <memory>
#include <new>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "survey_report/dxf.h"
#include "survey_report/exit_code.h"
#include "survey_report/extremes.h"
#include "survey_report/failure_words.h"
#include "survey_report/interruption.h"
#include "survey_report/options.h"
#include "survey_report/output.h"
#include "survey_report/page.h"
#include "survey_report/plan.h"
#include "survey_report/points.h"
#include "survey_report/profile_drawing.h"
#include "survey_report/progress_bar.h"
#include "survey_report/repeats.h"
#include "survey_report/report.h"
#include "survey_report/stages.h"
#include "survey_report/study.h"
#include "survey_report/tables.h"
#include "survey_report/traverse.h"
#include "survey_report/triangulation.h"
#include "survey_report/utf8.h"
#include "survey_report/words.h"

namespace survey_report {
namespace {

namespace fs = std::filesystem;

// Data that cannot be reported; the message is complete, with its line ends.
class DataFault : public std::runtime_error {
 public:
  DataFault(ExitCode code, const std::string& what) : std::runtime_error(what), code_(code) {}

  ExitCode code() const noexcept { return code_; }

 private:
  ExitCode code_;
};

DataFault about(const std::string& file, ExitCode code, const std::string& why) {
  return {code, messages(file, {{0, 0, why, code}})};
}

DataFault failed(const std::string& file, const std::string& why) {
  return about(file, ExitCode::failed, why);
}

// ---- What is written beside what

constexpr std::string_view page_file = "index.html";
constexpr std::string_view report_file = "report.txt";
constexpr std::string_view plan_file = "plan.svg";
constexpr std::string_view profile_file = "profile.svg";
constexpr std::string_view dxf_file = "survey.dxf";

std::vector<std::string_view> folder_files() {
  std::vector<std::string_view> names = {page_file, report_file, plan_file, profile_file, dxf_file};
  for (const TableOfFigures& table : tables_of_figures) names.push_back(table.file);
  return names;
}

bool same_file(const fs::path& a, const fs::path& b) {
  std::error_code not_there;
  if (fs::exists(a, not_there) && fs::exists(b, not_there)) {
    return fs::equivalent(a, b, not_there) && fs::is_regular_file(a, not_there);
  }
  const auto full = [&](const fs::path& name) {
    return fs::weakly_canonical(fs::absolute(name), not_there);
  };
  return full(a) == full(b);
}

// A file that is read or written, and what it is called.
struct NamedFile {
  fs::path file;
  std::string name;
};

void refuse_same(const std::optional<std::string>& file, std::string_view option,
                 std::vector<NamedFile>& others) {
  if (!file) return;
  for (const NamedFile& other : others) {
    if (!same_file(*file, other.file)) continue;
    throw UsageFault(words::names_the_same.with({option, other.name}));
  }
  others.push_back({*file, words::option_file.with({option})});
}

// What is written must not take the place of the survey or of each other.
void check_apart(const Command& command) {
  std::vector<NamedFile> others = {{*command.input, words::point_file.text()}};
  if (command.output) {
    for (const std::string_view name : folder_files()) {
      const fs::path file = fs::path(*command.output) / name;
      if (same_file(file, *command.input)) {
        throw UsageFault(words::output_writes_over.with({file.string()}));
      }
      others.push_back({file, words::file_of_folder.with({name})});
    }
  }
  refuse_same(command.plan, "--plan", others);
  refuse_same(command.profile, "--profile", others);
  refuse_same(command.kept, "--kept", others);
}

// ---- The survey

Survey load_survey(const std::string& file, FieldOrder order, Progress& progress) {
  progress.begin(stages::reading);
  const std::string bytes = load(file);
  PointFile read = read_points(bytes, order, progress);
  if (!read.bad_lines.empty()) {
    throw DataFault(read.bad_lines.front().code, messages(file, read.bad_lines));
  }
  if (read.points.empty()) {
    const Word& word = bytes.empty() ? words::empty_file : words::no_points_read;
    throw about(file, ExitCode::no_points, word.text());
  }
  return {fs::path(file).filename().string(), order, std::move(read.points)};
}

Traverse traverse_on(const std::string& file, const Survey& survey) try {
  return traverse_through(survey.points);
} catch (const LegFault& fault) {
  throw DataFault(ExitCode::failed,
                  messages(file, {{fault.line(), 0, fault.what(), ExitCode::failed}}));
}

Study study_on(const Survey& survey, const StudyOptions& options, Progress& progress) try {
  return study_of(survey.points, options, progress);
} catch (const ChoiceFault& fault) {
  throw UsageFault(fault.what());
}

// ---- What is written

// Files on their way. They take their names together, last of all.
class Files {
 public:
  void add(const fs::path& file, const Content& content) {
    files_.push_back(std::make_unique<Replacement>(file, content));
  }
  // What an earlier run left there would be taken for this one's.
  void remove(const fs::path& file) { gone_.push_back(file); }

  void commit() {
    check_interruption();
    // A device may fail: before any older file is gone.
    std::stable_partition(files_.begin(), files_.end(), is_device);
    for (const std::unique_ptr<Replacement>& file : files_) file->commit();
    std::error_code not_there;
    for (const fs::path& file : gone_) fs::remove(file, not_there);
  }

 private:
  static bool is_device(const std::unique_ptr<Replacement>& file) { return file->is_device(); }

  std::vector<std::unique_ptr<Replacement>> files_;
  std::vector<fs::path> gone_;
};

using Draw = Drawing (*)(const Survey& survey, const Study& study, const DrawingOptions& options);

Drawing drawing_of(const Command& command, const Figures& figures, Draw draw) try {
  return draw(figures.survey, figures.study, command.drawings);
} catch (const ChoiceFault& fault) {
  throw UsageFault(fault.what());
}

Content content_of(std::string text) {
  return [kept = std::move(text)](Writer& out) { out << kept; };
}

// A drawing that the user names must be made; of those of a folder the report tells which
// cannot.
std::optional<Drawing> add_drawing(Files& files, const Command& command, const Figures& figures,
                                   const std::optional<std::string>& named,
                                   std::string_view in_folder, Draw draw) try {
  if (!named && !command.output) return std::nullopt;
  Drawing drawing = drawing_of(command, figures, draw);
  const Content content = [&](Writer& out) { out << svg_head << drawing.svg; };
  if (named) files.add(*named, content);
  if (command.output) files.add(fs::path(*command.output) / in_folder, content);
  return drawing;
} catch (const DrawingFault& fault) {
  if (named) throw failed(*command.input, fault.what());
  files.remove(fs::path(*command.output) / in_folder);
  return std::nullopt;
}

void add_tables(Files& files, const std::string& folder, const Figures& figures) {
  for (const TableOfFigures& table : tables_of_figures) {
    files.add(fs::path(folder) / table.file, [&](Writer& out) { write_csv(out, table, figures); });
  }
}

// What the page tells under the plan: what a survey of many points leaves out.
std::string page_notes(const Survey& survey, const ReportNotes& notes) {
  std::string text = notes.plan;
  if (survey.points.size() > most_triangulated) {
    text += (text.empty() ? "" : ". ") + words::thinned_triangles.text();
  }
  if (!notes.dxf.empty()) text += (text.empty() ? "" : " ") + std::string("DXF: ") + notes.dxf;
  return text;
}

void add_page(Files& files, const std::string& folder, const Figures& figures,
              const std::optional<Drawing>& plan, const std::optional<Drawing>& profile,
              const ReportNotes& notes) {
  std::vector<std::string_view> beside;
  for (const std::string_view name : folder_files()) {
    const bool is_there = name == plan_file ? plan.has_value() : name != profile_file || profile;
    if (is_there && name != page_file) beside.push_back(name);
  }
  const PageContent content{figures, plan ? &*plan : nullptr, profile ? &*profile : nullptr,
                            page_notes(figures.survey, notes), beside};
  files.add(fs::path(folder) / page_file, [&](Writer& out) { write_page(out, content); });
}

DialogRemoval removal_on(const std::string& file, const Survey& survey) try {
  return remove_in_dialog(survey.points);
} catch (const orv2_geo::RunFailure& failure) {
  throw failed(file, words::repeated_points_fault.with({words_of(failure)}));
}

std::vector<SurveyPoint> kept_on(const std::string& file, const Figures& figures) {
  const std::string& fault = figures.study.repeats.fault;
  if (!fault.empty()) throw failed(file, words::repeated_points_fault.with({fault}));
  return kept_points(figures.survey.points, figures.study.repeats);
}

void add_kept(Files& files, const Command& command, const std::vector<SurveyPoint>& kept) {
  files.add(*command.kept, [&](Writer& out) { write_point_file(out, kept, command.order); });
}

// The points that stay, in their file. The dialog's section of the report, where there is one.
std::string keep(Files& files, const Command& command, const Figures& figures) {
  if (command.removal_dialog) {
    const DialogRemoval removal = removal_on(*command.input, figures.survey);
    if (removal.confirmed) add_kept(files, command, removal.kept);
    return dialog_section(figures.survey, removal, *command.kept);
  }
  if (command.kept) add_kept(files, command, kept_on(*command.input, figures));
  return {};
}

// Nothing is shown where standard error is no terminal.
std::unique_ptr<Progress> progress_on_terminal() {
  if (isatty(fileno(stderr)) == 0) return std::make_unique<Progress>();
  const auto write = [](std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stderr);
    std::fflush(stderr);
  };
  const auto clock = [] {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
  };
  return std::make_unique<ProgressBar>(write, clock);
}

void run(const Command& command) {
  if (command.information) return print(content_of(*command.information));
  check_apart(command);
  const std::unique_ptr<Progress> progress = progress_on_terminal();
  const Survey survey = load_survey(*command.input, command.order, *progress);
  const Study study = study_on(survey, command.study, *progress);
  progress->begin(stages::traverse);
  const Traverse traverse = traverse_on(*command.input, survey);
  const Figures figures{survey, study, traverse};
  if (command.extremes_dialog) show_extremes(survey.points);
  std::optional<Folder> folder;
  if (command.output) folder.emplace(*command.output);
  Files files;
  ReportNotes notes;
  progress->begin(stages::drawing);
  const std::optional<Drawing> plan =
      add_drawing(files, command, figures, command.plan, plan_file, plan_of);
  if (plan) notes.plan = plan_note(plan->points_drawn, survey.points.size());
  const std::optional<Drawing> profile =
      add_drawing(files, command, figures, command.profile, profile_file, profile_drawing_of);
  notes.dialog = keep(files, command, figures);
  const Content report = [&](Writer& out) { write_report(out, survey, study, traverse, notes); };
  if (command.output) {
    progress->begin(stages::dxf);
    files.add(fs::path(*command.output) / dxf_file, [&](Writer& out) { write_dxf(out, figures); });
    if (survey.points.size() > most_point_texts) {
      notes.dxf = words::no_texts_note.with({std::to_string(most_point_texts)});
    }
    progress->begin(stages::tables);
    add_tables(files, *command.output, figures);
    progress->begin(stages::report);
    files.add(fs::path(*command.output) / report_file, report);
    add_page(files, *command.output, figures, plan, profile, notes);
  } else {
    print(report);
  }
  files.commit();
  if (folder) folder->keep();
}

// ---- How it ends

int ended(ExitCode code, const std::string& message) {
  std::fputs(message.c_str(), stderr);
  return static_cast<int>(code);
}

std::string by_program(const std::string& message) {
  return "survey_report: " + without_controls(message) + '\n';
}

int status_of(std::span<const char* const> words) try {
  choose_language(words);
  run(command_of(words));
  return static_cast<int>(ExitCode::done);
} catch (const UsageFault& fault) {
  return ended(ExitCode::wrong_options, by_program(fault.what()) + words::try_help.text() + '\n');
} catch (const DataFault& fault) {
  return ended(fault.code(), fault.what());
} catch (const FileFault& fault) {
  return ended(fault.code(), by_program(fault.what()));
} catch (const Interruption& interruption) {
  interruption.end();
} catch (const std::bad_alloc&) {
  return ended(ExitCode::no_memory, by_program(words::no_memory.text()));
} catch (const std::exception& fault) {
  return ended(ExitCode::failed, by_program(fault.what()));
}

}  // namespace
}  // namespace survey_report

int main(int argc, char** argv) {
  const std::span<const char* const> words(argv, static_cast<std::size_t>(argc));
  return survey_report::status_of(words.subspan(argc > 0 ? 1 : 0));
}
