#include "orv2_geo/sorting/double_order.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "orv2_geo/frame/memory.h"
#include "orv2_geo/sorting/double_keys.h"

namespace orv2_geo::sorting {

namespace {

std::uint64_t word_key(double value) { return closed_up(key_in_span(value)); }

bool is_in_span(double value) { return value >= lowest_in_span && value < beyond_span; }  // no NaN

using Block = std::array<std::uint64_t, keys_a_block>;

// The words of a block whose keys multiplication tells; says whether it does.
bool multiply_words(const WordLayout& layout, std::span<const double, keys_a_block> values,
                    std::size_t first, std::uint64_t* words) {
  Block keys;
  if (!multiply_keys(values, keys.data())) return false;
  std::uint64_t above_lowest = 0;
  for (std::size_t k = 0; k < keys_a_block; ++k) {
    above_lowest |= keys[k] - layout.lowest();  // what of it a word would lose
    words[k] = layout.word(keys[k], first + k);
  }
  return above_lowest >> layout.key_bits() == 0;
}

// The words of a block or less, which has the positions from `first` on. False when
// a value has no key that they can hold.
bool make_words(const WordLayout& layout, std::span<const double> values, std::size_t first,
                std::span<std::uint64_t> words) {
  if (values.size() == keys_a_block &&
      multiply_words(layout, values.first<keys_a_block>(), first, words.data())) {
    return true;
  }
  for (std::size_t k = 0; k < values.size(); ++k) {
    if (!is_in_span(values[k])) return false;
    const std::uint64_t key = word_key(values[k]);
    if (!layout.holds(key)) return false;
    words[k] = layout.word(key, first + k);
  }
  return true;
}

}  // namespace

std::optional<Extremes> extremes_in_span(std::span<const double> values) noexcept {
  Extremes found = {beyond_span, lowest_in_span};
  if (values.empty()) return std::nullopt;
  constexpr std::size_t block = 4096;  // a value beyond the span is soon met
  for (; !values.empty(); values = values.subspan(std::min(block, values.size()))) {
    const auto of_block = extremes_of(values.first(std::min(block, values.size())));
    if (!of_block) return std::nullopt;
    found.lowest = std::min(found.lowest, of_block->lowest);
    found.highest = std::max(found.highest, of_block->highest);
    if (found.lowest < lowest_in_span || found.highest >= beyond_span) return std::nullopt;
  }
  if (key_in_span(found.highest) >= first_of_ten_digits) return std::nullopt;
  return found;
}

std::optional<DoubleOrder> DoubleOrder::of(std::span<const double> values,
                                           int most_mark_bits) noexcept {
  const auto found = extremes_in_span(values);
  if (!found) return std::nullopt;
  WordLayout layout(word_key(found->lowest), word_key(found->highest), values.size());
  if (!layout.fits()) return std::nullopt;
  layout.add_marks(most_mark_bits);
  return if_memory_allows([&] { return std::optional(DoubleOrder(layout, values)); });
}

DoubleOrder::DoubleOrder(const WordLayout& layout, std::span<const double> values)
    : layout_(layout), words_(values.size()) {
  const std::span<std::uint64_t> words = words_.words();
  for (std::size_t first = 0; first < words.size(); first += keys_a_block) {
    const std::size_t count = std::min(keys_a_block, words.size() - first);
    make_words(layout_, values.subspan(first, count), first, words.subspan(first, count));
  }
}

bool DoubleOrder::are_of(std::span<const double> values, std::size_t first) noexcept {
  if (values.size() > words().size() - first) return false;
  const std::span<const std::uint64_t> words = this->words().subspan(first, values.size());
  Block again;
  for (std::size_t k = 0; k < words.size(); k += keys_a_block) {
    const std::size_t count = std::min(keys_a_block, words.size() - k);
    const std::span now = std::span(again).first(count);
    if (!make_words(layout_, values.subspan(k, count), first + k, now)) return false;
    if (!std::ranges::equal(now, words.subspan(k, count))) return false;
  }
  return true;
}

void DoubleOrder::clear_marks() noexcept {
  for (std::uint64_t& word : words()) word &= ~layout_.mark_mask();
}

bool DoubleOrder::sort() noexcept {
  if (words_.sort_words(layout_, 1)) return true;
  clear_marks();
  return false;
}

void DoubleOrder::write_numbers(std::span<std::int32_t> numbers) noexcept {
  words_.write_positions(layout_, 1,
                         {reinterpret_cast<std::uint32_t*>(numbers.data()), numbers.size()}, 1);
}

std::span<const double> first_values(const DoubleArray& array, std::int32_t upper) noexcept {
  const double* values = array.row(1, upper);
  if (values == nullptr) return {};
  return {values, static_cast<std::size_t>(upper)};
}

}  // namespace orv2_geo::sorting
