#include "repeated/x_order.h"

#include "sorting/mOrdena.h"

namespace orv2_geo::repeated {

XOrder::XOrder(const DoubleArray& X, std::int32_t nPtos) {
  Orden_.size(0, nPtos);
  packed_ = sorting::PackedDoubles::of(sorting::first_values(X, nPtos));
  if (!packed_) mOrdena::Ordena_Double_Index_Array(X, Orden_, 1, nPtos);
}

std::span<const std::uint64_t> XOrder::keyed(const DoubleArray& X) noexcept {
  if (!packed_ || !packed_->are_of(sorting::first_values(X, points()))) return {};
  return packed_->sort() ? packed_->words() : std::span<const std::uint64_t>();
}

void XOrder::put_in_order() noexcept {
  if (!packed_) return;
  packed_->write_order({&Orden_(1), static_cast<std::size_t>(points())});
  packed_.reset();
}

}  // namespace orv2_geo::repeated
