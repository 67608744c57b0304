#include "examination.h"

#include <algorithm>
#include <iostream>

#include "object_checks.h"

namespace plovix::conformance {

Examination::Examination(const HostUnderTest& under_test) : host(under_test) {
  InstallServices(host.services);
}

void Examination::About(const std::string& subject, const std::function<void()>& body) {
  about_ = subject;
  Judge("An object that pages need cannot be had", [&] { return body(), true; });
  // The checks already made have their own findings.
  if (findings.back().verdict == Verdict::kPassed) findings.pop_back();
}

void Examination::Check(const std::string& sentence, const std::function<bool()>& holds) {
  Judge(sentence, holds);
}

// Flushed at once, because the check may crash.
void Examination::Announce(const std::string& check) const {
  if (host.before_check) return host.before_check(check);
  std::cerr << "checking " << check << std::endl;
}

void Examination::Judge(const std::string& sentence, const std::function<bool()>& holds) {
  Finding finding{about_, sentence, Verdict::kFailed, ""};
  detail.clear();
  try {
    Announce(about_ + ": " + sentence);
    if (holds()) finding.verdict = Verdict::kPassed;
    finding.detail = std::exchange(detail, "");
  } catch (const Missing& missing) {
    finding.verdict = Verdict::kNotRun;
    finding.detail = std::string("HostUnderTest::") + missing.member + " is missing";
  } catch (...) {
    const Failure failure = CurrentFailure();
    finding.detail = "failure " + std::to_string(failure.Number()) + ": " + failure.Description();
  }
  findings.push_back(std::move(finding));
}

Ref<HostApplication> Examination::Application() const {
  Needed(host.services.host_services, "services");
  return Given(Services().Application(), "HostServices.Application");
}

Ref<ObjectFactory> Examination::Factory() const {
  Needed(host.services.host_services, "services");
  return Given(Services().Factory(), "HostServices.Factory");
}

Ref<AutoTask> Examination::Task() const {
  return Given(Needed(host.make_task, "make_task")(), "make_task");
}

Ref<ValueStore> Examination::Store() const {
  return Given(Needed(host.make_store, "make_store")(), "make_store");
}

Ref<ActionList> Examination::Actions(const std::vector<std::int32_t>& record_modes) const {
  return Given(Needed(host.make_actions, "make_actions")(record_modes), "make_actions");
}

Ref<ActionListControl> Examination::Control() const {
  const auto control = Needed(host.make_control, "make_control")("VeloDesignerCtrl.VeloActionList");
  return Given(std::dynamic_pointer_cast<ActionListControl>(control), "make_control");
}

Findings CheckObjects(const HostUnderTest& host) {
  Examination exam(host);
  for (const auto check : {CheckMembers, CheckLists, CheckApplication, CheckData}) check(exam);
  return exam.findings;
}

int Print(const Findings& findings, std::ostream& out) {
  const auto write = [&](Verdict verdict, const char* heading) {
    for (const Finding& finding : findings) {
      if (finding.verdict != verdict) continue;
      out << heading << finding.about << ": " << finding.sentence;
      if (!finding.detail.empty()) out << " (" << finding.detail << ')';
      out << '\n';
    }
    return std::ranges::count(findings, verdict, &Finding::verdict);
  };
  const auto failed = write(Verdict::kFailed, "FAILED   ");
  const auto not_run = write(Verdict::kNotRun, "not run  ");
  const auto total = std::ssize(findings);
  out << total << " checks: " << total - failed - not_run << " passed, " << failed << " failed, " << not_run
      << " not run\n";
  if (failed > 0) return 1;
  return not_run > 0 || total == 0 ? 2 : 0;
}

}  // namespace plovix::conformance
