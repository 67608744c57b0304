/// @file
/// The base of the objects that work on the host's state.
#pragma once

#include <plovix/base/requirements.h>

namespace plovix {

struct HostState;

/// Holds the state for an implementation of an interface.
template <class Interface>
class StateObject : public Interface {
 public:
  /// `state` outlives the object.
  explicit StateObject(HostState& state) : state_(state) {}

 protected:
  HostState& state_;  ///< never copied
};

}  // namespace plovix
