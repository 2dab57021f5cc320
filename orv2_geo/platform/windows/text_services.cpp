// The part of the text services that the system's locale answers.
#include "orv2_geo/platform/text_services.h"

#include <windows.h>

#include <algorithm>
#include <string>

#include "orv2_geo/frame/run_failure.h"

namespace orv2_geo::text_services {

namespace {

// Levels of a sort key are parted by the byte 1; weights are above it.
constexpr char32_t level_end = 1;

// The bytes of the system's sort key of a text without a zero in it.
std::string sort_key(const wchar_t* text, std::size_t count) {
  if (count == 0) return {};
  constexpr DWORD flags = LCMAP_SORTKEY | NORM_IGNORECASE;
  const auto units = static_cast<int>(count);
  const int bytes = LCMapStringW(LOCALE_USER_DEFAULT, flags, text, units, nullptr, 0);
  std::string key(static_cast<std::size_t>(std::max(bytes, 0)), '\0');
  LCMapStringW(LOCALE_USER_DEFAULT, flags, text, units, reinterpret_cast<wchar_t*>(key.data()),
               bytes);
  while (!key.empty() && key.back() == '\0') key.pop_back();  // the key's end
  return key;
}

// A letter's weight of the first level is two bytes, which make one unit. Those of a
// half at the level's end are followed by its end, which is below every weight.
void append_key(std::u32string& key, const std::string& bytes) {
  const auto byte = [&](std::size_t i) { return char32_t{static_cast<unsigned char>(bytes[i])}; };
  std::size_t i = 0;
  while (i < bytes.size() && byte(i) != level_end) {
    const bool whole = i + 1 < bytes.size() && byte(i + 1) != level_end;
    key.push_back(byte(i) << 8U | (whole ? byte(i + 1) : 0));
    i += whole ? 2 : 1;
  }
  for (; i < bytes.size(); ++i) key.push_back(byte(i));
}

}  // namespace

char16_t decimal_sign() {
  wchar_t sign[8] = {};
  const int units = GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, sign, 8);
  return units == 2 ? static_cast<char16_t>(sign[0]) : u'.';  // one unit and the end
}

std::u32string collation_key(std::u16string_view text) {
  std::u32string key;
  // Parts between zeros are looked at by themselves, so that a zero counts as well.
  for (std::size_t start = 0; start <= text.size();) {
    if (start != 0) key.push_back(U'\0');
    const std::size_t end = std::min(text.find(u'\0', start), text.size());
    append_key(key, sort_key(reinterpret_cast<const wchar_t*>(text.data()) + start, end - start));
    start = end + 1;
  }
  return key;
}

std::size_t first_level(std::u32string_view key) {
  return std::min(key.find_first_of(std::u32string_view(U"\0\1", 2)), key.size());
}

}  // namespace orv2_geo::text_services
