#include "survey_report/word.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "survey_report/words.h"

namespace survey_report {
namespace {

// The language as it was, afterwards.
class Speaking {
 public:
  explicit Speaking(Language language) { set_language(language); }
  Speaking(const Speaking&) = delete;
  Speaking& operator=(const Speaking&) = delete;
  ~Speaking() { set_language(before_); }

 private:
  Language before_ = present_language();
};

TEST(Word, IsSaidInThePresentLanguage) {
  EXPECT_EQ(words::bearing.view(), "Bearing");
  const Speaking spanish(Language::spanish);
  EXPECT_EQ(words::bearing.view(), "Acimut");
}

TEST(Word, PartsTakeTheirPlacesInAnyOrder) {
  constexpr Word word{"{2} of {1}, {2}", "de {1}: {2}"};
  EXPECT_EQ(word.with({"ten", "two"}), "two of ten, two");
  const Speaking spanish(Language::spanish);
  EXPECT_EQ(word.with({"ten", "{1}"}), "de ten: {1}");
}

TEST(Word, BracesAloneAreNoPlace) {
  constexpr Word word{"{}", "{"};
  EXPECT_EQ(word.with({}), "{}");
}

struct LocaleRow {
  const char* rule;
  std::map<std::string, std::string> variables;
  Language language;
};

const LocaleRow locale_rows[] = {
    {"none: English", {}, Language::english},
    {"a country", {{"LANG", "es_CL.UTF-8"}}, Language::spanish},
    {"no country", {{"LANG", "es"}}, Language::spanish},
    {"another language: English", {{"LANG", "de_DE"}}, Language::english},
    {"one that begins alike", {{"LANG", "est_EE"}}, Language::english},
    {"messages before the general one",
     {{"LC_MESSAGES", "es_ES"}, {"LANG", "en_US"}},
     Language::spanish},
    {"the one for all before any", {{"LC_ALL", "C"}, {"LANG", "es_ES"}}, Language::english},
    {"an empty one is none", {{"LC_ALL", ""}, {"LANG", "es_ES"}}, Language::spanish},
};

std::map<std::string, std::string> variables;

char* variable(const char* name) {
  const auto found = variables.find(name);
  return found == variables.end() ? nullptr : found->second.data();
}

TEST(Word, TheLanguageIsThatOfTheLocale) {
  for (const LocaleRow& row : locale_rows) {
    variables = row.variables;
    EXPECT_EQ(language_of_locale(variable), row.language) << row.rule;
  }
}

}  // namespace
}  // namespace survey_report
