// packed_doubles.h: doubles as words of their keys, to be put in order.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "frame/geo_arrays.h"
#include "sorting/packed_sort.h"
#include "sorting/packed_words.h"

namespace orv2_geo::sorting {

struct Extremes {
  double lowest;
  double highest;
};

/// Of values that all have a key of nine digits (see double_keys.h); nothing when
/// one has not, or there is none.
std::optional<Extremes> extremes_in_span(std::span<const double> values) noexcept;

/// Doubles that all have such a key, each key packed above its position.
class PackedDoubles {
 public:
  /// Nothing where there are no values, keys must be made as texts or do not fit a
  /// word, or there is no memory.
  static std::optional<PackedDoubles> of(std::span<const double> values) noexcept;

  const Packing& packing() const noexcept { return packing_; }

  /// Whether these values have the keys that were packed. For words not yet sorted.
  bool are_of(std::span<const double> values) noexcept;

  /// Puts the words into the order in which the algorithm leaves elements that stand
  /// at the subscripts from 1 on. False where only write_order can tell it.
  bool sort() noexcept { return words_.sort_words(packing_, 1); }
  std::span<const std::uint64_t> words() noexcept { return words_.words(); }

  /// Writes that order, elements numbered from 1.
  void write_order(std::span<std::int32_t> numbers) noexcept;

 private:
  PackedDoubles(const Packing& packing, std::span<const double> values);

  Packing packing_;
  PackedWords words_;
};

/// The elements 1 to upper; none where one of them is missing.
std::span<const double> first_values(const DoubleArray& array, std::int32_t upper) noexcept;

}  // namespace orv2_geo::sorting
