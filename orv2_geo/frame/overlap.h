// overlap.h: whether two rows of elements have memory in common.
#pragma once

#include <functional>
#include <span>

namespace orv2_geo {

/// Whether the rows have an element in common. An empty row has none.
template <class A, class B>
bool overlap(std::span<A> a, std::span<B> b) noexcept {
  // Pointers into different arrays have an order with std::less alone.
  const auto before = [](const void* one, const void* other) { return std::less<>()(one, other); };
  return !a.empty() && !b.empty() && before(a.data(), b.data() + b.size()) &&
         before(b.data(), a.data() + a.size());
}

/// Whether the rows are one, or have no element in common: working through both in step, what
/// is written at a place is never read at a later one.
template <class A, class B>
bool same_or_apart(std::span<A> a, std::span<B> b) noexcept {
  return static_cast<const void*>(a.data()) == b.data() || !overlap(a, b);
}

}  // namespace orv2_geo
