// mixed_keys.h: keys of doubles of which a few lie beyond the span.
//
// One absurd value is enough that keys compare as texts and no longer as numbers. Where
// such values are few no text is made of the others: each is given a number between
// those of the keys before and behind its text, which are found by bisection, and all
// keys behind move up by one:
//
//   keys of values in the span (double_keys.h)   5  6     7  8
//   the text of a value beyond stands here             |
//   numbers                                      5  6  7  8  9
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "orv2_geo/frame/text.h"
#include "orv2_geo/sorting/double_keys.h"

namespace orv2_geo::sorting {

/// The text that is the key of a value. Failures: 6 at NaN, 7.
Text key_text(double value);

/// Numbers in the order of the values' keys, equal where these are.
class MixedKeys {
 public:
  /// Nothing where there are no values, one is NaN, more than a 256th as many different
  /// ones lie beyond the span, two different texts count as equal, or there is no memory.
  static std::optional<MixedKeys> of(std::span<const double> values) noexcept;

  /// Of all values.
  std::uint64_t lowest() const noexcept { return lowest_; }
  std::uint64_t highest() const noexcept { return highest_ + places_.size(); }

  /// Writes those of some of the values.
  void write(std::span<const double> values, std::uint64_t* keys) const noexcept;

  /// How many different texts of values beyond the span there are. In ascending order
  /// they are counted from 0.
  std::size_t texts_beyond() const noexcept { return places_.size(); }
  std::uint64_t key_of_text(std::size_t text) const noexcept { return places_[text] + text; }

  /// The double that such a text stands for. Failures: 13 where it stands for none, 6.
  double number_of_text(std::size_t text) const;

  /// The double that the text of a value in the span stands for, by the value's key and
  /// how many texts beyond the span come before.
  static double number_in_span(std::uint64_t key, std::size_t texts_before) noexcept {
    return number_of_key(opened(key - texts_before));
  }

 private:
  // The text of a value beyond the span, what it is to the collation, and the lowest
  // number behind it in the span.
  struct Stray {
    double value;
    Text text;
    std::u32string collated;
  };
  // What such a text stands for: a number, or the failure of asking for it.
  struct Meaning {
    double number;
    std::int32_t failure;
  };
  struct ValueBeyond {
    double value;
    std::uint64_t key;
  };

  MixedKeys() = default;
  static Meaning meaning_of(const Text& text);
  bool read(std::span<const double> values);
  bool find_places(std::vector<Stray> strays);
  std::uint64_t first_behind(const Stray& stray) const;

  std::uint64_t key(double value) const noexcept;
  std::uint64_t key_beyond(double value) const noexcept;
  std::uint64_t moved_up(std::uint64_t key) const noexcept;

  // Of values in the span, not moved.
  std::uint64_t lowest_ = 0;
  std::uint64_t highest_ = 0;

  // Different texts of values beyond, ascending: the first key in the span behind each.
  std::vector<std::uint64_t> places_;
  std::vector<Meaning> meanings_;
  std::vector<ValueBeyond> beyond_;  // ascending
};

}  // namespace orv2_geo::sorting
