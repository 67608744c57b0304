/// @file
/// Work that may fail, where a failure is told instead of let through.
#pragma once

#include <optional>

#include "failure.h"

namespace plovix {

/// Does the work and gives back the failure that it came to, if any. Whoever tells it to a person does so
/// behind the catch block: no exception is alive while a dialog is open.
template <class Work>
[[nodiscard]] std::optional<Failure> FailureOf(Work&& work) {
  try {
    work();
    return std::nullopt;
  } catch (...) {
    return CurrentFailure();
  }
}

}  // namespace plovix
