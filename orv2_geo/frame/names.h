// names.h: how late-bound names compare.
#pragma once

#include <algorithm>
#include <string_view>

namespace orv2_geo {

constexpr char to_lower_ascii(char c) noexcept {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Whether two ASCII names are one, case ignored.
constexpr bool same_name(std::string_view a, std::string_view b) noexcept {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return to_lower_ascii(x) == to_lower_ascii(y); });
}

}  // namespace orv2_geo
