// text_order.h: texts in the order of the sorting algorithm.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "orv2_geo/frame/text.h"

namespace orv2_geo::sorting {

/// The positions of the texts in the order in which the algorithm leaves them at the
/// subscripts from `first` on. Throws std::bad_alloc, and RunFailure 7.
///
///   | usual                                    | worst     | memory              |
///   |------------------------------------------|-----------|---------------------|
///   | n log n comparisons of words             | n log n   | 4 words a text, and |
///   |                                          | of texts  | the keys of ties    |
std::vector<std::uint32_t> text_order(std::span<const Text* const> texts, std::int64_t first);

}  // namespace orv2_geo::sorting
