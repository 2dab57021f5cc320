// Arrays and texts across the C boundary.
#include "orv2_geo/c_api/guard.h"
#include "orv2_geo/c_api/handles.h"
#include "orv2_geo/orv2_geo.h"
#include "orv2_geo/platform/text_services.h"

using namespace orv2_geo;
using namespace orv2_geo::c_api;

namespace {

// A host's buffer as the owner of an array's elements.
class HostBuffer : public ArrayOwner {
 public:
  HostBuffer(const ArrayBase& array, orv2_resize ask_host, void* context) noexcept
      : array_(array), resize_(ask_host), context_(context) {}

  void* resize(std::int32_t lower, std::uint32_t count, bool keep) override {
    if (resize_ == nullptr) raise(failure::array_locked);
    void* data = nullptr;
    ask(lower, count, keep, &data);
    if (data == nullptr && count != 0) raise(failure::out_of_memory);
    return data;
  }

 protected:
  void ask(std::int32_t lower, std::uint32_t count, bool keep, void** data) {
    const std::int32_t old_lower = array_.allocated() ? array_.lower() : 0;
    asked([&] {
      return resize_(context_, old_lower, array_.count(), lower, count, Bool(keep).bits, data);
    });
  }

 private:
  const ArrayBase& array_;
  orv2_resize resize_;
  void* context_;
};

// The same where the host knows of arrays without elements and bounds.
class HostStorage final : public HostBuffer {
 public:
  using HostBuffer::HostBuffer;
  void release() override { ask(0, 0, false, nullptr); }
};

// The types of a host's elements: numbers.
void refuse_texts(uint16_t type) {
  if (type == ORV2_STRING_ARRAY) raise(failure::invalid_call);
}

// Runs `work` on a new item of the array type that a tag names.
template <class Work>
orv2_handle with_new_array(uint16_t type, Work&& work) {
  return with_array_type(static_cast<Type>(type), [&]<class A>(std::type_identity<A>) {
    auto item = std::make_unique<TypedArrayItem<A>>();
    work(*item);
    return handle_for(std::move(item));
  });
}

StringArray& string_array(orv2_handle handle) {
  ArrayItem& item = array_item(handle);
  if (item.type != Type::string_array) raise(failure::invalid_call);
  return array_of<StringArray>(item);
}

Text text_from(const uint16_t* units, size_t count) {
  if (count == 0) return {};
  return Text(std::u16string_view(reinterpret_cast<const char16_t*>(needed(units)), count));
}

void show(const Text& text, const uint16_t** units, size_t* count) {
  needed(count);
  *needed(units) = reinterpret_cast<const uint16_t*>(text.data());
  *count = text.size();
}

}  // namespace

int32_t orv2_array_new(uint16_t type, orv2_handle* array) {
  return guarded([&] {
    needed(array);
    *array = with_new_array(type, [](auto&) {});
  });
}

int32_t orv2_array_make(uint16_t type, int32_t lower, uint32_t count, uint16_t dimensions,
                        orv2_handle* array) {
  return guarded([&] {
    needed(array);
    if (dimensions == 0) raise(failure::invalid_call);
    *array = with_new_array(type, [&](auto& item) { item.array.make(lower, count, dimensions); });
  });
}

int32_t orv2_array_adopt(uint16_t type, void* data, int32_t lower, uint32_t count,
                         orv2_resize resize, void* context, orv2_handle* array) {
  return guarded([&] {
    needed(array);
    if (count != 0) needed(data);
    refuse_texts(type);
    *array = with_new_array(type, [&](auto& item) {
      item.owner = std::make_unique<HostBuffer>(item.array, resize, context);
      using Element = typename std::remove_reference_t<decltype(item.array)>::value_type;
      item.array.adopt(*item.owner, static_cast<Element*>(data), lower, count);
    });
  });
}

int32_t orv2_array_host(const orv2_array_info* shape, void* data, orv2_resize resize, void* context,
                        orv2_handle* array) {
  return guarded([&] {
    needed(array);
    needed(resize);
    const orv2_array_info wanted = *needed(shape);
    refuse_texts(wanted.type);
    if (wanted.allocated != 0 && wanted.count != 0) needed(data);
    if (wanted.allocated != 0 && wanted.dimensions == 0) raise(failure::invalid_call);
    *array = with_new_array(wanted.type, [&](auto& item) {
      item.owner = std::make_unique<HostStorage>(item.array, resize, context);
      if (wanted.allocated == 0) return item.array.adopt(*item.owner);
      using Element = typename std::remove_reference_t<decltype(item.array)>::value_type;
      item.array.adopt(*item.owner, static_cast<Element*>(data), wanted.lower, wanted.count,
                       wanted.dimensions);
    });
  });
}

int32_t orv2_array_describe(orv2_handle array, orv2_array_info* info) {
  return guarded([&] {
    const ArrayItem& item = array_item(array);
    const ArrayBase& base = item.base;
    *needed(info) = {by_value(item.type),
                     base.dimensions(),
                     Bool(base.allocated()).bits,
                     Bool(base.locked()).bits,
                     base.allocated() ? base.lower() : 0,
                     base.count()};
  });
}

int32_t orv2_array_bounds(orv2_handle array, int32_t* lower, int32_t* upper) {
  return guarded([&] {
    const ArrayBase& base = array_item(array).base;
    needed(lower);
    needed(upper);
    const std::int32_t last = base.upper();
    *lower = base.lower();
    *upper = last;
  });
}

int32_t orv2_array_data(orv2_handle array, void** data) {
  return guarded([&] {
    ArrayItem& item = array_item(array);
    needed(data);
    if (item.type == Type::string_array) raise(failure::invalid_call);
    with_array(item, [&](auto& typed) { *data = typed.count() != 0 ? typed.data() : nullptr; });
  });
}

int32_t orv2_array_resize(orv2_handle array, int32_t lower, int32_t upper, int16_t keep) {
  return guarded([&] {
    const Pin during_the_call(array);  // the host's callback may release it
    with_array(array_item(array), [&](auto& typed) {
      keep != 0 ? typed.size_keeping(lower, upper) : typed.size(lower, upper);
    });
  });
}

int32_t orv2_array_lock(orv2_handle array) {
  return guarded([&] { array_item(array).base.lock(); });
}

int32_t orv2_array_unlock(orv2_handle array) {
  return guarded([&] {
    ArrayBase& base = array_item(array).base;
    if (!base.locked()) raise(failure::invalid_call);
    base.unlock();
  });
}

int32_t orv2_array_get_text(orv2_handle array, int32_t index, const uint16_t** units,
                            size_t* count) {
  return guarded([&] { show(string_array(array)(index), units, count); });
}

int32_t orv2_array_set_text(orv2_handle array, int32_t index, const uint16_t* units, size_t count) {
  return guarded([&] { string_array(array)(index) = text_from(units, count); });
}

int32_t orv2_number_of_text(const uint16_t* units, size_t count, double* value) {
  return guarded([&] {
    needed(value);
    *value = text_services::number_from_text(text_from(units, count).view());
  });
}

int32_t orv2_text_new(const uint16_t* units, size_t count, orv2_handle* text) {
  return guarded([&] {
    needed(text);
    auto item = std::make_unique<TextItem>();
    item->text = text_from(units, count);
    *text = handle_for(std::move(item));
  });
}

int32_t orv2_text_set(orv2_handle text, const uint16_t* units, size_t count) {
  return guarded([&] { text_of(text) = text_from(units, count); });
}

int32_t orv2_text_get(orv2_handle text, const uint16_t** units, size_t* count) {
  return guarded([&] { show(text_of(text), units, count); });
}
