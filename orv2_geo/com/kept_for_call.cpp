#include "orv2_geo/com/kept_for_call.h"

#include <exception>

namespace orv2_geo::com {

KeptForCall::~KeptForCall() {
  while (count_ != 0) places_[--count_]->~Place();
}

Place* KeptForCall::find(const void* variable, Type type) const noexcept {
  for (std::size_t i = 0; i < count_; ++i) {
    if (places_[i]->is_of(variable, type)) return places_[i];
  }
  return nullptr;
}

void KeptForCall::write_back() {
  std::exception_ptr first;
  for (std::size_t i = 0; i < count_; ++i) {
    try {
      places_[i]->write_back();
    } catch (...) {
      if (!first) first = std::current_exception();
    }
  }
  if (first) std::rethrow_exception(first);
}

}  // namespace orv2_geo::com
