// registration.h: the library's entries in the system's registry.
#pragma once

#include "orv2_geo/com/system.h"

namespace orv2_geo::com {

/// Enters classes, interfaces and type library: for all users where the machine's registry
/// can be written, else for this one. A failure leaves nothing behind.
HRESULT register_library() noexcept;

/// Removes what register_library entered, for all users and for this one, and nothing else.
HRESULT unregister_library() noexcept;

}  // namespace orv2_geo::com
