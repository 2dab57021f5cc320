// Sorts of doubles by their keys.
#include <algorithm>
#include <memory>
#include <new>
#include <span>
#include <utility>
#include <vector>

#include "frame/checked_math.h"
#include "frame/counted.h"
#include "platform/text_services.h"
#include "sorting/bounds.h"
#include "sorting/double_keys.h"
#include "sorting/mOrdena.h"
#include "sorting/packed_doubles.h"

namespace orv2_geo {

namespace {

using sorting::first_values;
using sorting::Packing;

Text key_text(double value) {
  if (Checked(value) < 0.0) {
    return text_services::default_text(Checked(value) + sorting::offset_below_zero);
  }
  return text_services::default_text(Checked(value) + sorting::offset_from_zero);
}

// Both: false, and nothing changed, where texts must be made or there is no
// memory.
bool index_at_once(const DoubleArray& DoubleA, LongArray& TheIndex, std::int32_t upper) {
  auto packed = sorting::PackedDoubles::of(first_values(DoubleA, upper));
  if (!packed) return false;
  packed->write_order({&TheIndex(1), static_cast<std::size_t>(upper)});
  return true;
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

bool sort_at_once(DoubleArray& DoubleA, std::int32_t upper) try {
  const std::span<const double> values = first_values(DoubleA, upper);
  const auto found = sorting::extremes_in_span(values);
  if (!found) return false;
  const auto whole_key = [](double value) {
    return static_cast<std::uint64_t>(sorting::key_in_span(value));
  };
  constexpr std::size_t without_positions = 1;
  const Packing packing(whole_key(found->lowest), whole_key(found->highest), without_positions);
  std::vector<std::uint64_t> words(values.size());
  std::vector<std::uint64_t> spare(values.size());
  std::transform(values.begin(), values.end(), words.begin(),
                 [&](double value) { return packing.pack(whole_key(value), 0); });
  const auto sorted = sorting::sort_packed(packing, words, spare);
  std::transform(values.begin(), values.end(), sorted.begin(), &DoubleA(1),
                 [&](double before, std::uint64_t word) {
                   const auto key = static_cast<std::int64_t>(packing.number(word));
                   return number_for(before, sorting::number_of_key(key));
                 });
  return true;
} catch (const std::bad_alloc&) {
  return false;
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
// fail, and then is 1 whatever it says. Room for keys from 0 on must be there.
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
  if (index_at_once(DoubleA, TheIndex, upper)) return;
  index_by_texts(DoubleA, TheIndex, upper);
}

void mOrdena::Ordena_Double_Array(DoubleArray& DoubleA, const std::int32_t& LowerBound,
                                  const std::int32_t& UpperBound) {
  const std::int32_t upper = upper_end(DoubleA, LowerBound, UpperBound);
  if (sort_at_once(DoubleA, upper)) return;
  sort_by_texts(DoubleA, upper);
}

}  // namespace orv2_geo
