// host_array.h: a host's array, worked in place.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "orv2_geo/com/system.h"
#include "orv2_geo/frame/argument.h"

namespace orv2_geo::com {

/// The places in memory that a call's arguments by reference point at.
class BoundVariables {
 public:
  /// At most as many as a call has arguments.
  void add(const void* variable) noexcept { all_[count_++] = variable; }

  /// Whether one of them lies in this memory.
  bool reach_into(const void* memory, std::size_t bytes) const noexcept {
    const auto inside = [&](const void* variable) {
      const auto offset =
          reinterpret_cast<std::uintptr_t>(variable) - reinterpret_cast<std::uintptr_t>(memory);
      return offset < bytes;  // below the beginning wraps to beyond the end
    };
    return std::any_of(all_.begin(), all_.begin() + count_, inside);
  }

 private:
  std::array<const void*, 16> all_{};
  std::ptrdiff_t count_ = 0;
};

/// A host's variable that holds an array of the system's, or none. Its storage is locked
/// for the length of a call, so that nothing that the host does meanwhile moves it; the
/// library alone resizes it.
class HostStorage {
 public:
  /// Failure 10 where it cannot be locked once more.
  HostStorage(SAFEARRAY** variable, VARTYPE element);
  HostStorage(const HostStorage&) = delete;
  HostStorage& operator=(const HostStorage&) = delete;
  ~HostStorage();

  /// Whether there is storage: no array, or one without elements' memory, is unallocated.
  bool allocated() const noexcept;
  SAFEARRAY* array() const noexcept { return locked_; }

  std::uint16_t dimensions() const noexcept { return locked_->cDims; }
  /// Of the first dimension.
  std::int32_t lower() const noexcept { return first_bound().lLbound; }
  std::uint32_t count() const noexcept { return first_bound().cElements; }
  void* elements() const noexcept { return locked_->pvData; }

  /// From now on an array of which one of these is an element counts as locked.
  void guard(const BoundVariables& variables) noexcept { bound_ = &variables; }

  /// The bounds `lower` to lower + count - 1, one dimension; all elements but those kept
  /// are zero. Failures: 10 for an array of fixed size, for one that somebody else has
  /// locked, and where the host put another array in the variable meanwhile; 7. The
  /// array is then as it was.
  void* resize(std::int32_t lower, std::uint32_t count, bool keep);

  /// No array any more. Failure 10 as for resize.
  void release();

 private:
  const SAFEARRAYBOUND& first_bound() const noexcept {
    return locked_->rgsabound[locked_->cDims - 1];  // the last dimension stands first
  }
  void expect_resizable() const;
  bool is_in_use() const noexcept;
  void lock(SAFEARRAY* array);
  void unlock() noexcept;
  void replace(SAFEARRAY* fresh);
  void exchange(SAFEARRAY* fresh) noexcept;

  SAFEARRAY** variable_;
  VARTYPE element_;
  SAFEARRAY* locked_ = nullptr;
  const BoundVariables* bound_ = nullptr;
};

/// The system's type of an array's elements.
template <class A>
inline constexpr VARTYPE element_type = VT_EMPTY;
template <>
inline constexpr VARTYPE element_type<DoubleArray> = VT_R8;
template <>
inline constexpr VARTYPE element_type<SingleArray> = VT_R4;
template <>
inline constexpr VARTYPE element_type<LongArray> = VT_I4;
template <>
inline constexpr VARTYPE element_type<ShortArray> = VT_I2;
template <>
inline constexpr VARTYPE element_type<StringArray> = VT_BSTR;

static_assert(sizeof(Text) == sizeof(BSTR), "a host's texts are the library's");

/// Failure 13 where an array is of other elements; one that does not tell is taken by
/// their size.
void expect_elements(const SAFEARRAY* array, VARTYPE element, std::size_t size);

/// A host's array as an array of the library, over the host's own elements.
template <class A>
class HostArray final : public ArrayOwner {
 public:
  /// Failures: 13 for an array of other elements; 9 where its bounds do not fit; 10.
  explicit HostArray(SAFEARRAY** variable) : storage_(variable, element_type<A>) {
    using Element = typename A::value_type;
    if (storage_.array() != nullptr) {
      expect_elements(storage_.array(), element_type<A>, sizeof(Element));
    }
    if (!storage_.allocated()) {
      array_.adopt(*this);
      return;
    }
    array_.adopt(*this, static_cast<Element*>(storage_.elements()), storage_.lower(),
                 storage_.count(), storage_.dimensions());
  }

  A& array() noexcept { return array_; }
  void guard(const BoundVariables& variables) noexcept { storage_.guard(variables); }

  void* resize(std::int32_t lower, std::uint32_t count, bool keep) override {
    return storage_.resize(lower, count, keep);
  }
  void release() override { storage_.release(); }

 private:
  HostStorage storage_;
  A array_;
};

}  // namespace orv2_geo::com
