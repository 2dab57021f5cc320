// radix_sort.h: elements sorted by whole numbers, digit by digit.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>

#include "orv2_geo/sorting/nearly_sorted.h"
#include "orv2_geo/sorting/word_layout.h"

namespace orv2_geo::sorting {

/// Up to so many elements the passes over the counts cost more than comparisons.
inline constexpr std::size_t few_elements = 512;

/// Sorting by the digits of keys, the lowest first: each pass keeps the order of the one
/// before among equal digits.
template <class Element, class KeyOf>
class RadixPasses {
 public:
  /// Keys have `key_bits` bits, up to 64.
  RadixPasses(int key_bits, KeyOf key_of) noexcept
      : digits_((key_bits + widest_digit - 1) / widest_digit),
        width_(digits_ == 0 ? 0 : (key_bits + digits_ - 1) / digits_),
        key_of_(key_of) {}

  /// The sorted elements are in the span that comes back, one of the two.
  std::span<Element> sort(std::span<Element> elements, std::span<Element> spare) noexcept {
    count(elements);
    for (int d = 0; d < digits_; ++d) {
      Counts& places = counts_[static_cast<std::size_t>(d)];
      std::uint32_t sum = 0;
      for (std::uint32_t& place : places) sum += std::exchange(place, sum);
      for (const Element& element : elements) spare[places[digit(element, d)]++] = element;
      std::swap(elements, spare);
    }
    return elements;
  }

 private:
  static constexpr int widest_digit = 11;  // 2^11 counts of 4 bytes: 8 KiB of the nearest cache
  static constexpr std::size_t most_digits = 6;  // 6 x 11 >= 64 bits
  using Counts = std::array<std::uint32_t, std::size_t{1} << widest_digit>;

  void count(std::span<const Element> elements) noexcept {
    for (const Element& element : elements) {
      for (int d = 0; d < digits_; ++d) {
        ++counts_[static_cast<std::size_t>(d)][digit(element, d)];
      }
    }
  }
  std::size_t digit(const Element& element, int d) const noexcept {
    const std::uint64_t mask = (std::uint64_t{1} << width_) - 1;
    return static_cast<std::size_t>(std::uint64_t{key_of_(element)} >> d * width_ & mask);
  }

  int digits_;
  int width_;
  KeyOf key_of_;
  std::array<Counts, most_digits> counts_{};
};

/// Sorts elements by their keys, whole numbers without a sign of so many bits. `less`
/// orders elements as their keys do; of equal keys it may order the elements as they
/// stand, or not at all, and then any comes first. The sorted elements are in the span
/// that comes back, one of the two; `spare` is as long as `elements`.
///
///   | best | usual | worst                                     | memory     |
///   |------|-------|-------------------------------------------|------------|
///   | n    | d n   | d n, d at most 6 digits of 11 bits a key  | n elements |
///
/// Best are elements in order, or nearly. Up to 512 elements are sorted by comparisons,
/// in n log n steps.
template <class Element, class KeyOf, class Less>
std::span<Element> radix_sort(std::span<Element> elements, std::span<Element> spare, int key_bits,
                              KeyOf key_of, Less less) noexcept {
  if (elements.size() <= few_elements) {
    std::sort(elements.begin(), elements.end(), less);
    return elements;
  }
  if (sort_if_nearly_sorted(elements, spare, less)) return elements;
  return RadixPasses<Element, KeyOf>(key_bits, key_of).sort(elements, spare);
}

/// Sorts words without marks that come in the order of their positions, equal keys by
/// position.
std::span<std::uint64_t> radix_sort(const WordLayout& layout, std::span<std::uint64_t> words,
                                    std::span<std::uint64_t> spare) noexcept;

/// Sorts numbers. Where there is no memory for as many more, by comparisons.
void sort_numbers(std::span<std::int32_t> numbers) noexcept;

}  // namespace orv2_geo::sorting
