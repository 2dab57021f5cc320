// class_factory.h: what makes a component host's objects.
#pragma once

#include "orv2_geo/com/component.h"

namespace orv2_geo::com {

/// The factory of a class, for the life of the module: IClassFactory.
HRESULT class_factory(const ComponentClass& of_class, REFIID wanted, void** place) noexcept;

}  // namespace orv2_geo::com
