/// @file
/// The conformance kit: checks that the developer of a host links against their own implementation of the
/// interfaces in host/. It needs no test framework; a program of one line is enough:
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
  /// What is wrong when the check fails, and what a page or its user would have got of it. The same in every
  /// run; empty where nothing about the interface could be checked.
  std::string sentence;
  Verdict verdict = Verdict::kPassed;  ///< how it ended
  /// Failed: the failure that came instead of an answer, or the value that was wrong; may be empty. Not run:
  /// what is missing.
  std::string detail;
};
/// In the order in which the checks ran.
using Findings = std::vector<Finding>;

/// The objects, one member at a time. No failure of the host leaves this function or those below: what a host
/// throws, and a reference to nothing where an object was promised, becomes a finding.
[[nodiscard]] Findings CheckObjects(const HostUnderTest& host);

/// The wizard around the pages, driven over pages of the kit's own.
[[nodiscard]] Findings CheckWizard(const HostUnderTest& host);

/// The component's real pages on the host's objects, road by road: whatever is entered must be saved, and a
/// second visit, with a store that holds the task alone, must show it again. A finding for each page visited.
[[nodiscard]] Findings WalkPages(const HostUnderTest& host);

/// All three.
[[nodiscard]] Findings CheckHost(const HostUnderTest& host);

/// Writes what failed, what was not run, and the totals.
/// @return an exit status: 0 when every check passed, 1 when one failed, 2 when none failed but some were
///         not run
[[nodiscard]] int Print(const Findings& findings, std::ostream& out);

}  // namespace plovix::conformance
