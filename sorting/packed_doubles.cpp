#include "sorting/packed_doubles.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <new>

#include "sorting/double_keys.h"

namespace orv2_geo::sorting {

namespace {

std::uint64_t number_key(double value) { return closed_up(key_in_span(value)); }

bool is_in_span(double value) { return value >= lowest_in_span && value < beyond_span; }  // no NaN

// As many words are packed together.
constexpr std::size_t stretch = 64;
using Stretch = std::array<std::uint64_t, stretch>;

// As a number without a sign: positive doubles compare like their bits.
std::uint64_t bits(double value) { return std::bit_cast<std::uint64_t>(value); }

// The words of values from zero on where a multiplication tells their keys, which
// is so for coordinates with few decimals. Says whether it does: the product is off
// by a sixteenth at most, so that the number next to it is the key when it is not
// half of one away. No branch, and no conversion: adding 2^52 leaves a double below
// that without a fraction, and with its whole number in the lowest bits.
bool multiply_keys(const Packing& packing, std::span<const double, stretch> values,
                   std::size_t first, std::uint64_t* words) {
  constexpr double two_to_52 = 4503599627370496.0;
  std::uint64_t refused = 0;  // the highest bit: something beyond its limit
  std::uint64_t above_lowest = 0;
  for (std::size_t k = 0; k < stretch; ++k) {
    const double product = (values[k] + offset_from_zero) * 1e6;
    const double whole = product + two_to_52;
    const double rest = product - (whole - two_to_52);
    refused |= bits(values[k]) | (bits(0.375) - bits(std::abs(rest)));
    const std::uint64_t key = bits(whole) - bits(two_to_52);
    above_lowest |= key - packing.lowest;  // what of it a word would lose
    words[k] = packing.pack(key, first + k);
  }
  return refused >> 63 == 0 && above_lowest >> packing.number_bits == 0;
}

// Packs a stretch or less, which has the positions from `first` on. False when a value
// has no key for which there is room.
bool pack(const Packing& packing, std::span<const double> values, std::size_t first,
          std::span<std::uint64_t> words) {
  if (values.size() == stretch &&
      multiply_keys(packing, values.first<stretch>(), first, words.data())) {
    return true;
  }
  for (std::size_t k = 0; k < values.size(); ++k) {
    if (!is_in_span(values[k])) return false;
    const std::uint64_t key = number_key(values[k]);
    if (!packing.holds(key)) return false;
    words[k] = packing.pack(key, first + k);
  }
  return true;
}

}  // namespace

std::optional<Extremes> extremes_in_span(std::span<const double> values) noexcept {
  Extremes found = {beyond_span, lowest_in_span};
  bool in_span = !values.empty();
  for (const double value : values) {
    in_span &= value >= lowest_in_span;  // NaN is not
    found.lowest = value < found.lowest ? value : found.lowest;
    found.highest = value > found.highest ? value : found.highest;
  }
  if (!in_span || found.highest >= beyond_span) return std::nullopt;
  if (key_in_span(found.highest) >= first_of_ten_digits) return std::nullopt;
  return found;
}

std::optional<PackedDoubles> PackedDoubles::of(std::span<const double> values,
                                               int most_mark_bits) noexcept try {
  const auto found = extremes_in_span(values);
  if (!found) return std::nullopt;
  Packing packing(number_key(found->lowest), number_key(found->highest), values.size());
  if (!packing.fits()) return std::nullopt;
  packing.make_room(most_mark_bits);
  return PackedDoubles(packing, values);
} catch (const std::bad_alloc&) {
  return std::nullopt;
}

PackedDoubles::PackedDoubles(const Packing& packing, std::span<const double> values)
    : packing_(packing), words_(values.size()) {
  const std::span<std::uint64_t> words = words_.words();
  for (std::size_t first = 0; first < words.size(); first += stretch) {
    const std::size_t count = std::min(stretch, words.size() - first);
    pack(packing_, values.subspan(first, count), first, words.subspan(first, count));
  }
}

bool PackedDoubles::are_of(std::span<const double> values, std::size_t first) noexcept {
  if (values.size() > words().size() - first) return false;
  const std::span<const std::uint64_t> words = this->words().subspan(first, values.size());
  Stretch again;
  for (std::size_t k = 0; k < words.size(); k += stretch) {
    const std::size_t count = std::min(stretch, words.size() - k);
    const std::span now = std::span(again).first(count);
    if (!pack(packing_, values.subspan(k, count), first + k, now)) return false;
    if (!std::ranges::equal(now, words.subspan(k, count))) return false;
  }
  return true;
}

void PackedDoubles::clear_marks() noexcept {
  for (std::uint64_t& word : words()) word &= ~packing_.mark_mask();
}

bool PackedDoubles::sort() noexcept {
  if (words_.sort_words(packing_, 1)) return true;
  clear_marks();
  return false;
}

void PackedDoubles::write_order(std::span<std::int32_t> numbers) noexcept {
  // Positions are written where the numbers from 1 are to stand.
  words_.order_words(packing_, 1,
                     {reinterpret_cast<std::uint32_t*>(numbers.data()), numbers.size()});
  for (std::int32_t& number : numbers) ++number;
}

std::span<const double> first_values(const DoubleArray& array, std::int32_t upper) noexcept {
  const double* values = array.row(1, upper);
  if (values == nullptr) return {};
  return {values, static_cast<std::size_t>(upper)};
}

}  // namespace orv2_geo::sorting
