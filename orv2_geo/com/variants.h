// variants.h: the system's variants as the library's values, and back.
#pragma once

#include "orv2_geo/com/system.h"
#include "orv2_geo/frame/argument.h"

namespace orv2_geo::com {

/// A variant of the library's own, cleared with its scope.
class OwnVariant {
 public:
  OwnVariant() noexcept { VariantInit(&value_); }
  OwnVariant(const OwnVariant&) = delete;
  OwnVariant& operator=(const OwnVariant&) = delete;
  ~OwnVariant();

  VARIANT& value() noexcept { return value_; }
  const VARIANT& value() const noexcept { return value_; }

 private:
  VARIANT value_;
};

/// Throws the failure that a status of the variant services stands for: 13, 6, 7 or 10.
void expect_converted(HRESULT status);

/// The variant that an argument means: one handed in by reference, or the argument itself.
/// Failure 13 for a variant by reference that holds such a one again.
const VARIANT& meant_by(const VARIANT& given);

/// A number, flag or text of a variant, converted as the library converts arguments.
/// Failures: 13 for what is none of these and for a text that is no number, 6 out of range.
template <class T>
T value_in(const VARIANT& given);

/// Puts a number, a flag or a text in a variant's place: one that is by reference of
/// another type keeps its type. Failures: 13, 6, 7; 10 where what it holds is locked.
template <class T>
void put(VARIANT& place, const T& value);

/// Puts a new value of the library's in a variant without content.
void fill(VARIANT& empty, const Variant& value);

/// A host's answer. Arrays and objects of the host's are of no use to the library: an
/// object counts as an answer without a value.
Variant taken_from(const VARIANT& answer);

}  // namespace orv2_geo::com
