// Extremes of coordinate arrays.
#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <optional>
#include <span>

#include "orv2_geo/arrays/cgeo_Matrices.h"
#include "orv2_geo/dialogs/f_MaxiMin.h"
#include "orv2_geo/frame/checked_math.h"
#include "orv2_geo/frame/extremes_of.h"
#include "orv2_geo/frame/overlap.h"
#include "orv2_geo/frame/treatments.h"
#include "orv2_geo/platform/error_box.h"

namespace orv2_geo {

namespace {

// An array and the caller's variables that take its extremes.
struct Coordinate {
  const DoubleArray& array;
  double& max;
  double& min;
  std::int32_t max_at = 1;  // the first index at which the extreme stands
  std::int32_t min_at = 1;
};

// Up to where a scan goes. In 64 bits, so that a scan to the highest subscript of all
// ends there: in 32 its counter would overflow behind it.
using Limit = std::int64_t;

// Element i of one coordinate. Ties leave the extremes alone.
struct LookAt {
  static constexpr bool skips_missing = false;

  void operator()(Coordinate& c, std::int32_t i) const {
    if (Checked(c.max) < c.array(i)) {
      c.max = c.array(i);
      c.max_at = i;
    }
    if (Checked(c.min) > c.array(i)) {
      c.min = c.array(i);
      c.min_at = i;
    }
  }
};

// The same where failing statements are skipped: a comparison that fails counts
// as one that held, what it guards is run, and of that the index is always taken.
struct LookAtSkipping {
  static constexpr bool skips_missing = true;

  void operator()(Coordinate& c, std::int32_t i) const {
    const double* element = c.array.row(i, i);
    if (element == nullptr || !(c.max >= *element)) {
      if (element != nullptr) c.max = *element;
      c.max_at = i;
    }
    if (element == nullptr || !(c.min <= *element)) {
      if (element != nullptr) c.min = *element;
      c.min_at = i;
    }
  }
};

class Scan {
 public:
  explicit Scan(std::span<Coordinate> coordinates) : coordinates_(coordinates) {
    separate_ = are_separate();
  }

  // Block by block: where nothing can fail and no variable is another or an
  // element, a block's extremes are found first and then taken.
  template <class Step>
  void run(Limit first, Limit limit, Step step) {
    for (Limit start = first; start <= limit; start += block) {
      const Limit end = std::min(start + block - 1, limit);
      const auto from = static_cast<std::int32_t>(start);
      const auto to = static_cast<std::int32_t>(end);
      if (separate_ && take_block(from, to)) continue;
      if (Step::skips_missing && none_has(from, to)) {
        for (Coordinate& c : coordinates_) c.max_at = c.min_at = to;  // the last one's mark stays
        continue;
      }
      for (Limit i = start; i <= end; ++i) {
        for (Coordinate& c : coordinates_) step(c, static_cast<std::int32_t>(i));
      }
    }
  }

 private:
  static constexpr Limit block = 1024;
  static constexpr std::size_t most = 3;

  // Bounds may lie some 2,000,000,000 indexes above the first.
  bool none_has(Limit from, Limit to) const {
    return std::none_of(coordinates_.begin(), coordinates_.end(), [&](const Coordinate& c) {
      if (c.array.legal_count() == 0) return false;
      const Limit first = c.array.lower();
      return first <= to && first + c.array.legal_count() > from;
    });
  }

  bool take_block(std::int32_t from, std::int32_t to) {
    std::array<std::optional<Extremes>, most> found;
    for (std::size_t k = 0; k < coordinates_.size(); ++k) {
      const Coordinate& c = coordinates_[k];
      const double* row = c.array.row(from, to);
      if (row == nullptr || std::isunordered(c.max, c.min)) return false;
      const std::span elements(row, static_cast<std::size_t>(to - from + 1));
      found[k] = extremes_of(elements);
      if (!found[k]) return false;
    }
    for (std::size_t k = 0; k < coordinates_.size(); ++k) {
      Coordinate& c = coordinates_[k];
      if (found[k]->highest > c.max) c.max = first_of(c, from, to, found[k]->highest, c.max_at);
      if (found[k]->lowest < c.min) c.min = first_of(c, from, to, found[k]->lowest, c.min_at);
    }
    return true;
  }

  // The first of the elements equal to an extreme, zeros of either sign included.
  static double first_of(const Coordinate& c, std::int32_t from, std::int32_t to, double extreme,
                         std::int32_t& at) {
    const double* row = c.array.row(from, to);
    const double* first = std::find(row, row + (to - from + 1), extreme);
    at = from + static_cast<std::int32_t>(first - row);
    return *first;
  }

