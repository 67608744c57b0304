#include "fault_injector.h"

#include <plovix/base/failure.h>

#include <algorithm>
#include <string>

#include "line_error.h"

namespace plovix::script {

void FaultInjector::Plan(std::string_view member, int count) {
  const auto* known = std::ranges::find(kHostMembers, member);
  if (known == kHostMembers.end()) throw LineError("the host has no member \"" + std::string(member) + "\"");
  if (count < 1) throw LineError("calls are counted from 1");
  planned_.push_back({*known, count});
}

void FaultInjector::HostCalled(std::string_view member) {
  for (Planned& planned : planned_) {
    if (planned.member == member) --planned.calls_left;
  }
  const auto due = [](const Planned& planned) { return planned.calls_left == 0; };
  if (std::erase_if(planned_, due) == 0) return;
  throw Failure(failure_number::kInvalidCall, "Planned failure of " + std::string(member));
}

}  // namespace plovix::script
