// What the files of the kit share: the host as checks reach it, and how a check becomes a finding.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "conformance.h"

namespace plovix::conformance {

// Thrown by a check that needs a member of HostUnderTest which is empty.
struct Missing {
  const char* member;
};

// Returns `function`, which must not be empty.
template <class Function>
const Function& Needed(const Function& function, const char* member) {
  if (!function) throw Missing{member};
  return function;  // NOLINT(bugprone-return-const-ref-from-parameter): a member of HostUnderTest
}

// Returns `reference`, which the host must not leave empty; `member` says where it came from.
template <class Reference>
Reference Given(Reference reference, const char* member) {
  if (!reference) throw Failure(failure_number::kObjectNotSet, std::string(member) + " gives nothing");
  return reference;
}

// Whether the call fails with that number, as a page would report it.
template <class Call>
bool FailsWith(int number, Call call) {
  try {
    call();
  } catch (const Missing&) {
    throw;
  } catch (...) {
    return CurrentFailure().Number() == number;
  }
  return false;
}

class Examination {
 public:
  // Installs the services of `under_test`, which outlives the examination.
  explicit Examination(const HostUnderTest& under_test);

  // Runs `body`, which makes the checks of one interface. An exception between checks ends it.
  void About(const std::string& subject, const std::function<void()>& body);
  // A check: it fails with `sentence` unless `holds` returns true.
  void Check(const std::string& sentence, const std::function<bool()>& holds);

  // The host's objects; never null.
  [[nodiscard]] Ref<HostApplication> Application() const;
  [[nodiscard]] Ref<ObjectFactory> Factory() const;
  template <class T>
  [[nodiscard]] Ref<T> New(Ref<T> (ObjectFactory::*make)()) const {
    return Given(((*Factory()).*make)(), "The factory");
  }
  [[nodiscard]] Ref<AutoTask> Task() const;
  [[nodiscard]] Ref<ValueStore> Store() const;  // the wizard's
  [[nodiscard]] Ref<ActionList> Actions(const std::vector<std::int32_t>& record_modes) const;
  [[nodiscard]] Ref<ActionListControl> Control() const;

  const HostUnderTest& host;
  Findings findings;
  std::string detail;  // a failing check may say here what was wrong

 private:
  void Announce(const std::string& check) const;
  void Judge(const std::string& sentence, const std::function<bool()>& holds);
  std::string about_;
};

}  // namespace plovix::conformance
