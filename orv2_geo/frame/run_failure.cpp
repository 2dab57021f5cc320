#include "orv2_geo/frame/run_failure.h"

#include <new>
#include <stdexcept>

namespace orv2_geo {

namespace {

constexpr failure::Listed listed[] = {
#define ORV2_LISTED(name, number, text) {number, text},
    ORV2_FAILURES(ORV2_LISTED)
#undef ORV2_LISTED
};

}  // namespace

std::span<const failure::Listed> failure::catalogue() noexcept { return listed; }

std::string_view failure::description_of(std::int32_t number) noexcept {
  for (const Listed& one : listed) {
    if (one.number == number) return one.description;
  }
  return "";
}

RunFailure::RunFailure(std::int32_t number, std::string_view description,
                       std::string_view source) noexcept
    : number_(number) {
  try {
    words_ = std::make_shared<const Words>(Words{std::string(description), std::string(source)});
  } catch (...) {
    words_.reset();
  }
}

RunFailure RunFailure::signed_by(std::int32_t number, const char* source) noexcept {
  RunFailure failure(number);
  failure.sign(source);
  return failure;
}

std::string_view RunFailure::description() const noexcept {
  if (words_ && !words_->description.empty()) return words_->description;
  return failure::description_of(number_);
}

std::string_view RunFailure::source() const noexcept {
  if (words_ && !words_->source.empty()) return words_->source;
  return signed_by_ != nullptr ? signed_by_ : "";
}

// Both kinds of description end in a zero byte.
const char* RunFailure::what() const noexcept { return description().data(); }

void RunFailure::sign(const char* source) noexcept {
  if (signed_by_ == nullptr) signed_by_ = source;
}

void raise(std::int32_t number) { throw RunFailure(number); }

RunFailure failure_in_flight() noexcept {
  try {
    throw;
  } catch (const RunFailure& failure) {
    return failure;
  } catch (const std::bad_alloc&) {
    return RunFailure(failure::out_of_memory);
  } catch (const std::length_error&) {
    return RunFailure(failure::out_of_memory);
  } catch (const std::exception& other) {
    return RunFailure(failure::host_object_failed, other.what(), "");
  } catch (...) {
    return RunFailure(failure::host_object_failed);
  }
}

void leave_signed(const char* source) {
  try {
    throw;
  } catch (RunFailure& failure) {
    failure.sign(source);
    throw;  // the very one: a host may have derived its own from it
  } catch (...) {
    RunFailure failure = failure_in_flight();
    failure.sign(source);
    throw RunFailure(failure);
  }
}

}  // namespace orv2_geo
