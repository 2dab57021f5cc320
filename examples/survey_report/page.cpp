#include "survey_report/page.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <stdexcept>
#include <utility>
#include <vector>

#include "survey_report/layout.h"
#include "survey_report/page_parts.h"
#include "survey_report/symbols.h"
#include "survey_report/word.h"
#include "survey_report/words.h"

namespace survey_report {

namespace {

constexpr int decimals = 3;

std::string_view language_code() { return present_language() == Language::spanish ? "es" : "en"; }

// ---- What is told before a table

// The next line, taken off the text.
std::string_view take_line(std::string_view& text) {
  const std::size_t end = std::min(text.find('\n'), text.size());
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return line;
}

// A fact: its name, two blanks or more, and what it is.
constexpr std::string_view fact_gap = "  ";

bool is_fact(std::string_view line) { return line.find(fact_gap) != line.npos; }

void write_fact(Writer& out, std::string_view line) {
  const std::size_t name = std::min(line.find(fact_gap), line.size());
  const std::size_t fact = std::min(line.find_first_not_of(' ', name), line.size());
  out << "<dt>" << xml_escaped(line.substr(0, name)) << "</dt><dd>"
      << xml_escaped(line.substr(fact)) << "</dd>\n";
}

// The lines up to a blank one: a list of facts, or a paragraph.
void write_block(Writer& out, std::string_view& text) {
  const bool is_list = is_fact(text.substr(0, text.find('\n')));
  out << (is_list ? "<dl>\n" : "<p>");
  for (std::string_view line = take_line(text); !line.empty(); line = take_line(text)) {
    is_list ? write_fact(out, line) : void(out << xml_escaped(line) << '\n');
  }
  out << (is_list ? "</dl>\n" : "</p>\n");
}

void write_facts(Writer& out, std::string_view text) {
  if (text.empty()) return;
  out << "<div class=\"facts\">\n";
  while (!text.empty()) write_block(out, text);
  out << "</div>\n";
}

// ---- Tables

// A table of the page, up to so many rows; nothing where there are none.
class HtmlTable final : public TableSink {
 public:
  /// `title` is the identifier of what names it.
  HtmlTable(Writer& out, std::string_view title) : out_(out), title_(title) {}

  void headings(std::span<const Heading> names) override {
    headings_.assign(names.begin(), names.end());
  }
  bool begin_row() override {
    if (++rows_ > most_rows_on_page) return false;
    if (rows_ == 1) begin();
    column_ = 0;
    out_ << "<tr>";
    return true;
  }
  void end_row() override {
    out_ << "</tr>\n";
    out_.pause();
  }
  void text(std::string_view cell) override {
    begin_cell();
    out_ << xml_escaped(cell) << "</td>";
  }
  void exactly(double value) override {
    begin_cell();
    append_exact(out_.buffer(), value, decimals);
    out_ << "</td>";
  }
  void rounded(double value, int digits) override {
    begin_cell();
    if (std::isfinite(value)) append_fixed(out_.buffer(), value, digits);
    out_ << "</td>";
  }
  void flag(bool is_so) override { text((is_so ? words::yes : words::no).view()); }

  void end() {
    if (rows_ > 0) out_ << "</tbody>\n</table>\n</div>\n";
  }
  std::size_t rows() const { return rows_; }

 private:
  void begin() {
    out_ << "<div class=\"scroll\" tabindex=\"0\" role=\"region\" aria-labelledby=\"" << title_
         << "\">\n<table>\n<thead><tr>";
    for (const Heading& name : headings_) {
      out_ << (name.is_number ? "<th scope=\"col\" class=\"number\">" : "<th scope=\"col\">")
           << xml_escaped(name.text) << "</th>";
    }
    out_ << "</tr></thead>\n<tbody>\n";
  }
  void begin_cell() { out_ << (headings_[column_++].is_number ? "<td class=\"number\">" : "<td>"); }

