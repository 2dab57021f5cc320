#include "orv2_geo/com/host_array.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "orv2_geo/frame/run_failure.h"

namespace orv2_geo::com {

namespace {

constexpr USHORT fixed_size = FADF_FIXEDSIZE | FADF_STATIC | FADF_AUTO;

// Elements and bounds in one block of memory, which ends with the descriptor.
constexpr USHORT one_block = 0x2000;  // FADF_CREATEVECTOR

ULONG elements_in(const SAFEARRAY& array) noexcept {
  ULONG count = array.pvData != nullptr ? 1 : 0;
  for (USHORT i = 0; i < array.cDims; ++i) count *= array.rgsabound[i].cElements;
  return count;
}

ULONG size_of_element(VARTYPE element) noexcept {
  switch (element) {
    case VT_I2: return 2;
    case VT_R8: return 8;
    case VT_BSTR: return sizeof(BSTR);
    case VT_VARIANT: return sizeof(VARIANT);
    default: return 4;
  }
}

// Survivors move from the old storage, which keeps zeros, so that a text has one owner.
void move_survivors(const SAFEARRAY& from, const SAFEARRAY& to) noexcept {
  const SAFEARRAYBOUND old = from.rgsabound[0];
  const SAFEARRAYBOUND now = to.rgsabound[0];
  const auto end = [](const SAFEARRAYBOUND& bound) {
    return std::int64_t{bound.lLbound} + bound.cElements;
  };
  const std::int64_t first = std::max<std::int64_t>(old.lLbound, now.lLbound);
  const std::int64_t last = std::min(end(old), end(now));
  if (first >= last) return;
  const std::size_t bytes = static_cast<std::size_t>(last - first) * from.cbElements;
  const auto place = [&](const SAFEARRAY& array) {
    const auto offset = static_cast<std::size_t>(first - array.rgsabound[0].lLbound);
    return static_cast<char*>(array.pvData) + offset * from.cbElements;
  };
  std::memcpy(place(to), place(from), bytes);
  std::memset(place(from), 0, bytes);
}

}  // namespace

HostStorage::HostStorage(SAFEARRAY** variable, VARTYPE element)
    : variable_(variable), element_(element) {
  if (*variable != nullptr) lock(*variable);
}

HostStorage::~HostStorage() { unlock(); }

bool HostStorage::allocated() const noexcept {
  return locked_ != nullptr && locked_->cDims != 0 && locked_->pvData != nullptr;
}

void HostStorage::lock(SAFEARRAY* array) {
  if (FAILED(SafeArrayLock(array))) raise(failure::array_locked);
  locked_ = array;
}

void HostStorage::unlock() noexcept {
  if (locked_ != nullptr) SafeArrayUnlock(std::exchange(locked_, nullptr));
}

void HostStorage::expect_resizable() const {
  const bool same = *variable_ == locked_;
  const bool free =
      locked_ == nullptr || (locked_->cLocks == 1 && (locked_->fFeatures & fixed_size) == 0);
  if (!same || !free || is_in_use()) raise(failure::array_locked);
}

// Whether an element of the array is itself an argument of the call.
bool HostStorage::is_in_use() const noexcept {
  if (bound_ == nullptr || !allocated()) return false;
  return bound_->reach_into(locked_->pvData,
                            std::size_t{elements_in(*locked_)} * locked_->cbElements);
}

void* HostStorage::resize(std::int32_t lower, std::uint32_t count, bool keep) {
  expect_resizable();
  SAFEARRAYBOUND bound{count, lower};
  // Some systems count the bytes in 32 bits and say nothing where those do not fit.
  constexpr ULONG most_bytes = 0x7fffffff - 64;
  if (count > most_bytes / size_of_element(element_)) raise(failure::out_of_memory);
  SAFEARRAY* const fresh = SafeArrayCreate(element_, 1, &bound);
  if (fresh == nullptr) raise(failure::out_of_memory);
  if (keep && allocated()) move_survivors(*locked_, *fresh);
  const bool in_place = locked_ != nullptr && (locked_->fFeatures & one_block) == 0;
  if (in_place) {
    exchange(fresh);
  } else {
    replace(fresh);
  }
  return elements();
}

// The host's descriptor stays; the old storage leaves with the fresh one.
void HostStorage::exchange(SAFEARRAY* fresh) noexcept {
  const SAFEARRAYBOUND bound = fresh->rgsabound[0];
  fresh->rgsabound[0].cElements = elements_in(*locked_);
  std::swap(fresh->pvData, locked_->pvData);
  locked_->cbElements = fresh->cbElements;  // one that told none
  locked_->cDims = 1;
  locked_->rgsabound[0] = bound;
  SafeArrayDestroy(fresh);
}

void HostStorage::replace(SAFEARRAY* fresh) {
  SAFEARRAY* const old = locked_;
  unlock();
  *variable_ = fresh;
  lock(fresh);
  if (old != nullptr) SafeArrayDestroy(old);  // an object in it may look at the variable
}

void HostStorage::release() {
  expect_resizable();
  if (locked_ == nullptr) return;
  SAFEARRAY* const old = locked_;
  if ((old->fFeatures & FADF_EMBEDDED) != 0) return static_cast<void>(resize(0, 0, false));
  unlock();
  *variable_ = nullptr;
  SafeArrayDestroy(old);
}

void expect_elements(const SAFEARRAY* array, VARTYPE element, std::size_t size) {
  constexpr USHORT other_than_numbers =
      FADF_BSTR | FADF_UNKNOWN | FADF_DISPATCH | FADF_VARIANT | FADF_RECORD;
  VARTYPE told = VT_EMPTY;
  auto* const asked = const_cast<SAFEARRAY*>(array);  // the system's function only reads
  const bool tells = SUCCEEDED(SafeArrayGetVartype(asked, &told)) && told != VT_EMPTY;
  const bool has_size = array->pvData != nullptr || array->cbElements != 0;
  if (!tells && !has_size && (array->fFeatures & other_than_numbers) == 0) return;
  const bool same = told == element || (told == VT_INT && element == VT_I4);
  const bool fits = array->cbElements == size && (array->fFeatures & other_than_numbers) == 0 &&
                    element != VT_BSTR;
  if (tells ? !same || array->cbElements != size : !fits) raise(failure::type_mismatch);
}

}  // namespace orv2_geo::com
