#include "sorting/packed_words.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <new>
#include <utility>

#include "sorting/run_words.h"
#include "sorting/settle_ties.h"

namespace orv2_geo::sorting {

namespace {

// A quarter more than n log2 n is usual.
std::int64_t unusually_many_steps(std::size_t count) {
  return static_cast<std::int64_t>(2 * count * static_cast<std::size_t>(std::bit_width(count)));
}

constexpr std::int64_t any_steps = std::numeric_limits<std::int64_t>::max();

}  // namespace

PackedWords::PackedWords(std::size_t count)
    : count_(count), words_(room_if_any<std::uint64_t>(count + 2 * words_around)) {
  if (!words_) throw std::bad_alloc();
  std::fill_n(words_.get(), words_around, 0);
  std::fill_n(words_.get() + words_around + count, words_around, 0);
}

void PackedWords::put_back(const Packing& packing) noexcept {
  const std::span<std::uint64_t> words = this->words();
  for (std::size_t k = 0; k < words.size(); ++k) {
    while (packing.position(words[k]) != k) {
      std::swap(words[k], words[packing.position(words[k])]);
    }
  }
}

bool PackedWords::sort_words(const Packing& packing, std::int64_t first) noexcept {
  if (!seem_tied(packing, words())) return false;
  if (run_words(packing, words(), first, unusually_many_steps(count_))) return true;
  put_back(packing);
  return false;
}

// By the numbers, and then the algorithm for ties alone. False where there is no
// memory.
bool PackedWords::order_by_numbers(const Packing& packing, std::int64_t first,
                                   std::span<std::uint32_t> order) noexcept {
  const auto spare = room_if_any<std::uint64_t>(count_);
  if (!spare) return false;
  write_order(packing, sort_packed(packing, words(), {spare.get(), count_}), order.data());
  settle_ties(order, first, words().data(), reinterpret_cast<std::uint32_t*>(spare.get()));
  return true;
}

void PackedWords::order_words(const Packing& packing, std::int64_t first,
                              std::span<std::uint32_t> order) noexcept {
  if (!sort_words(packing, first)) {
    if (order_by_numbers(packing, first, order)) return;
    run_words(packing, words(), first, any_steps);
  }
  std::transform(words().begin(), words().end(), order.begin(),
                 [&](std::uint64_t word) { return packing.position(word); });
}

}  // namespace orv2_geo::sorting
