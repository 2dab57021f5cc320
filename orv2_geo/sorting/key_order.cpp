#include "orv2_geo/sorting/key_order.h"

#include <bit>
#include <cstddef>

#include "orv2_geo/frame/memory.h"
#include "orv2_geo/sorting/radix_sort.h"
#include "orv2_geo/sorting/word_layout.h"
#include "orv2_geo/sorting/word_order.h"
#include "orv2_geo/sorting/word_quicksort.h"

namespace orv2_geo::sorting {

namespace {

void write_by_words(const WordLayout& layout, std::span<const std::uint64_t> keys,
                    std::int64_t first, std::span<std::uint32_t> order) {
  WordOrder words(keys.size());
  for (std::size_t p = 0; p < keys.size(); ++p) words.words()[p] = layout.word(keys[p], p);
  words.write_positions(layout, first, order);
}

struct Numbered {
  std::uint64_t key;  // above the lowest
  std::uint32_t position;
};

// Positions in the order of the keys, each with the bit that is tied to the one before.
void write_with_ties(std::span<const Numbered> sorted, std::span<std::uint32_t> order) {
  for (std::size_t p = 0; p < sorted.size(); ++p) {
    const bool tied = p != 0 && sorted[p - 1].key == sorted[p].key;
    order[p] = sorted[p].position | (tied ? tied_bit : 0);
  }
}

// False where there is no memory.
bool write_by_ranks(std::span<const std::uint64_t> keys, std::uint64_t lowest,
                    std::uint64_t highest, std::int64_t first, std::span<std::uint32_t> order) {
  const std::size_t count = keys.size();
  const auto numbered = buffer_if_any<Numbered>(count);
  const auto spare = buffer_if_any<Numbered>(count);
  const auto words = buffer_if_any<std::uint64_t>(count + 2 * words_around);
  const auto ties_up_to = buffer_if_any<std::uint32_t>(count);
  if (!numbered || !spare || !words || !ties_up_to) return false;
  for (std::uint32_t p = 0; p < count; ++p) numbered[p] = {keys[p] - lowest, p};
  const auto sorted = radix_sort(
      std::span(numbered.get(), count), std::span(spare.get(), count),
      static_cast<int>(std::bit_width(highest - lowest)),
      [](const Numbered& element) { return element.key; },
      [](const Numbered& a, const Numbered& b) { return a.key < b.key; });
  write_with_ties(sorted, order);
  std::fill_n(words.get(), words_around, 0);
  std::fill_n(words.get() + words_around + count, words_around, 0);
  settle_ties(order, first, words.get() + words_around, ties_up_to.get());
  return true;
}

}  // namespace

bool write_order(std::span<const std::uint64_t> keys, std::uint64_t lowest, std::uint64_t highest,
                 std::int64_t first, std::span<std::uint32_t> order) noexcept {
  const WordLayout layout(lowest, highest, keys.size());
  if (!layout.fits()) return write_by_ranks(keys, lowest, highest, first, order);
  return if_memory_allows([&] {
    write_by_words(layout, keys, first, order);
    return true;
  });
}

}  // namespace orv2_geo::sorting
