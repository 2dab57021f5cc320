// Element-wise sums and differences.
#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "orv2_geo/arrays/cgeo_Matrices.h"
#include "orv2_geo/frame/checked_math.h"
#include "orv2_geo/frame/counted.h"
#include "orv2_geo/frame/number_pairs.h"
#include "orv2_geo/frame/overlap.h"
#include "orv2_geo/platform/error_box.h"

namespace orv2_geo {

namespace {

// The operands keep this order: of two NaN the first is the outcome.
struct Addition {
  template <class N>
  static auto of(const N& own, const N& other) {
    return other + own;
  }
};
struct Subtraction {
  template <class N>
  static auto of(const N& own, const N& other) {
    return own - other;
  }
};

constexpr std::int32_t block = 256;  // even

using Outcomes = std::array<double, block>;

// A block in plain arithmetic; false when an operation may have failed, which shows in an
// outcome that is not finite: no infinity and no NaN times 0 is 0. Each pair adds -1 for
// both of its outcomes that are; all are where the halves of the sum make -256.
template <class Operation>
bool quick_block(const double* own, const double* other, Outcomes& outcomes) {
  PairMask finite = {};
  for (std::int32_t k = 0; k < block; k += 2) {
    const NumberPair outcome = Operation::of(pair_at(own + k), pair_at(other + k));
    finite += outcome * 0.0 == NumberPair{};
    put_pair(outcome, outcomes.data() + k);
  }
  return finite[0] + finite[1] == -block;
}

template <class Operation>
void work_elements(DoubleArray& own, const DoubleArray& other, std::int32_t last) {
  std::int32_t i = 1;
  const auto work_one = [&] {
    own(i) = Operation::of(Checked(own(i)), Checked(other(i)));
    i = (Checked32(i) + 1).value();
  };
  double* own_row = own.row(1, last);
  const double* other_row = other.row(1, last);
  const auto elements = static_cast<std::size_t>(last);
  const bool in_blocks =
      own_row != nullptr && other_row != nullptr &&
      same_or_apart(std::span(own_row, elements), std::span(other_row, elements));
  Outcomes outcomes;
  while (i <= last) {
    if (in_blocks && last - i >= block - 1 &&
        quick_block<Operation>(own_row + (i - 1), other_row + (i - 1), outcomes)) {
      std::copy_n(outcomes.data(), block, own_row + (i - 1));
      i += block;
      continue;
    }
    for (std::int32_t k = 0; k < block && i <= last; ++k) work_one();
  }
}

template <class Operation>
void work(DoubleArray& own, const DoubleArray& other, std::u16string_view warning) {
  const std::int32_t n1 = own.upper();
  const std::int32_t n2 = other.upper();
  if (n1 != n2) critical_box(warning);  // a warning: the work goes on
  if (n1 < 1) return;
  work_elements<Operation>(own, other, n2);
}

}  // namespace

void cgeo_Matrices::Sumar_a_1Matriz_otra(DoubleArray& MatrizOrigen,
                                         const DoubleArray& Matriz_a_Sumar) const try {
  work<Addition>(MatrizOrigen, Matriz_a_Sumar,
                 u"ERROR en Rk_Geo.dll. Las matrices a sumar no son igules");
} catch (...) {
  leave_signed(registered_name);
}

void cgeo_Matrices::Restar_a_1Matriz_otra(DoubleArray& MatrizOrigen,
                                          const DoubleArray& Matriz_a_Sumar) const try {
  work<Subtraction>(MatrizOrigen, Matriz_a_Sumar,
                    u"ERROR en Rk_Geo.dll. Las matrices a restar no son igules");
} catch (...) {
  leave_signed(registered_name);
}

}  // namespace orv2_geo
