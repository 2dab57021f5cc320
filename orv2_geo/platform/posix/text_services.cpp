// The part of the text services that the system's locale answers.
#include "orv2_geo/platform/text_services.h"

#include <langinfo.h>
#include <locale.h>
#include <algorithm>
#include <cerrno>
#include <cwchar>
#include <cwctype>
#include <string>

#include "orv2_geo/frame/run_failure.h"
#include "orv2_geo/platform/lower_case.h"

namespace orv2_geo::text_services {

namespace {

// One category of the user's locale: the one that the environment names, or else
// Unicode's order and letters.
locale_t with_category(int category, locale_t others) {
  for (const char* const name : {"", "C.UTF-8", "C"}) {
    errno = 0;
    if (const locale_t locale = newlocale(category, name, others)) return locale;
    if (errno == ENOMEM) {
      freelocale(others);
      raise(failure::out_of_memory);
    }
  }
  return others;
}

// The user's locale, looked up once. Each category that is asked here stands by
// itself: one that is not installed leaves the others as they are named.
locale_t user_locale() {
  static const locale_t locale = [] {
    locale_t made = newlocale(LC_ALL_MASK, "C", nullptr);
    for (const int category : {LC_CTYPE_MASK, LC_COLLATE_MASK, LC_NUMERIC_MASK}) {
      made = with_category(category, made);
    }
    return made;
  }();
  return locale;
}

// A language may have a lower case of its own, as Turkish has. What its locale does
// not know is Unicode's; ASCII every locale knows.
char32_t folded(char32_t point) {
  const auto by_locale = static_cast<char32_t>(towlower_l(point, user_locale()));
  return by_locale != point || point < 0x80 ? by_locale : lower_case(point);
}

// Folded to lower case, in the wide characters that the collation takes.
std::wstring folded(std::u16string_view text) {
  std::wstring wide;
  wide.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    wide.push_back(static_cast<wchar_t>(folded(next_code_point(text, at))));
  }
  return wide;
}

}  // namespace

char16_t decimal_sign() {
  static const char16_t sign = [] {
    const Text radix = Text::from_utf8(nl_langinfo_l(RADIXCHAR, user_locale()));
    return radix.size() == 1 ? radix.view()[0] : u'.';
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
