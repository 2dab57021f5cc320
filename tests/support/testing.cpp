#include "tests/support/testing.h"

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "orv2_geo/c_api/guard.h"
#include "orv2_geo/c_api/handles.h"
#include "orv2_geo/c_api/values.h"
#include "orv2_geo/frame/progress_sink.h"
#include "orv2_geo/library/object.h"
#include "orv2_geo/platform/error_box.h"
#include "orv2_geo/platform/event_pump.h"
#include "orv2_geo/platform/form.h"
#include "tests/support/refused_memory.h"

using namespace orv2_geo;
using namespace orv2_geo::c_api;

namespace {

constexpr char source[] = "Orv2_Geo.Testing";

RunFailure division_failure() {
  RunFailure failure(failure::division_by_zero);
  failure.sign(source);
  return failure;
}

// Runs the body as a member of the library: its failures leave signed.
template <class Body>
int32_t as_member(Body&& body) {
  return guarded([&] {
    try {
      body();
    } catch (...) {
      leave_signed(source);
    }
  });
}

// An object is given as a handle of its own, which the caller releases.
void give(orv2_value* result, const Variant& answer) {
  if (result == nullptr) return;
  const ObjectRef* const object = answer.get<ObjectRef>();
  if (object == nullptr) {
    *result = value_of(answer);
    return;
  }
  auto* const own = dynamic_cast<Object*>(object->get());
  *result = {ORV2_OBJECT, {}};
  result->as.handle = handle_for(std::make_unique<c_api::ObjectItem>(*object, own));
}

template <class T>
bool swapped(const Argument& a, const Argument& b) {
  T* const first = a.variable_of<T>();
  T* const second = b.variable_of<T>();
  if (first == nullptr || second == nullptr) return false;
  const T kept(*first);  // copies: an array may be locked, or a host's buffer
  *first = *second;
  *second = kept;
  return true;
}

template <class... T>
void swap_any(const Argument& a, const Argument& b) {
  if (!(swapped<T>(a, b) || ...)) raise(failure::type_mismatch);
}

void swap_two(std::span<const Argument> given) {
  if (given.size() != 2) raise(failure::wrong_argument_count);
  swap_any<std::int16_t, std::int32_t, float, double, Bool, Text, ObjectRef, DoubleArray,
           SingleArray, LongArray, ShortArray, StringArray>(given[0], given[1]);
}

// Gives the body the arguments as a member would get them.
template <class Body>
int32_t with_arguments(const orv2_value* arguments, size_t count, Body&& body) {
  return as_member([&] {
    if (count > most_arguments) raise(failure::wrong_argument_count);
    HostArguments reader(arguments);
    std::vector<Argument> given;
    for (size_t i = 0; i < count; ++i) given.push_back(reader.read(i));
    body(given);
  });
}

std::size_t units_in(const Argument& given) {
  if (given.tag == by_value(Type::text)) return given.text->size();
  if (const Text* text = given.variable_of<Text>()) return text->size();
  raise(failure::type_mismatch);
}

// ---- The sample form --------------------------------------------------------

constexpr ControlDesign controls[] = {
    {.name = "Marco",
     .kind = ControlKind::frame,
     .left = 120,
     .top = 120,
     .width = 3000,
     .height = 1200,
     .tab_index = 0,
     .text = u"Dimensión",
     .container = ""},
    {.name = "Opt3D(0)",
     .kind = ControlKind::option_button,
     .left = 100,
     .top = 300,
     .width = 2400,
     .height = 255,
     .tab_index = 1,
     .text = u"2D",
     .container = "Marco",
     .value = -1.0},
    {.name = "Opt3D(1)",
     .kind = ControlKind::option_button,
     .left = 100,
     .top = 700,
     .width = 2400,
     .height = 255,
     .tab_index = 2,
     .text = u"3D",
     .container = "Marco"},
    {.name = "Etiqueta",
     .kind = ControlKind::label,
     .left = 120,
     .top = 1440,
     .width = 900,
     .height = 255,
     .tab_index = 3,
     .text = u"Precisión",
     .container = ""},
    {.name = "Precision",
     .kind = ControlKind::text_box,
     .left = 1200,
     .top = 1440,
     .width = 1200,
     .height = 285,
     .tab_index = 4,
     .text = u"0.001",
     .container = ""},
    {.name = "Avisar",
     .kind = ControlKind::check_box,
     .left = 120,
     .top = 1800,
     .width = 1200,
     .height = 255,
     .tab_index = 5,
     .text = u"Avisar",
     .container = ""},
    {.name = "Aceptar",
     .kind = ControlKind::button,
     .left = 120,
     .top = 4000,
     .width = 1200,
     .height = 375,
     .tab_index = 6,
     .text = u"Aceptar",
     .container = "",
     .is_default = true},
    {.name = "Cancelar",
     .kind = ControlKind::button,
     .left = 1500,
     .top = 4000,
     .width = 1200,
     .height = 375,
     .tab_index = 7,
     .text = u"Cancelar",
     .container = "",
     .is_cancel = true},
    {.name = "Oculto",
     .kind = ControlKind::button,
     .left = 2880,
     .top = 4000,
     .width = 1200,
     .height = 375,
     .tab_index = 8,
     .text = u"Oculto",
     .container = "",
     .visible = false},
    {.name = "Inactivo",
     .kind = ControlKind::button,
     .left = 2880,
     .top = 4400,
     .width = 1200,
     .height = 375,
     .tab_index = 9,
     .text = u"Inactivo",
     .container = "",
     .enabled = false},
    {.name = "Avanza",
     .kind = ControlKind::button,
     .left = 120,
     .top = 4400,
     .width = 1200,
     .height = 375,
     .tab_index = 10,
     .text = u"Avanza",
     .container = ""},
    {.name = "Avisa",
     .kind = ControlKind::button,
     .left = 1500,
     .top = 4400,
     .width = 1200,
     .height = 375,
     .tab_index = 11,
     .text = u"Avisa",
     .container = ""},
    {.name = "Falla",
     .kind = ControlKind::button,
     .left = 120,
     .top = 4800,
     .width = 1200,
     .height = 375,
     .tab_index = 12,
     .text = u"Falla",
     .container = ""},
    {.name = "Progreso",
     .kind = ControlKind::progress_bar,
     .left = 120,
     .top = 5200,
     .width = 3000,
     .height = 255,
     .tab_index = 13,
     .text = u"",
     .container = ""},
    {.name = "Tabla",
     .kind = ControlKind::grid,
     .left = 120,
     .top = 2160,
     .width = 3000,
     .height = 1700,
     .tab_index = 14,
     .text = u"",
     .container = ""},
};

// A form with a control of every kind. Its routines write down that they ran.
class SampleForm {
 public:
  explicit SampleForm(std::string& events)
      : events_(events), form_("frmMuestra", u"Muestra", 4200, 5600, controls) {
    fill_grid(form_.control("Tabla").grid());
    on("Opt3D(0)", [] {});
    on("Opt3D(1)", [] {});
    on("Avisar", [] {});
    on("Oculto", [] {});
    on("Inactivo", [] {});
    on("Aceptar", [this] { form_.hide(); });
    on("Cancelar", [this] { form_.unload(); });
    on("Avanza", [this] { advance(); });
    on("Avisa", [] { error_box(u"Aviso del formulario"); });
    on("Falla", [] { throw division_failure(); });
  }

