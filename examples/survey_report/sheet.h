// sheet.h: sheets of paper, the parts of a drawing on them, and where a place
// falls on a plan.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "survey_report/boundary.h"
#include "survey_report/labels.h"
#include "survey_report/svg.h"
#include "survey_report/words.h"

namespace survey_report {

/// A drawing that cannot be made.
class DrawingFault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// ---- What the user may choose

/// A format of paper, in millimetres.
struct Paper {
  std::string_view name;
  double longer;
  double shorter;
};

/// From the smallest to the largest.
constexpr std::array<Paper, 4> papers = {
    {{"A4", 297, 210}, {"A3", 420, 297}, {"A2", 594, 420}, {"A1", 841, 594}}};

/// The unit of a survey's lengths.
struct Unit {
  std::string_view option;  ///< how the command line names it
  Word name;                ///< how a sheet names it
  double millimetres;
};

constexpr std::array<Unit, 3> units = {{{"m", words::metres, 1000.0},
                                        {"ft", words::feet, 304.8},
                                        {"us-ft", words::us_survey_feet, 1200000.0 / 3937.0}}};

struct DrawingOptions {
  std::optional<Paper> paper;           ///< else the smallest with room for most labels
  std::optional<double> plan_scale;     ///< else the largest round one that the sheet has room for
  std::optional<double> profile_scale;  ///< of its distances; else as that of the plan
  std::optional<Unit> unit;             ///< else metres, which the sheet calls assumed

  double millimetres() const { return unit.value_or(units.front()).millimetres; }
};

/// The unit as a sheet states it.
std::string unit_text(const DrawingOptions& options);

// ---- Sheets

/// A sheet of paper, as it lies.
struct Sheet {
  Paper paper;
  bool landscape = true;

  double width() const { return landscape ? paper.longer : paper.shorter; }
  double height() const { return landscape ? paper.shorter : paper.longer; }

  /// The line around everything: 20 mm from the left edge, where a sheet is
  /// bound, 10 mm from the others.
  Rect border() const { return {20.0, 10.0, width() - 10.0, height() - 10.0}; }

  /// "A3, 420 x 297 mm"
  std::string text() const;
};

/// The least letters on a sheet: their capitals are 2 mm high in any usual font.
constexpr double least_letters = 3.0;

/// A sheet with a scale for what is drawn on it.
struct ScaledSheet {
  Sheet sheet;
  double scale = 1.0;
};

/// What a drawing asks for, to find its sheet.
class SheetNeeds {
 public:
  SheetNeeds() = default;
  SheetNeeds(const SheetNeeds&) = delete;
  SheetNeeds& operator=(const SheetNeeds&) = delete;
  virtual ~SheetNeeds() = default;

  /// The scale that makes it just fit; 0 where it has no size.
  virtual double least_scale(const Sheet& sheet) const = 0;
  /// Of its labels, the part that will about find room.
  virtual double labelled(const ScaledSheet& scaled) const = 0;
  /// How it lies where both ways give the same scale.
  virtual bool prefers_landscape() const = 0;
};

/// The smallest sheet on which most labels find room, at the largest round scale
/// that it has room for; where most find room on none, the one with the most.
/// With a scale of the user the smallest sheet that has room for it. Throws
/// ChoiceFault, which begins with `scale_option`, when there is none.
ScaledSheet sheet_for(const SheetNeeds& needs, const std::optional<Paper>& paper,
                      const std::optional<double>& scale, std::string_view scale_option);

// ---- What is on them

/// A value with so many decimals, or where that is longer than `longest`
/// characters, with four digits and the power of ten.
std::string sheet_value(double value, int decimals, std::size_t longest = 10);

/// "12 labels left out"
std::string left_out_text(std::size_t labels);

/// A cell of a title block: its frame, and a text. One that is too long is set in
/// smaller letters, and then cut.
void draw_cell(Svg& svg, const Rect& cell, std::string_view text, double size, bool bold = false);

/// Puts the middle of a box of the survey into the middle of a frame.
class Mapping {
 public:
  /// One unit of the survey takes `scale` millimetres.
  Mapping(const Box& box, const Rect& frame, double scale);

  double scale() const { return scale_; }
  Place on_sheet(const Place& place) const;

  /// What of the survey's plane is inside the frame.
  Box visible() const;

 private:
  Rect frame_;
  Place centre_;
  double scale_;
};

}  // namespace survey_report
