// text.h: the counted string of 16-bit units.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "orv2_geo/frame/export.h"

namespace orv2_geo {

/// A counted string of 16-bit units behind one pointer, null meaning empty.
/// The units are followed by a zero and preceded by their length in bytes, as
/// the string type of component hosts has it. Any unit may occur inside, zero
/// and unpaired surrogates included. Moving a Text moves its handle.
/// Failures: 7 where a copy or a construction finds no memory.
class ORV2_PUBLIC Text {
 public:
  Text() noexcept = default;
  Text(std::u16string_view units);
  Text(const char16_t* units) : Text(std::u16string_view(units)) {}
  Text(const Text& other) : Text(other.view()) {}
  Text(Text&& other) noexcept : units_(std::exchange(other.units_, nullptr)) {}
  ~Text() { clear(); }

  Text& operator=(const Text& other) {
    if (this != &other) Text(other).swap(*this);
    return *this;
  }
  Text& operator=(Text&& other) noexcept {
    Text(std::move(other)).swap(*this);
    return *this;
  }

  /// Reads UTF-8. Bytes that are no UTF-8 become U+FFFD each; a surrogate in
  /// three bytes is taken as that unit, so that to_utf8 always comes back.
  static Text from_utf8(std::string_view utf8);

  /// The text in UTF-8; an unpaired surrogate takes three bytes.
  std::string to_utf8() const;

  std::u16string_view view() const noexcept { return {data(), size()}; }
  const char16_t* data() const noexcept { return units_ != nullptr ? units_ : u""; }
  std::size_t size() const noexcept;
  bool empty() const noexcept { return size() == 0; }

  void clear() noexcept;
  void swap(Text& other) noexcept { std::swap(units_, other.units_); }

  friend bool operator==(const Text& a, const Text& b) noexcept { return a.view() == b.view(); }

 private:
  char16_t* units_ = nullptr;
};

static_assert(sizeof(Text) == sizeof(void*), "an array of texts is an array of handles");

/// The code point whose units begin at `at`, which moves behind them: a pair of
/// surrogates is one, an unpaired one is itself.
ORV2_PUBLIC char32_t next_code_point(std::u16string_view units, std::size_t& at) noexcept;

/// Two texts as one. Failure 7 where there is no memory.
ORV2_PUBLIC Text joined(std::u16string_view first, std::u16string_view second);

}  // namespace orv2_geo
