// page.h: a survey's report as one page for a browser, with nothing beside it.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "survey_report/svg.h"
#include "survey_report/tables.h"

namespace survey_report {

/// More rows of a table are not on the page: it says where all of them are.
constexpr std::size_t most_rows_on_page = 2000;

struct PageContent {
  const Figures& figures;
  const Drawing* plan = nullptr;            ///< none where there is no drawing
  const Drawing* profile = nullptr;         ///< the same
  std::string notes;                        ///< what is told under the plan
  std::span<const std::string_view> files;  ///< what stands in the folder beside the page
};

/// HTML with its styles and scripts: drawings that zoom and pan, layers by code, tables that
/// sort. Without scripts all of it is there to be read.
void write_page(Writer& out, const PageContent& content);

}  // namespace survey_report
