/// @file
/// A flag that is raised for a scope: for loading guards, and for code that must not be entered twice.
#pragma once

#include <utility>

namespace plovix {

/// Raises the flag and restores its former state at the end, even if a failure ends the scope.
class Raised {
 public:
  /// Raises `flag`, which outlives this object.
  explicit Raised(bool& flag) : flag_(flag), former_(std::exchange(flag, true)) {}
  ~Raised() { flag_ = former_; }
  Raised(const Raised&) = delete;
  Raised& operator=(const Raised&) = delete;

 private:
  bool& flag_;
  bool former_;
};

}  // namespace plovix
