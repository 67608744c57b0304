#include "call_gate.h"

#include <utility>

namespace plovix {
namespace {

thread_local CallObserver* current_observer = nullptr;

}  // namespace

ObserveCalls::ObserveCalls(CallObserver& observer) : former_(std::exchange(current_observer, &observer)) {}

ObserveCalls::~ObserveCalls() {
  current_observer = former_;
}

void Called(HostMember member) {
  if (current_observer != nullptr) current_observer->HostCalled(member.Name());
}

}  // namespace plovix
