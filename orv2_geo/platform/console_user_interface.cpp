#include "orv2_geo/platform/console_user_interface.h"

#include "orv2_geo/platform/form.h"

namespace orv2_geo {

namespace {

class ConsoleUserInterface final : public UserInterface {
 public:
  void error_box(const Text& text, std::int32_t, const Text* caption) override {
    const std::string title = caption != nullptr ? caption->to_utf8() : "Orv2_Geo";
    write_console_line(title + ": " + text.to_utf8());
  }

  void show_modal(Form& form) override {
    write_console_line("Orv2_Geo: no screen is available for \"" + form.caption().to_utf8() +
                       "\"; cancelled");
    form.cancel();
  }
};

}  // namespace

UserInterface& console_user_interface() {
  static ConsoleUserInterface console;
  return console;
}

}  // namespace orv2_geo
