// counted.h: the loop over whole numbers, its counter checked like any other.
#pragma once

#include <cstdint>

#include "orv2_geo/frame/checked_integer.h"

namespace orv2_geo {

/// The numbers from `first` to `last`, both included; none when `last` is below
/// `first`:
///
///   for (const std::int32_t i : counted(1, n)) ...
///
/// The counter goes one past `last` at the end: failure 6 after the highest
/// number of all.
class counted {
 public:
  class iterator {
   public:
    explicit constexpr iterator(std::int32_t at) noexcept : at_(at) {}
    constexpr std::int32_t operator*() const noexcept { return at_; }
    constexpr iterator& operator++() {
      at_ = (Checked32(at_) + 1).value();
      return *this;
    }
    constexpr bool operator!=(const iterator& last) const noexcept { return at_ <= last.at_; }

   private:
    std::int32_t at_;
  };

  constexpr counted(std::int32_t first, std::int32_t last) noexcept : first_(first), last_(last) {}
  constexpr iterator begin() const noexcept { return iterator(first_); }
  constexpr iterator end() const noexcept { return iterator(last_); }

 private:
  std::int32_t first_;
  std::int32_t last_;
};

}  // namespace orv2_geo
