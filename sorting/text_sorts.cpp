// Sorts of texts, in place or through an index.
#include <algorithm>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "platform/prepared_texts.h"
#include "platform/text_services.h"
#include "sorting/bounds.h"
#include "sorting/kernel.h"
#include "sorting/mOrdena.h"
#include "sorting/scratch.h"

namespace orv2_geo {

namespace {

using sorting::Range;

// Exchanges move handles: a text is never copied, and none is ever in two places.
struct TextsInPlace {
  StringArray& array;
  const Text& key(std::int32_t k) const { return array(k); }
  static bool above(const Text& a, const Text& b) {
    return text_services::compare(a.view(), b.view()) > 0;
  }
  void swap(std::int32_t i, std::int32_t j) { array(i).swap(array(j)); }
};

struct TextsByIndex {
  const StringArray& array;
  LongArray& index;
  const Text& key(std::int32_t k) const { return array(index(k)); }
  static bool above(const Text& a, const Text& b) { return TextsInPlace::above(a, b); }
  void swap(std::int32_t i, std::int32_t j) { std::swap(index(i), index(j)); }
};

// A text's place among the others as far as one word can tell.
struct Candidate {
  std::uint64_t prefix;
  std::uint32_t position;
};
static_assert(sizeof(Candidate) == 2 * sizeof(std::uint64_t));

// The positions of the texts in the order in which the algorithm leaves them at
// the subscripts from `first` on.
std::vector<std::uint32_t> order_of(std::span<const Text* const> texts, std::int64_t first) {
  PreparedTexts prepared(texts);
  std::vector<Candidate> sorted(texts.size());
  for (std::uint32_t p = 0; p < texts.size(); ++p) sorted[p] = {prepared.prefix(p), p};
  std::sort(sorted.begin(), sorted.end(), [&](const Candidate& a, const Candidate& b) {
    if (a.prefix != b.prefix) return a.prefix < b.prefix;
    return prepared.compare(a.position, b.position) < 0;
  });
  std::vector<std::uint32_t> order(texts.size());
  for (std::size_t p = 0; p < sorted.size(); ++p) {
    const bool tied = p != 0 && sorted[p - 1].prefix == sorted[p].prefix &&
                      prepared.compare(sorted[p - 1].position, sorted[p].position) == 0;
    order[p] = sorted[p].position | (tied ? sorting::tied_mark : 0);
  }
  sorting::Scratch scratch(texts.size());
  sorting::settle_ties(order, first, scratch.all());
  return order;
}

// Both: false, and nothing changed, where the algorithm itself must be run.
bool sort_at_once(StringArray& array, Range range) try {
  Text* texts = array.row(range.lo, range.hi);
  if (texts == nullptr || !sorting::is_moderate(range)) return false;
  const std::span<Text> moving(texts, sorting::length(range));
  std::vector<const Text*> keys(moving.size());
  for (std::size_t p = 0; p < keys.size(); ++p) keys[p] = &moving[p];
  const std::vector<std::uint32_t> order = order_of(keys, range.lo);
  std::vector<Text> copy(moving.size());
  sorting::rearrange(moving, std::span<const std::uint32_t>(order), copy.data());
  return true;
} catch (const std::bad_alloc&) {
  return false;
}

bool sort_index_at_once(const StringArray& array, LongArray& index, Range range) try {
  std::int32_t* entries = index.row(range.lo, range.hi);
  if (entries == nullptr || !sorting::is_moderate(range)) return false;
  const std::span<std::int32_t> moving(entries, sorting::length(range));
  std::vector<const Text*> keys(moving.size());
  for (std::size_t p = 0; p < keys.size(); ++p) {
    keys[p] = array.row(moving[p], moving[p]);
    if (keys[p] == nullptr) return false;
  }
  const std::vector<std::uint32_t> order = order_of(keys, range.lo);
  std::vector<std::int32_t> copy(moving.size());
  sorting::rearrange(moving, std::span<const std::uint32_t>(order), copy.data());
  return true;
} catch (const std::bad_alloc&) {
  return false;
}

}  // namespace

void mOrdena::Ordena_StringArray(StringArray& TheArray, const std::int32_t& LowerBound,
                                 const std::int32_t& UpperBound) {
  const Range range = {sorting::lower_bound_of(TheArray, LowerBound),
                       sorting::upper_bound_of(TheArray, UpperBound)};
  if (sort_at_once(TheArray, range)) return;
  sorting::sort_by_steps(TextsInPlace{TheArray}, range);
}

void mOrdena::Ordena_StringIndexArray(const StringArray& TheArray, LongArray& TheIndex,
                                      const std::int32_t& LowerBound,
                                      const std::int32_t& UpperBound) {
  const Range range = {sorting::lower_bound_of(TheIndex, LowerBound),
                       sorting::upper_bound_of(TheIndex, UpperBound)};
  if (sort_index_at_once(TheArray, TheIndex, range)) return;
  sorting::sort_by_steps(TextsByIndex{TheArray, TheIndex}, range);
}

}  // namespace orv2_geo
