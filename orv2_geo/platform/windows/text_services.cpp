// The part of the text services that the system's locale answers.
#include "orv2_geo/platform/text_services.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <string>

#include "orv2_geo/frame/run_failure.h"
#include "orv2_geo/frame/text.h"
#include "orv2_geo/platform/lower_case.h"

namespace orv2_geo::text_services {

namespace {

// Levels of a sort key are parted by the byte 1; weights are above it.
constexpr char level_end = 1;
constexpr std::string_view key_of_nothing = "\1\1\1\1";

constexpr DWORD key_ignoring_case = LCMAP_SORTKEY | NORM_IGNORECASE;

// How many bytes the system writes, or would write where there is room for none; 0 where
// the room is too little. All else that it can fail of is memory.
int ask_for_key(std::u16string_view text, char* room, std::size_t bytes) {
  const int written = LCMapStringW(
      LOCALE_USER_DEFAULT, key_ignoring_case, reinterpret_cast<const wchar_t*>(text.data()),
      static_cast<int>(text.size()), reinterpret_cast<wchar_t*>(room), static_cast<int>(bytes));
  if (written > 0) return written;
  if (bytes == 0 || GetLastError() != ERROR_INSUFFICIENT_BUFFER) raise(failure::out_of_memory);
  return 0;
}

// The bytes of the system's sort key, without the zero at its end. The room is that of
// most texts: a longer key is asked for twice.
std::string sort_key(std::u16string_view text) {
  if (text.empty()) return std::string(key_of_nothing);
  std::array<char, 512> room{};
  std::string key;
  if (const int bytes = ask_for_key(text, room.data(), room.size()); bytes > 0) {
    key.assign(room.data(), static_cast<std::size_t>(bytes));
  } else {
    key.resize(static_cast<std::size_t>(ask_for_key(text, nullptr, 0)));
    key.resize(static_cast<std::size_t>(ask_for_key(text, key.data(), key.size())));
  }
  while (!key.empty() && key.back() == '\0') key.pop_back();
  return key;
}

// A letter's weight of the first level is two bytes, which make one unit. Those of a
// half at the level's end are followed by its end, which is below every weight.
void append_key(std::u32string& key, std::string_view bytes) {
  const auto byte = [&](std::size_t i) { return char32_t{static_cast<unsigned char>(bytes[i])}; };
  const std::size_t first = std::min(bytes.find(level_end), bytes.size());
  for (std::size_t i = 0; i < first; i += 2) {
    key.push_back(byte(i) << 8U | (i + 1 < first ? byte(i + 1) : 0));
  }
  for (std::size_t i = first; i < bytes.size(); ++i) key.push_back(byte(i));
}

bool is_half_a_pair(char16_t unit) { return unit >= 0xd800 && unit < 0xe000; }

// The system ignores the case of letters of one unit only.
std::u16string with_pairs_folded(std::u16string_view text) {
  std::u16string folded;
  folded.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const char32_t point = next_code_point(text, at);
    const char32_t lower = point < 0x10000 ? point : lower_case(point);
    if (lower < 0x10000) {
      folded.push_back(static_cast<char16_t>(lower));
    } else {
      folded.push_back(static_cast<char16_t>(0xd7c0 + (lower >> 10U)));
      folded.push_back(static_cast<char16_t>(0xdc00 + (lower & 0x3ffU)));
    }
  }
  return folded;
}

}  // namespace

char16_t decimal_sign() {
  static const char16_t sign = [] {
    std::array<wchar_t, 8> text{};
    const int units = GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, text.data(),
                                     static_cast<int>(text.size()));
    return units == 2 ? static_cast<char16_t>(text[0]) : u'.';  // one unit and the end
  }();
  return sign;
}

std::u32string collation_key(std::u16string_view text) {
  if (std::any_of(text.begin(), text.end(), is_half_a_pair)) {
    const std::u16string folded = with_pairs_folded(text);
    if (folded != text) return collation_key(folded);
  }
  std::u32string key;
  // The system passes over a zero; here what stands behind one counts as a part of its own.
  for (std::size_t start = 0; start <= text.size();) {
    if (start != 0) key.push_back(U'\0');
    const std::size_t end = std::min(text.find(u'\0', start), text.size());
    append_key(key, sort_key(text.substr(start, end - start)));
    start = end + 1;
  }
  return key;
}

std::size_t first_level(std::u32string_view key) {
  return std::min(key.find_first_of(std::u32string_view(U"\0\1", 2)), key.size());
}

}  // namespace orv2_geo::text_services
