// portable_call.h: a call of a vector, made through the C boundary.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "orv2_geo/orv2_geo.h"
#include "tests/support/floating_point.h"
#include "tests/vectors/values.h"

namespace orv2_geo::vectors {

/// The type of a parameter or a result; none where it is told by its content.
Kind kind_of_tag(std::uint16_t tag);

/// Told whenever the library begins to run (true), and when the test does (false): around a call
/// and, the other way round, around what the library asks of the test in the middle of it.
using WhoRuns = std::function<void(bool library)>;

/// An object that takes calls. While it lives it stands in for the person before the screen: boxes
/// are written down, forms cancelled, unless it presses buttons.
class PortableObject {
 public:
  explicit PortableObject(const char* registered_name);
  ~PortableObject();
  PortableObject(const PortableObject&) = delete;
  PortableObject& operator=(const PortableObject&) = delete;

  /// What the call does; `by_value` tells of each parameter how it is handed over.
  Outcome call(std::size_t position, const std::vector<Given>& given,
               const std::vector<bool>& by_value);

  /// From now on calls are made in those floating-point settings of the host.
  void call_in(const testing::Units& settings) { settings_ = settings; }

  /// From now on told of who runs.
  void tell_who_runs(WhoRuns told) { who_runs_ = std::move(told); }

  /// From now on the person presses those buttons, of the ones that a form has.
  void press(std::vector<std::string> buttons) { buttons_ = std::move(buttons); }

  /// Whether all calls left those settings, and called back in them.
  bool settings_held() const { return settings_held_; }

  /// Whether the last call showed a form.
  bool showed_form() const { return showed_form_; }

 private:
  static std::int32_t take_property(void* self, const char* name, const orv2_value* value);
  static std::int32_t take_call(void* self, const char* name, const orv2_value* arguments,
                                std::size_t count, orv2_value* result);
  static std::int32_t take_box(void* self, const char* text, std::int32_t flags,
                               const char* caption);
  static std::int32_t take_form(void* self, orv2_form* form);

  class Inside;

  std::int32_t call_member(std::size_t position, const orv2_value* values, std::size_t count,
                           orv2_value& result);
  void look_at_settings();
  void now_runs(bool library) const {
    if (who_runs_) who_runs_(library);
  }

  orv2_handle object_ = 0;
  orv2_handle host_ = 0;
  Outcome outcome_;
  bool showed_form_ = false;
  WhoRuns who_runs_;
  std::vector<std::string> buttons_;
  std::optional<testing::Units> settings_;
  testing::Units own_settings_;  // of the test itself
  bool settings_held_ = true;
};

}  // namespace orv2_geo::vectors
