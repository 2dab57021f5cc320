// user_interface.h: the port through which boxes and forms reach a person.
#pragma once

#include <cstdint>

#include "orv2_geo/frame/export.h"
#include "orv2_geo/frame/text.h"

namespace orv2_geo {

class Form;

/// What shows boxes and forms. A host can install its own on each thread on
/// which it uses the library; without one the system's is used.
class ORV2_PUBLIC UserInterface {
 public:
  virtual ~UserInterface() = default;

  /// Shows `text` with an OK button and returns when it is dismissed. `flags`
  /// is 0, or 16 for the critical icon; `caption` is null for the default one.
  virtual void error_box(const Text& text, std::int32_t flags, const Text* caption) = 0;

  /// Shows `form` and passes the user's actions on to it until it is no longer
  /// open. A form left open on return is cancelled. A failure that an action of
  /// the form raises here need not be passed on: the form does so.
  virtual void show_modal(Form& form) = 0;

  /// Lets waiting events be handled, in the middle of a routine.
  virtual void handle_events() {}
};

/// The interface in force on this thread.
ORV2_PUBLIC UserInterface& user_interface();

/// Installs `driver` on this thread, or the system's own when it is null.
/// `driver` must live until another one is installed. Answers with the driver
/// installed before.
ORV2_PUBLIC UserInterface* install_user_interface(UserInterface* driver) noexcept;

/// The system's own interface. On Windows it draws with the system's own controls; where
/// nobody sees windows, as in a service, boxes go to standard error and to the debugger.
/// Elsewhere it draws on the screen through the module described in screen_module.h,
/// sought beside this library and then where the loader looks. Without a screen (neither
/// DISPLAY nor WAYLAND_DISPLAY is set, or the display cannot be opened) or without the
/// module it writes boxes to standard error and leaves forms as their cancel button would.
UserInterface& system_user_interface();

}  // namespace orv2_geo
