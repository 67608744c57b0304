/// @file
/// A flag that is up for a scope: loading guards, and whatever must not be entered twice.
#pragma once

#include <utility>

namespace plovix {

/// Raises the flag and gives it its former state back at the end, also when a failure ends the scope.
class Raised {
 public:
  /// `flag` outlives the object.
  explicit Raised(bool& flag) : flag_(flag), former_(std::exchange(flag, true)) {}
  ~Raised() { flag_ = former_; }
  Raised(const Raised&) = delete;
  Raised& operator=(const Raised&) = delete;

 private:
  bool& flag_;
  bool former_;
};

}  // namespace plovix
