#include "orv2_geo/sorting/radix_sort.h"

#include <bit>
#include <functional>

#include "orv2_geo/frame/memory.h"

namespace orv2_geo::sorting {

namespace {

struct Bounds {
  std::int32_t lowest, highest;
};

// Without a branch.
Bounds bounds_of(std::span<const std::int32_t> numbers) {
  Bounds bounds = {numbers.front(), numbers.front()};
  for (const std::int32_t number : numbers) {
    bounds.lowest = std::min(bounds.lowest, number);
    bounds.highest = std::max(bounds.highest, number);
  }
  return bounds;
}

}  // namespace

std::span<std::uint64_t> radix_sort(const WordLayout& layout, std::span<std::uint64_t> words,
                                    std::span<std::uint64_t> spare) noexcept {
  const auto key_of = [shift = layout.bits_below_key()](std::uint64_t word) {
    return word >> shift;
  };
  return radix_sort(words, spare, layout.key_bits(), key_of, std::less());
}

void sort_numbers(std::span<std::int32_t> numbers) noexcept {
  const bool are_few = numbers.size() <= few_elements;
  const auto spare = are_few ? nullptr : buffer_if_any<std::int32_t>(numbers.size());
  if (!spare) return std::sort(numbers.begin(), numbers.end());
  const Bounds bounds = bounds_of(numbers);
  const auto above_lowest = [&](std::int32_t number) {
    return static_cast<std::uint32_t>(number) - static_cast<std::uint32_t>(bounds.lowest);
  };
  const int key_bits = static_cast<int>(std::bit_width(above_lowest(bounds.highest)));
  const auto sorted =
      radix_sort(numbers, {spare.get(), numbers.size()}, key_bits, above_lowest, std::less());
  if (sorted.data() != numbers.data()) std::copy(sorted.begin(), sorted.end(), numbers.begin());
}

}  // namespace orv2_geo::sorting
