#include "survey_report/repeats.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <random>

#include "survey_report/report.h"
#include "tests/platform/recording_interface.h"
#include "tests/survey_report/written.h"

namespace survey_report {
namespace {

using orv2_geo::Form;
using orv2_geo::testing_support::RecordingInterface;
using Points = std::vector<SurveyPoint>;
using Places = std::vector<std::size_t>;
using PlacePairs = std::vector<std::pair<std::size_t, std::size_t>>;

struct At {
  double x, y, z;
};

Points points_at(const std::vector<At>& places) {
  Points points;
  for (const At& at : places) {
    const std::string number = std::to_string(points.size() + 1);
    points.push_back({"P" + number, at.x, at.y, at.z, "C" + number, points.size() + 1});
  }
  return points;
}

PlacePairs places_of(const Repeats& repeats) {
  PlacePairs pairs;
  for (const RepeatedPair& pair : repeats.pairs) pairs.emplace_back(pair.first, pair.second);
  return pairs;
}

struct Row {
  const char* rule;
  double tolerance;
  std::vector<At> places;
  PlacePairs pairs;
  Places kept;
};

const Row rows[] = {
    {"one point", 1, {{0, 0, 0}}, {}, {0}},
    {"two points apart", 1, {{0, 0, 0}, {0, 5, 0}}, {}, {0, 1}},
    {"of two the higher stays", 1, {{0, 0, 3}, {0.5, 0.5, 4}}, {{0, 1}}, {1}},
    {"the western one is not the one that stays", 1, {{0, 0, 4}, {0.5, 0, 3}}, {{0, 1}}, {0}},
    {"of equal heights the earlier stays", 1, {{0.5, 0, 3}, {0, 0, 3}}, {{0, 1}}, {0}},
    {"near in each axis, farther apart in plan", 1, {{0, 0, 0}, {0.9, -0.9, 0}}, {{0, 1}}, {0}},
    {"the tolerance itself is not near in X", 1, {{0, 0, 0}, {1, 0, 0}}, {}, {0, 1}},
    {"nor in Y", 1, {{0, 1, 0}, {0, 0, 0}}, {}, {0, 1}},
    {"height does not part", 1, {{0, 0, 0}, {0, 0, 99}}, {{0, 1}}, {1}},
    {"pairs are in the order of the survey",
     1,
     {{9, 0, 0}, {0, 0, 0}, {0, 0, 1}, {9, 0, 1}},
     {{0, 3}, {1, 2}},
     {2, 3}},
    {"three on one spot are three pairs",
     1,
     {{0, 0, 0}, {0, 0, 2}, {0, 0, 1}},
     {{0, 1}, {0, 2}, {1, 2}},
     {1}},
    {"a chain ends where the first is no longer near",
     1,
     {{0, 0, 0}, {0.6, 0, 0}, {1.2, 0, 0}},
     {{0, 1}, {1, 2}},
     {0, 2}},
    {"a pair that another point parts in X is listed and not removed",
     1,
     {{0, 0, 0}, {0.2, 50, 0}, {0.4, 0, 0}},
     {{0, 2}},
     {0, 1, 2}},
    {"both of a pair may be removed",
     1,
     {{0, 0, 0}, {0.1, 0, 1}, {0.2, 0, 2}},
     {{0, 1}, {0, 2}, {1, 2}},
     {2}},
};

TEST(Repeats, WhatIsListedAndWhatStays) {
  for (const Row& row : rows) {
    const Repeats repeats = repeats_of(points_at(row.places), row.tolerance);
    EXPECT_EQ(places_of(repeats), row.pairs) << row.rule;
    EXPECT_EQ(repeats.kept, row.kept) << row.rule;
    EXPECT_EQ(repeats.fault, "") << row.rule;
  }
}

TEST(Repeats, APairIsMeasured) {
  const Repeats repeats = repeats_of(points_at({{3, 4, 7}, {0, 0, 9}}), 5);
  EXPECT_EQ(repeats.pairs, (std::vector<RepeatedPair>{{0, 1, 5.0, 2.0}}));
}

TEST(Repeats, ThePointsThatStayKeepNumbersAndCodes) {
  const Points points = points_at({{9, 0, 1}, {0, 0, 3}, {0, 0, 4}});
  const Points kept = kept_points(points, repeats_of(points, 1));
  EXPECT_EQ(point_file(kept, FieldOrder::x_first),
            "Number,X,Y,Z,Code\n"
            "P1,9.000,0.000,1.000,C1\n"
            "P3,0.000,0.000,4.000,C3\n");
}

// All pairs, one by one.
PlacePairs compared(const Points& points, double tolerance) {
  PlacePairs pairs;
  for (std::size_t j = 1; j < points.size(); ++j) {
    for (std::size_t i = 0; i < j; ++i) {
      if (std::abs(points[i].x - points[j].x) < tolerance &&
          std::abs(points[i].y - points[j].y) < tolerance) {
        pairs.emplace_back(i, j);
      }
    }
  }
  std::sort(pairs.begin(), pairs.end());
  return pairs;
}

TEST(Repeats, AsWhenAllPairsAreCompared) {
  std::mt19937 random(7);
  for (const unsigned side : {3U, 10U, 40U, 200U}) {
    for (const double tolerance : {0.25, 1.0, 1.5, 8.0}) {
      std::vector<At> places;
      for (int i = 0; i < 150; ++i) {
        const auto any = [&] { return static_cast<double>(random() % (4 * side)) / 4.0; };
        places.push_back({any(), any(), any()});
      }
      const Points points = points_at(places);
      const PlacePairs expected = compared(points, tolerance);
      const Repeats repeats = repeats_of(points, tolerance);
      if (expected.size() > most_pairs) {
        EXPECT_TRUE(repeats.too_many_pairs);
        continue;
      }
      EXPECT_EQ(places_of(repeats), expected) << side << ' ' << tolerance;
      // Whoever goes has one in its box that stays.
      for (std::size_t i = 0; i < points.size(); ++i) {
        const bool paired = std::any_of(expected.begin(), expected.end(), [&](const auto& pair) {
          return pair.first == i || pair.second == i;
        });
        EXPECT_TRUE(paired || repeats.keeps(i)) << i;
      }
    }
  }
}

TEST(Repeats, ManyPairsAreNotListed) {
  const Points points = points_at(std::vector<At>(142, At{1, 2, 3}));  // 10011 pairs
  const Repeats repeats = repeats_of(points, 1);
  EXPECT_TRUE(repeats.too_many_pairs);
  EXPECT_EQ(repeats.kept, Places{0});
  const Points fewer(points.begin(), points.begin() + 141);  // 9870
  EXPECT_EQ(repeats_of(fewer, 1).pairs.size(), 9870U);
}

TEST(Repeats, ARefusalOfTheLibraryRemovesNothing) {
  RecordingInterface screen;  // the library tells it in a box, too
  const Points points = points_at({{0, 1.7e308, 0}, {1, 0, 0}});
  const Repeats repeats = repeats_of(points, 1e308);
  EXPECT_EQ(repeats.fault, "the library's search failed");
  EXPECT_EQ(screen.boxes.size(), 1U);
  Study study;
  study.repeats = repeats;
  EXPECT_NE(repeats_section({"plot.csv", FieldOrder::x_first, points}, study)
                .find("\nPoints     none would be removed: the library's search failed\n"),
            std::string::npos);
}

// ---- The section

const Points plot =
    points_at({{10, 20, 5}, {10.01, 20, 5.5}, {30, 20, 1}, {30.01, 99, 1}, {30.015, 20, 1}});

TEST(RepeatsSection, HasARowAPairAndSaysWhoGoes) {
  Study study;
  study.repeats = repeats_of(plot, default_tolerance);
  EXPECT_EQ(repeats_section({"plot.csv", FieldOrder::x_first, plot}, study),
            "Repeated points\n"
            "===============\n"
            "\n"
            "Tolerance  0.02, in X and in Y\n"
            "Pairs      2\n"
            "Points     1 of 5 would be removed\n"
            "\n"
            "A pair is any two points nearer than the tolerance in X and in Y; distance in plan,\n"
            "rise from the first. A removal would go once through the points in the order of X,\n"
            "take neighbours that near to the first of them for one point, and keep the\n"
            "highest. It would not see a pair that another point parts in that order: both may\n"
            "stay. This report and its drawings are of all points, none of them removed.\n"
            "\n"
            "Point  Code  Point  Code  Distance   Rise  Would be removed\n"
            "-----  ----  -----  ----  --------  -----  ----------------\n"
            "   P1  C1       P2  C2       0.010  0.500  P1\n"
            "   P3  C3       P5  C5       0.015  0.000  -\n");
}

TEST(RepeatsSection, ManyPairsAreCounted) {
  const Points same = points_at(std::vector<At>(142, At{1, 2, 3}));
  Study study;
  study.repeats = repeats_of(same, 5);
  EXPECT_EQ(repeats_section({"plot.csv", FieldOrder::x_first, same}, study),
            "Repeated points\n"
            "===============\n"
            "\n"
            "Tolerance  5, in X and in Y\n"
            "Pairs      more than 10000: not listed\n"
            "Points     141 of 142 would be removed\n");
}

// ---- The dialog

DialogRemoval removal_by(std::function<void(Form&)> user) {
  RecordingInterface screen;
  screen.user = std::move(user);
  DialogRemoval removal = remove_in_dialog(plot);
  EXPECT_TRUE(screen.boxes.empty());
  return removal;
}

std::string section_of(const DialogRemoval& removal) {
  return dialog_section({"plot.csv", FieldOrder::x_first, plot}, removal, "plot_kept.csv");
}

void remove_at(Form& form, const char16_t* tolerance) {
  EXPECT_EQ(form.control("labPuntos").text().to_utf8(), "5");
  form.set_text("TxtPresc", orv2_geo::Text(tolerance));
  form.click("cmdCalcular");
  form.click("cmdEliminar");
}

TEST(RepeatsDialog, WhatTheUserKeptHasItsNumbersAndCodes) {
  const DialogRemoval removal = removal_by([](Form& form) { remove_at(form, u"0.02"); });
  EXPECT_TRUE(removal.confirmed);
  EXPECT_EQ(point_file(removal.kept, FieldOrder::x_first),
            "Number,X,Y,Z,Code\n"
            "P2,10.010,20.000,5.500,C2\n"
            "P3,30.000,20.000,1.000,C3\n"
            "P4,30.010,99.000,1.000,C4\n"
            "P5,30.015,20.000,1.000,C5\n");
  EXPECT_EQ(removal.stands_for, (Places{0, 0, 1, 2, 3}));
  EXPECT_EQ(section_of(removal),
            "Points kept in the dialog\n"
            "=========================\n"
            "\n"
            "Points  4 of 5\n"
            "File    plot_kept.csv\n"
            "\n"
            "The others are left out of the file alone: this report and its drawings are of all\n"
            "points.\n"
            "\n"
            "Kept  Code  Stands for\n"
            "----  ----  ----------\n"
            "  P2  C2    P1, P2\n");
}

TEST(RepeatsDialog, InSpaceNothingIsRepeated) {
  const DialogRemoval removal = removal_by([](Form& form) {
    form.select("Opt3D(1)");
    remove_at(form, u"0.02");
  });
  EXPECT_EQ(removal.kept.size(), plot.size());
  EXPECT_TRUE(section_of(removal).ends_with("\n\nPoints  5 of 5\nFile    plot_kept.csv\n"));
}

struct ExitRow {
  const char* rule;
  void (*user)(Form&);
  bool confirmed;
};

TEST(RepeatsDialog, OnlyARemovalCounts) {
  const ExitRow exits[] = {
      {"Cancelar at once", [](Form& form) { form.click("cmdCancelar"); }, false},
      {"Escape", [](Form& form) { form.press_escape(); }, false},
      {"the title bar, before anything is computed", [](Form& form) { form.close(); }, false},
      {"no answer at all", [](Form&) {}, false},
      {"Cancelar after the computation",
       [](Form& form) {
         form.click("cmdCalcular");
         form.click("cmdCancelar");
       },
       false},
      {"the title bar after the computation removes",
       [](Form& form) {
         form.click("cmdCalcular");
         form.close();
       },
       true},
      {"Enter and Eliminar",
       [](Form& form) {
         form.press_enter();
         form.click("cmdEliminar");
       },
       true},
  };
  for (const ExitRow& row : exits) {
    const DialogRemoval removal = removal_by(row.user);
    EXPECT_EQ(removal.confirmed, row.confirmed) << row.rule;
    EXPECT_EQ(removal.kept.size(), row.confirmed ? plot.size() : 0) << row.rule;
  }
  EXPECT_EQ(section_of({}),
            "Points kept in the dialog\n"
            "=========================\n"
            "\n"
            "Cancelled: no file of kept points was written.\n");
}

TEST(RepeatsDialog, ASearchThatFailsCanOnlyBeCancelled) {
  RecordingInterface screen;
  screen.user = [](Form& form) {
    form.set_text("TxtPresc", u"1e308");
    form.click("cmdCalcular");
    form.click("cmdEliminar");
    EXPECT_TRUE(form.open());
    form.close();
  };
  EXPECT_FALSE(remove_in_dialog(points_at({{0, 1.7e308, 0}, {1, 0, 0}})).confirmed);
  EXPECT_EQ(screen.boxes.size(), 1U);
}

TEST(RepeatsDialog, ItsSectionStandsInTheReport) {
  const Survey survey{"plot.csv", FieldOrder::x_first, plot};
  const Study study = study_of(plot, {});
  const std::string with = report(survey, study, section_of({}));
  EXPECT_NE(with.find("P3  C3       P5  C5       0.015  0.000  -\n\n\nPoints kept in the dialog\n"),
            std::string::npos);
  EXPECT_NE(with.find("was written.\n\n\nBoundary and section line\n"), std::string::npos);
  EXPECT_EQ(report(survey, study).find("in the dialog"), std::string::npos);
}

}  // namespace
}  // namespace survey_report
