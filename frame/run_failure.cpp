#include "frame/run_failure.h"

#include <new>
#include <stdexcept>

namespace orv2_geo {

namespace {

struct Entry {
  std::int32_t number;
  std::string_view description;
};

constexpr Entry catalogue[] = {
#define ORV2_FAILURE_ENTRY(name, number, text) {number, text},
    ORV2_FAILURES(ORV2_FAILURE_ENTRY)
#undef ORV2_FAILURE_ENTRY
};

}  // namespace

std::string_view failure::description_of(std::int32_t number) noexcept {
  for (const Entry& entry : catalogue) {
    if (entry.number == number) return entry.description;
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

void leave_signed(const char* source) {
  try {
    throw;
  } catch (RunFailure& failure) {
    failure.sign(source);
    throw;
  } catch (const std::bad_alloc&) {
    throw RunFailure::signed_by(failure::out_of_memory, source);
  } catch (const std::length_error&) {
    throw RunFailure::signed_by(failure::out_of_memory, source);
  } catch (const std::exception& other) {
    throw RunFailure(failure::host_object_failed, other.what(), source);
  } catch (...) {
    throw RunFailure::signed_by(failure::host_object_failed, source);
  }
}

}  // namespace orv2_geo
