#include "survey_report/report.h"

#include <gtest/gtest.h>

namespace survey_report {
namespace {

TEST(Report, AllOfAShortSurvey) {
  const Survey survey{"plot.csv",
                      FieldOrder::x_first,
                      {{"1", 100, 200, 600, "EJE", 1},
                       {"2", 110, 200, 601.25,
                        "SE\xC3\x91"
                        "AL",
                        2},
                       {"2b", 110, 200, 601.25, "", 3},
                       {"10", 110, 1200.5, 599, "POZO", 4}}};
  EXPECT_EQ(report(survey),
            "Survey report: plot.csv\n"
            "=======================\n"
            "\n"
            "Points    4, read as number, X, Y, Z, code\n"
            "Traverse  1010.500 in plan, 3 legs\n"
            "\n"
            "Axis  Minimum   Maximum  Difference\n"
            "----  -------  --------  ----------\n"
            "X     100.000   110.000      10.000\n"
            "Y     200.000  1200.500    1000.500\n"
            "Z     599.000   601.250       2.250\n"
            "\n"
            "\n"
            "Traverse\n"
            "========\n"
            "\n"
            "Azimuth and distance lead to the point on the next row, in plan.\n"
            "Azimuths in gon: 400 to the circle, 0 along +Y, clockwise.\n"
            "Azimuth - where the next point has the same X and Y.\n"
            "\n"
            "Number        X         Y        Z  Code    Azimuth  Distance\n"
            "------  -------  --------  -------  -----  --------  --------\n"
            "     1  100.000   200.000  600.000  EJE    100.0000    10.000\n"
            "     2  110.000   200.000  601.250  SE\xC3\x91"
            "AL         -     0.000\n"
            "    2b  110.000   200.000  601.250           0.0000  1000.500\n"
            "    10  110.000  1200.500  599.000  POZO\n");
}

Survey survey_of(std::vector<SurveyPoint> points) {
  return {"plot.csv", FieldOrder::northing_first, std::move(points)};
}

std::string heading_of(const Survey& survey) {
  return heading_section(survey, traverse_through(survey.points));
}

TEST(Report, TheHeadingSaysHowThePointsWereRead) {
  EXPECT_NE(heading_of(survey_of({{"1", 1, 2, 3, "", 1}})).find("read as number, Y, X, Z, code\n"),
            std::string::npos);
}

TEST(Report, OneLegIsOneLeg) {
  const Survey survey = survey_of({{"1", 0, 0, 0, "", 1}, {"2", 3, 4, 0, "", 2}});
  EXPECT_NE(heading_of(survey).find("5.000 in plan, 1 leg\n"), std::string::npos);
}

TEST(Report, NoDirectionIsExplainedOnlyWhereItOccurs) {
  const Survey survey = survey_of({{"1", 0, 0, 0, "", 1}, {"2", 3, 4, 0, "", 2}});
  EXPECT_EQ(report(survey).find("Azimuth - "), std::string::npos);
}

TEST(Report, ALegAHairBesideNorthIsNorth) {
  const Survey survey = survey_of({{"1", 0, 0, 0, "", 1}, {"2", -1e-9, 10, 0, "", 2}});
  EXPECT_NE(report(survey).find("  0.0000    10.000\n"), std::string::npos);
}

TEST(Report, ADifferencePastEveryDoubleIsNotShown) {
  const Survey survey = survey_of({{"1", 0, 0, -1e308, "", 1}, {"2", 3, 4, 1e308, "", 2}});
  EXPECT_EQ(report(survey).find("inf"), std::string::npos);
}

TEST(Report, AFileNameStaysOnItsLine) {
  Survey survey = survey_of({{"1", 0, 0, 0, "", 1}});
  survey.file_name = "a\nb.csv";
  EXPECT_TRUE(report(survey).starts_with("Survey report: a b.csv\n======"));
}

}  // namespace
}  // namespace survey_report
