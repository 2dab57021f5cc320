#include "orv2_geo/frame/geo_arrays.h"

#include <algorithm>
#include <cstring>

#include "orv2_geo/frame/floating_point_guard.h"
#include "orv2_geo/frame/memory.h"

namespace orv2_geo {

namespace {

constexpr std::int64_t highest_index = std::numeric_limits<std::int32_t>::max();

std::int64_t upper_of(std::int32_t lower, std::uint32_t count) {
  return std::int64_t{lower} + count - 1;
}

// The bytes of so many elements. Failure 7 when no size can tell them.
std::size_t bytes_of(std::size_t element_size, std::uint32_t count) {
  if (count > std::numeric_limits<std::size_t>::max() / element_size) raise(failure::out_of_memory);
  return element_size * count;
}

}  // namespace

std::int32_t ArrayBase::upper() const {
  if (!allocated_) raise(failure::subscript_out_of_range);
  // An empty array from the lowest index of all has no upper bound that fits.
  const std::int64_t upper = upper_of(lower_, count_);
  if (upper < std::numeric_limits<std::int32_t>::min()) raise(failure::overflow);
  return static_cast<std::int32_t>(upper);
}

void ArrayBase::adopt(const Element& element, ArrayOwner& owner, void* elements, std::int32_t lower,
                      std::uint32_t count, std::uint16_t dimensions) {
  if (locked()) raise(failure::array_locked);
  if (upper_of(lower, count) > highest_index) raise(failure::subscript_out_of_range);
  discard(element);
  owner_ = &owner;
  describe(elements, lower, count, dimensions);
}

void ArrayBase::forget() noexcept {
  owner_ = nullptr;
  elements_ = nullptr;
  lower_ = 0;
  legal_ = count_ = 0;
  dimensions_ = 0;
  allocated_ = false;
}

std::uint32_t ArrayBase::counted(std::int64_t lower, std::int64_t upper) {
  if (upper < lower) raise(failure::subscript_out_of_range);
  const std::int64_t count = upper - lower + 1;
  if (count > std::numeric_limits<std::uint32_t>::max()) raise(failure::out_of_memory);
  return static_cast<std::uint32_t>(count);
}

void ArrayBase::size(const Element& element, std::int64_t lower, std::int64_t upper, bool keep) {
  if (locked()) raise(failure::array_locked);
  if (keep && allocated_ && dimensions_ != 1) raise(failure::subscript_out_of_range);
  const std::uint32_t count = counted(lower, upper);
  const auto first = static_cast<std::int32_t>(lower);
  if (owner_ != nullptr) return size_at_owner(first, count, keep);
  if (fits_in_place(first, count, keep)) return size_in_place(element, first, count, keep);
  void* const elements = resized_copy(element, first, count, keep && allocated_);
  discard(element);
  describe(elements, first, count, 1);
}

// Whether the storage serves as it is: what is kept stands in its place, and not too much is
// left idle at once.
bool ArrayBase::fits_in_place(std::int32_t lower, std::uint32_t count, bool keep) const noexcept {
  if (elements_ == nullptr || dimensions_ != 1 || count > count_ || count < count_ / 2)
    return false;
  return !keep || lower == lower_;
}

void ArrayBase::size_in_place(const Element& element, std::int32_t lower, std::uint32_t count,
                              bool keep) noexcept {
  const std::uint32_t kept = keep ? count : 0;
  char* const ended = static_cast<char*>(elements_) + std::size_t{kept} * element.size;
  if (element.end != nullptr) element.end(ended, count_ - kept);
  std::memset(ended, 0, std::size_t{count - kept} * element.size);
  describe(elements_, lower, count, 1);
}

void ArrayBase::size_at_owner(std::int32_t lower, std::uint32_t count, bool keep) {
  void* const elements = in_settings_of_host([&] { return owner_->resize(lower, count, keep); });
  describe(elements, lower, count, 1);
}

void ArrayBase::release_at_owner() {
  ArrayOwner* const owner = owner_;
  in_settings_of_host([&] { owner->release(); });
  forget();
  owner_ = owner;
}

// New storage; surviving elements have moved into it.
void* ArrayBase::resized_copy(const Element& element, std::int32_t lower, std::uint32_t count,
                              bool keep) {
  auto* const fresh = static_cast<char*>(obtain_zeroed(bytes_of(element.size, count)));
  if (!keep) return fresh;
  auto* const old = static_cast<char*>(elements_);
  const std::int64_t first = std::max<std::int64_t>(lower, lower_);
  const std::int64_t last = std::min(upper_of(lower, count), upper_of(lower_, count_));
  if (first > last) return fresh;
  const std::size_t bytes = static_cast<std::size_t>(last - first + 1) * element.size;
  char* const source = old + static_cast<std::size_t>(first - lower_) * element.size;
  std::memcpy(fresh + static_cast<std::size_t>(first - lower) * element.size, source, bytes);
  // One owner a text: the old place holds none any more.
  if (element.end != nullptr) std::memset(source, 0, bytes);
  return fresh;
}

void ArrayBase::allocate(const Element& element, std::int32_t lower, std::uint32_t count,
                         std::uint16_t dimensions) {
  if (locked()) raise(failure::array_locked);
  if (upper_of(lower, count) > highest_index) raise(failure::subscript_out_of_range);
  void* const elements = obtain_zeroed(bytes_of(element.size, count));
  discard(element);
  owner_ = nullptr;
  describe(elements, lower, count, dimensions);
}

// Of elements that their bytes are all of. Zeros are not written first: of a whole survey that
// would be noticed.
void ArrayBase::copy_bytes(const Element& element, const ArrayBase& other) {
  const std::size_t bytes = bytes_of(element.size, other.count_);
  void* const elements = obtain(bytes);
  if (bytes != 0) std::memcpy(elements, other.elements_, bytes);
  describe(elements, other.lower_, other.count_, other.dimensions_);
}

void ArrayBase::discard(const Element& element) noexcept {
  if (owner_ == nullptr && elements_ != nullptr) {
    if (element.end != nullptr) element.end(elements_, count_);
    give_back(elements_);
  }
  elements_ = nullptr;
}

void ArrayBase::take(ArrayBase& other) noexcept {
  owner_ = other.owner_;
  describe(other.elements_, other.lower_, other.count_, other.dimensions_);
  allocated_ = other.allocated_;
  other.forget();
}

void ArrayBase::describe(void* elements, std::int32_t lower, std::uint32_t count,
                         std::uint16_t dimensions) noexcept {
  elements_ = elements;
  lower_ = lower;
  count_ = count;
  dimensions_ = dimensions;
  legal_ = dimensions == 1 ? count : 0;
  allocated_ = true;
}

}  // namespace orv2_geo
