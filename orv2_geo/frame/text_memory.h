// text_memory.h: the memory of a text's units, of the kind that a host of the system
// takes and gives as its own texts.
#pragma once

#include <cstddef>

namespace orv2_geo {

/// Memory for `count` units (1 or more) of any content: in front of them their length in
/// bytes, behind them a zero. Failure 7 when there is none.
char16_t* obtain_units(std::size_t count);

/// Gives back what obtain_units lent, or what a host made as a text of the system.
void give_back_units(char16_t* units) noexcept;

}  // namespace orv2_geo
