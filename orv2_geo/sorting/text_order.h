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
///   | usual                       | worst               | memory                          |
///   |-----------------------------|---------------------|---------------------------------|
///   | n, and n log n of the texts | n log n comparisons | 60 bytes a text, a byte a       |
///   | alike in their first part   | of texts            | character more beyond twelve,   |
///   |                             |                     | and the keys of ties            |
///
/// Texts that cannot be read by characters (prepared_texts.h) are compared as a whole:
/// while they are few, with log n of the others alone.
std::vector<std::uint32_t> text_order(std::span<const Text* const> texts, std::int64_t first);

}  // namespace orv2_geo::sorting
