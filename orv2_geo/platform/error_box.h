// error_box.h: the modal message box in its three forms, and trapped routines.
#pragma once

#include <string_view>
#include <utility>

#include "orv2_geo/frame/run_failure.h"
#include "orv2_geo/frame/text.h"
#include "orv2_geo/frame/treatments.h"

namespace orv2_geo {

/// The flag of a critical box.
inline constexpr std::int32_t critical_icon = 16;

/// In the middle of a box: the failure that it tells of, which a routine trapped. Null
/// for boxes that tell of none.
const RunFailure* trapped_failure() noexcept;

/// Plain: text only, default caption.
void error_box(std::u16string_view text);

/// Critical icon, default caption.
void critical_box(std::u16string_view text);

/// Critical icon, captioned with the failure's source.
void critical_box(std::u16string_view text, const RunFailure& failure);

/// Shows what stopped a trapped routine: its title, the failure's number, ":"
/// and the description. Titles end in a blank, and a number that is not
/// negative brings another.
void show_trapped(std::u16string_view title, const RunFailure& failure);

/// Runs the body of a trapped routine. A failure in it, or in what it calls,
/// stops it there and is shown; the routine then returns normally, and what
/// had been written stays.
template <class Body>
void trapped(const char* source, std::u16string_view title, Body&& body) {
  handled(source, std::forward<Body>(body),
          [&](const RunFailure& failure) { show_trapped(title, failure); });
}

}  // namespace orv2_geo
