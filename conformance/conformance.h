/// @file
/// The conformance kit: checks of a host's implementation of the interfaces in host/, to be linked by the
/// developer of the host. It needs no test framework; a program of one line is enough:
///
///     int main() { return plovix::conformance::Print(plovix::conformance::CheckHost(MyHost()), std::cout); }
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "host_under_test.h"

namespace plovix::conformance {

/// How a check ended.
enum class Verdict {
  kPassed,
  kFailed,
  kNotRun,  ///< the host under test lacks what the check needs
};

/// The result of one check.
struct Finding {
  std::string about;  ///< the interface: "ValueStore"
  /// What is wrong if the check fails, and what it would mean for a page or its user. The same in every run;
  /// empty if nothing about the interface could be checked.
  std::string sentence;
  Verdict verdict = Verdict::kPassed;  ///< how it ended
  /// If failed: the failure that came instead of an answer, or the wrong value; may be empty. If not run:
  /// what is missing.
  std::string detail;
};
/// In the order in which the checks ran.
using Findings = std::vector<Finding>;

/// Checks the objects, one member at a time. No failure of the host leaves this function or those below: an
/// exception, and a null reference where an object was promised, becomes a finding.
[[nodiscard]] Findings CheckObjects(const HostUnderTest& host);

/// Checks the wizard around the pages, driven with the kit's own pages.
[[nodiscard]] Findings CheckWizard(const HostUnderTest& host);

/// Walks the component's real pages on the host's objects, path by path: whatever is entered must be saved,
/// and a second visit, with only the task in the store, must show it again. Returns a finding for each page
/// visited.
[[nodiscard]] Findings WalkPages(const HostUnderTest& host);

/// All three.
[[nodiscard]] Findings CheckHost(const HostUnderTest& host);

/// Writes failed checks, checks that were not run, and the totals.
/// @return an exit status: 0 when every check passed, 1 when one failed, 2 when none failed but some were
///         not run
[[nodiscard]] int Print(const Findings& findings, std::ostream& out);

}  // namespace plovix::conformance
