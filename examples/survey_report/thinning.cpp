#include "survey_report/thinning.h"

#include <algorithm>
#include <cmath>

namespace survey_report {

namespace {

constexpr double wider = 1.2;  // from one try to the next

// The squares of an area, each with room for one.
class Squares {
 public:
  Squares(const Rect& area, double side)
      : area_(area),
        side_(side),
        columns_(count(area.width())),
        rows_(count(area.height())),
        taken_(columns_ * rows_) {}

  bool take(const Place& at) {
    const std::size_t square =
        index(at.y - area_.top, rows_) * columns_ + index(at.x - area_.left, columns_);
    if (taken_[square]) return false;
    taken_[square] = true;
    return true;
  }

 private:
  std::size_t count(double length) const {
    return static_cast<std::size_t>(std::ceil(length / side_)) + 1;
  }

  std::size_t index(double off, std::size_t squares) const {
    return static_cast<std::size_t>(
        std::clamp(std::floor(off / side_), 0.0, static_cast<double>(squares - 1)));
  }

  Rect area_;
  double side_;
  std::size_t columns_;
  std::size_t rows_;
  std::vector<bool> taken_;
};

}  // namespace

std::vector<std::size_t> thinned(const std::vector<Place>& places,
                                 const std::vector<std::size_t>& order, const Rect& area,
                                 double symbol, std::size_t most) {
  std::vector<std::size_t> drawn = order;
  for (double side = symbol; drawn.size() > most; side *= wider) {
    Squares squares(area, side);
    drawn.clear();
    for (const std::size_t i : order) {
      if (squares.take(places[i])) drawn.push_back(i);
    }
  }
  std::sort(drawn.begin(), drawn.end());
  return drawn;
}

}  // namespace survey_report
