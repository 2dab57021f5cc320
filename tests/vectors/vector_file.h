// vector_file.h: the calls of the file of test vectors, and how their outcomes compare.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "tests/vectors/values.h"

namespace orv2_geo::vectors {

/// The file's classes, in the order of the catalogue.
const std::vector<VectorClass>& classes_of_file();

/// Of each argument of the call, whether its parameter takes it by value.
std::vector<bool> by_value(std::size_t class_index, const VectorCall& call);

/// The call with what makes a routine show its form, which no call of the file does.
VectorCall with_form(VectorCall call);

/// The buttons of all forms, in the order in which a person presses them.
std::vector<std::string> buttons_of_forms();

}  // namespace orv2_geo::vectors