  void show() { form_.show_modal(); }

 private:
  template <class Routine>
  void on(std::string_view name, Routine routine) {
    form_.on_click(name, [this, name, routine] {
      events_.append(name).append(" ");
      routine();
    });
  }

  void advance() {
    Control& bar = form_.control("Progreso");
    const ObjectRef indicator = form_.object("Progreso");
    ProgressSink(indicator).value(bar.value() + 25.0);
  }

  static void fill_grid(Grid& grid) {
    grid.set_format_string(u"Punto|Cota");
    grid.rows = 3;
    grid.fixed_rows = 1;
    grid.set_alignment(1, static_cast<std::int16_t>(CellAlignment::right));
    grid.set_cell(1, 0, u"P1");
    grid.set_cell(1, 1, u"12,5");
    grid.set_cell(2, 0, u"Niño");
  }

  std::string& events_;
  Form form_;
};

void show_box(int32_t which, std::u16string_view text) {
  switch (which) {
    case 0: return error_box(text);
    case 1: return critical_box(text);
    case 2: return critical_box(text, division_failure());
    case 3: return trapped(source, text, [] { raise(failure::division_by_zero); });
    default: raise(failure::invalid_call);
  }
}

}  // namespace

int32_t orv2_testing_set_property(orv2_handle object, const char* name, const orv2_value* value) {
  return as_member([&] {
    const ObjectRef target = object_of(object);
    target->set_property(needed(name), c_api::variant_of(*needed(value)));
  });
}

