// geo_arrays.h: the five one-dimensional arrays, each with its own bounds.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "orv2_geo/frame/export.h"
#include "orv2_geo/frame/run_failure.h"
#include "orv2_geo/frame/text.h"

namespace orv2_geo {

/// Who owns the storage of an array that is not the library's own: a C host's
/// buffer, a component host's array. The array works on the owner's elements
/// in place and resizes only through the owner.
class ORV2_PUBLIC ArrayOwner {
 public:
  virtual ~ArrayOwner() = default;

  /// Gives the owner's array the bounds lower to lower + count - 1 and answers
  /// with the address of its elements. With `keep`, elements whose index
  /// exists in both ranges survive; all others are zero or empty text.
  /// Failures: the owner's; 10 when the storage is fixed, 7 when it is refused.
  virtual void* resize(std::int32_t lower, std::uint32_t count, bool keep) = 0;

  /// The owner's array is to have no storage any more; it stays the owner's, and a
  /// later resize gives it some again. One that cannot be without is given a size
  /// of nothing. Failures as for resize.
  virtual void release() { resize(0, 0, false); }
};

/// What the five arrays share: bounds, dimensions, locks and the storage, apart
/// from the element type.
class ORV2_PUBLIC ArrayBase {
 public:
  ArrayBase(const ArrayBase&) = delete;
  ArrayBase& operator=(const ArrayBase&) = delete;

  bool allocated() const noexcept { return allocated_; }

  /// 1 for every array that the library makes; 0 when unallocated.
  std::uint16_t dimensions() const noexcept { return dimensions_; }

  /// Elements of the first dimension; 0 when unallocated.
  std::uint32_t count() const noexcept { return count_; }

  /// The bounds of the first dimension. Failure 9 when unallocated.
  std::int32_t lower() const {
    if (!allocated_) raise(failure::subscript_out_of_range);
    return lower_;
  }
  std::int32_t upper() const;

  /// A locked array cannot be resized (failure 10).
  bool locked() const noexcept { return locks_ != 0; }
  void lock() noexcept { ++locks_; }
  void unlock() noexcept {
    if (locks_ != 0) --locks_;
  }

 protected:
  /// How elements of a type lie in memory and end.
  struct Element {
    std::size_t size;
    void (*end)(void* elements, std::uint32_t count) noexcept;  // null: nothing to do
  };

  ArrayBase() noexcept = default;
  ~ArrayBase() = default;

  void adopt(const Element& element, ArrayOwner& owner, void* elements, std::int32_t lower,
             std::uint32_t count, std::uint16_t dimensions);
  void size(const Element& element, std::int64_t lower, std::int64_t upper, bool keep);
  void size_at_owner(std::int32_t lower, std::uint32_t count, bool keep);
  void release_at_owner();
  void allocate(const Element& element, std::int32_t lower, std::uint32_t count,
                std::uint16_t dimensions);
  void copy_bytes(const Element& element, const ArrayBase& other);
  void discard(const Element& element) noexcept;
  void forget() noexcept;
  void take(ArrayBase& other) noexcept;

  void* elements_ = nullptr;
  ArrayOwner* owner_ = nullptr;
  std::int32_t lower_ = 0;
  std::uint32_t legal_ = 0;  // elements that an index can reach: one compare answers for all cases
  std::uint32_t count_ = 0;
  std::uint32_t locks_ = 0;
  std::uint16_t dimensions_ = 0;
  bool allocated_ = false;

 private:
  static std::uint32_t counted(std::int64_t lower, std::int64_t upper);
  bool fits_in_place(std::int32_t lower, std::uint32_t count, bool keep) const noexcept;
  void size_in_place(const Element& element, std::int32_t lower, std::uint32_t count,
                     bool keep) noexcept;
  void* resized_copy(const Element& element, std::int32_t lower, std::uint32_t count, bool keep);
  void describe(void* elements, std::int32_t lower, std::uint32_t count,
                std::uint16_t dimensions) noexcept;
};

/// An array of T with any lower bound, possibly unallocated. Every access is
/// checked: an index outside the bounds, an unallocated array and one whose
/// dimension count is not 1 are failure 9, before anything is read or written.
template <class T>
class GeoArray : public ArrayBase {
 public:
  using value_type = T;

  GeoArray() noexcept = default;

  /// Zeros (or empty texts) from `lower` to `upper`. Failures: 9 when `upper`
  /// is below `lower`; 7 when there is no memory.
  GeoArray(std::int32_t lower, std::int32_t upper) { size(lower, upper); }

  /// A whole copy, bounds included; the copy owns its storage. There is no move:
  /// an array may be a host's, or locked, and stays where it is. Failure 7.
  GeoArray(const GeoArray& other) { copy(other); }
  ~GeoArray() { discard(element); }

  /// Becomes a whole copy of `other`, bounds included.
  /// Foreign storage stays the owner's and gets the content.
  /// Failures: 10 when locked; the owner's; this array is then as it was.
  GeoArray& operator=(GeoArray other) {
    replace(other);
    return *this;
  }

  T& operator()(std::int32_t index) {
    const std::uint64_t place = offset(index);
    if (place >= legal_) [[unlikely]]
      raise(failure::subscript_out_of_range);
    return data()[place];
  }
  const T& operator()(std::int32_t index) const {
    return const_cast<GeoArray&>(*this)(index);  // the same check, the same element
  }

