// Host objects, boxes and forms across the C boundary.
#include <optional>
#include <string>

#include "orv2_geo/c_api/guard.h"
#include "orv2_geo/c_api/handles.h"
#include "orv2_geo/c_api/values.h"
#include "orv2_geo/orv2_geo.h"
#include "orv2_geo/platform/console_user_interface.h"
#include "orv2_geo/platform/error_box.h"
#include "orv2_geo/platform/form.h"
#include "orv2_geo/platform/owner_window.h"
#include "orv2_geo/platform/user_interface.h"

using namespace orv2_geo;
using namespace orv2_geo::c_api;

// What a C host sees of a form: the form, and the strings lent last.
struct orv2_form {
  Form& form;
  std::string lent[4];

  const char* lend(int place, std::string text) {
    lent[place] = std::move(text);
    return lent[place].c_str();
  }
};

namespace {

class HostObject final : public LateBound {
 public:
  HostObject(const orv2_host_object& callbacks, void* context) noexcept
      : callbacks_(callbacks), context_(context) {}

  /// From now on the host waits for its `release`.
  void hand_over() noexcept { handed_over_ = true; }

  Variant call(std::string_view name, std::span<const Argument> arguments) override {
    if (callbacks_.call == nullptr) raise(failure::no_such_member);
    const ObjectRef during_the_call(this);
    const ForHost given(arguments);
    orv2_value answer{};
    asked([&] {
      return callbacks_.call(context_, std::string(name).c_str(), given.values(), given.count(),
                             &answer);
    });
    return c_api::variant_of(answer);
  }

  void set_property(std::string_view name, const Variant& value) override {
    if (callbacks_.set_property == nullptr) raise(failure::no_such_member);
    const ObjectRef during_the_call(this);
    std::string utf8;
    orv2_value given{};
    if (const Text* text = value.get<Text>()) {
      utf8 = text->to_utf8();
      given.tag = ORV2_UTF8;
      given.as.utf8 = utf8.c_str();
    } else {
      given = c_api::value_of(value);
    }
    asked([&] { return callbacks_.set_property(context_, std::string(name).c_str(), &given); });
  }

 private:
  ~HostObject() override {
    const bool awaited = handed_over_ && callbacks_.release != nullptr;
    if (!awaited || thread_is_ending()) return;
    in_settings_of_host([&] { callbacks_.release(context_); });
  }

  orv2_host_object callbacks_;
  void* context_;
  bool handed_over_ = false;
};

class HostUserInterface final : public UserInterface {
 public:
  explicit HostUserInterface(const orv2_user_interface& callbacks) noexcept
      : callbacks_(callbacks) {}

  void error_box(const Text& text, std::int32_t flags, const Text* caption) override {
    const orv2_user_interface now = callbacks_;  // the host may install another one meanwhile
    if (now.error_box == nullptr || system_forms != 0) {
      const FloatingPointGuard usual;
      return system_user_interface().error_box(text, flags, caption);
    }
    const std::string words = text.to_utf8();
    const std::string title = caption != nullptr ? caption->to_utf8() : std::string();
    asked([&] {
      return now.error_box(now.context, words.c_str(), flags,
                           caption != nullptr ? title.c_str() : nullptr);
    });
  }

  void show_modal(Form& form) override {
    const orv2_user_interface now = callbacks_;
    if (now.show_modal == nullptr) return show_on_system(form);
    orv2_form shown{form, {}};
    asked([&] { return now.show_modal(now.context, &shown); });
  }

  void handle_events() override {
    const orv2_user_interface now = callbacks_;
    if (now.handle_events == nullptr) return;
    asked([&] { return now.handle_events(now.context); });
  }

 private:
  // Whoever acts on the system's form also sees its boxes.
  static void show_on_system(Form& form) {
    struct Up {
      Up() noexcept { ++system_forms; }
      ~Up() { --system_forms; }
      Up(const Up&) = delete;
      Up& operator=(const Up&) = delete;
    } const while_it_is_up;
    const FloatingPointGuard usual;
    system_user_interface().show_modal(form);
  }

  static thread_local int system_forms;

  orv2_user_interface callbacks_;
};

thread_local int HostUserInterface::system_forms = 0;

thread_local std::optional<HostUserInterface> installed;

Control& control_at(orv2_form* form, size_t index) {
  const Form& shown = needed(form)->form;
  if (index >= shown.size()) raise(failure::subscript_out_of_range);
  return shown.control(index);
}

Grid& grid_at(orv2_form* form, size_t index) {
  Control& control = control_at(form, index);
  if (control.design().kind != ControlKind::grid) raise(failure::no_such_member);
  return control.grid();
}

}  // namespace

int32_t orv2_host_object_new(const orv2_host_object* callbacks, void* context,
                             orv2_handle* object) {
  return guarded([&] {
    needed(object);
    if (needed(callbacks)->size != sizeof(orv2_host_object)) raise(failure::invalid_call);
    auto* const host = new HostObject(*callbacks, context);
    const ObjectRef kept(host);
    *object = handle_for(std::make_unique<ObjectItem>(kept));
    host->hand_over();
  });
}

int32_t orv2_set_user_interface(const orv2_user_interface* callbacks) {
  return guarded([&] {
    if (callbacks == nullptr) {
      install_user_interface(nullptr);
      return installed.reset();
    }
    if (callbacks->size != sizeof(orv2_user_interface)) raise(failure::invalid_call);
    install_user_interface(&installed.emplace(*callbacks));
  });
}

