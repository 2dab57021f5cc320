// Stands in for the module of the screen: what it is asked to show it writes on the standard
// output.
#include <cstdio>
#include <cstdlib>

#include "orv2_geo/platform/screen_module.h"

namespace {

class Written final : public orv2_geo::UserInterface {
 public:
  explicit Written(orv2_geo::UserInterface* without_screen) : without_screen_(without_screen) {}
  void error_box(const orv2_geo::Text& text, std::int32_t flags,
                 const orv2_geo::Text* caption) override {
    std::puts("module");
    without_screen_->error_box(text, flags, caption);
  }
  void show_modal(orv2_geo::Form&) override {}

 private:
  orv2_geo::UserInterface* without_screen_;
};

}  // namespace

extern "C" __attribute__((visibility("default"))) orv2_geo::UserInterface* orv2_geo_screen(
    std::uint32_t version, orv2_geo::LibraryMark library, orv2_geo::UserInterface* without_screen) {
  std::printf("asked %d %d\n", version == orv2_geo::screen_module_version, library != nullptr);
  if (std::getenv("STAND_IN_REFUSES") != nullptr) return nullptr;
  static Written written(without_screen);
  return &written;
}