  /// The elements `first` to `last` in a row, for a routine that looks at the
  /// bounds once; null when one of them cannot be reached, or there are none.
  T* row(std::int32_t first, std::int32_t last) noexcept {
    const std::uint64_t start = offset(first);
    const std::uint64_t end = offset(last);
    return start <= end && end < legal_ ? data() + start : nullptr;
  }
  const T* row(std::int32_t first, std::int32_t last) const noexcept {
    return const_cast<GeoArray&>(*this).row(first, last);
  }

  /// Sizing without keeping: zeros from `lower` to `upper`, whatever was there.
  /// Failures: 9 when `upper` is below `lower`; 10 when locked; 7; the array is
  /// then as it was.
  void size(std::int32_t lower, std::int32_t upper) {
    ArrayBase::size(element, lower, upper, false);
  }

  /// Sizing with keeping: elements whose index exists in both ranges survive,
  /// the others are zero. Failures as for size, and 9 on a dimension count
  /// other than 1.
  void size_keeping(std::int32_t lower, std::int32_t upper) {
    ArrayBase::size(element, lower, upper, true);
  }

  /// Sizing with keeping of an array that starts at 0, to `upper`. Failure 9 also
  /// when it starts elsewhere: its lower bound is not to change.
  void size_keeping_from_0(std::int32_t upper) {
    if (allocated() && lower() != 0) raise(failure::subscript_out_of_range);
    size_keeping(0, upper);
  }

  /// Makes this the library's own array of `count` zeros (0 is allowed) from
  /// `lower`, with any dimension count. Failures: 10 when locked; 9 when the
  /// upper bound does not fit 32 bits; 7.
  void make(std::int32_t lower, std::uint32_t count, std::uint16_t dimensions = 1) {
    allocate(element, lower, count, dimensions);
  }

  /// Works from now on the owner's elements, in place; what it had is freed, so the
  /// elements must not be its own. `owner` and `elements` must outlive the array or
  /// its next release. With a dimension count other than 1 no element can be reached.
  /// Failures: 10 when locked; 9 when the bounds do not fit 32 bits.
  void adopt(ArrayOwner& owner, T* elements, std::int32_t lower, std::uint32_t count,
             std::uint16_t dimensions = 1) {
    ArrayBase::adopt(element, owner, elements, lower, count, dimensions);
  }

  /// The same of an owner whose array has no storage as yet.
  /// Failure 10 when locked.
  void adopt(ArrayOwner& owner) {
    release();
    owner_ = &owner;
  }

  /// Back to unallocated; foreign storage stays with its owner.
  /// Failure 10 when locked.
  void release() {
    if (locked()) raise(failure::array_locked);
    discard(element);
    forget();
  }

  T* data() noexcept { return static_cast<T*>(elements_); }
  const T* data() const noexcept { return static_cast<const T*>(elements_); }

  /// Elements that an index can reach: 0 unless allocated with one dimension.
  std::uint32_t legal_count() const noexcept { return legal_; }

 private:
  static void end_elements(void* elements, std::uint32_t count) noexcept {
    for (std::uint32_t i = 0; i < count; ++i) static_cast<T*>(elements)[i].~T();
  }
  static constexpr Element element{
      sizeof(T), std::is_trivially_destructible_v<T> ? nullptr : &GeoArray::end_elements};

  // Wide enough never to wrap: a loop's index and its place stay in step for the
  // compiler, and below the lower bound is beyond every count.
  std::uint64_t offset(std::int32_t index) const noexcept {
    return static_cast<std::uint64_t>(std::int64_t{index} - lower_);
  }

  void replace(GeoArray& other) {
    if (locked()) raise(failure::array_locked);
    if (owner_ == nullptr) {
      discard(element);
      take(other);
    } else if (!other.allocated()) {
      release_at_owner();
    } else {
      size_at_owner(other.lower_, other.count_, false);  // a size of nothing included
      std::swap_ranges(data(), data() + count_, other.data());
    }
  }

  void copy(const GeoArray& other) {
    if (!other.allocated()) return;
    if constexpr (std::is_trivially_copyable_v<T>) return copy_bytes(element, other);
    allocate(element, other.lower_, other.count_, other.dimensions_);
    try {
      for (std::uint32_t i = 0; i < count_; ++i) data()[i] = other.data()[i];
    } catch (...) {
      discard(element);
      throw;
    }
  }
};

using DoubleArray = GeoArray<double>;
using SingleArray = GeoArray<float>;
using LongArray = GeoArray<std::int32_t>;
using ShortArray = GeoArray<std::int16_t>;
using StringArray = GeoArray<Text>;

/// Keeps an array locked while one of its elements is in use by reference.
class ArrayLock {
 public:
  explicit ArrayLock(ArrayBase& array) noexcept : array_(array) { array_.lock(); }
  ~ArrayLock() { array_.unlock(); }
  ArrayLock(const ArrayLock&) = delete;
  ArrayLock& operator=(const ArrayLock&) = delete;

 private:
  ArrayBase& array_;
};

}  // namespace orv2_geo
