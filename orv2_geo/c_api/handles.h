// handles.h: numbers in place of pointers, so that a wrong one is a failure.
#pragma once

#include <cstdint>
#include <memory>
#include <type_traits>

#include "orv2_geo/c_api/slot.h"
#include "orv2_geo/frame/argument.h"
#include "orv2_geo/library/object.h"
#include "orv2_geo/orv2_geo.h"

namespace orv2_geo::c_api {

enum class Kind : std::uint8_t { object, array, text };

/// What a handle stands for.
class Item {
 public:
  explicit Item(Kind of_kind) noexcept : kind(of_kind) {}
  Item(const Item&) = delete;
  Item& operator=(const Item&) = delete;
  virtual ~Item() = default;

  /// What signs a failure of a call that never reached the item.
  virtual const char* source() const noexcept { return nullptr; }

  const Kind kind;
};

/// An object of the library, or a host's own.
struct ObjectItem final : Item {
  explicit ObjectItem(ObjectRef any, Object* of_library = nullptr) noexcept
      : Item(Kind::object), object(std::move(any)), own(of_library) {}
  const char* source() const noexcept override {
    return own != nullptr ? own->description().registered_name : nullptr;
  }
  const ObjectRef object;
  Object* const own;  // null for a host's object
};

/// An array of one of the five types.
struct ArrayItem : Item {
  ArrayItem(Type of_type, ArrayBase& array) noexcept
      : Item(Kind::array), type(of_type), base(array) {}
  const Type type;
  ArrayBase& base;
};

template <class A>
struct TypedArrayItem final : ArrayItem {
  TypedArrayItem() noexcept : ArrayItem(interface_type<A>, array) {}
  std::unique_ptr<ArrayOwner> owner;  // of a host's buffer; ends after the array
  A array;
};

/// A text variable.
struct TextItem final : Item {
  TextItem() noexcept : Item(Kind::text) {}
  Text text;
};

/// The last generation of a slot: afterwards nothing is put in it again, so
/// that no handle ever comes back. Tests set it low.
inline std::uint32_t last_generation = 0xffffffffU;

/// A new handle with one reference, of this thread. Failure 7.
orv2_handle handle_for(std::unique_ptr<Item> item);

/// What the handle stands for. Failures: 5 for a handle that is wrong, stale,
/// of another kind or of another thread.
Item& item_of(orv2_handle handle, Kind kind);

/// The same with the thread's number at hand (thread_number_under): what can be refused is
/// looked at once more, for the reason.
inline Item& item_of(orv2_handle handle, Kind kind, std::uint64_t thread) {
  const Slot* const slot = slot_at(index_of(handle));
  const bool mine = slot != nullptr && generation_of(*slot) == generation_of(handle) &&
                    thread != 0 && slot->thread.load(std::memory_order_relaxed) == thread;
  if (mine && slot->item->kind == kind) [[likely]] {
    return *slot->item;
  }
  return item_of(handle, kind);
}

inline ObjectItem& object_item(orv2_handle handle) {
  if (handle == 0) raise(failure::object_not_set);
  return static_cast<ObjectItem&>(item_of(handle, Kind::object));
}
inline ArrayItem& array_item(orv2_handle handle) {
  return static_cast<ArrayItem&>(item_of(handle, Kind::array));
}
inline Text& text_of(orv2_handle handle) {
  return static_cast<TextItem&>(item_of(handle, Kind::text)).text;
}

/// The object behind a handle, or none for 0.
inline ObjectRef object_of(orv2_handle handle) {
  return handle == 0 ? ObjectRef() : object_item(handle).object;
}

/// The typed array behind an item that is known to be of that type.
template <class A>
A& array_of(ArrayItem& item) {
  return static_cast<TypedArrayItem<A>&>(item).array;
}

/// Runs `work` with the C++ type of the arrays that a type names. Failure 13 for a
/// type that is none.
template <class Work>
auto with_array_type(Type type, Work&& work) {
  switch (type) {
    case Type::double_array: return work(std::type_identity<DoubleArray>());
    case Type::single_array: return work(std::type_identity<SingleArray>());
    case Type::long_array: return work(std::type_identity<LongArray>());
    case Type::short_array: return work(std::type_identity<ShortArray>());
    case Type::string_array: return work(std::type_identity<StringArray>());
    default: raise(failure::type_mismatch);
  }
}

/// Runs `work` with the array of an item.
template <class Work>
auto with_array(ArrayItem& item, Work&& work) {
  return with_array_type(item.type,
                         [&]<class A>(std::type_identity<A>) { return work(array_of<A>(item)); });
}

/// One reference more or less; from another thread too. Failure 5.
void add_reference(orv2_handle handle);
void drop_reference(orv2_handle handle);

/// Keeps what a handle stands for alive for the length of a call.
class Pin {
 public:
  explicit Pin(orv2_handle handle);
  ~Pin();
  Pin(const Pin&) = delete;
  Pin& operator=(const Pin&) = delete;

 private:
  std::uint32_t index_;
};

/// True while a thread's left-over handles are freed at its end: hosts are no
/// longer called back then.
bool thread_is_ending() noexcept;

}  // namespace orv2_geo::c_api
