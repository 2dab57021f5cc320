#include "orv2_geo/platform/posix/console_user_interface.h"

#include <cstdio>
#include <string>

#include "orv2_geo/platform/form.h"

namespace orv2_geo {

namespace {

class ConsoleUserInterface final : public UserInterface {
 public:
  void error_box(const Text& text, std::int32_t, const Text* caption) override {
    const std::string title = caption != nullptr ? caption->to_utf8() : "Orv2_Geo";
    std::fprintf(stderr, "%s: %s\n", title.c_str(), text.to_utf8().c_str());
  }

  void show_modal(Form& form) override {
    std::fprintf(stderr, "Orv2_Geo: no screen is available for \"%s\"; cancelled\n",
                 form.caption().to_utf8().c_str());
    form.cancel();
  }
};

}  // namespace

UserInterface& console_user_interface() {
  static ConsoleUserInterface console;
  return console;
}

}  // namespace orv2_geo
