#include "survey_report/tables.h"

#include <cmath>
#include <initializer_list>

#include "survey_report/extremes.h"
#include "survey_report/layout.h"
#include "survey_report/words.h"

namespace survey_report {

namespace {

constexpr int decimals = 3;
constexpr int slope_decimals = 4;

// One row, field by field.
class Row {
 public:
  explicit Row(Writer& out) : out_(out) {}
  Row(const Row&) = delete;
  Row& operator=(const Row&) = delete;
  ~Row() { out_ << '\n'; }

  Row& text(std::string_view field) {
    part();
    write_field(out_, field);
    return *this;
  }
  Row& exactly(double value) {
    part();
    append_exact(out_.buffer(), value, decimals);
    return *this;
  }
  // Empty for what has no number.
  Row& rounded(double value, int digits = decimals) {
    part();
    if (std::isfinite(value)) append_fixed(out_.buffer(), value, digits);
    return *this;
  }
  Row& count(std::size_t value) { return text(std::to_string(value)); }
  Row& empty() {
    part();
    return *this;
  }

 private:
  void part() {
    if (!first_) out_ << ',';
    first_ = false;
  }

  Writer& out_;
  bool first_ = true;
};

void headings(Writer& out, std::initializer_list<std::string_view> names) {
  Row row(out);
  for (const std::string_view name : names) row.text(name);
}

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

void put_extreme(Writer& out, const Figures& figures, std::string_view name,
                 double SurveyPoint::*axis, const Range& range) {
  const std::vector<SurveyPoint>& points = figures.survey.points;
  const auto holder = [&](double value) { return points[holder_of(points, axis, value)].number; };
  Row(out)
      .text(name)
      .exactly(range.min)
      .text(holder(range.min))
      .exactly(range.max)
      .text(holder(range.max))
      .rounded(range.max - range.min);
}

}  // namespace

void write_points_table(Writer& out, const Figures& figures) {
  headings(out, {words::number.view(), "X", "Y", "Z", words::code.view(), words::azimuth.view(),
                 words::distance.view()});
  const std::vector<Leg>& legs = figures.traverse.legs;
  for (std::size_t i = 0; i < figures.survey.points.size(); ++i) {
    Row row(out);
    put_point(row, figures.survey.points[i]);
    put_leg(row, i < legs.size() ? &legs[i] : nullptr);
    out.pause();
  }
}

void write_pairs_table(Writer& out, const Figures& figures) {
  headings(out, {words::first_point.view(), words::first_code.view(), words::second_point.view(),
                 words::second_code.view(), words::distance.view(), words::rise.view(),
                 words::first_removed.view(), words::second_removed.view()});
  const Repeats& repeats = figures.study.repeats;
  const auto removed = [&](std::size_t point) {
    return repeats.fault.empty() && !repeats.keeps(point) ? "1" : "0";
  };
  for (const RepeatedPair& pair : repeats.pairs) {
    const SurveyPoint& first = figures.survey.points[pair.first];
    const SurveyPoint& second = figures.survey.points[pair.second];
    Row(out)
        .text(first.number)
        .text(first.code)
        .text(second.number)
        .text(second.code)
        .rounded(pair.distance)
        .rounded(pair.rise)
        .text(removed(pair.first))
        .text(removed(pair.second));
  }
}

void write_cuts_table(Writer& out, const Figures& figures) {
  headings(out, {words::cut.view(), "X", "Y", words::distance.view()});
  std::size_t number = 0;
  for (const Cut& cut : figures.study.section.cuts) {
    Row(out).count(++number).rounded(cut.place.x).rounded(cut.place.y).rounded(cut.distance);
  }
}

void write_nodes_table(Writer& out, const Figures& figures) {
  headings(out, {"X", "Y", words::elevation.view(), words::slope_percent.view(),
                 words::vertex_1.view(), words::vertex_2.view(), words::vertex_3.view()});
  for (const Node& node : figures.study.relief.nodes) {
    Row row(out);
    row.rounded(node.place.x).rounded(node.place.y).rounded(node.elevation);
    node.slope ? row.rounded(*node.slope, slope_decimals) : row.empty();
    for (const std::size_t i : node.triangle) row.text(figures.survey.points[i].number);
  }
}

void write_stations_table(Writer& out, const Figures& figures) {
  headings(out, {words::station.view(), words::distance.view(), "X", "Y", words::elevation.view()});
  std::size_t number = 0;
  for (const Station& station : figures.study.profile.stations) {
    Row(out)
        .count(++number)
        .rounded(station.distance)
        .rounded(station.place.x)
        .rounded(station.place.y)
        .rounded(station.elevation);
  }
}

void write_inside_table(Writer& out, const Figures& figures) {
  headings(out, {words::number.view(), "X", "Y", "Z", words::code.view()});
  for (const std::size_t i : figures.study.area.inside) {
    Row row(out);
    put_point(row, figures.survey.points[i]);
    out.pause();
  }
}

void write_extremes_table(Writer& out, const Figures& figures) {
  headings(out, {words::axis.view(), words::minimum.view(), words::minimum_point.view(),
                 words::maximum.view(), words::maximum_point.view(), words::difference.view()});
  const Extents extents = extents_of(figures.survey.points);
  put_extreme(out, figures, "X", &SurveyPoint::x, extents.x);
  put_extreme(out, figures, "Y", &SurveyPoint::y, extents.y);
  put_extreme(out, figures, "Z", &SurveyPoint::z, extents.z);
}

}  // namespace survey_report
