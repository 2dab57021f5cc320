// double_order.h: doubles as words of their keys, to be put in order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "orv2_geo/frame/extremes_of.h"
#include "orv2_geo/frame/geo_arrays.h"
#include "orv2_geo/sorting/word_layout.h"
#include "orv2_geo/sorting/word_order.h"

namespace orv2_geo::sorting {

/// Of values that all have a key of nine digits (see double_keys.h); nothing when
/// one has not, or there is none.
std::optional<Extremes> extremes_in_span(std::span<const double> values) noexcept;

/// The order of doubles that all have such a key, a word each.
class DoubleOrder {
 public:
  /// Nothing where there are no values, keys must be made as texts or do not fit a
  /// word, or there is no memory. What bits a word has left are for a mark, up to so
  /// many.
  static std::optional<DoubleOrder> of(std::span<const double> values,
                                       int most_mark_bits = 0) noexcept;

  const WordLayout& layout() const noexcept { return layout_; }

  /// Whether these values have the keys of the words from the position `first` on. For
  /// words not yet sorted and without marks.
  bool are_of(std::span<const double> values, std::size_t first = 0) noexcept;

  /// Marks are what a caller puts into the bits that words have for them.
  void clear_marks() noexcept;

  /// Puts the words into the order in which the algorithm leaves elements that stand
  /// at the subscripts from 1 on. False, with the marks lost, where only write_numbers
  /// can tell it.
  bool sort() noexcept;
  std::span<std::uint64_t> words() noexcept { return words_.words(); }

  /// Writes that order, elements numbered from 1.
  void write_numbers(std::span<std::int32_t> numbers) noexcept;

 private:
  DoubleOrder(const WordLayout& layout, std::span<const double> values);

  WordLayout layout_;
  WordOrder words_;
};

/// The elements 1 to upper; none where one of them is missing.
std::span<const double> first_values(const DoubleArray& array, std::int32_t upper) noexcept;

}  // namespace orv2_geo::sorting
