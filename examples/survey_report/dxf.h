// dxf.h: a survey as a drawing for CAD programs.
#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <string_view>

#include "survey_report/tables.h"
#include "survey_report/writer.h"

namespace survey_report {

/// Of a larger survey the points have no texts.
constexpr std::size_t most_point_texts = 50000;

/// Gives layers names that any CAD program takes: A to Z, digits, $, - and _, at most 31, no
/// name twice.
class LayerNames {
 public:
  /// A name for what is called `text`, which may be empty.
  std::string name_for(std::string_view text);

 private:
  std::set<std::string> taken_;
};

/// A text as a DXF file has it: on one line, in Windows-1252, without what CAD programs take
/// for commands.
std::string dxf_text(std::string_view text);

/// Writes a DXF file of release 12: all points in full precision, on a layer for each code,
/// with texts of their numbers and elevations; boundary, section line, work area and contours;
/// and beside them the profile, at its exaggeration.
void write_dxf(Writer& out, const Figures& figures);

}  // namespace survey_report
