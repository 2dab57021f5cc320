// expect_controls.h: a form's controls compared with a table, in the order of the design.
#pragma once

#include <gtest/gtest.h>

#include <span>

#include "orv2_geo/platform/form.h"

namespace orv2_geo::testing_support {

/// Places and sizes in twips, inside a frame relative to it.
struct ControlRow {
  const char* name;
  ControlKind kind;
  std::int32_t left, top, width, height;
  std::int16_t tab_index;
  const char16_t* text;
  const char* container = "";
};

inline void expect_controls(const Form& form, std::span<const ControlRow> rows) {
  ASSERT_EQ(form.size(), rows.size());
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const ControlRow& row = rows[i];
    const ControlDesign& design = form.control(i).design();
    EXPECT_EQ(design.name, row.name);
    EXPECT_EQ(design.kind, row.kind) << row.name;
    EXPECT_EQ(design.left, row.left) << row.name;
    EXPECT_EQ(design.top, row.top) << row.name;
    EXPECT_EQ(design.width, row.width) << row.name;
    EXPECT_EQ(design.height, row.height) << row.name;
    EXPECT_EQ(design.tab_index, row.tab_index) << row.name;
    EXPECT_EQ(design.container, row.container) << row.name;
    EXPECT_EQ(form.control(i).text(), Text(row.text)) << row.name;
  }
}

/// The names of the controls of which `condition` holds, each followed by a blank.
template <class Condition>
std::string controls_where(const Form& form, Condition condition) {
  std::string names;
  for (std::size_t i = 0; i < form.size(); ++i) {
    if (condition(form.control(i))) names += std::string(form.control(i).design().name) + ' ';
  }
  return names;
}

}  // namespace orv2_geo::testing_support
