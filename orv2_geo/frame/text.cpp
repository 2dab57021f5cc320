#include "orv2_geo/frame/text.h"

#include <cstring>

#include "orv2_geo/frame/run_failure.h"
#include "orv2_geo/frame/text_memory.h"

namespace orv2_geo {

namespace {

constexpr char16_t replacement = 0xfffd;

constexpr bool is_continuation(unsigned char byte) { return (byte & 0xc0U) == 0x80U; }

// One code point from the front of `utf8`, which it shortens; a bad byte is
// taken alone.
char32_t take_code_point(std::string_view& utf8) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(utf8[i]); };
  const unsigned char lead = byte(0);
  const auto take = [&](std::size_t count, char32_t value, char32_t least) -> char32_t {
    for (std::size_t i = 1; i < count; ++i) {
      if (i >= utf8.size() || !is_continuation(byte(i))) return utf8.remove_prefix(1), replacement;
      value = value << 6U | (byte(i) & 0x3fU);
    }
    if (value < least || value > 0x10ffff) return utf8.remove_prefix(1), replacement;
    utf8.remove_prefix(count);
    return value;
  };
  if (lead < 0x80) return take(1, lead, 0);
  if (lead >= 0xc0 && lead < 0xe0) return take(2, lead & 0x1fU, 0x80);
  if (lead >= 0xe0 && lead < 0xf0) return take(3, lead & 0x0fU, 0x800);
  if (lead >= 0xf0 && lead < 0xf8) return take(4, lead & 0x07U, 0x10000);
  return utf8.remove_prefix(1), replacement;
}

void append_utf8(std::string& utf8, char32_t point) {
  const auto put = [&](char32_t byte) { utf8.push_back(static_cast<char>(byte)); };
  if (point < 0x80) {
    put(point);
  } else if (point < 0x800) {
    put(0xc0 | point >> 6U), put(0x80 | (point & 0x3fU));
  } else if (point < 0x10000) {
    put(0xe0 | point >> 12U), put(0x80 | (point >> 6U & 0x3fU)), put(0x80 | (point & 0x3fU));
  } else {
    put(0xf0 | point >> 18U), put(0x80 | (point >> 12U & 0x3fU));
    put(0x80 | (point >> 6U & 0x3fU)), put(0x80 | (point & 0x3fU));
  }
}

constexpr bool is_high_surrogate(char16_t unit) { return unit >= 0xd800 && unit < 0xdc00; }
constexpr bool is_low_surrogate(char16_t unit) { return unit >= 0xdc00 && unit < 0xe000; }

}  // namespace

// U+10428 is the pair 0xd801, 0xdc28: 0x10000 + (0x001 << 10) + 0x028.
char32_t next_code_point(std::u16string_view units, std::size_t& at) noexcept {
  const char16_t unit = units[at++];
  const bool paired = is_high_surrogate(unit) && at < units.size() && is_low_surrogate(units[at]);
  if (!paired) return unit;
  return 0x10000 + ((unit - char32_t{0xd800}) << 10U) + (units[at++] - char32_t{0xdc00});
}

Text::Text(std::u16string_view units) {
  if (units.empty()) return;
  units_ = obtain_units(units.size());
  std::memcpy(units_, units.data(), units.size() * sizeof(char16_t));
}

namespace {

std::u16string units_of(std::string_view utf8) {
  std::u16string units;
  units.reserve(utf8.size());
  while (!utf8.empty()) {
    const char32_t point = take_code_point(utf8);
    if (point < 0x10000) {
      units.push_back(static_cast<char16_t>(point));
    } else {
      units.push_back(static_cast<char16_t>(0xd800 + ((point - 0x10000) >> 10U)));
      units.push_back(static_cast<char16_t>(0xdc00 + (point & 0x3ffU)));
    }
  }
  return units;
}

std::string utf8_of(std::u16string_view units) {
  std::string utf8;
  for (std::size_t at = 0; at < units.size();) append_utf8(utf8, next_code_point(units, at));
  return utf8;
}

}  // namespace

Text Text::from_utf8(std::string_view utf8) {
  return with_run_failures([&] { return Text(units_of(utf8)); });
}

std::string Text::to_utf8() const {
  return with_run_failures([&] { return utf8_of(view()); });
}

std::size_t Text::size() const noexcept {
  if (units_ == nullptr) return 0;
  std::uint32_t bytes = 0;
  std::memcpy(&bytes, reinterpret_cast<const char*>(units_) - sizeof(bytes), sizeof(bytes));
  return bytes / sizeof(char16_t);
}

void Text::clear() noexcept {
  if (units_ == nullptr) return;
  give_back_units(units_);
  units_ = nullptr;
}

Text joined(std::u16string_view first, std::u16string_view second) {
  return with_run_failures([&] { return Text(std::u16string(first).append(second)); });
}

}  // namespace orv2_geo