int32_t orv2_set_console_interface(void) {
  return guarded([&] {
    install_user_interface(&console_user_interface());
    installed.reset();
  });
}

int32_t orv2_has_user_interface(int16_t* any) {
  return guarded([&] { *needed(any) = Bool(&user_interface() != &system_user_interface()).bits; });
}

int32_t orv2_trapped_failure(orv2_failure* failure) {
  const RunFailure* const told = trapped_failure();
  if (failure == nullptr || told == nullptr) return failure::invalid_call;
  *failure = {told->number(), told->description().data(), told->source().data()};
  return 0;
}

int32_t orv2_set_owner_window(uint64_t window) {
  return guarded([&] { set_owner_window(window); });
}

int32_t orv2_form_describe(orv2_form* form, orv2_form_info* info) {
  return guarded([&] {
    const Form& shown = needed(form)->form;
    *needed(info) = {form->lend(0, shown.name()),
                     form->lend(1, shown.caption().to_utf8()),
                     shown.width(),
                     shown.height(),
                     Bool(shown.open()).bits,
                     shown.size()};
  });
}

int32_t orv2_form_control(orv2_form* form, size_t index, orv2_control_info* info) {
  return guarded([&] {
    const Control& control = control_at(form, index);
    const ControlDesign& design = control.design();
    *needed(info) = {form->lend(0, std::string(design.name)),
                     static_cast<int32_t>(design.kind),
                     design.left,
                     design.top,
                     design.width,
                     design.height,
                     design.tab_index,
                     form->lend(1, control.text().to_utf8()),
                     form->lend(2, std::string(design.container)),
                     Bool(control.visible()).bits,
                     Bool(control.enabled()).bits,
                     Bool(design.is_default).bits,
                     Bool(design.is_cancel).bits,
                     control.value(),
                     control.min(),
                     control.max()};
  });
}

int32_t orv2_form_grid(orv2_form* form, size_t index, orv2_grid_info* info) {
  return guarded([&] {
    const Grid& grid = grid_at(form, index);
    *needed(info) = {form->lend(0, grid.format_string.to_utf8()), grid.rows, grid.cols,
                     grid.fixed_rows, grid.fixed_cols};
  });
}

int32_t orv2_form_describe_frame(orv2_form* form, orv2_form_frame* frame) {
  return guarded([&] {
    const FormFrame& window = needed(form)->form.frame();
    *needed(frame) = {static_cast<int32_t>(window.start),
                      window.left,
                      window.top,
                      Bool(window.tool_window).bits,
                      Bool(window.resizable).bits,
                      Bool(window.minimise_box).bits,
                      Bool(window.maximise_box).bits,
                      Bool(window.in_task_bar).bits};
  });
}

int32_t orv2_form_look(orv2_form* form, size_t index, orv2_control_look* look) {
  return guarded([&] {
    const ControlDesign& design = control_at(form, index).design();
    *needed(look) = {static_cast<int32_t>(design.alignment), design.background,
                     Bool(design.sizes_itself).bits};
  });
}

int32_t orv2_form_font(orv2_form* form, size_t index, orv2_grid_font* font) {
  return guarded([&] {
    const Grid& grid = grid_at(form, index);
    *needed(font) = {form->lend(0, std::string(grid.font)), grid.font_points, grid.font_weight};
  });
}

int32_t orv2_form_alignment(orv2_form* form, size_t index, int32_t col, int32_t* alignment) {
  return guarded([&] {
    const Grid& grid = grid_at(form, index);
    if (col < 0 || col >= grid.cols) raise(failure::subscript_out_of_range);
    *needed(alignment) = grid.alignment(col);
  });
}

int32_t orv2_form_cell(orv2_form* form, size_t index, int32_t row, int32_t col, const char** text) {
  return guarded([&] {
    const Grid& grid = grid_at(form, index);
    const bool inside = row >= 0 && row < grid.rows && col >= 0 && col < grid.cols;
    if (!inside) raise(failure::subscript_out_of_range);
    *needed(text) = form->lend(3, grid.cell(row, col).to_utf8());
  });
}

int32_t orv2_form_focus(orv2_form* form, const char** name) {
  return guarded([&] {
    const Control* const control = needed(form)->form.focus();
    const std::string_view found = control != nullptr ? control->design().name : "";
    *needed(name) = form->lend(0, std::string(found));
  });
}

int32_t orv2_form_click(orv2_form* form, const char* name) {
  return guarded([&] { needed(form)->form.click(needed(name)); });
}

int32_t orv2_form_select(orv2_form* form, const char* name) {
  return guarded([&] { needed(form)->form.select(needed(name)); });
}

int32_t orv2_form_set_text(orv2_form* form, const char* name, const char* text) {
  return guarded([&] { needed(form)->form.set_text(needed(name), Text::from_utf8(needed(text))); });
}

int32_t orv2_form_set_focus(orv2_form* form, const char* name) {
  return guarded([&] { needed(form)->form.set_focus(needed(name)); });
}

int32_t orv2_form_press_enter(orv2_form* form) {
  return guarded([&] { needed(form)->form.press_enter(); });
}

int32_t orv2_form_press_escape(orv2_form* form) {
  return guarded([&] { needed(form)->form.press_escape(); });
}

int32_t orv2_form_close(orv2_form* form) {
  return guarded([&] { needed(form)->form.close(); });
}
