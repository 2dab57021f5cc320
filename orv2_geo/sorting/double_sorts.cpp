// Sorts of doubles by their keys.
#include <algorithm>
#include <bit>
#include <functional>
#include <optional>
#include <span>
#include <utility>

#include "orv2_geo/frame/checked_math.h"
#include "orv2_geo/frame/counted.h"
#include "orv2_geo/frame/memory.h"
#include "orv2_geo/platform/text_services.h"
#include "orv2_geo/sorting/double_keys.h"
#include "orv2_geo/sorting/double_order.h"
#include "orv2_geo/sorting/key_order.h"
#include "orv2_geo/sorting/mOrdena.h"
#include "orv2_geo/sorting/mixed_keys.h"
#include "orv2_geo/sorting/radix_sort.h"
#include "orv2_geo/sorting/ranges.h"

namespace orv2_geo {

namespace {

using sorting::first_values;
using sorting::key_text;

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

// False, with nothing written, where texts must be made or there is no memory.
bool write_order_by_keys(std::span<const double> values, LongArray& TheIndex) {
  const auto mixed = sorting::MixedKeys::of(values);
  if (!mixed) return false;
  const auto keys = buffer_if_any<std::uint64_t>(values.size());
  if (!keys) return false;
  mixed->write(values, keys.get());
  const std::span numbers(&TheIndex(1), values.size());
  // Positions are written where the numbers from 1 are to stand.
  const std::span positions(reinterpret_cast<std::uint32_t*>(numbers.data()), numbers.size());
  if (!sorting::write_order({keys.get(), values.size()}, mixed->lowest(), mixed->highest(), 1,
                            positions)) {
    return false;
  }
  for (std::int32_t& number : numbers) ++number;
  return true;
}

double number_for(double before, double key_number) {
  // By what stood there before, not by where the key came from: only positive
  // values come back as they were.
  if (Checked(before) > 0.0) return Checked(key_number) - sorting::offset_from_zero;
  return -Checked(key_number) - sorting::offset_below_zero;
}

// The same without checks, for a key of a value in the span: nothing can overflow.
double number_in_span_for(double before, double key_number) {
  return before > 0.0 ? key_number - sorting::offset_from_zero
                      : -key_number - sorting::offset_below_zero;
}

// The keys of values, sorted. Nothing where texts must be made or there is no memory.
class SortedKeys {
 public:
  static std::optional<SortedKeys> of(std::span<const double> values) {
    auto mixed = sorting::MixedKeys::of(values);
    if (!mixed) return std::nullopt;
    SortedKeys sorted(std::move(*mixed), values.size());
    if (!sorted.keys_ || !sorted.spare_) return std::nullopt;
    sorted.sort(values);
    return sorted;
  }

  /// Writes the numbers that the keys stand for, in their order. Failures: 13 where one
  /// stands for none, 6, those before being written.
  void write_numbers(std::span<double> values) const {
    std::size_t p = 0;
    for (std::size_t text = 0; text < mixed_.texts_beyond(); ++text) {
      const std::uint64_t key = mixed_.key_of_text(text);
      p = write_in_span(values, p, place_of(key), text);
      for (; p < values.size() && sorted_[p] == key; ++p) {
        values[p] = number_for(values[p], mixed_.number_of_text(text));
      }
    }
    write_in_span(values, p, values.size(), mixed_.texts_beyond());
  }

 private:
  SortedKeys(sorting::MixedKeys&& mixed, std::size_t count)
      : mixed_(std::move(mixed)),
        keys_(buffer_if_any<std::uint64_t>(count)),
        spare_(buffer_if_any<std::uint64_t>(count)) {}

  void sort(std::span<const double> values) {
    mixed_.write(values, keys_.get());
    const std::uint64_t lowest = mixed_.lowest();
    sorted_ = sorting::radix_sort(
        std::span(keys_.get(), values.size()), std::span(spare_.get(), values.size()),
        static_cast<int>(std::bit_width(mixed_.highest() - lowest)),
        [lowest](std::uint64_t key) { return key - lowest; }, std::less());
  }

  // Of the first key that is not below.
  std::size_t place_of(std::uint64_t key) const {
    return static_cast<std::size_t>(std::ranges::lower_bound(sorted_, key) - sorted_.begin());
  }

  // At the places from p to end, behind so many texts of values beyond the span.
  std::size_t write_in_span(std::span<double> values, std::size_t p, std::size_t end,
                            std::size_t texts_before) const {
    for (; p < end; ++p) {
      const double number = sorting::MixedKeys::number_in_span(sorted_[p], texts_before);
      values[p] = number_in_span_for(values[p], number);
    }
    return end;
  }

  sorting::MixedKeys mixed_;
  Buffer<std::uint64_t> keys_;
  Buffer<std::uint64_t> spare_;
  std::span<const std::uint64_t> sorted_;  // one of the two, which keep their memory
};

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
  const std::span<const double> values = first_values(DoubleA, upper);
  if (auto order = sorting::DoubleOrder::of(values)) {
    return order->write_numbers({&TheIndex(1), values.size()});
  }
  if (write_order_by_keys(values, TheIndex)) return;
  index_by_texts(DoubleA, TheIndex, upper);
}

void mOrdena::Ordena_Double_Array(DoubleArray& DoubleA, const std::int32_t& LowerBound,
                                  const std::int32_t& UpperBound) {
  const std::int32_t upper = upper_end(DoubleA, LowerBound, UpperBound);
  if (const auto sorted = SortedKeys::of(first_values(DoubleA, upper))) {
    return sorted->write_numbers({DoubleA.row(1, upper), static_cast<std::size_t>(upper)});
  }
  sort_by_texts(DoubleA, upper);
}

}  // namespace orv2_geo
