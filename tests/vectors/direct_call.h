// direct_call.h: a call of a vector, made in C++ on the caller's own variables.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/vectors/portable_call.h"

namespace orv2_geo::vectors {

/// An object that takes calls, as PortableObject does through C.
class DirectObject {
 public:
  explicit DirectObject(const char* registered_name);
  ~DirectObject();
  DirectObject(const DirectObject&) = delete;
  DirectObject& operator=(const DirectObject&) = delete;

  /// What the call does; `by_value` tells of each parameter how it is handed over.
  Outcome call(std::size_t position, const std::vector<Given>& given,
               const std::vector<bool>& by_value);

  void tell_who_runs(WhoRuns told);
  void press(std::vector<std::string> buttons);
  bool showed_form() const;

 private:
  class Inside;
  std::unique_ptr<Inside> inside_;
};

}  // namespace orv2_geo::vectors
