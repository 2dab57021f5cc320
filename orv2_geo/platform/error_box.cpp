#include "orv2_geo/platform/error_box.h"

#include <string>

#include "orv2_geo/platform/text_services.h"
#include "orv2_geo/platform/user_interface.h"

namespace orv2_geo {

void error_box(std::u16string_view text) { user_interface().error_box(Text(text), 0, nullptr); }

void critical_box(std::u16string_view text) {
  user_interface().error_box(Text(text), critical_icon, nullptr);
}

void critical_box(std::u16string_view text, const RunFailure& failure) {
  const Text caption = Text::from_utf8(failure.source());
  user_interface().error_box(Text(text), critical_icon, &caption);
}

void show_trapped(std::u16string_view title, const RunFailure& failure) {
  std::u16string text(title);
  text += text_services::signed_text(failure.number()).view();
  text += u":";
  text += Text::from_utf8(failure.description()).view();
  critical_box(text, failure);
}

}  // namespace orv2_geo
