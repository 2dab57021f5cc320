// Sorts of doubles by their keys.
#include <algorithm>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "orv2_geo/frame/checked_math.h"
#include "orv2_geo/frame/counted.h"
#include "orv2_geo/frame/memory.h"
#include "orv2_geo/platform/text_services.h"
#include "orv2_geo/sorting/double_keys.h"
#include "orv2_geo/sorting/double_order.h"
#include "orv2_geo/sorting/mOrdena.h"
#include "orv2_geo/sorting/radix_sort.h"
#include "orv2_geo/sorting/ranges.h"

namespace orv2_geo {

namespace {

using sorting::first_values;

Text key_text(double value) {
  if (Checked(value) < 0.0) {
    return text_services::default_text(Checked(value) + sorting::offset_below_zero);
  }
  return text_services::default_text(Checked(value) + sorting::offset_from_zero);
}

// Value by value: the first that is missing or NaN fails.
void index_by_texts(const DoubleArray& DoubleA, LongArray& TheIndex, std::int32_t upper) {
  const bool all_there = !first_values(DoubleA, upper).empty();
  StringArray Keys(0, all_there ? upper : 0);
  for (const std::int32_t i : counted(1, upper)) {
    Text key = key_text(DoubleA(i));
    if (all_there) Keys(i) = std::move(key);
    TheIndex(i) = i;
  }
  mOrdena::Ordena_StringIndexArray(Keys, TheIndex, 1, upper);
}

double number_for(double before, double key_number) {
  // By what stood there before, not by where the key came from: only positive
  // values come back as they were.
  if (Checked(before) > 0.0) return Checked(key_number) - sorting::offset_from_zero;
  return -Checked(key_number) - sorting::offset_below_zero;
}

// The keys of values, sorted. Nothing where texts must be made or there is no memory.
class SortedKeys {
 public:
  static std::optional<SortedKeys> of(std::span<const double> values) {
    const auto found = sorting::extremes_in_span(values);
    if (!found) return std::nullopt;
    return if_memory_allows(
        [&] { return std::optional(SortedKeys(values, key(found->lowest), key(found->highest))); });
  }

  // The sorted keys stay where they are when the owner moves.
  SortedKeys(SortedKeys&&) noexcept = default;

  /// The number that the p-th key stands for.
  double number(std::size_t p) const {
    return sorting::number_of_key(static_cast<std::int64_t>(layout_.key(sorted_[p])));
  }

 private:
  static std::uint64_t key(double value) {
    return static_cast<std::uint64_t>(sorting::key_in_span(value));
  }

  SortedKeys(std::span<const double> values, std::uint64_t lowest, std::uint64_t highest)
      : layout_(lowest, highest, without_positions), words_(values.size()), spare_(values.size()) {
    std::transform(values.begin(), values.end(), words_.begin(),
                   [&](double value) { return layout_.word(key(value), 0); });
    sorted_ = sorting::radix_sort(layout_, words_, spare_);
  }

  static constexpr std::size_t without_positions = 1;

  sorting::WordLayout layout_;
  std::vector<std::uint64_t> words_;
  std::vector<std::uint64_t> spare_;
  std::span<const std::uint64_t> sorted_;  // one of the two, which keep their memory
};

void write_numbers(const SortedKeys& sorted, DoubleArray& DoubleA, std::int32_t upper) {
  double* const values = DoubleA.row(1, upper);
  const auto count = static_cast<std::size_t>(upper);
  for (std::size_t p = 0; p < count; ++p) values[p] = number_for(values[p], sorted.number(p));
}

void sort_by_texts(DoubleArray& DoubleA, std::int32_t upper) {
  const bool all_there = !first_values(DoubleA, upper).empty();
  StringArray Keys(0, all_there ? upper : 0);
  for (const std::int32_t i : counted(1, upper)) {
    Text key = key_text(DoubleA(i));
    if (all_there) Keys(i) = std::move(key);
  }
  mOrdena::Ordena_StringArray(Keys, 1, upper);
  for (const std::int32_t i : counted(1, upper)) {
    DoubleA(i) = number_for(DoubleA(i), text_services::number_from_text(Keys(i).view()));
  }
}

// The upper end of a sort of doubles. The lower bound is asked for, which can
// fail, and then is 1 whatever it says. The keys are numbered from 0, so it is not below.
std::int32_t upper_end(const DoubleArray& DoubleA, std::int32_t lower, std::int32_t upper) {
  (void)sorting::lower_bound_of(DoubleA, lower);
  const std::int32_t end = sorting::upper_bound_of(DoubleA, upper);
  if (end < 0) raise(failure::subscript_out_of_range);
  return end;
}

}  // namespace

void mOrdena::Ordena_Double_Index_Array(const DoubleArray& DoubleA, LongArray& TheIndex,
                                        const std::int32_t& LowerBound,
                                        const std::int32_t& UpperBound) {
  const std::int32_t upper = upper_end(DoubleA, LowerBound, UpperBound);
  TheIndex.size(0, upper);
  if (auto order = sorting::DoubleOrder::of(first_values(DoubleA, upper))) {
    return order->write_numbers({&TheIndex(1), static_cast<std::size_t>(upper)});
  }
  index_by_texts(DoubleA, TheIndex, upper);
}

void mOrdena::Ordena_Double_Array(DoubleArray& DoubleA, const std::int32_t& LowerBound,
                                  const std::int32_t& UpperBound) {
  const std::int32_t upper = upper_end(DoubleA, LowerBound, UpperBound);
  if (const auto sorted = SortedKeys::of(first_values(DoubleA, upper))) {
    return write_numbers(*sorted, DoubleA, upper);
  }
  sort_by_texts(DoubleA, upper);
}

}  // namespace orv2_geo
