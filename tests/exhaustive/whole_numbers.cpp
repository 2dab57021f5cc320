#include "tests/exhaustive/check.h"
namespace orv2_geo::exhaustive {
std::vector<Check> checks_of_whole_numbers() { return {}; }
}  // namespace orv2_geo::exhaustive
