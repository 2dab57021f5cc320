// variables.h: a component host's variables, made from a call's values and read afterwards.
#pragma once

#include <oaidl.h>

#include <array>
#include <cstddef>
#include <deque>
#include <vector>

#include "tests/vectors/values.h"

namespace orv2_geo::early_bound {

/// A variable of any type, with what lies behind it watched.
class Variable {
 public:
  Variable(const vectors::Value& value, IDispatch* host);
  ~Variable();
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;

  vectors::Kind kind() const { return kind_; }
  void* place() { return cell_.data(); }

  vectors::Value content() const;

  /// What a callee has no right to do: write behind the variable, leave its array locked or change
  /// which object it holds. Empty when it did not.
  std::string misuse() const;

 private:
  template <class T>
  T as() const;
  template <class T>
  void set(T value);

  vectors::Kind kind_;
  IDispatch* host_ = nullptr;
  alignas(16) std::array<std::byte, 32> cell_;
};

/// The arguments of a call: each argument's variable, shared where the call shares it.
class Variables {
 public:
  Variables(const std::vector<vectors::Given>& given, IDispatch* host);

  std::size_t count() const { return arguments_.size(); }
  Variable& operator[](std::size_t i) const { return *arguments_[i]; }

 private:
  std::deque<Variable> own_;
  std::vector<Variable*> arguments_;
};

}  // namespace orv2_geo::early_bound
