// Makes chosen calls to the host fail, for the command "fail MEMBER N".
#pragma once

#include <plovix/standalone/objects/call_gate.h>

#include <string_view>
#include <vector>

namespace plovix::script {

class FaultInjector final : public CallObserver {
 public:
  // Makes the `count`-th next call (1: the very next) of the member fail once. An unknown member or a count
  // below 1 is a LineError.
  void Plan(std::string_view member, int count);

  void HostCalled(std::string_view member) override;

 private:
  struct Planned {
    std::string_view member;
    int calls_left;
  };
  std::vector<Planned> planned_;
};

}  // namespace plovix::script
