#include "orv2_geo/platform/error_box.h"

#include <string>
#include <utility>

#include "orv2_geo/platform/asked_interface.h"
#include "orv2_geo/platform/text_services.h"

namespace orv2_geo {

namespace {

thread_local const RunFailure* told = nullptr;

// Says which failure a box tells of, for as long as it is up; boxes may lie over others.
class Telling {
 public:
  explicit Telling(const RunFailure* failure) noexcept : before_(std::exchange(told, failure)) {}
  Telling(const Telling&) = delete;
  Telling& operator=(const Telling&) = delete;
  ~Telling() { told = before_; }

 private:
  const RunFailure* before_;
};

void box(std::u16string_view text, std::int32_t flags, const Text* caption,
         const RunFailure* failure) {
  const Telling while_it_is_up(failure);
  ask_user_interface([&](UserInterface& shown) { shown.error_box(Text(text), flags, caption); });
}

}  // namespace

const RunFailure* trapped_failure() noexcept { return told; }

void error_box(std::u16string_view text) { box(text, 0, nullptr, nullptr); }

void critical_box(std::u16string_view text) { box(text, critical_icon, nullptr, nullptr); }

void critical_box(std::u16string_view text, const RunFailure& failure) {
  const Text caption = Text::from_utf8(failure.source());
  box(text, critical_icon, &caption, &failure);
}

void show_trapped(std::u16string_view title, const RunFailure& failure) {
  std::u16string text(title);
  text += text_services::signed_text(failure.number()).view();
  text += u":";
  text += Text::from_utf8(failure.description()).view();
  critical_box(text, failure);
}

}  // namespace orv2_geo
