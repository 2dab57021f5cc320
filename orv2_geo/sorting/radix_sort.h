// radix_sort.h: words sorted by their keys.
#pragma once

#include <cstdint>
#include <span>

#include "orv2_geo/sorting/word_layout.h"

namespace orv2_geo::sorting {

/// Sorts words without marks that come in the order of their positions. The sorted
/// words are in the span that comes back, one of the two; `spare` is as long as
/// `words`.
///
///   | best | usual | worst                                     | memory   | stable |
///   |------|-------|-------------------------------------------|----------|--------|
///   | n    | d n   | d n, d at most 6 digits of 11 bits a key  | n words  | yes    |
///
/// Up to 512 words are sorted by comparisons, in n log n steps.
std::span<std::uint64_t> radix_sort(const WordLayout& layout, std::span<std::uint64_t> words,
                                    std::span<std::uint64_t> spare) noexcept;

}  // namespace orv2_geo::sorting
