#include "orv2_geo/repeated/x_order.h"

#include <algorithm>
#include <cstddef>

#include "orv2_geo/sorting/mOrdena.h"

namespace orv2_geo::repeated {

XOrder::XOrder(const DoubleArray& X, std::int32_t nPtos)
    : points_(nPtos),
      words_(sorting::DoubleOrder::of(sorting::first_values(X, nPtos), Marks::most_bits)) {
  if (!words_) mOrdena::Ordena_Double_Index_Array(X, numbers(), 1, nPtos);
}

bool XOrder::mark(const DoubleArray& X, std::span<const double> Y, Marks& marks) noexcept {
  const std::span<const double> values = sorting::first_values(X, points_);
  const std::span<std::uint64_t> words = words_->words();
  if (values.size() != words.size()) return false;
  constexpr std::size_t block = 1024;  // words and coordinates stay in the nearest cache
  bool same = true;
  for (std::size_t k = 0; same && k < words.size(); k += block) {
    const std::size_t count = std::min(block, words.size() - k);
    same = words_->are_of(values.subspan(k, count), k);
    marks.put(Y.subspan(k, count), words.subspan(k, count));
  }
  if (!same || !marks.certain()) words_->clear_marks();
  return same;
}

void XOrder::put_in_order() {
  if (!words_) return;
  LongArray& Orden = numbers();
  words_->write_numbers({&Orden(1), static_cast<std::size_t>(points_)});
  words_.reset();
}

LongArray& XOrder::numbers() {
  if (!Orden_.allocated()) Orden_.size(0, points_);
  return Orden_;
}

}  // namespace orv2_geo::repeated
