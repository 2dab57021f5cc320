// boxes.h: stands in for the person before the screen.
#pragma once

#include <windows.h>

#include <vector>

#include "tests/vectors/values.h"

namespace orv2_geo::early_bound {

/// From now on the module's message boxes are written down and answered with OK instead of shown.
/// False where the module imports no such function.
bool take_boxes_of(HMODULE module);

/// The boxes since the last time.
std::vector<vectors::Box> taken_boxes();

}  // namespace orv2_geo::early_bound
