// The system's own boxes and forms: on the screen where there is one.
#include <dlfcn.h>
#include <cstdlib>
#include <string>

#include "orv2_geo/platform/console_user_interface.h"
#include "orv2_geo/platform/screen_module.h"

namespace orv2_geo {

namespace {

bool is_set(const char* variable) {
  const char* value = std::getenv(variable);
  return value != nullptr && *value != '\0';
}

void* opened_module() {
  // It stays for good: what it draws with does not bear being unloaded.
  constexpr int mode = RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE;
  Dl_info here{};
  if (dladdr(reinterpret_cast<const void*>(&system_user_interface), &here) != 0) {
    const std::string library = here.dli_fname;
    const std::string folder = library.substr(0, library.rfind('/') + 1);
    for (const char* below : {"", screen_module_folder}) {
      if (folder.empty()) break;
      void* module = dlopen((folder + below + screen_module_file).c_str(), mode);
      if (module != nullptr) return module;
    }
  }
  return dlopen(screen_module_file, mode);
}

UserInterface* module_interface() {
  void* module = opened_module();
  void* factory = module != nullptr ? dlsym(module, screen_module_factory) : nullptr;
  if (factory == nullptr) return nullptr;
  return reinterpret_cast<ScreenModuleFactory>(factory)(screen_module_version, this_library,
                                                        &console_user_interface());
}

UserInterface& in_force() {
  if (is_set("DISPLAY") || is_set("WAYLAND_DISPLAY")) {
    static UserInterface* const screen = module_interface();
    if (screen != nullptr) return *screen;
  }
  return console_user_interface();
}

class SystemUserInterface final : public UserInterface {
 public:
  void error_box(const Text& text, std::int32_t flags, const Text* caption) override {
    in_force().error_box(text, flags, caption);
  }
  void show_modal(Form& form) override { in_force().show_modal(form); }
};

}  // namespace

UserInterface& system_user_interface() {
  static SystemUserInterface system;
  return system;
}

}  // namespace orv2_geo
