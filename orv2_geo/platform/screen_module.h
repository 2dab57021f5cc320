// screen_module.h: what the library and the module that draws boxes and forms
// on a screen agree on. The library never links the module; it loads it when a
// box or a form is first needed.
#pragma once

#include <cstdint>

#include "orv2_geo/platform/user_interface.h"

namespace orv2_geo {

/// Grows with every change that a module of another build could not follow.
inline constexpr std::uint32_t screen_module_version = 2;

inline constexpr const char* screen_module_file = "liborv2_geo_qt.so";
/// Below the library's own folder, where an installation has it; a build and a wheel
/// have the two beside each other.
inline constexpr const char* screen_module_folder = "orv2_geo/";
inline constexpr const char* screen_module_factory = "orv2_geo_screen";

/// Which library is asking: two copies of it in one process share no forms.
using LibraryMark = UserInterface* (*)(UserInterface*) noexcept;
inline constexpr LibraryMark this_library = &install_user_interface;

/// The module's one function. Answers with its user interface, which lives as
/// long as the process, or null for another version or another copy of the
/// library than the module's own. What cannot reach a screen, such as a call on
/// a thread of which the screen knows nothing, the interface passes on to
/// `without_screen`.
using ScreenModuleFactory = UserInterface* (*)(std::uint32_t version, LibraryMark library,
                                               UserInterface* without_screen);

}  // namespace orv2_geo