  bool are_separate() const {
    std::array<const double*, 2 * most> variables{};
    std::size_t count = 0;
    for (const Coordinate& c : coordinates_) {
      variables[count++] = &c.max;
      variables[count++] = &c.min;
    }
    std::sort(variables.begin(), variables.begin() + count, std::less<>());
    const auto end = variables.begin() + count;
    if (std::adjacent_find(variables.begin(), end) != end) return false;
    return std::none_of(variables.begin(), end, [&](const double* variable) {
      return std::any_of(coordinates_.begin(), coordinates_.end(), [&](const Coordinate& c) {
        return overlap(std::span(variable, 1), std::span(c.array.data(), c.array.legal_count()));
      });
    });
  }

  std::span<Coordinate> coordinates_;
  bool separate_;
};

void seed(const Coordinate& c) {
  c.max = c.array(1);
  c.min = c.array(1);
}

template <std::size_t n>
void seed_and_scan(std::array<Coordinate, n> coordinates, Limit limit) {
  for (const Coordinate& c : coordinates) seed(c);
  Scan(coordinates).run(2, limit, LookAt());
}

// Other non-zero flags count as false here.
bool is_exactly_true(const Bool& flag) { return flag.bits == -1; }

}  // namespace

void cgeo_Matrices::MaxMin_1Matriz(const DoubleArray& X, double& max, double& Min) const try {
  const Limit limit = X.upper();
  std::array only = {Coordinate{X, max, Min}};
  seed(only[0]);
  Scan(only).run(1, limit, LookAt());  // with itself first: NaN fails even alone
} catch (...) {
  leave_signed(registered_name);
}

void cgeo_Matrices::MaxMin_2Matriz(const DoubleArray& X, const DoubleArray& Y, double& MaxX,
                                   double& MinX, double& MaxY, double& MinY) const try {
  const Limit limit = X.upper();
  seed_and_scan(std::array{Coordinate{X, MaxX, MinX}, Coordinate{Y, MaxY, MinY}}, limit);
} catch (...) {
  leave_signed(registered_name);
}

void cgeo_Matrices::MaxMin_4_matrices_XY_XY(const DoubleArray& X, const DoubleArray& Y,
                                            const DoubleArray& X1, const DoubleArray& Y1,
                                            double& MaxX, double& MinX, double& MaxY,
                                            double& MinY) const try {
  MaxMin_2Matriz(X, Y, MaxX, MinX, MaxY, MinY);
  // No seed has covered this pair: it is scanned from its first element.
  const Limit limit = X1.upper();
  std::array pair = {Coordinate{X1, MaxX, MinX}, Coordinate{Y1, MaxY, MinY}};
  Scan(pair).run(1, limit, LookAt());
} catch (...) {
  leave_signed(registered_name);
}

void cgeo_Matrices::MaxMin_3Matriz1(const DoubleArray& X, const DoubleArray& Y,
                                    const DoubleArray& Z, double& MaxX, double& MinX, double& MaxY,
                                    double& MinY, double& MaxZ, double& MinZ, const Bool& Ver) const
    try {
  error_box(u"obsoleto");
  const Limit limit = X.upper();
  seed_and_scan(
      std::array{Coordinate{X, MaxX, MinX}, Coordinate{Y, MaxY, MinY}, Coordinate{Z, MaxZ, MinZ}},
      limit);
  if (limit < 2 || !is_exactly_true(Ver)) return;
  f_MaxiMin dialog;
  dialog.A_Let_Parametros_Mdt(MaxX, MinX, MaxY, MinY, MaxZ, MinZ);
  dialog.show_modal();
  dialog.unload();
} catch (...) {
  leave_signed(registered_name);
}

void cgeo_Matrices::MaxMin_3Matriz(const DoubleArray& X, const DoubleArray& Y, const DoubleArray& Z,
                                   double& MaxX, double& MinX, double& MaxY, double& MinY,
                                   double& MaxZ, double& MinZ, const Bool& Ver) const try {
  // Failing statements are skipped from the first to the last, one by one.
  Limit limit = 0;
  skip_on_failure([&] { limit = X.upper(); });
  std::array all = {Coordinate{X, MaxX, MinX}, Coordinate{Y, MaxY, MinY},
                    Coordinate{Z, MaxZ, MinZ}};
  for (const Coordinate& c : all) {
    skip_on_failure([&] { c.max = c.array(1); });
    skip_on_failure([&] { c.min = c.array(1); });
  }
  if (limit < 2) return;
  Scan(all).run(2, limit, LookAtSkipping());
  if (!is_exactly_true(Ver)) return;
  std::optional<f_MaxiMin> dialog;
  skip_on_failure([&] { dialog.emplace(); });
  if (!dialog) return;
  skip_on_failure([&] {
    dialog->A_Let_Parametros_Mdt1(MaxX, MinX, MaxY, MinY, MaxZ, MinZ, all[0].max_at, all[1].max_at,
                                  all[2].max_at, all[0].min_at, all[1].min_at, all[2].min_at);
  });
  skip_on_failure([&] { dialog->show_modal(); });
  dialog->unload();
} catch (...) {
  leave_signed(registered_name);
}

}  // namespace orv2_geo
