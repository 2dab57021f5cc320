#include "orv2_geo/sorting/radix_sort.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace orv2_geo::sorting {

namespace {

// Up to here the passes over the counts cost more than comparisons.
constexpr std::size_t few = 512;

constexpr int widest_digit = 11;        // 2^11 counts of 4 bytes: 8 KiB of the nearest cache
constexpr std::size_t most_digits = 6;  // 6 x 11 >= 63 bits

using Counts = std::array<std::uint32_t, std::size_t{1} << widest_digit>;

}  // namespace

std::span<std::uint64_t> radix_sort(const WordLayout& layout, std::span<std::uint64_t> words,
                                    std::span<std::uint64_t> spare) noexcept {
  if (words.size() <= few) {
    std::sort(words.begin(), words.end());
    return words;
  }
  // By the digits of the keys, the lowest first: each pass keeps the order of the one
  // before among equal digits.
  const int digits = (layout.key_bits() + widest_digit - 1) / widest_digit;
  if (digits == 0) return words;
  const int width = (layout.key_bits() + digits - 1) / digits;
  const std::uint64_t mask = (std::uint64_t{1} << width) - 1;
  const auto digit_of = [&](std::uint64_t word, int digit) {
    return static_cast<std::size_t>(word >> (layout.bits_below_key() + digit * width) & mask);
  };

  std::array<Counts, most_digits> counts{};
  for (const std::uint64_t word : words) {
    for (int d = 0; d < digits; ++d) {
      ++counts[static_cast<std::size_t>(d)][digit_of(word, d)];
    }
  }
  for (int d = 0; d < digits; ++d) {
    Counts& places = counts[static_cast<std::size_t>(d)];
    std::uint32_t sum = 0;
    for (std::uint32_t& place : places) sum += std::exchange(place, sum);
    for (const std::uint64_t word : words) spare[places[digit_of(word, d)]++] = word;
    std::swap(words, spare);
  }
  return words;
}

}  // namespace orv2_geo::sorting
