#include "sorting/scratch.h"

#include "sorting/run_words.h"
#include "sorting/settle_ties.h"

namespace orv2_geo::sorting {

std::span<const std::uint64_t> Scratch::sort_words(const Packing& packing,
                                                   std::int64_t first) noexcept {
  if (!seem_tied(packing, words())) return {};
  if (run_words(packing, words(), spare(), first)) return spare();
  // Back in the order of their positions.
  for (const std::uint64_t word : words()) spare()[packing.position(word)] = word;
  std::copy(spare().begin(), spare().end(), words().begin());
  return {};
}

void Scratch::order_words(const Packing& packing, std::int64_t first,
                          std::span<std::uint32_t> order) noexcept {
  if (const auto sorted = sort_words(packing, first); !sorted.empty()) {
    std::transform(sorted.begin(), sorted.end(), order.begin(),
                   [&](std::uint64_t word) { return packing.position(word); });
    return;
  }
  write_order(packing, sort_packed(packing, words(), spare()), order.data());
  settle_ties(order, first, all());
}

}  // namespace orv2_geo::sorting
