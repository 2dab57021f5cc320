#include "orv2_geo/sorting/word_order.h"

#include <algorithm>
#include <array>
#include <bit>
#include <limits>
#include <new>
#include <utility>

#include "orv2_geo/sorting/radix_sort.h"
#include "orv2_geo/sorting/word_quicksort.h"

namespace orv2_geo::sorting {

namespace {

// A partition looks at all words of a level: n log2 n words are the least, 1.2 to 1.3
// times as many are usual, and 2 times are a sign of bad pivots.
std::int64_t unusually_many_steps(std::size_t count) {
  return static_cast<std::int64_t>(2 * count * static_cast<std::size_t>(std::bit_width(count)));
}

constexpr std::int64_t any_steps = std::numeric_limits<std::int64_t>::max();

// Positions of sorted words, each with the bit that is tied to the one before.
void write_with_ties(const WordLayout& layout, std::span<const std::uint64_t> sorted,
                     std::uint32_t* order) noexcept {
  for (std::size_t p = 0; p < sorted.size(); ++p) {
    const bool tied = p != 0 && layout.are_tied(sorted[p - 1], sorted[p]);
    order[p] = layout.position(sorted[p]) | (tied ? tied_bit : 0);
  }
}

}  // namespace

WordOrder::WordOrder(std::size_t count)
    : count_(count), words_(buffer_if_any<std::uint64_t>(count + 2 * words_around)) {
  if (!words_) throw std::bad_alloc();
  std::fill_n(words_.get(), words_around, 0);
  std::fill_n(words_.get() + words_around + count, words_around, 0);
}

std::span<std::uint64_t> WordOrder::words() noexcept {
  return {words_.get() + words_around, count_};
}

// Each word to the place that is its position.
void WordOrder::put_back(const WordLayout& layout) noexcept {
  const std::span<std::uint64_t> words = this->words();
  for (std::size_t k = 0; k < words.size(); ++k) {
    while (layout.position(words[k]) != k) {
      std::swap(words[k], words[layout.position(words[k])]);
    }
  }
}

bool WordOrder::sort_words(const WordLayout& layout, std::int64_t first) noexcept {
  if (!seem_tied(layout, words())) return false;
  if (word_quicksort(layout, words(), first, unusually_many_steps(count_))) return true;
  put_back(layout);
  return false;
}

// False where there is no memory.
bool WordOrder::order_by_radix(const WordLayout& layout, std::int64_t first,
                               std::span<std::uint32_t> order) noexcept {
  const auto spare = buffer_if_any<std::uint64_t>(count_);
  if (!spare) return false;
  write_with_ties(layout, radix_sort(layout, words(), {spare.get(), count_}), order.data());
  settle_ties(order, first, words().data(), reinterpret_cast<std::uint32_t*>(spare.get()));
  return true;
}

void WordOrder::write_positions(const WordLayout& layout, std::int64_t first,
                                std::span<std::uint32_t> order, std::uint32_t position_0) noexcept {
  if (!sort_words(layout, first)) {
    if (order_by_radix(layout, first, order)) {
      for (std::uint32_t& position : order) position += position_0;
      return;
    }
    word_quicksort(layout, words(), first, any_steps);
  }
  std::transform(words().begin(), words().end(), order.begin(),
                 [&](std::uint64_t word) { return layout.position(word) + position_0; });
}

bool seem_tied(const WordLayout& layout, std::span<const std::uint64_t> words) noexcept {
  // Neighbours, as points are measured twice in a row, at places all over.
  constexpr std::size_t looks = 2048;
  constexpr std::size_t neighbours = 8;
  constexpr std::size_t few = 4096;
  constexpr int slot_bits = 14;
  if (words.size() < few) return true;  // so few that either way will do
  // Each slot has of one key the bits of its hash behind those that name the slot.
  std::array<std::uint32_t, std::size_t{1} << slot_bits> seen;
  seen.fill(~std::uint32_t{0});
  const std::size_t step = std::max(words.size() / looks, neighbours);
  for (std::size_t start = 0; start + neighbours <= words.size(); start += step) {
    for (const std::uint64_t word : words.subspan(start, neighbours)) {
      const std::uint64_t key = layout.key(word);
      // Multiplicative hashing, by the golden ratio.
      const std::uint64_t hash = key * 0x9e3779b97f4a7c15U;
      const auto slot = static_cast<std::size_t>(hash >> (64 - slot_bits));
      const auto rest = static_cast<std::uint32_t>(hash >> (32 - slot_bits));
      if (seen[slot] == rest) return true;
      seen[slot] = rest;
    }
  }
  return false;
}

}  // namespace orv2_geo::sorting
