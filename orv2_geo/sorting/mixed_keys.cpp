#include "orv2_geo/sorting/mixed_keys.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <set>
#include <utility>

#include "orv2_geo/frame/checked_math.h"
#include "orv2_geo/frame/run_failure.h"
#include "orv2_geo/platform/text_services.h"
#include "orv2_geo/sorting/double_order.h"

namespace orv2_geo::sorting {

namespace {

// Finding the place of one costs as much as the texts of so many values.
constexpr std::size_t values_a_stray = 256;

std::u32string collated_key(std::uint64_t closed) {
  const Text text = text_services::default_text(number_of_key(opened(closed)));
  return text_services::collation_key(text.view());
}

}  // namespace

Text key_text(double value) {
  const double offset = Checked(value) < 0.0 ? offset_below_zero : offset_from_zero;
  return text_services::default_text(Checked(value) + offset);
}

std::optional<MixedKeys> MixedKeys::of(std::span<const double> values) noexcept try {
  MixedKeys keys;
  if (values.empty() || !keys.read(values)) return std::nullopt;
  return keys;
} catch (const std::bad_alloc&) {
  return std::nullopt;
} catch (const RunFailure&) {
  return std::nullopt;
}

bool MixedKeys::read(std::span<const double> values) {
  Extremes found = {beyond_span, lowest_in_span};
  std::set<double> beyond;
  for (std::size_t first = 0; first < values.size(); first += keys_a_block) {
    const auto block = values.subspan(first, std::min(keys_a_block, values.size() - first));
    if (const auto of_block = extremes_in_span(block)) {
      found = {std::min(found.lowest, of_block->lowest),
               std::max(found.highest, of_block->highest)};
      continue;
    }
    for (const double value : block) {
      if (has_number_key(value)) {
        found = {std::min(found.lowest, value), std::max(found.highest, value)};
      } else {
        if (std::isnan(value)) return false;
        beyond.insert(value);
        if (beyond.size() > values.size() / values_a_stray) return false;
      }
    }
  }
  if (found.lowest > found.highest) found = {0.0, 0.0};  // any in the span will do
  lowest_ = closed_up(key_in_span(found.lowest));
  highest_ = closed_up(key_in_span(found.highest));
  std::vector<Stray> strays;
  for (const double value : beyond) {
    Text text = key_text(value);
    std::u32string collated = text_services::collation_key(text.view());
    strays.push_back({value, std::move(text), std::move(collated)});
  }
  return find_places(std::move(strays));
}

// False where two different texts count as equal.
bool MixedKeys::find_places(std::vector<Stray> strays) {
  std::ranges::sort(strays, {}, &Stray::collated);
  const Stray* before = nullptr;
  for (Stray& stray : strays) {
    if (before != nullptr && before->collated == stray.collated) {
      if (before->text != stray.text) return false;
    } else {
      places_.push_back(first_behind(stray));
      if (places_.back() <= highest_ && collated_key(places_.back()) == stray.collated)
        return false;
      meanings_.push_back(meaning_of(stray.text));
    }
    beyond_.push_back({stray.value, places_.back() + places_.size() - 1});
    before = &stray;
  }
  std::ranges::sort(beyond_, {}, &ValueBeyond::value);
  return true;
}

// By bisection; one beyond the highest where none is.
std::uint64_t MixedKeys::first_behind(const Stray& stray) const {
  std::uint64_t low = lowest_;
  std::uint64_t high = highest_ + 1;
  while (low < high) {
    const std::uint64_t middle = (low + high) / 2;
    if (collated_key(middle) < stray.collated) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  return low;
}

std::uint64_t MixedKeys::key_beyond(double value) const noexcept {
  return std::ranges::lower_bound(beyond_, value, {}, &ValueBeyond::value)->key;
}

std::uint64_t MixedKeys::moved_up(std::uint64_t key) const noexcept {
  constexpr std::size_t few = 4;  // looked at one by one
  const auto is_behind = [key](std::uint64_t place) { return place <= key; };
  const auto texts_before =
      places_.size() <= few ? std::ranges::count_if(places_, is_behind)
                            : std::ranges::partition_point(places_, is_behind) - places_.begin();
  return key + static_cast<std::uint64_t>(texts_before);
}

std::uint64_t MixedKeys::key(double value) const noexcept {
  return has_number_key(value) ? moved_up(closed_up(key_in_span(value))) : key_beyond(value);
}

void MixedKeys::write(std::span<const double> values, std::uint64_t* keys) const noexcept {
  while (!values.empty()) {
    const std::size_t count = std::min(keys_a_block, values.size());
    const std::span block = values.first(count);
    if (count == keys_a_block && multiply_keys(block.first<keys_a_block>(), keys)) {
      if (!places_.empty()) {
        std::transform(keys, keys + count, keys, [&](std::uint64_t key) { return moved_up(key); });
      }
    } else {
      std::transform(block.begin(), block.end(), keys, [&](double value) { return key(value); });
    }
    values = values.subspan(count);
    keys += count;
  }
}

// Asked for beforehand: where memory is refused nothing has been written yet.
MixedKeys::Meaning MixedKeys::meaning_of(const Text& text) try {
  return {text_services::number_from_text(text.view()), 0};
} catch (const RunFailure& stop) {
  if (stop.number() == failure::out_of_memory) throw;
  return {0.0, stop.number()};
}

double MixedKeys::number_of_text(std::size_t text) const {
  const Meaning& meaning = meanings_[text];
  if (meaning.failure != 0) raise(meaning.failure);
  return meaning.number;
}

}  // namespace orv2_geo::sorting
