#include "survey_report/page.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "survey_report/study.h"
#include "survey_report/traverse.h"
#include "survey_report/word.h"
#include "written.h"

namespace survey_report {
namespace {

constexpr std::string_view hostile = "</script><b title=\"x\" class='y'>&";
constexpr std::string_view hostile_escaped =
    "&lt;/script&gt;&lt;b title=&quot;x&quot; class=&apos;y&apos;&gt;&amp;";

std::size_t count_of(std::string_view what, std::string_view text) {
  std::size_t count = 0;
  for (std::size_t at = text.find(what); at != text.npos; at = text.find(what, at + what.size())) {
    ++count;
  }
  return count;
}

Survey triangle(std::string_view code = "A") {
  return {"plot.csv",
          FieldOrder::x_first,
          {{"1", 0, 0, 1, std::string(code), 1},
           {"2", 10, 0, 2, std::string(code), 2},
           {"3", 0, 10, 4, "", 3}}};
}

struct Parts {
  const Drawing* plan = nullptr;
  const Drawing* profile = nullptr;
  std::string notes = {};
  std::vector<std::string_view> files = {};
};

std::string page_of(const Survey& survey, const Parts& parts = {}) {
  const Study study = study_of(survey.points, {});
  const Traverse traverse = traverse_through(survey.points);
  const Figures figures{survey, study, traverse};
  return text_of([&](Writer& out) {
    write_page(out, {figures, parts.plan, parts.profile, parts.notes, parts.files});
  });
}

// What stands between two texts, the second behind the first.
std::string between(const std::string& text, std::string_view first, std::string_view second) {
  const std::size_t begin = text.find(first);
  if (begin == text.npos) return "no " + std::string(first);
  const std::size_t inside = begin + first.size();
  return text.substr(inside, text.find(second, inside) - inside);
}

std::string section_of(const std::string& page, std::string_view id) {
  return between(page, "<section aria-labelledby=\"" + std::string(id) + "\">", "</section>");
}

class Page : public testing::Test {
 protected:
  void TearDown() override { set_language(Language::english); }
};

// ---- What the survey brings

TEST_F(Page, ATitleIsEscaped) {
  Survey survey = triangle();
  survey.file_name = hostile;
  const std::string page = page_of(survey);
  EXPECT_EQ(between(page, "<title>", "</title>"), "Survey report: " + std::string(hostile_escaped));
  EXPECT_EQ(between(page, "<h1>", "</h1>"), "Survey report: " + std::string(hostile_escaped));
}

TEST_F(Page, CodesAndNumbersAreEscaped) {
  Survey survey = triangle(hostile);
  survey.points[0].number = hostile;
  const Drawing plan{"<svg></svg>\n", 3};
  const std::string page = page_of(survey, {.plan = &plan});
  EXPECT_EQ(page.find(hostile), page.npos);
  EXPECT_EQ(count_of("</script>", page), 1U);
  const std::string escaped(hostile_escaped);
  EXPECT_NE(page.find("<tr><td>" + escaped + "</td><td class=\"number\">0.000</td>"), page.npos);
  EXPECT_NE(page.find("data-code=\"" + escaped + "\">"), page.npos);
  EXPECT_NE(page.find("<bdi>" + escaped + "</bdi><span class=\"count\">2</span>"), page.npos);
}

TEST_F(Page, NotesAreEscaped) {
  const Drawing plan{"<svg></svg>\n", 2};
  const std::string page = page_of(triangle(), {.plan = &plan, .notes = "2 < 3 points"});
  EXPECT_NE(page.find("<p class=\"quiet\">2 &lt; 3 points</p>"), page.npos);
}

TEST_F(Page, NothingIsFetchedAndNoFormLeaves) {
  EXPECT_EQ(between(page_of(triangle()), "Content-Security-Policy\" content=\"", "\">"),
            "default-src 'none'; style-src 'unsafe-inline'; script-src 'unsafe-inline'; "
            "base-uri 'none'; form-action 'none'");
}

// ---- Drawings

TEST_F(Page, ADrawingIsTakenAsItIs) {
  const Drawing plan{"<svg><g id=\"labels\"></g></svg>\n", 3};
  const std::string page = page_of(triangle(), {.plan = &plan});
  EXPECT_NE(section_of(page, "plan").find(plan.svg), std::string::npos);
  EXPECT_EQ(count_of("data-group=", section_of(page, "plan")), 1U);
  EXPECT_EQ(count_of("data-code=", section_of(page, "plan")), 2U);
}

TEST_F(Page, AMissingPlanIsSaid) {
  EXPECT_EQ(section_of(page_of(triangle()), "plan"),
            "\n<h2 id=\"plan\">Plan</h2>\n<p class=\"quiet\">There is no drawing.</p>\n");
}

TEST_F(Page, AMissingProfileIsSaidWithTheReason) {
  EXPECT_EQ(section_of(page_of(triangle()), "profile"),
            "\n<h2 id=\"profile\">Longitudinal profile</h2>\n<div class=\"facts\">\n"
            "<p>None: fewer than two points within 0.500 of the section line give it an elevation."
            "\n</p>\n</div>\n");
}

TEST_F(Page, AProfileStandsWithoutAPlan) {
  const Drawing profile{"<svg></svg>\n", 2};
  const std::string page = page_of(triangle(), {.profile = &profile});
  EXPECT_NE(section_of(page, "profile").find(profile.svg), std::string::npos);
  EXPECT_EQ(page.find("class=\"layers\""), page.npos);
}

// A point may be there though it is not drawn.
TEST_F(Page, APointThatIsNotFoundMayBeOneThatIsNotDrawn) {
  const std::string some = "data-none=\"No drawn point has that number\"";
  for (const auto& [drawn, times] : {std::pair(3U, 0U), std::pair(2U, 1U)}) {
    const Drawing plan{"<svg></svg>\n", drawn};
    EXPECT_EQ(count_of(some, page_of(triangle(), {.plan = &plan})), times);
  }
}

// ---- Tables

Survey row_of(std::size_t points) {
  Survey survey{"row.csv", FieldOrder::x_first, {}};
  for (std::size_t i = 0; i < points; ++i) {
    const auto x = static_cast<double>(i);
    survey.points.push_back({std::to_string(i), x, 0, 0, "", i + 1});
  }
  return survey;
}

std::string points_table(const std::string& page) {
  return between(page, "aria-labelledby=\"table-points\">", "</section>");
}

TEST_F(Page, AsManyRowsAsItMayHaveAreOnIt) {
  const std::string table = points_table(page_of(row_of(most_rows_on_page)));
  EXPECT_EQ(count_of("<tr><td>", table), most_rows_on_page);
  EXPECT_EQ(count_of("class=\"quiet\"", table), 0U);
}

TEST_F(Page, OfMoreRowsTheFirstAreOnItAndTheFileIsNamed) {
  const std::string table = points_table(page_of(row_of(most_rows_on_page + 1)));
  EXPECT_EQ(count_of("<tr><td>", table), most_rows_on_page);
  EXPECT_NE(table.find("<tr><td>1999</td>"), table.npos);
  EXPECT_TRUE(
      table.ends_with("<p class=\"quiet\">The first 2000 rows of 2001; all of them are in "
                      "points.csv</p>\n"));
}

TEST_F(Page, ATableWithoutRowsIsNotThere) {
  const std::string page = page_of(row_of(3));
  EXPECT_EQ(count_of("<table>", page), 2U);
  EXPECT_NE(page.find("aria-labelledby=\"table-extremes\""), page.npos);
  EXPECT_NE(page.find("aria-labelledby=\"table-points\""), page.npos);
}

TEST_F(Page, FactsAreListsAndSentencesParagraphs) {
  EXPECT_EQ(
      between(page_of(triangle()), "<h3 id=\"table-repeated_pairs\">Repeated points</h3>\n", "<h3"),
      "<div class=\"facts\">\n<dl>\n<dt>Tolerance</dt><dd>0.02, in X and in Y</dd>\n"
      "<dt>Pairs</dt><dd>0</dd>\n<dt>Points</dt><dd>0 of 3 would be removed</dd>\n</dl>\n"
      "</div>\n");
  EXPECT_NE(page_of(row_of(3)).find("<div class=\"facts\">\n<p>None: the points do not enclose an "
                                    "area.\n</p>\n</div>\n"),
            std::string::npos);
}

// ---- Files and languages

TEST_F(Page, LinksLeadToTheFilesThatAreThere) {
  EXPECT_EQ(section_of(page_of(triangle(), {.files = {"report.txt", "points.csv"}}), "files"),
            "\n<h2 id=\"files\">Files</h2>\n<ul class=\"files\">\n"
            "<li><a href=\"report.txt\">report.txt</a></li>\n"
            "<li><a href=\"points.csv\">points.csv</a></li>\n</ul>\n");
}

TEST_F(Page, ItIsInTheLanguageOfTheReport) {
  EXPECT_NE(page_of(triangle()).find("<html lang=\"en\">"), std::string::npos);
  set_language(Language::spanish);
  const std::string page = page_of(triangle());
  EXPECT_NE(page.find("<html lang=\"es\">"), page.npos);
  EXPECT_EQ(section_of(page, "plan"),
            "\n<h2 id=\"plan\">Plano</h2>\n<p class=\"quiet\">No hay dibujo.</p>\n");
}

}  // namespace
}  // namespace survey_report
