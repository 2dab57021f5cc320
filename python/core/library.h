// library.h: the functions of the library, through its C header, from the file that was asked
// for.
#pragma once

#include <cstdint>
#include <string>
#include <type_traits>

#include "orv2_geo/orv2_geo.h"

namespace orv2_geo::python {

// Every function that the package calls, by the name of the header.
// clang-format off
#define ORV2_PYTHON_FUNCTIONS(use)                                                             \
  use(orv2_version) use(orv2_last_failure) use(orv2_failure_at) use(orv2_class_count)          \
  use(orv2_class_at) use(orv2_member_at) use(orv2_parameter_at) use(orv2_parameter_use)        \
  use(orv2_create) use(orv2_reference) use(orv2_release) use(orv2_class_of)                    \
  use(orv2_find_member) use(orv2_call) use(orv2_call_rows) use(orv2_number_of_text)            \
  use(orv2_array_make) use(orv2_array_new) use(orv2_array_host) use(orv2_array_describe)       \
  use(orv2_array_bounds) use(orv2_array_resize) use(orv2_array_lock) use(orv2_array_unlock)    \
  use(orv2_array_get_text) use(orv2_array_set_text) use(orv2_text_new) use(orv2_text_set)      \
  use(orv2_text_get) use(orv2_host_object_new) use(orv2_set_failure)                           \
  use(orv2_set_user_interface) use(orv2_set_console_interface) use(orv2_has_user_interface)    \
  use(orv2_trapped_failure) use(orv2_set_owner_window) use(orv2_form_describe)                 \
  use(orv2_form_control) use(orv2_form_grid) use(orv2_form_describe_frame) use(orv2_form_look) \
  use(orv2_form_font) use(orv2_form_alignment) use(orv2_form_cell) use(orv2_form_focus)        \
  use(orv2_form_click) use(orv2_form_select) use(orv2_form_set_text) use(orv2_form_set_focus)  \
  use(orv2_form_press_enter) use(orv2_form_press_escape) use(orv2_form_close)
// clang-format on

/// What stands for a function until the library is opened: failure 5, a count of 0.
template <class Function>
struct NotOpened;
template <class Answer, class... Given>
struct NotOpened<Answer (*)(Given...)> {
  static Answer call(Given...) { return std::is_same_v<Answer, std::int32_t> ? 5 : 0; }
};

struct Library {
// A name that is declared cannot stand in parentheses.
// NOLINTNEXTLINE(bugprone-macro-parentheses)
#define ORV2_PYTHON_DECLARED(name) decltype(&::name) name;
  ORV2_PYTHON_FUNCTIONS(ORV2_PYTHON_DECLARED)
#undef ORV2_PYTHON_DECLARED
};

/// The library in use. Until it is opened every function of it fails.
extern Library library;

/// Opens the library at `path`, or by its name wherever the loader looks. Empty when it is
/// in use then, else why not. Another one cannot take its place.
std::string opened(const char* path);

/// The file of the library in use; empty when there is none.
std::string library_path();

bool is_open() noexcept;

}  // namespace orv2_geo::python
