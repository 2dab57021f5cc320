// thinning.h: which points of a large survey a drawing shows.
#pragma once

#include <cstddef>
#include <vector>

#include "survey_report/labels.h"

namespace survey_report {

/// More symbols are not drawn on a sheet.
constexpr std::size_t most_symbols = 20000;

/// Of places on a sheet, by their order, those to be drawn, in rising order: all where they
/// are no more than `most`. Else of those that share a square of the area the first in
/// `order`; a square is as wide as a symbol, or wider until they are no more than `most`.
std::vector<std::size_t> thinned(const std::vector<Place>& places,
                                 const std::vector<std::size_t>& order, const Rect& area,
                                 double symbol, std::size_t most);

}  // namespace survey_report
