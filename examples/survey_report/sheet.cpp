#include "survey_report/sheet.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "survey_report/utf8.h"

namespace survey_report {

namespace {

constexpr double padding = 6.0;  // between the frame and what is drawn in it

constexpr SheetLayout landscape{297, 210, {17, 20, 236, 196}, {265, 20}, {243, 57}, {245, 76}, 24,
                                5.0, 50};
constexpr SheetLayout portrait{210, 297, {17, 20, 203, 226}, {28, 238}, {17, 275}, {80, 240}, 9,
                               5.4, 64};

double size_of(const Range& range) { return range.max - range.min; }

// A box without width asks for nothing; one without any size for a scale of 1:1.
double scale_for(const Box& box, const Rect& frame) {
  const double width = size_of(box.x);
  const double height = size_of(box.y);
  const double across = width > 0.0 ? (frame.width() - 2 * padding) / width : HUGE_VAL;
  const double up = height > 0.0 ? (frame.height() - 2 * padding) / height : HUGE_VAL;
  const double scale = std::min(across, up);
  return std::isfinite(scale) ? scale : 1.0;
}

Place middle_of(const Rect& rect) {
  return {std::midpoint(rect.left, rect.right), std::midpoint(rect.top, rect.bottom)};
}

}  // namespace

void draw_headings(Svg& svg, const Rect& frame, std::string_view title, std::string_view below) {
  constexpr double size = 5.5;
  const auto room = static_cast<std::size_t>(frame.width() / text_width("0", size));
  svg.text({frame.left, 11}, shortened(title, room), {.size = size, .bold = true});
  svg.text({frame.left, 16.5}, below, {.size = 3.2});
}

const SheetLayout& layout_for(const Box& box) {
  return size_of(box.x) >= size_of(box.y) ? landscape : portrait;
}

Mapping::Mapping(const Box& box, const Rect& frame)
    : frame_(frame),
      centre_{std::midpoint(box.x.min, box.x.max), std::midpoint(box.y.min, box.y.max)},
      scale_(scale_for(box, frame)) {
  const bool finite = std::isfinite(size_of(box.x)) && std::isfinite(size_of(box.y));
  if (!finite || !(scale_ > 0.0)) throw DrawingFault("the points are too far apart for a plan");
}

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
