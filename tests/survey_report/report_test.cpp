#include "survey_report/report.h"

#include <gtest/gtest.h>

#include <utility>

#include "tests/survey_report/written.h"

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
            "Axis  Minimum  Point   Maximum  Point  Difference\n"
            "----  -------  -----  --------  -----  ----------\n"
            "X     100.000      1   110.000      2      10.000\n"
            "Y     200.000      1  1200.500     10    1000.500\n"
            "Z     599.000     10   601.250      2       2.250\n"
            "\n"
            "\n"
            "Repeated points\n"
            "===============\n"
            "\n"
            "Tolerance  0.02, in X and in Y\n"
            "Pairs      1\n"
            "Points     1 of 4 would be removed\n"
            "\n"
            "A pair is any two points nearer than the tolerance in X and in Y; distance in plan,\n"
            "rise from the first. A removal would go once through the points in the order of X,\n"
            "take neighbours that near to the first of them for one point, and keep the\n"
            "highest. It would not see a pair that another point parts in that order: both may\n"
            "stay. This report and its drawings are of all points, none of them removed.\n"
            "\n"
            "Point  Code   Point  Code  Distance   Rise  Would be removed\n"
            "-----  -----  -----  ----  --------  -----  ----------------\n"
            "    2  SE\xC3\x91"
            "AL     2b           0.000  0.000  2b\n"
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
            "Contours\n"
            "========\n"
            "\n"
            "Step       0.2, every fifth level an index contour: 11 lines\n"
            "Lowest     599.200\n"
            "Highest    601.200\n"
            "Triangles  1 between 3 places of 4 points\n"
            "\n"
            "\n"
            "Longitudinal profile\n"
            "====================\n"
            "\n"
            "None: fewer than two points within 5.000 of the section line give it an elevation.\n"
            "\n"
            "\n"
            "Work area\n"
            "=========\n"
            "\n"
            "Area      rectangle over the middle half of the boundary\n"
            "Vertices  4\n"
            "Box       102.500, 450.125 to 107.500, 950.375\n"
            "Inside    0 of 4 points, to a hundredth\n"
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
                             "6.000  6.000      1.000     0.00  A, B, D\n"
                             "\n"
                             "1 node; elevation lowest 1.000, highest 1.000, mean 1.000; "
                             "mean of the slopes 0.00 %\n"))
      << relief_section(survey, study);
}

std::vector<SurveyPoint> slope_with_lowest(double z) {
  return {{"1", 0, 0, 100, "", 1},
          {"2", 10, 0, 104, "", 2},
          {"3", 0, 10, 110, "", 3},
          {"4", 90, 90, z, "", 4}};
}

// The plane of points 1 to 3 rises 108 in 100, whatever lies elsewhere.
TEST(Report, ASlopeBetweenThreeLevelsIsSaidToBeNoGradient) {
  StudyOptions options;
  options.grid_step = 2;
  for (const auto& [lowest, slope] : {std::pair(100.0, "111.80"), std::pair(0.0, "100.02")}) {
    const Survey survey = survey_of(slope_with_lowest(lowest));
    const std::string section = relief_section(survey, study_of(survey.points, options));
    EXPECT_NE(section.find(std::string("    102.800   ") + slope + "  1, 2, 3\n"), section.npos)
        << section;
    EXPECT_NE(section.find("Where all three levels differ it is not the steepest slope\n"
                           "of the triangle, which may be several times as large, and it changes "
                           "with how high the\n"
                           "triangle lies above the lowest point of the survey: read from it which "
                           "ground is level,\n"
                           "and no gradient.\n"),
              section.npos)
        << section;
  }
}

// The axis has points at 4 and 8: the elevation rises 3 in 4, and 6 is half way.
TEST(Report, TheProfileHasARowAStation) {
  std::vector<SurveyPoint> points = square;
  points.push_back({"E", 5, 4, 7, "", 5});
  points.push_back({"F", 9, 4, 10, "", 6});
  StudyOptions options;
  options.section = SectionLine{{1, 4}, {11, 4}};
  options.corridor = 0.5;
  options.station_step = 2;
  EXPECT_EQ(profile_section(study_of(points, options)),
            "Longitudinal profile\n"
            "====================\n"
            "\n"
            "Axis      the section line; distances from its start\n"
            "Terrain   2 points within 0.500 of the axis, at most 4.000 apart along it\n"
            "Lowest    7.000\n"
            "Highest   10.000\n"
            "Stations  every 2, and both ends of the terrain\n"
            "\n"
            "The terrain has a point where each of these points is beside the axis: with its own\n"
            "elevation where it is on the axis, else with that of the triangle of three points\n"
            "around the place on the axis. From one to the next it runs straight.\n"
            "\n"
            "Station  Distance      X      Y  Elevation\n"
            "-------  --------  -----  -----  ---------\n"
            "      1     4.000  5.000  4.000      7.000\n"
            "      2     6.000  7.000  4.000      8.500\n"
            "      3     8.000  9.000  4.000     10.000\n");
}

TEST(Report, TheWorkAreaHasARowAPointInside) {
  StudyOptions options;
  options.area.vertices = {{0, 0}, {15, 0}, {0, 9}};
  const Survey survey = survey_of(square);
  EXPECT_EQ(area_section(survey, study_of(survey.points, options)),
            "Work area\n"
            "=========\n"
            "\n"
            "Area      as given\n"
            "Vertices  3\n"
            "Box       0.000, 0.000 to 15.000, 9.000\n"
            "Inside    2 of 4 points, to a hundredth\n"
            "\n"
            "Point       X      Y      Z  Code\n"
            "-----  ------  -----  -----  ---------\n"
            "    A   1.000  1.000  1.000  LINDERO\n"
            "    B  11.000  1.000  1.000  LINDERO 2\n");
}

TEST(Report, AnAreaTooLargeForTheLibraryIsNotComputed) {
  StudyOptions options;
  options.area.vertices = {{0, 0}, {1e9, 0}, {0, 1e9}};
  const Survey survey = survey_of(square);
  EXPECT_TRUE(area_section(survey, study_of(survey.points, options))
                  .ends_with("Inside    not computed: the area is larger than 21474836.\n"));
}

TEST(Report, PointsOnALineEncloseNothing) {
  const Survey survey = survey_of({{"1", 0, 0, 0, "", 1}, {"2", 3, 3, 0, "", 2}});
  const Study study = study_of(survey.points, {});
  EXPECT_TRUE(boundary_section(study).ends_with("None: the points do not enclose an area.\n"));
  EXPECT_TRUE(profile_section(study).ends_with("None: the points do not enclose an area.\n"));
  EXPECT_TRUE(area_section(survey, study).ends_with("None: the points do not enclose an area.\n"));
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
