/// @file
/// The receiver of every unexpected failure of a page.
#pragma once

#include <plovix/base/requirements.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace plovix {

/// What to do after a failure. Any other value counts as kLeave.
enum class ReportAction : std::int32_t {
  kRetry = 0,     ///< run the failed statement again
  kContinue = 1,  ///< go on with the statement after it
  kLeave = 2,     ///< leave the procedure
};

/// Called by the named procedures of the pages, through HostApplication::ErrorReporter.
class ErrorReporter {
 public:
  virtual ~ErrorReporter() = default;
  /// Reports a failure and returns what to do. May show a dialog and run its event loop before it returns.
  /// Should not fail: what it throws leaves the page's operation.
  /// @param number       Failure::Number
  /// @param description  Failure::Description, UTF-8
  /// @param project      kModule
  /// @param page         the page's name: "Details"
  /// @param procedure    "SaveValues", "txtName_LostFocus"
  /// @param line         the source line of the failed statement; 0 when the failure came from a procedure
  ///                     without a handler of its own
  [[nodiscard]] virtual ReportAction Report(int number, const std::string& description,
                                            std::string_view project, std::string_view page,
                                            std::string_view procedure, int line) = 0;
};

}  // namespace plovix
