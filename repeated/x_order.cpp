#include "repeated/x_order.h"

#include <algorithm>
#include <cstddef>

#include "sorting/mOrdena.h"

namespace orv2_geo::repeated {

XOrder::XOrder(const DoubleArray& X, std::int32_t nPtos)
    : points_(nPtos),
      packed_(sorting::PackedDoubles::of(sorting::first_values(X, nPtos), Marks::most_bits)) {
  if (!packed_) mOrdena::Ordena_Double_Index_Array(X, numbers(), 1, nPtos);
}

bool XOrder::mark(const DoubleArray& X, std::span<const double> Y, Marks& marks) noexcept {
  const std::span<const double> values = sorting::first_values(X, points_);
  const std::span<std::uint64_t> words = packed_->words();
  if (values.size() != words.size()) return false;
  constexpr std::size_t some = 1024;  // that stay in the nearest cache
  bool same = true;
  for (std::size_t k = 0; same && k < words.size(); k += some) {
    const std::size_t count = std::min(some, words.size() - k);
    same = packed_->are_of(values.subspan(k, count), k);
    marks.put(Y.subspan(k, count), words.subspan(k, count));
  }
  if (!same || !marks.certain()) packed_->clear_marks();
  return same;
}

void XOrder::put_in_order() {
  if (!packed_) return;
  LongArray& Orden = numbers();
  packed_->write_order({&Orden(1), static_cast<std::size_t>(points_)});
  packed_.reset();
}

LongArray& XOrder::numbers() {
  if (!Orden_.allocated()) Orden_.size(0, points_);
  return Orden_;
}

}  // namespace orv2_geo::repeated
