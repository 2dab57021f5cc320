// The order of doubles by their text keys, carried out plainly.
#include "sorting/mOrdena.h"

#include <cstdio>
#include <limits>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "frame/counted.h"

namespace orv2_geo::mOrdena {

void Ordena_Double_Index_Array(const DoubleArray& DoubleA, LongArray& TheIndex,
                               const std::int32_t& LowerBound, const std::int32_t& UpperBound) {
  constexpr std::int32_t from_array = std::numeric_limits<std::int32_t>::min();
  if (LowerBound == from_array) static_cast<void>(DoubleA.lower());
  const std::int32_t upper = UpperBound == from_array ? DoubleA.upper() : UpperBound;
  LongArray& T = TheIndex;
  T.size(0, upper);
  std::vector<std::string> keys(static_cast<std::size_t>(upper) + 1);
  for (const std::int32_t i : counted(1, upper)) {
    const double x = DoubleA(i);
    char text[40];
    std::snprintf(text, sizeof text, "%.15g", x < 0 ? x + 2e8 : x + 3e8);
    keys[static_cast<std::size_t>(i)] = text;
    T(i) = i;
  }
  const auto key = [&](std::int32_t k) -> const std::string& {
    return keys[static_cast<std::size_t>(T(k))];
  };
  std::vector<std::pair<std::int32_t, std::int32_t>> stack;
  std::int32_t lo = 1;
  std::int32_t hi = upper;
  for (;;) {
    if (hi - lo < 7) {
      for (std::int32_t j = lo + 1; j <= hi; ++j) {
        const std::int32_t a = T(j);
        const std::string& of_a = keys[static_cast<std::size_t>(a)];
        std::int32_t i = j - 1;
        for (; i >= lo && !(key(i) <= of_a); --i) T(i + 1) = T(i);
        T(i + 1) = a;
      }
      if (stack.empty()) return;
      std::tie(lo, hi) = stack.back();
      stack.pop_back();
      continue;
    }
    std::swap(T((lo + hi) / 2), T(lo + 1));
    if (key(lo) > key(hi)) std::swap(T(lo), T(hi));
    if (key(lo + 1) > key(hi)) std::swap(T(lo + 1), T(hi));
    if (key(lo) > key(lo + 1)) std::swap(T(lo), T(lo + 1));
    std::int32_t i = lo + 1;
    std::int32_t j = hi;
    const std::int32_t a = T(lo + 1);
    const std::string& of_a = keys[static_cast<std::size_t>(a)];
    for (;;) {
      while (key(++i) < of_a) {
      }
      while (key(--j) > of_a) {
      }
      if (j < i) break;
      std::swap(T(i), T(j));
    }
    T(lo + 1) = T(j);
    T(j) = a;
    if (hi - i + 1 >= j - lo) {
      stack.emplace_back(i, hi);
      hi = j - 1;
    } else {
      stack.emplace_back(lo, j - 1);
      lo = i;
    }
  }
}

}  // namespace orv2_geo::mOrdena
