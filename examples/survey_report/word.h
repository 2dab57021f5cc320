// word.h: a word or sentence in every language of the report.
#pragma once

#include <array>
#include <cstddef>
#include <initializer_list>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace survey_report {

enum class Language { english, spanish };

/// The language of everything that a person reads; English before it is set.
void set_language(Language language) noexcept;
Language present_language() noexcept;

/// The language of "en" or "es".
std::optional<Language> language_named(std::string_view code);

/// The language that the first of LC_ALL, LC_MESSAGES and LANG with a value asks for,
/// such as es_ES.UTF-8; English for any other than Spanish. `variable` is std::getenv.
Language language_of_locale(char* (*variable)(const char* name));

/// A word or sentence. It does not compile without a text in each language, nor where
/// one has another set of places {1}, {2}, ... than the other.
class Word {
 public:
  consteval Word(std::string_view english, std::string_view spanish) : texts_{english, spanish} {
    if (english.empty() || spanish.empty()) throw std::logic_error("a text is missing");
    if (places_of(english) != places_of(spanish)) throw std::logic_error("other places");
  }

  /// In the present language.
  std::string_view view() const noexcept {
    return texts_[static_cast<std::size_t>(present_language())];
  }
  std::string text() const { return std::string(view()); }

  /// In the present language, {1} being the first of the parts, and so on.
  std::string with(std::initializer_list<std::string_view> parts) const;

 private:
  static constexpr unsigned places_of(std::string_view text) {
    unsigned places = 0;
    for (std::size_t i = 0; i + 2 < text.size(); ++i) {
      if (text[i] == '{' && text[i + 2] == '}') places |= 1U << (text[i + 1] - '0');
    }
    return places;
  }

  std::array<std::string_view, 2> texts_;
};

}  // namespace survey_report