int32_t orv2_testing_call(orv2_handle object, const char* name, const orv2_value* arguments,
                          size_t count, orv2_value* result) {
  return with_arguments(arguments, count, [&](std::span<const Argument> given) {
    const ObjectRef target = object_of(object);
    give(result, target->call(needed(name), given));
  });
}

int32_t orv2_testing_run(const orv2_value* arguments, size_t count, orv2_value* result) {
  return with_arguments(arguments, count, [&](std::span<const Argument> given) {
    if (given.empty()) raise(failure::argument_not_optional);
    if (type_of(given[0].tag) != Type::object) raise(failure::type_mismatch);
    const ObjectRef* const variable = given[0].variable_of<ObjectRef>();
    const ObjectRef target = variable != nullptr ? *variable : ObjectRef(given[0].object);
    give(result, target->call("Run", given.subspan(1)));
  });
}

int32_t orv2_testing_progress(orv2_handle indicator, int16_t last) {
  return as_member([&] {
    const ObjectRef target = object_of(indicator);
    const ProgressSink progress(target);
    progress.visible(true);
    progress.min(0);
    progress.max(last);
    for (int16_t i = 0; i <= last; ++i) progress.value(i);
    progress.visible(false);
  });
}

int32_t orv2_testing_pset(orv2_handle surface, int16_t mode, double* x, double* y, int16_t colour) {
  return as_member([&] {
    const ObjectRef target = object_of(surface);
    double east = *needed(x);
    double north = *needed(y);
    const Argument given[] = {mode, ref(east), ref(north), colour};
    target->call("PSet", given);
    *x = east;
    *y = north;
  });
}

int32_t orv2_testing_swap(const orv2_value* arguments, size_t count, orv2_value*) {
  return with_arguments(arguments, count, swap_two);
}

int32_t orv2_testing_swap_and_fail(const orv2_value* arguments, size_t count, orv2_value*) {
  return with_arguments(arguments, count, [](std::span<const Argument> given) {
    swap_two(given);
    raise(failure::division_by_zero);
  });
}

int32_t orv2_testing_same(const orv2_value* arguments, size_t count, orv2_value* result) {
  return with_arguments(arguments, count, [&](std::span<const Argument> given) {
    const bool variables =
        given.size() == 2 && is_by_reference(given[0].tag) && is_by_reference(given[1].tag);
    if (!variables) raise(failure::type_mismatch);
    give(result, Bool(given[0].variable == given[1].variable));
  });
}

int32_t orv2_testing_tag(const orv2_value* arguments, size_t count, orv2_value* result) {
  return with_arguments(arguments, count, [&](std::span<const Argument> given) {
    if (given.empty()) raise(failure::argument_not_optional);
    give(result, std::int32_t{given[0].tag});
  });
}

int32_t orv2_testing_text_size(const orv2_value* arguments, size_t count, orv2_value* result) {
  return with_arguments(arguments, count, [&](std::span<const Argument> given) {
    if (given.empty()) raise(failure::argument_not_optional);
    give(result, static_cast<std::int32_t>(units_in(given[0])));
  });
}

int32_t orv2_testing_show_form(const char** events) {
  static thread_local std::string told;
  return as_member([&] {
    needed(events);
    std::string ran;
    SampleForm form(ran);
    form.show();
    told = std::move(ran);
    *events = told.c_str();
  });
}

int32_t orv2_testing_error_box(int32_t which, const char* text) {
  return as_member([&] { show_box(which, Text::from_utf8(needed(text)).view()); });
}

int32_t orv2_testing_refuse_allocation(int32_t let_pass) {
  using testing_support::RefusedAllocation;
  static thread_local std::optional<RefusedAllocation> refusal;
  const bool happened = RefusedAllocation::happened();
  refusal.reset();
  refusal.emplace(let_pass);
  return happened ? 1 : 0;
}

int32_t orv2_testing_allocations_in_use(void) {
  return static_cast<std::int32_t>(testing_support::allocations_in_use());
}

int32_t orv2_testing_yield(void) {
  return as_member([] { yield_to_events(); });
}
