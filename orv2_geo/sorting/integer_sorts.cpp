// Sorts of 32-bit numbers, in place or through an index.
#include <optional>
#include <utility>
#include <vector>

#include "orv2_geo/frame/memory.h"
#include "orv2_geo/frame/overlap.h"
#include "orv2_geo/sorting/mOrdena.h"
#include "orv2_geo/sorting/quicksort.h"
#include "orv2_geo/sorting/radix_sort.h"
#include "orv2_geo/sorting/ranges.h"
#include "orv2_geo/sorting/word_order.h"

namespace orv2_geo {

namespace {

using sorting::Range;

// A 32-bit element that is out of its array, and the key that it had there.
template <class Elements>
class HeldNumber {
 public:
  HeldNumber(Elements& elements, std::int32_t at)
      : elements_(elements), at_(at), element_(elements.moving(at)), key_(elements.key(at)) {}

  bool is_above(std::int32_t i) const { return key_ > elements_.key(i); }
  bool is_below(std::int32_t i) const { return key_ < elements_.key(i); }
  void shift(std::int32_t i) { elements_.moving(i + 1) = elements_.moving(i); }
  void put(std::int32_t k) { elements_.moving(k) = element_; }
  void settle(std::int32_t j) {
    elements_.moving(at_) = elements_.moving(j);
    put(j);
  }

 private:
  Elements& elements_;
  std::int32_t at_;
  std::int32_t element_;
  std::int32_t key_;
};

struct NumbersInPlace {
  LongArray& array;
  std::int32_t& moving(std::int32_t k) { return array(k); }
  std::int32_t key(std::int32_t k) const { return array(k); }
  bool above(std::int32_t i, std::int32_t j) const { return key(i) > key(j); }
  void swap(std::int32_t i, std::int32_t j) { std::swap(array(i), array(j)); }
  auto hold(std::int32_t k) { return HeldNumber<NumbersInPlace>(*this, k); }
};

struct NumbersByIndex {
  const LongArray& array;
  LongArray& index;
  std::int32_t& moving(std::int32_t k) { return index(k); }
  std::int32_t key(std::int32_t k) const { return array(index(k)); }
  bool above(std::int32_t i, std::int32_t j) const { return key(i) > key(j); }
  void swap(std::int32_t i, std::int32_t j) { std::swap(index(i), index(j)); }
  auto hold(std::int32_t k) { return HeldNumber<NumbersByIndex>(*this, k); }
};

// In the same order, without a sign: -1 becomes 0x7fffffff and 0 0x80000000.
std::uint64_t unsigned_key(std::int32_t key) {
  return static_cast<std::uint32_t>(key) ^ 0x80000000U;
}

// The quick way: the positions of the moving entries in their order. Nothing where
// an entry numbers nothing or is a key itself, subscripts could overflow or there is
// no memory; nothing has been changed then.
using QuickOrder = std::optional<std::vector<std::uint32_t>>;

QuickOrder quick_order(const LongArray& array, std::span<const std::int32_t> moving,
                       std::int32_t first) {
  return if_memory_allows([&]() -> QuickOrder {
    const std::span keys(array.data(), array.legal_count());
    if (moving.empty() || overlap(moving, keys)) return std::nullopt;
    const sorting::WordLayout layout(0, 0xffffffff, moving.size());
    sorting::WordOrder words(moving.size());
    for (std::size_t p = 0; p < moving.size(); ++p) {
      const std::int32_t* number = array.row(moving[p], moving[p]);
      if (number == nullptr) return std::nullopt;
      words.words()[p] = layout.word(unsigned_key(*number), p);
    }
    std::vector<std::uint32_t> order(moving.size());
    words.write_positions(layout, first, order);
    return order;
  });
}

}  // namespace

void mOrdena::Ordena_LongArray(LongArray& TheArray, const std::int32_t& LowerBound,
                               const std::int32_t& UpperBound) {
  const Range range = {sorting::lower_bound_of(TheArray, LowerBound),
                       sorting::upper_bound_of(TheArray, UpperBound)};
  const std::span<std::int32_t> numbers = sorting::movable(TheArray, range);
  if (!numbers.empty()) {
    sorting::sort_numbers(numbers);  // no one can tell equals apart
  } else {
    sorting::quicksort(NumbersInPlace{TheArray}, range);
  }
}

void mOrdena::Ordena_LongIndexArray(const LongArray& TheArray, LongArray& TheIndex,
                                    const std::int32_t& LowerBound,
                                    const std::int32_t& UpperBound) {
  // The lower bound is asked for, which can fail, and then is 1 all the same.
  (void)sorting::lower_bound_of(TheIndex, LowerBound);
  const Range range = {1, sorting::upper_bound_of(TheIndex, UpperBound)};
  const std::span<std::int32_t> moving = sorting::movable(TheIndex, range);
  const auto order = quick_order(TheArray, moving, range.lo);
  if (order && sorting::rearrange(moving, *order)) return;
  sorting::quicksort(NumbersByIndex{TheArray, TheIndex}, range);
}

}  // namespace orv2_geo
