// Failures across the C boundary.
#include <optional>

#include "orv2_geo/c_api/guard.h"
#include "orv2_geo/frame/run_failure.h"
#include "orv2_geo/orv2_geo.h"

namespace orv2_geo::c_api {

namespace {
thread_local std::optional<RunFailure> last;
thread_local std::optional<RunFailure> of_callback;
}  // namespace

std::int32_t remembered(const RunFailure& failure) noexcept {
  // A host's failure without a number must not read as success.
  if (failure.number() == 0) {
    last.emplace(failure::host_object_failed, failure.description(), failure.source());
  } else {
    last = failure;
  }
  return last->number();
}

void forget_callback_failure() noexcept { of_callback.reset(); }

void raise_callback_failure(std::int32_t status) {
  if (of_callback && of_callback->number() == status) {
    throw RunFailure(*of_callback);
  }
  raise(status);
}

}  // namespace orv2_geo::c_api

using namespace orv2_geo;
using namespace orv2_geo::c_api;

int32_t orv2_last_failure(orv2_failure* failure) {
  if (failure == nullptr) return failure::invalid_call;
  *failure = {0, "", ""};
  if (last) *failure = {last->number(), last->description().data(), last->source().data()};
  return 0;
}

int32_t orv2_failure_at(size_t index, int32_t* number, const char** description) {
  return guarded([&] {
    const auto all = failure::catalogue();
    if (index >= all.size()) raise(failure::subscript_out_of_range);
    needed(number);
    *needed(description) = all[index].description;
    *number = all[index].number;
  });
}

int32_t orv2_set_failure(int32_t number, const char* description, const char* source) {
  return guarded([&] {
    if (number == 0) raise(failure::invalid_call);
    of_callback.emplace(number, description != nullptr ? description : "",
                        source != nullptr ? source : "");
  });
}
