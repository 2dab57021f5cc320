#include "survey_report/report.h"

#include <gtest/gtest.h>

namespace survey_report {
namespace {

std::string report_on(const Survey& survey) { return report(survey, study_of(survey.points, {})); }

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
  EXPECT_EQ(report_on(survey),
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
            "Boundary and section line\n"
            "=========================\n"
            "\n"
            "Boundary   convex hull of all points, for want of a boundary: 0 points whose code "
            "begins with LINDERO\n"
            "Vertices   3\n"
            "Perimeter  2011.050\n"
            "Section    from 49.975, 700.250 to 160.025, 700.250\n"
            "Bearing    100.0000 gon\n"
            "Length     110.050\n"
            "\n"
            "Distance from the start of the section line.\n"
            "\n"
            "Cut        X        Y  Distance\n"
            "---  -------  -------  --------\n"
            "  1  105.000  700.250    55.025\n"
            "  2  110.000  700.250    60.025\n"
            "\n"
            "\n"
            "Elevations and slopes\n"
            "=====================\n"
            "\n"
            "No node of a grid of 10 lies inside the boundary with three points around it.\n"
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
  EXPECT_EQ(report_on(survey).find("Azimuth - "), std::string::npos);
}

TEST(Report, ALegAHairBesideNorthIsNorth) {
  const Survey survey = survey_of({{"1", 0, 0, 0, "", 1}, {"2", -1e-9, 10, 0, "", 2}});
  EXPECT_NE(report_on(survey).find("  0.0000    10.000\n"), std::string::npos);
}

TEST(Report, ADifferencePastEveryDoubleIsNotShown) {
  const Survey survey = survey_of({{"1", 0, 0, -1e308, "", 1}, {"2", 3, 4, 1e308, "", 2}});
  EXPECT_EQ(report_on(survey).find("inf"), std::string::npos);
}

TEST(Report, AFileNameStaysOnItsLine) {
  Survey survey = survey_of({{"1", 0, 0, 0, "", 1}});
  survey.file_name = "a\nb.csv";
  EXPECT_TRUE(report_on(survey).starts_with("Survey report: a b.csv\n======"));
}

const std::vector<SurveyPoint> square = {{"A", 1, 1, 1, "LINDERO", 1},
                                         {"B", 11, 1, 1, "LINDERO 2", 2},
                                         {"C", 11, 11, 1, "LINDERO", 3},
                                         {"D", 1, 11, 1, "LINDERO", 4}};

TEST(Report, ALevelSquareHasNoSlope) {
  StudyOptions options;
  options.grid_step = 6;
  options.section = SectionLine{{5, -5}, {5, 5}};
  const Survey survey = survey_of(square);
  const Study study = study_of(survey.points, options);
  EXPECT_NE(boundary_section(study).find(
                "Boundary   4 points whose code begins with LINDERO, in the order of the file\n"
                "Vertices   4\n"
                "Perimeter  40.000\n"
                "Section    from 5.000, -5.000 to 5.000, 5.000\n"
                "Bearing    0.0000 gon\n"),
            std::string::npos);
  EXPECT_TRUE(relief_section(survey, study)
                  .ends_with("    X      Y  Elevation  Slope %  Triangle\n"
                             "-----  -----  ---------  -------  --------\n"
                             "6.000  6.000      1.000     0.00  A, B, C\n"
                             "\n"
                             "1 node; elevation lowest 1.000, highest 1.000, mean 1.000; "
                             "mean slope 0.00 %\n"))
      << relief_section(survey, study);
}

TEST(Report, PointsOnALineEncloseNothing) {
  const Survey survey = survey_of({{"1", 0, 0, 0, "", 1}, {"2", 3, 3, 0, "", 2}});
  const Study study = study_of(survey.points, {});
  EXPECT_TRUE(boundary_section(study).ends_with("None: the points do not enclose an area.\n"));
  EXPECT_TRUE(
      relief_section(survey, study).ends_with("None: the points do not enclose an area.\n"));
}

TEST(Report, ASectionPastTheLibrarysNumbersIsNotComputed) {
  StudyOptions options;
  options.section = SectionLine{{0, 0}, {1e200, 0}};
  const Study study = study_of(square, options);
  EXPECT_TRUE(boundary_section(study).ends_with(
      "Not computed: Desbordamiento (failure 6 of Orv2_Geo.cgeo_Algorismos).\n"));
}

TEST(Report, AGridTooFineIsRefused) {
  StudyOptions options;
  options.grid_step = 0.01;
  EXPECT_THROW(study_of(square, options), ChoiceFault);
}

}  // namespace
}  // namespace survey_report
