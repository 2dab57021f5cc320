// Any bytes as a point file.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/harness.h"
#include "survey_report/points.h"

namespace survey_report {
namespace {

bool same(double a, double b) {
  return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

void expect_possible(const PointFile& file, std::string_view bytes) {
  std::size_t line = 0;
  for (const SurveyPoint& point : file.points) {
    EXPECT_GT(point.line, line);
    line = point.line;
    EXPECT_FALSE(point.number.empty());
    EXPECT_TRUE(std::isfinite(point.x) && std::isfinite(point.y) && std::isfinite(point.z));
  }
  EXPECT_LE(line, bytes.size() + 1);
  for (const BadLine& bad : file.bad_lines) {
    EXPECT_LE(bad.line, bytes.size() + 1);
    EXPECT_LE(bad.column, bytes.size() + 1);
    EXPECT_FALSE(bad.what.empty());
  }
  EXPECT_EQ(messages("file", file.bad_lines).empty(), file.bad_lines.empty());
}

// What was read is written and read again.
void expect_to_read_back(const std::vector<SurveyPoint>& points, FieldOrder order) {
  Writer out;
  write_point_file(out, points, order);
  const PointFile again = read_points(out.take(), order);
  EXPECT_TRUE(again.bad_lines.empty()) << messages("file", again.bad_lines);
  ASSERT_EQ(again.points.size(), points.size());
  for (std::size_t i = 0; i < points.size(); ++i) {
    const SurveyPoint& one = points[i];
    const SurveyPoint& other = again.points[i];
    EXPECT_EQ(one.number, other.number);
    EXPECT_EQ(one.code, other.code);
    EXPECT_TRUE(same(one.x, other.x) && same(one.y, other.y) && same(one.z, other.z));
  }
}

}  // namespace
}  // namespace survey_report

void orv2_geo::fuzzing::try_input(const std::uint8_t* data, std::size_t size) {
  using namespace survey_report;
  // Exactly so long: what is read past the end is seen.
  const std::vector<char> bytes(data, data + size);
  const std::string_view text(bytes.data(), bytes.size());
  for (const FieldOrder order : {FieldOrder::x_first, FieldOrder::northing_first}) {
    const PointFile file = read_points(text, order);
    expect_possible(file, text);
    expect_to_read_back(file.points, order);
  }
}
