// source.h: the bytes of one input as values.
#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>

#include "orv2_geo/frame/text.h"

namespace orv2_geo::fuzzing {

/// Hands out values until the bytes are over; then zeros, so that every input ends.
class Source {
 public:
  Source(const std::uint8_t* data, std::size_t size) : bytes_(data, size) {}

  bool over() { return bytes_.remaining_bytes() == 0; }

  /// From 0 to `end` - 1.
  std::size_t below(std::size_t end) {
    return bytes_.ConsumeIntegralInRange<std::size_t>(0, end - 1);
  }
  bool one_in(std::size_t many) { return below(many) == many - 1; }
  std::int32_t between(std::int32_t low, std::int32_t high) {
    return bytes_.ConsumeIntegralInRange(low, high);
  }
  template <class Integer>
  Integer any() {
    return bytes_.ConsumeIntegral<Integer>();
  }
  template <class T, std::size_t n>
  const T& one_of(const T (&table)[n]) {
    return table[below(n)];
  }

  /// A number as surveys and adversaries bring it: all kinds, or of one kind.
  double number() { return number(below(kinds)); }
  double number(std::size_t kind) {
    switch (kind) {
      case 0: return between(-8, 8);
      case 1: return between(-8, 8) * 0.5;
      case 2: return between(-8, 8) * 0.0002;
      case 3: return 435000.0 + any<std::int16_t>() / 1000.0;
      case 4: return any<std::int32_t>() / 1000.0;
      case 5: return std::ldexp(any<std::int16_t>(), between(-1000, 1000));
      case 6: return one_of(edges);
      default: return std::bit_cast<double>(any<std::uint64_t>());
    }
  }
  static constexpr std::size_t kinds = 8;
  static constexpr std::size_t kinds_without_edges = 6;

  /// The same where infinities and what is no number have no place.
  double finite_number() { return finite_number(below(kinds)); }
  double finite_number(std::size_t kind) {
    const double value = number(kind);
    return std::isfinite(value) ? value : 0.0;
  }
  float single() {
    return one_in(8) ? std::bit_cast<float>(any<std::uint32_t>()) : static_cast<float>(number());
  }

  /// A whole number near the ends of what a count or a subscript can be, mostly small.
  std::int32_t whole() {
    switch (below(8)) {
      case 0: return one_of(whole_edges);
      case 1: return any<std::int32_t>();
      default: return between(-3, 12);
    }
  }

  /// Any 16-bit units, or those of one alphabet.
  std::u16string units(std::size_t most) { return units(most, below(alphabet_count)); }
  std::u16string units(std::size_t most, std::size_t alphabet) {
    std::u16string all(below(most + 1), u'\0');
    const std::u16string_view letters = alphabets[alphabet];
    for (char16_t& unit : all) {
      unit = letters.empty() ? any<char16_t>() : letters[below(letters.size())];
    }
    return all;
  }
  /// Letters that a collation takes together, passes over or has far apart. The last
  /// one stands for all units.
  static constexpr std::u16string_view alphabets[] = {
      u"0123456789",
      u"0123456789+-.,eE ",
      u"0123456789PpAaBb-._ ",
      u"abcABC\u00e1\u00e9\u00ed\u00f3\u00fa\u00fc\u00f1\u00d1\u00e7\u00c7\u00e0\u00e8\u00ba\u00aa",
      u"chllrrCHLLdzDZss",
      u"a\u00e1b\u03b2bc\u0434\u044f\u65e5\xd83d\xde00\u0301\u0001\uffff\u0130\u0131\u1e9e",
      u"'\"-_.,;:!?()[]{}@#$%&/\\+*=<>|~^` \t\u00a0\u00ad",
      u"",
  };
  static constexpr std::size_t alphabet_count = std::size(alphabets);

  /// A text in bytes of which some are no UTF-8.
  std::string bytes(std::size_t most) { return bytes_.ConsumeRandomLengthString(most); }

 private:
  static constexpr double infinite = std::numeric_limits<double>::infinity();
  static constexpr double edges[] = {-0.0,
                                     std::numeric_limits<double>::quiet_NaN(),
                                     infinite,
                                     -infinite,
                                     std::numeric_limits<double>::max(),
                                     -std::numeric_limits<double>::max(),
                                     std::numeric_limits<double>::denorm_min(),
                                     std::numeric_limits<double>::min(),
                                     1e12,
                                     -1e8,
                                     7e8,
                                     699999999.9999999,
                                     1e301,
                                     -1e301,
                                     1e-300,
                                     2147483647.5,
                                     -2147483648.5,
                                     32767.5,
                                     -32768.5,
                                     400.0,
                                     -399.99};
  static constexpr std::int32_t whole_edges[] = {std::numeric_limits<std::int32_t>::min(),
                                                 std::numeric_limits<std::int32_t>::min() + 1,
                                                 std::numeric_limits<std::int32_t>::max(),
                                                 std::numeric_limits<std::int32_t>::max() - 1,
                                                 -1,
                                                 32767,
                                                 32768,
                                                 -32768,
                                                 65536,
                                                 1000};

  FuzzedDataProvider bytes_;
};

}  // namespace orv2_geo::fuzzing
