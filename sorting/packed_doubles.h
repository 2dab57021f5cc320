// packed_doubles.h: doubles as words of their keys, to be put in order.
#pragma once

#include <cstddef>
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
  /// word, or there is no memory. What bits a word has left are room for a mark, up
  /// to so many.
  static std::optional<PackedDoubles> of(std::span<const double> values,
                                         int most_mark_bits = 0) noexcept;

  const Packing& packing() const noexcept { return packing_; }

  /// Whether these values have the keys that were packed from the position `first`
  /// on. For words not yet sorted and without marks.
  bool are_of(std::span<const double> values, std::size_t first = 0) noexcept;

  /// Marks are what a caller puts into the words in the room for them.
  void clear_marks() noexcept;

  /// Puts the words into the order in which the algorithm leaves elements that stand
  /// at the subscripts from 1 on. False, with the marks lost, where only write_order
  /// can tell it.
  bool sort() noexcept;
  std::span<std::uint64_t> words() noexcept { return words_.words(); }

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
