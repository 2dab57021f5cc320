#include "sorting/packed_sort.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <utility>

#include "sorting/settle_ties.h"

namespace orv2_geo::sorting {

namespace {

// Below this the passes over the counts cost more than comparisons.
constexpr std::size_t few = 512;

constexpr int widest_digit = 11;
constexpr std::size_t most_digits = 6;  // 64 bits

using Counts = std::array<std::uint32_t, std::size_t{1} << widest_digit>;

}  // namespace

Packing::Packing(std::uint64_t from, std::uint64_t to, std::size_t count) noexcept
    : lowest(from),
      position_bits(static_cast<int>(std::bit_width(count > 1 ? count - 1 : 1))),
      number_bits(static_cast<int>(std::bit_width(to - from))) {}

std::span<std::uint64_t> sort_packed(const Packing& packing, std::span<std::uint64_t> words,
                                     std::span<std::uint64_t> spare) noexcept {
  if (words.size() <= few) {
    std::sort(words.begin(), words.end());
    return words;
  }
  // By the digits of the numbers, the lowest first. (Radix sort.)
  const int digits = (packing.number_bits + widest_digit - 1) / widest_digit;
  if (digits == 0) return words;
  const int width = (packing.number_bits + digits - 1) / digits;
  const std::uint64_t mask = (std::uint64_t{1} << width) - 1;
  const auto shift = [&](int digit) { return packing.below_number() + digit * width; };

  std::array<Counts, most_digits> counts{};
  for (const std::uint64_t word : words) {
    for (int d = 0; d < digits; ++d) {
      ++counts[static_cast<std::size_t>(d)][word >> shift(d) & mask];
    }
  }
  for (int d = 0; d < digits; ++d) {
    Counts& places = counts[static_cast<std::size_t>(d)];
    std::uint32_t sum = 0;
    for (std::uint32_t& place : places) sum += std::exchange(place, sum);
    for (const std::uint64_t word : words) spare[places[word >> shift(d) & mask]++] = word;
    std::swap(words, spare);
  }
  return words;
}

void write_order(const Packing& packing, std::span<const std::uint64_t> sorted,
                 std::uint32_t* order) noexcept {
  for (std::size_t p = 0; p < sorted.size(); ++p) {
    const bool tied = p != 0 && ((sorted[p - 1] ^ sorted[p]) >> packing.below_number()) == 0;
    order[p] = packing.position(sorted[p]) | (tied ? tied_mark : 0);
  }
}

}  // namespace orv2_geo::sorting
