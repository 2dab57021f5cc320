// nearly_sorted.h: elements that come in order, or nearly.
#pragma once

#include <algorithm>
#include <cstddef>
#include <span>

namespace orv2_geo::sorting {

/// Sorts elements that come in order but for a few, as measured points with one wrong
/// coordinate do. False, with the elements as they were, where too many stand out of
/// order. `spare` is as long as `elements`. Of elements of which `less` takes none for
/// the lower one, any may come first.
///
///   | best | usual | worst | memory     | stable |
///   |------|-------|-------|------------|--------|
///   | n    | n     | n     | n elements | no     |
template <class Element, class Less>
bool merge_few_in(std::span<Element> elements, std::span<Element> spare, Less less) {
  const std::size_t most = elements.size() / 64;
  std::size_t kept = 0;   // in front of `spare`, in order
  std::size_t taken = 0;  // at its end
  for (const Element& element : elements) {
    if (kept == 0 || !less(element, spare[kept - 1])) {
      spare[kept++] = element;
      continue;
    }
    // One of the two stands out of order: both are taken out.
    taken += 2;
    if (taken > most) return false;
    spare[spare.size() - taken + 1] = spare[--kept];
    spare[spare.size() - taken] = element;
  }
  const auto in_order = spare.first(kept);
  const auto others = spare.last(taken);
  std::sort(others.begin(), others.end(), less);
  std::merge(in_order.begin(), in_order.end(), others.begin(), others.end(), elements.begin(),
             less);
  return true;
}

/// The same, of elements in descending order too.
template <class Element, class Less>
bool sort_if_nearly_sorted(std::span<Element> elements, std::span<Element> spare, Less less) {
  if (std::is_sorted(elements.begin(), elements.end(), less)) return true;
  if (std::is_sorted(elements.rbegin(), elements.rend(), less)) {
    std::reverse(elements.begin(), elements.end());
    return true;
  }
  return merge_few_in(elements, spare, less);
}

}  // namespace orv2_geo::sorting
