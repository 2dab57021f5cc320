#include "survey_report/sheet.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <numeric>

#include "survey_report/choice_fault.h"
#include "survey_report/layout.h"
#include "survey_report/scale.h"
#include "survey_report/utf8.h"
#include "survey_report/words.h"

namespace survey_report {

namespace {

constexpr double most_labels = 0.9;  // so many that a larger sheet is not called for
constexpr double scale_without_size = 100.0;
constexpr double slack = 1e-9;  // what rounding may have added to a scale that just fits

constexpr std::string_view thin_black = R"(fill="none" stroke="#222222" stroke-width="0.25")";

Place middle_of(const Rect& rect) {
  return {std::midpoint(rect.left, rect.right), std::midpoint(rect.top, rect.bottom)};
}

// ---- Choosing

// The way with the larger scale.
ScaledSheet round_on(const SheetNeeds& needs, const Paper& paper) {
  const auto scaled = [&](bool landscape) {
    const Sheet sheet{paper, landscape};
    const double least = needs.least_scale(sheet);
    return ScaledSheet{sheet, least > 0.0 ? round_scale(least) : scale_without_size};
  };
  const ScaledSheet first = scaled(needs.prefers_landscape());
  const ScaledSheet second = scaled(!needs.prefers_landscape());
  return second.scale < first.scale ? second : first;
}

std::optional<ScaledSheet> with_scale_on(const SheetNeeds& needs, const Paper& paper,
                                         double scale) {
  for (const bool landscape : {needs.prefers_landscape(), !needs.prefers_landscape()}) {
    const Sheet sheet{paper, landscape};
    if (needs.least_scale(sheet) <= scale * (1.0 + slack)) return ScaledSheet{sheet, scale};
  }
  return std::nullopt;
}

ScaledSheet with_scale(const SheetNeeds& needs, const std::vector<Paper>& allowed, double scale,
                       std::string_view option) {
  for (const Paper& paper : allowed) {
    const std::optional<ScaledSheet> scaled = with_scale_on(needs, paper, scale);
    if (scaled) return *scaled;
  }
  const Paper& largest = allowed.back();
  throw ChoiceFault(words::scale_does_not_fit.with(
      {option, scale_text(scale), largest.name, scale_text(round_on(needs, largest).scale)}));
}

}  // namespace

std::string unit_text(const DrawingOptions& options) {
  const Word name = options.unit.value_or(units.front()).name;
  return options.unit ? name.text() : words::assumed.with({name.view()});
}

std::string Sheet::text() const {
  return std::string(paper.name) + ", " + fixed(width(), 0) + " x " + fixed(height(), 0) + " mm";
}

ScaledSheet sheet_for(const SheetNeeds& needs, const std::optional<Paper>& paper,
                      const std::optional<double>& scale, std::string_view scale_option) {
  const std::vector<Paper> allowed =
      paper ? std::vector<Paper>{*paper} : std::vector<Paper>(papers.begin(), papers.end());
  if (scale) return with_scale(needs, allowed, *scale, scale_option);
  ScaledSheet best = round_on(needs, allowed.front());
  double best_labelled = needs.labelled(best);
  for (std::size_t i = 1; i < allowed.size() && best_labelled < most_labels; ++i) {
    const ScaledSheet larger = round_on(needs, allowed[i]);
    if (larger.scale >= best.scale) continue;
    const double labelled = needs.labelled(larger);
    if (labelled <= best_labelled) continue;
    best = larger;
    best_labelled = labelled;
  }
  return best;
}

std::string sheet_value(double value, int decimals, std::size_t longest) {
  std::string text = fixed(value, decimals);
  if (text.size() <= longest) return text;
  std::array<char, 32> room;
  const auto [end, error] = std::to_chars(room.data(), room.data() + room.size(), value,
                                          std::chars_format::scientific, 3);
  std::string short_text(room.data(), end);
  std::erase(short_text, '+');
  return short_text;
}

std::string left_out_text(std::size_t labels) {
  if (labels == 0) return words::no_labels_left_out.text();
  const Word& word = labels == 1 ? words::label_left_out : words::labels_left_out;
  return word.with({std::to_string(labels)});
}

void draw_cell(Svg& svg, const Rect& cell, std::string_view text, double size, bool bold) {
  constexpr double margin = 2.0;
  svg.rectangle({cell.left, cell.top}, cell.width(), cell.height(), thin_black);
  const double room = cell.width() - 2 * margin;
  const double width = (bold ? 1.1 : 1.0) * text_width(text, 1.0);
  if (width * size > room) size = std::max(least_letters, room / width);
  const double part = std::min(1.0, room / (width * size));
  const auto most = static_cast<std::size_t>(part * static_cast<double>(display_width(text)));
  svg.text({cell.left + margin, middle_of(cell).y + 0.36 * size},
           part < 1.0 ? shortened(text, most) : std::string(text), {.size = size, .bold = bold});
}

Mapping::Mapping(const Box& box, const Rect& frame, double scale)
    : frame_(frame),
      centre_{std::midpoint(box.x.min, box.x.max), std::midpoint(box.y.min, box.y.max)},
      scale_(scale) {}

Place Mapping::on_sheet(const Place& place) const {
  const Place middle = middle_of(frame_);
  return {middle.x + (place.x - centre_.x) * scale_, middle.y - (place.y - centre_.y) * scale_};
}

Box Mapping::visible() const {
  const double across = frame_.width() / 2 / scale_;
  const double up = frame_.height() / 2 / scale_;
  return {{centre_.x - across, centre_.x + across}, {centre_.y - up, centre_.y + up}};
}

}  // namespace survey_report
