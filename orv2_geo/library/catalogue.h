// catalogue.h: the seven public classes and the way to find their members.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

#include "orv2_geo/frame/class_description.h"
#include "orv2_geo/frame/export.h"

namespace orv2_geo {

inline constexpr std::string_view library_name = "Orv2_Geo";

/// The public classes in the order of the interface.
ORV2_PUBLIC std::span<const ClassDescription* const> catalogue() noexcept;

/// The class registered as `registered_name`, such as
/// "Orv2_Geo.cgeo_Algorismos", case ignored; null when there is none.
ORV2_PUBLIC const ClassDescription* find_class(std::string_view registered_name) noexcept;

/// What a caller means by a name that may be a property's.
enum class Wanted : std::uint8_t { method = 0, property_read = 1, property_write = 2, any = 3 };

/// The position (from 0, in interface order) of the member `name`, case
/// ignored. `any` takes a method, or the read side of a property. Nothing when
/// the class has no such member.
ORV2_PUBLIC std::optional<std::size_t> find_member(const ClassDescription& of_class,
                                                   std::string_view name,
                                                   Wanted wanted = Wanted::any) noexcept;

/// Where a call of `name` with so many arguments goes: to a method, or to a property's side.
/// Failure 438, signed with the class.
ORV2_PUBLIC std::size_t position_of(const ClassDescription& of_class, std::string_view name,
                                    std::size_t argument_count);

}  // namespace orv2_geo
