#include "survey_report/word.h"

namespace survey_report {

namespace {

Language present = Language::english;

}  // namespace

void set_language(Language language) noexcept { present = language; }

Language present_language() noexcept { return present; }

std::optional<Language> language_named(std::string_view code) {
  if (code == "en") return Language::english;
  if (code == "es") return Language::spanish;
  return std::nullopt;
}

Language language_of_locale(char* (*variable)(const char* name)) {
  for (const char* const name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const char* const value = variable(name);
    if (value == nullptr || *value == '\0') continue;
    const std::string_view locale = value;
    const std::string_view code = locale.substr(0, locale.find_first_of("_.@"));
    return language_named(code).value_or(Language::english);
  }
  return Language::english;
}

std::string Word::with(std::initializer_list<std::string_view> parts) const {
  const std::string_view sentence = view();
  std::string filled;
  for (std::size_t i = 0; i < sentence.size(); ++i) {
    const bool place = sentence[i] == '{' && i + 2 < sentence.size() && sentence[i + 2] == '}';
    if (!place) {
      filled += sentence[i];
      continue;
    }
    filled += parts.begin()[sentence[i + 1] - '1'];
    i += 2;
  }
  return filled;
}

}  // namespace survey_report