  Writer& out_;
  std::string_view title_;
  std::vector<Heading> headings_;
  std::size_t column_ = 0;
  std::size_t rows_ = 0;
};

// ---- Layers

// The symbol of each code, as the plan has it.
std::map<std::string_view, std::size_t> groups_of_codes(const std::vector<SurveyPoint>& points,
                                                        const std::vector<CodeGroup>& groups) {
  std::map<std::string_view, std::size_t> codes;
  for (std::size_t i = 0; i < groups.size(); ++i) {
    for (const std::size_t point : groups[i].points) codes.emplace(points[point].code, i);
  }
  return codes;
}

std::map<std::string_view, std::size_t> counts_of_codes(const std::vector<SurveyPoint>& points) {
  std::map<std::string_view, std::size_t> counts;
  for (const SurveyPoint& point : points) ++counts[point.code];
  return counts;
}

void write_mark(Writer& out, const Symbol& symbol) {
  out << "<svg class=\"mark\" viewBox=\"-2 -2 4 4\" aria-hidden=\"true\"><path d=\""
      << symbol.outline({0.0, 0.0}, 1.6) << "\" " << symbol.paint << "/></svg>";
}

void write_code_boxes(Writer& out, const std::vector<SurveyPoint>& points) {
  const std::map<std::string_view, std::size_t> groups =
      groups_of_codes(points, code_groups(points));
  for (const auto& [code, count] : counts_of_codes(points)) {
    out << "<label><input type=\"checkbox\" checked data-code=\"" << xml_escaped(code) << "\">";
    write_mark(out, symbol_of_group(groups.at(code)));
    out << "<bdi>" << (code.empty() ? words::no_code.text() : xml_escaped(code))
        << "</bdi><span class=\"count\">" << std::to_string(count) << "</span></label>\n";
  }
}

// The groups of a drawing that switch off as a whole, by their identifiers.
constexpr std::array<std::pair<std::string_view, const Word*>, 7> drawn_groups = {{
    {"boundary", &words::boundary},
    {"section", &words::section_line},
    {"area", &words::work_area},
    {"inside", &words::points_inside},
    {"nodes", &words::grid_nodes},
    {"contours", &words::contours_title},
    {"labels", &words::labels},
}};

void write_group_boxes(Writer& out, const std::string& svg) {
  for (const auto& [group, word] : drawn_groups) {
    if (svg.find("<g id=\"" + std::string(group) + '"') == std::string::npos) continue;
    out << "<label><input type=\"checkbox\" checked data-group=\"" << group << "\">" << word->view()
        << "</label>\n";
  }
}

void write_code_filter(Writer& out) {
  out << "<label class=\"filter\">" << words::filter_codes.view()
      << "<input type=\"search\" data-filter></label>\n";
}

void write_layers(Writer& out, const PageContent& content) {
  out << "<details class=\"layers\" open hidden>\n<summary>" << words::layers.view()
      << "</summary>\n<fieldset><legend>" << words::drawn_lines.view() << "</legend>\n";
  write_group_boxes(out, content.plan->svg);
  out << "</fieldset>\n<fieldset><legend>" << words::points_by_code.view()
      << "</legend>\n<div class=\"tools\" hidden><button type=\"button\" data-layers=\"all\">"
      << words::all.view() << "</button><button type=\"button\" data-layers=\"none\">"
      << words::none.view() << "</button></div>\n";
  write_code_filter(out);
  write_code_boxes(out, content.figures.survey.points);
  out << "</fieldset>\n</details>\n";
}

// ---- Drawings

void write_zoom_button(Writer& out, std::string_view view, std::string_view what,
                       std::string_view sign, const Word& name) {
  out << "<button type=\"button\" data-zoom=\"" << what << "\" data-of=\"" << view
      << "\" aria-label=\"" << name.view() << "\" title=\"" << name.view() << "\">" << sign
      << "</button>\n";
}

void write_find(Writer& out, std::string_view view, const Word& none) {
  out << "<form class=\"find\" data-of=\"" << view << "\" data-none=\"" << none.view()
      << "\"><label for=\"find-" << view << "\">" << words::find_point.view()
      << "</label><input type=\"search\" name=\"number\" id=\"find-" << view
      << "\"><button type=\"submit\">" << words::find.view()
      << "</button><span role=\"status\"></span></form>\n";
}

void write_tools(Writer& out, std::string_view view, bool all_drawn) {
  out << "<div class=\"tools\" hidden>\n";
  write_zoom_button(out, view, "in", "+", words::zoom_in);
  write_zoom_button(out, view, "out", "\xE2\x88\x92", words::zoom_out);  // a minus sign
  write_zoom_button(out, view, "all", words::whole.view(), words::whole_drawing);
  write_find(out, view, all_drawn ? words::no_such_point : words::no_such_point_drawn);
  out << "</div>\n";
}

void write_view(Writer& out, std::string_view view, const Word& title, const Drawing& drawing) {
  out << "<div class=\"view\" id=\"" << view << "\" role=\"group\" aria-label=\"" << title.view()
      << "\" data-keys=\"" << words::keys_of_drawing.view() << "\">\n"
      << drawing.svg << "</div>\n";
}

void write_note(Writer& out, std::string_view note) {
  if (!note.empty()) out << "<p class=\"quiet\">" << xml_escaped(note) << "</p>\n";
}

void begin_section(Writer& out, std::string_view id, const Word& title) {
  out << "<section aria-labelledby=\"" << id << "\">\n<h2 id=\"" << id << "\">" << title.view()
      << "</h2>\n";
}

void write_plan(Writer& out, const PageContent& content) {
  begin_section(out, "plan", words::plan_title);
  if (content.plan == nullptr) {
    write_note(out, words::not_drawn.view());
  } else {
    const bool all = content.plan->points_drawn == content.figures.survey.points.size();
    write_tools(out, "plan-view", all);
    write_note(out, content.notes);
    out << "<div class=\"drawing has-layers\">\n";
    write_view(out, "plan-view", words::plan_title, *content.plan);
    write_layers(out, content);
    out << "</div>\n";
  }
  out << "</section>\n";
}

void write_profile(Writer& out, const PageContent& content) {
  begin_section(out, "profile", words::longitudinal_profile);
  if (content.profile == nullptr) {
    write_facts(out, words::no_profile_reason.with({reason_for_no_profile(content.figures.study)}));
  } else {
    write_tools(out, "profile-view", false);
    out << "<div class=\"drawing\">\n";
    write_view(out, "profile-view", words::longitudinal_profile, *content.profile);
    out << "</div>\n";
  }
  out << "</section>\n";
}

// ---- The figures

const TableOfFigures& table_named(std::string_view file) {
  for (const TableOfFigures& table : tables_of_figures) {
    if (table.file == file) return table;
  }
  throw std::logic_error("no such table");
}

void write_table(Writer& out, std::string_view id, const TableOfFigures& table,
                 const Figures& figures) {
  HtmlTable rows(out, id);
  table.write(rows, figures);
  rows.end();
  if (rows.rows() <= most_rows_on_page) return;
  write_note(out, words::first_rows.with({std::to_string(most_rows_on_page),
                                          std::to_string(rows.rows()), table.file}));
}

struct TableOnPage {
  std::string_view file;
  const Word* title;
  std::string facts;
};

void write_tables(Writer& out, const Figures& figures) {
  const Survey& survey = figures.survey;
  const Study& study = figures.study;
  const std::array<TableOnPage, 7> tables = {{
      {"extremes.csv", &words::extremes, {}},
      {"repeated_pairs.csv", &words::repeated_points, repeats_facts(survey, study)},
      {"section_cuts.csv", &words::boundary_and_section, boundary_facts(study)},
      {"grid_nodes.csv", &words::elevations_and_slopes, relief_facts(study)},
      {"profile_stations.csv", &words::profile_stations, profile_facts(study)},
      {"points_in_area.csv", &words::work_area, area_facts(survey, study)},
      {"points.csv", &words::traverse, traverse_facts(figures.traverse)},
  }};
  begin_section(out, "tables", words::tables);
  for (const TableOnPage& one : tables) {
    const std::string id = "table-" + std::string(one.file.substr(0, one.file.find('.')));
    out << "<h3 id=\"" << id << "\">" << one.title->view() << "</h3>\n";
    write_facts(out, one.facts);
    write_table(out, id, table_named(one.file), figures);
  }
  out << "</section>\n";
}

// ---- The page

void write_head(Writer& out, std::string_view title) {
  out << "<!DOCTYPE html>\n<html lang=\"" << language_code()
      << "\">\n<head>\n<meta charset=\"utf-8\">\n"
         "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
         "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; "
         "style-src 'unsafe-inline'; script-src 'unsafe-inline'; base-uri 'none'; "
         "form-action 'none'\">\n<title>"
      << xml_escaped(title) << "</title>\n<style>\n"
      << page_styles << "</style>\n</head>\n<body>\n";
}

void write_ways(Writer& out) {
  const std::array<std::pair<std::string_view, const Word*>, 4> sections = {{
      {"plan", &words::plan_title},
      {"profile", &words::longitudinal_profile},
      {"tables", &words::tables},
      {"files", &words::files},
  }};
  out << "<nav aria-label=\"" << words::sections_of_page.view() << "\"><ul>\n";
  for (const auto& [id, word] : sections) {
    out << "<li><a href=\"#" << id << "\">" << word->view() << "</a></li>\n";
  }
  out << "</ul></nav>\n";
}

void write_files(Writer& out, std::span<const std::string_view> files) {
  begin_section(out, "files", words::files);
  out << "<ul class=\"files\">\n";
  for (const std::string_view file : files) {
    out << "<li><a href=\"" << file << "\">" << file << "</a></li>\n";
  }
  out << "</ul>\n</section>\n";
}

}  // namespace

void write_page(Writer& out, const PageContent& content) {
  const Survey& survey = content.figures.survey;
  const std::string title = words::survey_report.with({survey.file_name});
  write_head(out, title);
  out << "<a class=\"skip\" href=\"#tables\">" << words::to_tables.view() << "</a>\n<header>\n<h1>"
      << xml_escaped(title) << "</h1>\n";
  write_facts(out, heading_facts(survey, content.figures.traverse));
  write_ways(out);
  out << "</header>\n<main>\n";
  write_plan(out, content);
  write_profile(out, content);
  write_tables(out, content.figures);
  write_files(out, content.files);
  out << "</main>\n<script>\n" << page_script << "</script>\n</body>\n</html>\n";
}

}  // namespace survey_report
