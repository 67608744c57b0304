// An expected failure.
#pragma once

#include <gtest/gtest.h>
#include <plovix/base/failure.h>

#include <functional>

namespace plovix::test {

// Runs `action`, which must fail; gives back the failure.
inline Failure FailureOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const Failure& failure) {
    return failure;
  }
  ADD_FAILURE() << "nothing failed";
  return {0, ""};
}

}  // namespace plovix::test
