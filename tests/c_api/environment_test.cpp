// What a C program's environment makes of texts: a program of its own in each.
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <string>

namespace orv2_geo::testing_support {
namespace {

// What locale_probe prints in an environment of these variables alone.
std::string printed(const std::string& variables) {
  const std::string command = "env -i " + variables + " " LOCALE_PROBE " 2>&1";
  FILE* const probe = popen(command.c_str(), "r");
  if (probe == nullptr) return "cannot be run";
  std::string text;
  std::array<char, 256> line{};
  while (std::fgets(line.data(), line.size(), probe) != nullptr) text += line.data();
  return pclose(probe) == 0 ? text : text + "failed";
}

// By code points, case ignored; and the order of Spanish.
#define BY_CODE_POINT "n < O < z < ñ = Ñ < ж = Ж "
#define SPANISH "n < ñ = Ñ < O < z < ж = Ж "

TEST(Environment, EachCategoryStandsByItself) {
  const struct {
    const char* rule;
    const char* variables;
    const char* expected;
  } rows[] = {
      {"an empty environment still ignores case", "", BY_CODE_POINT ".\n"},
      {"so does C", "LC_ALL=C", BY_CODE_POINT ".\n"},
      {"a locale that is not installed", "LANG=xx_XX.UTF-8", BY_CODE_POINT ".\n"},
      // With a LOCPATH every newlocale of glibc leaks a copy of it, for LeakSanitizer to find.
      {"no locale installed at all",
       "LOCPATH=/nowhere LANG=es_ES.UTF-8 ASAN_OPTIONS=detect_leaks=0", BY_CODE_POINT ".\n"},
      {"a whole locale", "LANG=es_ES.UTF-8", SPANISH ",\n"},
      {"written otherwise", "LANG=es_ES.utf8", SPANISH ",\n"},
      {"beside one for all categories", "LANG=C LC_ALL=es_ES.UTF-8", SPANISH ",\n"},
      {"an unrelated category that is not installed", "LANG=es_ES.utf8 LC_PAPER=xx", SPANISH ",\n"},
      {"an order that is not installed", "LANG=es_ES.UTF-8 LC_COLLATE=xx", BY_CODE_POINT ",\n"},
      {"letters that are not installed", "LANG=es_ES.UTF-8 LC_CTYPE=xx", SPANISH ",\n"},
      {"numbers that are not installed", "LANG=es_ES.UTF-8 LC_NUMERIC=xx", SPANISH ".\n"},
      {"an order alone", "LC_COLLATE=es_ES.UTF-8", SPANISH ".\n"},
      {"an order alone, the rest not installed", "LANG=xx LC_COLLATE=es_ES.UTF-8", SPANISH ".\n"},
      {"numbers alone", "LC_NUMERIC=es_ES.UTF-8", BY_CODE_POINT ",\n"},
  };
  for (const auto& row : rows) EXPECT_EQ(printed(row.variables), row.expected) << row.rule;
}

}  // namespace
}  // namespace orv2_geo::testing_support
