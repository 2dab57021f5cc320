// Sorts of texts, in place or through an index.
#include <optional>
#include <utility>
#include <vector>

#include "orv2_geo/frame/memory.h"
#include "orv2_geo/platform/text_services.h"
#include "orv2_geo/sorting/mOrdena.h"
#include "orv2_geo/sorting/quicksort.h"
#include "orv2_geo/sorting/ranges.h"
#include "orv2_geo/sorting/text_order.h"

namespace orv2_geo {

namespace {

using sorting::Range;

bool comes_after(const Text& a, const Text& b) {
  return text_services::compare(a.view(), b.view()) > 0;
}

// A text that moves by exchanges alone: handles are moved, a text is never copied,
// and at every point where a failure can leave each is in one place.
class HeldText {
 public:
  HeldText(StringArray& array, std::int32_t at) : array_(array), at_(at) {}

  bool is_above(std::int32_t i) const { return comes_after(array_(at_), array_(i)); }
  bool is_below(std::int32_t i) const { return comes_after(array_(i), array_(at_)); }
  void shift(std::int32_t i) { settle(i); }
  void put(std::int32_t) {}  // the gap is where it is
  void settle(std::int32_t j) {
    array_(at_).swap(array_(j));
    at_ = j;
  }

 private:
  StringArray& array_;
  std::int32_t at_;
};

struct TextsInPlace {
  StringArray& array;
  bool above(std::int32_t i, std::int32_t j) const { return comes_after(array(i), array(j)); }
  void swap(std::int32_t i, std::int32_t j) { array(i).swap(array(j)); }
  auto hold(std::int32_t k) {
    (void)array(k);
    return HeldText(array, k);
  }
};

struct TextsByIndex {
  const StringArray& array;
  LongArray& index;
  const Text& key(std::int32_t k) const { return array(index(k)); }
  bool above(std::int32_t i, std::int32_t j) const { return comes_after(key(i), key(j)); }
  void swap(std::int32_t i, std::int32_t j) { std::swap(index(i), index(j)); }

  struct Held {
    TextsByIndex& elements;
    std::int32_t at;
    std::int32_t entry;
    const Text& key;
    bool is_above(std::int32_t i) const { return comes_after(key, elements.key(i)); }
    bool is_below(std::int32_t i) const { return comes_after(elements.key(i), key); }
    void shift(std::int32_t i) { elements.index(i + 1) = elements.index(i); }
    void put(std::int32_t k) { elements.index(k) = entry; }
    void settle(std::int32_t j) {
      elements.index(at) = elements.index(j);
      put(j);
    }
  };
  auto hold(std::int32_t k) { return Held{*this, k, index(k), key(k)}; }
};

// The quick way: the positions of the moving texts or entries in their order. Nothing
// where a text is missing, subscripts could overflow or there is no memory; nothing
// has been changed then.
using QuickOrder = std::optional<std::vector<std::uint32_t>>;

QuickOrder quick_order(std::span<const Text> moving, std::int32_t first) {
  return if_memory_allows([&]() -> QuickOrder {
    if (moving.empty()) return std::nullopt;
    std::vector<const Text*> keys(moving.size());
    for (std::size_t p = 0; p < keys.size(); ++p) keys[p] = &moving[p];
    return sorting::text_order(keys, first);
  });
}

QuickOrder quick_order(const StringArray& array, std::span<const std::int32_t> moving,
                       std::int32_t first) {
  return if_memory_allows([&]() -> QuickOrder {
    if (moving.empty()) return std::nullopt;
    std::vector<const Text*> keys(moving.size());
    for (std::size_t p = 0; p < keys.size(); ++p) {
      keys[p] = array.row(moving[p], moving[p]);
      if (keys[p] == nullptr) return std::nullopt;
    }
    return sorting::text_order(keys, first);
  });
}

}  // namespace

void mOrdena::Ordena_StringArray(StringArray& TheArray, const std::int32_t& LowerBound,
                                 const std::int32_t& UpperBound) {
  const Range range = {sorting::lower_bound_of(TheArray, LowerBound),
                       sorting::upper_bound_of(TheArray, UpperBound)};
  const std::span<Text> moving = sorting::movable(TheArray, range);
  const auto order = quick_order(moving, range.lo);
  if (order && sorting::rearrange(moving, *order)) return;
  sorting::quicksort(TextsInPlace{TheArray}, range);
}

void mOrdena::Ordena_StringIndexArray(const StringArray& TheArray, LongArray& TheIndex,
                                      const std::int32_t& LowerBound,
                                      const std::int32_t& UpperBound) {
  const Range range = {sorting::lower_bound_of(TheIndex, LowerBound),
                       sorting::upper_bound_of(TheIndex, UpperBound)};
  const std::span<std::int32_t> moving = sorting::movable(TheIndex, range);
  const auto order = quick_order(TheArray, moving, range.lo);
  if (order && sorting::rearrange(moving, *order)) return;
  sorting::quicksort(TextsByIndex{TheArray, TheIndex}, range);
}

}  // namespace orv2_geo
