#include "survey_report/tables.h"

#include <cmath>
#include <string>

#include "survey_report/extremes.h"
#include "survey_report/layout.h"
#include "survey_report/words.h"

namespace survey_report {

namespace {

constexpr int decimals = 3;
constexpr int slope_decimals = 4;

// Values between commas.
class CsvTable final : public TableSink {
 public:
  explicit CsvTable(Writer& out) : out_(out) {}

  void headings(std::span<const Heading> names) override {
    begin_row();
    for (const Heading& name : names) text(name.text);
    end_row();
  }
  bool begin_row() override {
    first_ = true;
    return true;
  }
  void end_row() override {
    out_ << '\n';
    out_.pause();
  }
  void text(std::string_view cell) override {
    part();
    write_field(out_, cell);
  }
  void exactly(double value) override {
    part();
    append_exact(out_.buffer(), value, decimals);
  }
  void rounded(double value, int digits) override {
    part();
    if (std::isfinite(value)) append_fixed(out_.buffer(), value, digits);
  }
  void flag(bool is_so) override { text(is_so ? "1" : "0"); }

 private:
  void part() {
    if (!first_) out_ << ',';
    first_ = false;
  }

  Writer& out_;
  bool first_ = true;
};

// One row, cell by cell, where it is wanted.
class Row {
 public:
  explicit Row(TableSink& table) : table_(table), wanted_(table.begin_row()) {}
  Row(const Row&) = delete;
  Row& operator=(const Row&) = delete;
  ~Row() {
    if (wanted_) table_.end_row();
  }

  Row& text(std::string_view cell) {
    if (wanted_) table_.text(cell);
    return *this;
  }
  Row& exactly(double value) {
    if (wanted_) table_.exactly(value);
    return *this;
  }
  Row& rounded(double value, int digits = decimals) {
    if (wanted_) table_.rounded(value, digits);
    return *this;
  }
  Row& flag(bool is_so) {
    if (wanted_) table_.flag(is_so);
    return *this;
  }
  Row& count(std::size_t value) { return wanted_ ? text(std::to_string(value)) : *this; }
  Row& empty() { return text({}); }

 private:
  TableSink& table_;
  bool wanted_;
};

constexpr bool as_text = false;

void put_point(Row& row, const SurveyPoint& point) {
  row.text(point.number).exactly(point.x).exactly(point.y).exactly(point.z).text(point.code);
}

void put_leg(Row& row, const Leg* leg) {
  if (leg == nullptr) {
    row.empty().empty();
    return;
  }
  leg->azimuth ? row.text(azimuth_text(*leg->azimuth)) : row.empty();
  row.rounded(leg->distance);
}

void put_extreme(TableSink& table, const Figures& figures, std::string_view name,
                 double SurveyPoint::*axis, const Range& range) {
  const std::vector<SurveyPoint>& points = figures.survey.points;
  const auto holder = [&](double value) { return points[holder_of(points, axis, value)].number; };
  Row(table)
      .text(name)
      .exactly(range.min)
      .text(holder(range.min))
      .exactly(range.max)
      .text(holder(range.max))
      .rounded(range.max - range.min);
}

}  // namespace

void write_points_table(TableSink& table, const Figures& figures) {
  const Heading names[] = {{words::number.view(), as_text},
                           {"X"},
                           {"Y"},
                           {"Z"},
                           {words::code.view(), as_text},
                           {words::azimuth.view()},
                           {words::distance.view()}};
  table.headings(names);
  const std::vector<Leg>& legs = figures.traverse.legs;
  for (std::size_t i = 0; i < figures.survey.points.size(); ++i) {
    Row row(table);
    put_point(row, figures.survey.points[i]);
    put_leg(row, i < legs.size() ? &legs[i] : nullptr);
  }
}

void write_pairs_table(TableSink& table, const Figures& figures) {
  const Heading names[] = {{words::first_point.view(), as_text},
                           {words::first_code.view(), as_text},
                           {words::second_point.view(), as_text},
                           {words::second_code.view(), as_text},
                           {words::distance.view()},
                           {words::rise.view()},
                           {words::first_removed.view(), as_text},
                           {words::second_removed.view(), as_text}};
  table.headings(names);
  const Repeats& repeats = figures.study.repeats;
  const auto removed = [&](std::size_t point) {
    return repeats.fault.empty() && !repeats.keeps(point);
  };
  for (const RepeatedPair& pair : repeats.pairs) {
    const SurveyPoint& first = figures.survey.points[pair.first];
    const SurveyPoint& second = figures.survey.points[pair.second];
    Row(table)
        .text(first.number)
        .text(first.code)
        .text(second.number)
        .text(second.code)
        .rounded(pair.distance)
        .rounded(pair.rise)
        .flag(removed(pair.first))
        .flag(removed(pair.second));
  }
}

void write_cuts_table(TableSink& table, const Figures& figures) {
  const Heading names[] = {{words::cut.view()}, {"X"}, {"Y"}, {words::distance.view()}};
  table.headings(names);
  std::size_t number = 0;
  for (const Cut& cut : figures.study.section.cuts) {
    Row(table).count(++number).rounded(cut.place.x).rounded(cut.place.y).rounded(cut.distance);
  }
}

void write_nodes_table(TableSink& table, const Figures& figures) {
  const Heading names[] = {{"X"},
                           {"Y"},
                           {words::elevation.view()},
                           {words::slope_percent.view()},
                           {words::vertex_1.view(), as_text},
                           {words::vertex_2.view(), as_text},
                           {words::vertex_3.view(), as_text}};
  table.headings(names);
  for (const Node& node : figures.study.relief.nodes) {
    Row row(table);
    row.rounded(node.place.x).rounded(node.place.y).rounded(node.elevation);
    node.slope ? row.rounded(*node.slope, slope_decimals) : row.empty();
    for (const std::size_t i : node.triangle) row.text(figures.survey.points[i].number);
  }
}

void write_stations_table(TableSink& table, const Figures& figures) {
  const Heading names[] = {
      {words::station.view()}, {words::distance.view()}, {"X"}, {"Y"}, {words::elevation.view()}};
  table.headings(names);
  std::size_t number = 0;
  for (const Station& station : figures.study.profile.stations) {
    Row(table)
        .count(++number)
        .rounded(station.distance)
        .rounded(station.place.x)
        .rounded(station.place.y)
        .rounded(station.elevation);
  }
}

void write_inside_table(TableSink& table, const Figures& figures) {
  const Heading names[] = {
      {words::number.view(), as_text}, {"X"}, {"Y"}, {"Z"}, {words::code.view(), as_text}};
  table.headings(names);
  for (const std::size_t i : figures.study.area.inside) {
    Row row(table);
    put_point(row, figures.survey.points[i]);
  }
}

void write_extremes_table(TableSink& table, const Figures& figures) {
  const Heading names[] = {{words::axis.view(), as_text},          {words::minimum.view()},
                           {words::minimum_point.view(), as_text}, {words::maximum.view()},
                           {words::maximum_point.view(), as_text}, {words::difference.view()}};
  table.headings(names);
  const Extents extents = extents_of(figures.survey.points);
  put_extreme(table, figures, "X", &SurveyPoint::x, extents.x);
  put_extreme(table, figures, "Y", &SurveyPoint::y, extents.y);
  put_extreme(table, figures, "Z", &SurveyPoint::z, extents.z);
}

void write_csv(Writer& out, const TableOfFigures& table, const Figures& figures) {
  CsvTable sink(out);
  table.write(sink, figures);
}

}  // namespace survey_report
