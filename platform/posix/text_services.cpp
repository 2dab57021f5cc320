// The part of the text services that the system's locale answers.
#include "platform/text_services.h"

#include <langinfo.h>
#include <locale.h>
#include <algorithm>
#include <clocale>
#include <cwchar>
#include <cwctype>
#include <string>

namespace orv2_geo::text_services {

namespace {

// The user's locale, looked up once; a name that is not installed gives C.
locale_t user_locale() {
  static const locale_t locale = [] {
    const locale_t named = newlocale(LC_ALL_MASK, "", nullptr);
    return named != nullptr ? named : newlocale(LC_ALL_MASK, "C", nullptr);
  }();
  return locale;
}

// Folded to lower case, in the wide characters that the collation takes.
std::wstring folded(std::u16string_view text) {
  std::wstring wide;
  wide.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t point = text[i];
    const bool pair = point >= 0xd800 && point < 0xdc00 && i + 1 < text.size() &&
                      text[i + 1] >= 0xdc00 && text[i + 1] < 0xe000;
    if (pair) point = 0x10000 + ((point - 0xd800) << 10U) + (text[++i] - 0xdc00U);
    wide.push_back(static_cast<wchar_t>(towlower_l(static_cast<wint_t>(point), user_locale())));
  }
  return wide;
}

}  // namespace

char16_t decimal_sign() {
  static const char16_t sign = [] {
    const char* radix = nl_langinfo_l(RADIXCHAR, user_locale());
    const locale_t before = uselocale(user_locale());
    wchar_t wide = L'.';
    std::mbstate_t state{};
    const std::size_t length =
        std::mbrtowc(&wide, radix, std::char_traits<char>::length(radix), &state);
    uselocale(before);
    const bool read = length != 0 && length != std::size_t(-1) && length != std::size_t(-2);
    return read && wide < 0x10000 ? static_cast<char16_t>(wide) : u'.';
  }();
  return sign;
}

std::u32string collation_key(std::u16string_view text) {
  const std::wstring wide = folded(text);
  std::u32string key;
  // The transformation stops at a zero; what stands behind one counts as well.
  for (std::size_t i = 0; i <= wide.size(); ++i) {
    if (i != 0) key.push_back(U'\0');
    const wchar_t* part = wide.c_str() + i;
    std::wstring units(wcsxfrm_l(nullptr, part, 0, user_locale()), L'\0');
    wcsxfrm_l(units.data(), part, units.size() + 1, user_locale());
    key.append(units.begin(), units.end());
    i += std::wcslen(part);
  }
  return key;
}

std::size_t first_level(std::u32string_view key) {
  // Levels are parted by the unit 1, texts' parts by 0.
  return std::min(key.find_first_of(std::u32string_view(U"\0\1", 2)), key.size());
}

}  // namespace orv2_geo::text_services
